#include "cellbroadcast/scroll_strategy.h"

namespace tessaly::sms {

int HorizontalScroll::start(std::span<const int> itemWidths, const TickerRect& rect) {
    rect_ = rect;
    widths_.assign(itemWidths.begin(), itemWidths.end());
    first_ = 0;
    if (widths_.size() == 1 && widths_.front() <= rect.width()) {
        firstX_ = centred_ ? rect.left + (rect.width() - widths_.front()) / 2 : rect.left;
        return 0;
    }
    firstX_ = rect.right - kEntryInsetPx;
    return widths_.empty() ? 0 : kPeriodMs;
}

int HorizontalScroll::tick() {
    const int count = int(widths_.size());
    firstX_ -= kStepPx;
    while (first_ < count && firstX_ + widths_[std::size_t(first_)] + kGapPx <= rect_.left) {
        firstX_ += widths_[std::size_t(first_)] + kGapPx;
        ++first_;
    }
    return first_ < count ? kPeriodMs : -1;
}

std::vector<TickerPlacement> HorizontalScroll::visibleItems() const {
    std::vector<TickerPlacement> placements;
    int x = firstX_;
    for (int item = first_; item < int(widths_.size()) && x < rect_.right; ++item) {
        placements.push_back({item, x, rect_.top});
        x += widths_[std::size_t(item)] + kGapPx;
    }
    return placements;
}

int VerticalScroll::start(std::span<const int> itemWidths, const TickerRect& rect) {
    rect_ = rect;
    const int previousCount = count_;
    count_ = int(itemWidths.size());
    if (count_ < 2) {
        current_ = count_ == 1 ? 0 : -1;
        previous_ = -1;
        y_ = rect.top;
        started_ = true;
        return 0;
    }
    current_ = -1;
    y_ = rect.top;
    // A restart keeps the item that ended the last cycle at the top while it rests.
    const bool restart = started_ && previousCount > 0;
    previous_ = restart ? count_ - 1 : -1;
    started_ = true;
    return restart ? kPauseMs : kPeriodMs;
}

int VerticalScroll::tick() {
    if (count_ < 2)
        return 0;
    if (y_ <= rect_.top) {
        // The current item rested at the top: the next one enters at the bottom.
        previous_ = current_ >= 0 ? current_ : previous_;
        ++current_;
        y_ = rect_.bottom;
    }
    y_ -= kStepPx;
    if (y_ > rect_.top)
        return kPeriodMs;
    y_ = rect_.top;
    return current_ == count_ - 1 ? -1 : kPauseMs;
}

std::vector<TickerPlacement> VerticalScroll::visibleItems() const {
    std::vector<TickerPlacement> placements;
    if (current_ < 0) {
        if (previous_ >= 0)
            placements.push_back({previous_, rect_.left, rect_.top});
        return placements;
    }
    // The item before rises out at the top, one line above the current one.
    if (previous_ >= 0 && y_ > rect_.top)
        placements.push_back({previous_, rect_.left, y_ - rect_.height()});
    if (current_ < count_)
        placements.push_back({current_, rect_.left, y_});
    return placements;
}

} // namespace tessaly::sms
