#pragma once

// How the ticker's items move: pure state machines that lay items out in a rectangle and move
// them one step per tick. Each step answers the period until the next one, so the owner runs
// its timer from the answers: 0 means "stands still, no timer", -1 "the cycle is over, start
// again". Pixels are screen pixels; rectangles have exclusive right and bottom edges.

#include <span>
#include <vector>

namespace tessaly::sms {

struct TickerRect {
    int left = 0;
    int top = 0;
    int right = 0;  // exclusive
    int bottom = 0; // exclusive
    int width() const { return right - left; }
    int height() const { return bottom - top; }
};

// An item in view: its index and the top-left corner its text is drawn at.
struct TickerPlacement {
    int item = 0;
    int x = 0;
    int y = 0;
    bool operator==(const TickerPlacement&) const = default;
};

class ScrollStrategy {
public:
    virtual ~ScrollStrategy() = default;
    // Lays the items out anew (itemWidths: one text width per item, at least one item) and
    // returns the period until the first tick.
    virtual int start(std::span<const int> itemWidths, const TickerRect& rect) = 0;
    // One step; returns the period until the next.
    virtual int tick() = 0;
    // The items in view now, in drawing order; their text is clipped to the rectangle.
    virtual std::vector<TickerPlacement> visibleItems() const = 0;
    const TickerRect& rect() const { return rect_; }

protected:
    TickerRect rect_;
};

// A running line: items side by side, 10 px after each, moving 2 px to the left every 50 ms.
// The first item enters at the right edge less 2 px; when it and its gap have left the
// rectangle, the next item is first. When every item has passed, the cycle is over. A single
// item that fits stands still at the left edge (or in the middle with centring).
class HorizontalScroll final : public ScrollStrategy {
public:
    static constexpr int kPeriodMs = 50;
    static constexpr int kStepPx = 2;
    static constexpr int kGapPx = 10;
    static constexpr int kEntryInsetPx = 2;

    explicit HorizontalScroll(bool centred = false)
        : centred_(centred) {}
    int start(std::span<const int> itemWidths, const TickerRect& rect) override;
    int tick() override;
    std::vector<TickerPlacement> visibleItems() const override;
    // The first item still in view and its left edge.
    int firstItem() const { return first_; }
    int firstX() const { return firstX_; }

private:
    bool centred_;
    std::vector<int> widths_;
    int first_ = 0;
    int firstX_ = 0;
};

// Items rising one after another: the current item enters at the bottom edge and moves 1 px up
// every 45 ms, pushing the one before it out at the top; when it reaches the top it rests for
// 2000 ms, then the next one enters. The cycle is over when the last item reaches the top; a
// restarted cycle begins with that last item resting at the top (2000 ms) instead of an empty
// line, while the first start of a strategy begins moving at once (45 ms). A single item
// stands still at the top.
class VerticalScroll final : public ScrollStrategy {
public:
    static constexpr int kPeriodMs = 45;
    static constexpr int kPauseMs = 2000;
    static constexpr int kStepPx = 1;

    int start(std::span<const int> itemWidths, const TickerRect& rect) override;
    int tick() override;
    std::vector<TickerPlacement> visibleItems() const override;
    // -1 before the first item enters.
    int currentItem() const { return current_; }
    int currentY() const { return y_; }

private:
    int count_ = 0;
    int current_ = -1;
    // The item pushed out above the current one (-1: none).
    int previous_ = -1;
    int y_ = 0;
    bool started_ = false;
};

} // namespace tessaly::sms
