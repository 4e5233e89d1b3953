#include "framework/ui/screen.h"

#include <cmath>

namespace tessaly {

namespace {

constexpr double kPixelsPerUnitX = 1.65;
constexpr double kPixelsPerUnitY = 1.72;

} // namespace

int dialogUnitsToPixelsX(int units) {
    return int(std::lround(units * kPixelsPerUnitX));
}

int dialogUnitsToPixelsY(int units) {
    return int(std::lround(units * kPixelsPerUnitY));
}

QRect dialogUnitsToPixels(int x, int y, int width, int height) {
    const int left = dialogUnitsToPixelsX(x);
    const int top = dialogUnitsToPixelsY(y);
    // Map both edges so that neighbouring controls neither overlap nor leave a gap.
    return QRect(QPoint(left, top),
                 QPoint(dialogUnitsToPixelsX(x + width) - 1, dialogUnitsToPixelsY(y + height) - 1));
}

namespace {

QFont condensedSans(int pixels) {
    QFont font(QStringLiteral("DejaVu Sans Condensed"));
    font.setPixelSize(pixels);
    return font;
}

} // namespace

const QFont& smallFont() {
    static const QFont font = condensedSans(11);
    return font;
}

const QFont& listFont() {
    static const QFont font = condensedSans(10);
    return font;
}

} // namespace tessaly
