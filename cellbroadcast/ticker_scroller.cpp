#include "cellbroadcast/ticker_scroller.h"

#include "framework/time/thread_timer.h"

#include <QFontMetrics>
#include <QPainter>
#include <QWidget>

namespace tessaly::sms {

namespace {

std::unique_ptr<ScrollStrategy> makeStrategy(TickerOrientation orientation) {
    if (orientation == TickerOrientation::Horizontal)
        return std::make_unique<HorizontalScroll>();
    return std::make_unique<VerticalScroll>();
}

TickerRect tickerRect(const QRect& rect) {
    return {rect.left(), rect.top(), rect.left() + rect.width(), rect.top() + rect.height()};
}

} // namespace

QFont emphasisFontFor(const QFont& normal) {
    QFont emphasis = normal;
    emphasis.setWeight(normal.weight() < 600 ? QFont::Bold : QFont::Normal);
    return emphasis;
}

TickerScroller::TickerScroller(TickerOrientation orientation, QWidget* control, const QRect& rect,
                               ItemSource items)
    : orientation_(orientation)
    , control_(control)
    , rect_(rect)
    , source_(std::move(items))
    , strategy_(makeStrategy(orientation))
    , normalFont_(control->font())
    , emphasisFont_(emphasisFontFor(normalFont_)) {}

TickerScroller::~TickerScroller() {
    stopTimer();
}

void TickerScroller::restart() {
    stopTimer();
    items_ = source_ ? source_() : std::vector<TickerItem>();
    const QFontMetrics normal(normalFont_);
    const QFontMetrics emphasis(emphasisFont_);
    widths_.clear();
    for (const TickerItem& item : items_)
        widths_.push_back((item.emphasis ? emphasis : normal).horizontalAdvance(item.text));
    if (items_.empty())
        return;
    const int period = strategy_->start(widths_, tickerRect(rect_));
    if (period > 0)
        startTimer(period);
}

void TickerScroller::onTimer() {
    const int period = strategy_->tick();
    if (period < 0) {
        restart();
    } else if (period != period_) {
        stopTimer();
        if (period > 0)
            startTimer(period);
    }
    // Only the moving part is painted again, over the old frame, and at once.
    if (control_)
        control_->repaint(rect_);
}

void TickerScroller::startTimer(int period) {
    period_ = period;
    timerId_ = setThreadTimer(UINT(period), [this](UINT_PTR) { onTimer(); });
}

void TickerScroller::stopTimer() {
    if (timerId_)
        killThreadTimer(timerId_);
    timerId_ = 0;
    period_ = 0;
}

void TickerScroller::draw(QPainter& painter) const {
    painter.save();
    painter.setClipRect(rect_);
    for (const TickerPlacement& placement : strategy_->visibleItems()) {
        if (placement.item < 0 || placement.item >= int(items_.size()))
            continue;
        const TickerItem& item = items_[std::size_t(placement.item)];
        painter.setFont(item.emphasis ? emphasisFont_ : normalFont_);
        const QRect box(placement.x, placement.y, widths_[std::size_t(placement.item)] + 1,
                        rect_.height());
        painter.drawText(box, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, item.text);
    }
    painter.restore();
}

} // namespace tessaly::sms
