#pragma once

// The moving part of the ticker: the item texts with their fonts, a scroll strategy and the
// timer that drives it. Each tick moves the strategy one step and repaints the scroller's
// rectangle of the control at once; the end of a cycle rebuilds the items and starts again, so
// new messages join at every cycle.

#include "cellbroadcast/cb_texts.h"
#include "cellbroadcast/scroll_strategy.h"
#include "framework/win32types.h"

#include <QFont>
#include <QPointer>
#include <QRect>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class QPainter;

namespace tessaly::sms {

enum class TickerOrientation { Horizontal, Vertical };

class TickerScroller {
public:
    using ItemSource = std::function<std::vector<TickerItem>()>;

    // control: the widget painted on (its font is the normal font); rect: the part of it the
    // items move in.
    TickerScroller(TickerOrientation orientation, QWidget* control, const QRect& rect,
                   ItemSource items);
    ~TickerScroller();
    TickerScroller(const TickerScroller&) = delete;
    TickerScroller& operator=(const TickerScroller&) = delete;

    TickerOrientation orientation() const { return orientation_; }
    QRect rect() const { return rect_; }
    void setRect(const QRect& rect) { rect_ = rect; }

    // Stops the timer, rebuilds the items and starts the strategy over; the timer runs when
    // the items move.
    void restart();
    bool hasTimer() const { return timerId_ != 0; }
    // The period the timer runs at (0 when none).
    int period() const { return period_; }

    // Draws the items in view, each in its font, clipped to the rectangle.
    void draw(QPainter& painter) const;

    const std::vector<TickerItem>& items() const { return items_; }
    const ScrollStrategy& strategy() const { return *strategy_; }
    const QFont& emphasisFont() const { return emphasisFont_; }

private:
    void onTimer();
    void startTimer(int period);
    void stopTimer();

    TickerOrientation orientation_;
    QPointer<QWidget> control_;
    QRect rect_;
    ItemSource source_;
    std::unique_ptr<ScrollStrategy> strategy_;
    QFont normalFont_;
    QFont emphasisFont_;
    std::vector<TickerItem> items_;
    std::vector<int> widths_;
    UINT_PTR timerId_ = 0;
    int period_ = 0;
};

// The normal font's description with its weight changed: bold (700) for a font lighter than
// 600, regular (400) otherwise, so the newest item stands out either way.
QFont emphasisFontFor(const QFont& normal);

} // namespace tessaly::sms
