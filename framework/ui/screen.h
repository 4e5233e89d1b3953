#pragma once

// The phone screen every window lives on, and how dialog units of the resource script become
// pixels of it.

#include <QFont>
#include <QRect>

namespace tessaly {

constexpr int kScreenWidth = 240;
constexpr int kScreenHeight = 320;
// The title strip on top of a window and the command bar at the bottom of a full-screen window.
constexpr int kTitleBarHeight = 26;
constexpr int kCommandBarHeight = 26;
// What a full-screen window leaves to its controls.
constexpr int kClientWidth = kScreenWidth;
constexpr int kClientHeight = kScreenHeight - kTitleBarHeight - kCommandBarHeight;

// Dialog units to pixels: 1.65 px per horizontal unit and 1.72 px per vertical unit, so that a
// template 145 units wide spans the 240-pixel screen and 156 units fill the 268-pixel client area.
int dialogUnitsToPixelsX(int units);
int dialogUnitsToPixelsY(int units);
QRect dialogUnitsToPixels(int x, int y, int width, int height);

// The small font of windows, dialogs and drawn labels: a condensed sans (DejaVu Sans
// Condensed, 11 px), so that names and texts keep a useful part on the 240-pixel screen.
const QFont& smallFont();
// The font of list views: the same face a pixel smaller, so that the default column widths show
// a whole date ("05-17", "14:05") beside the vertical scroll bar.
const QFont& listFont();
// The width of a list view's scroll bars.
constexpr int kListScrollBarWidth = 8;

} // namespace tessaly
