#include "cb_fixture.h"
#include "cellbroadcast/cb_ticker.h"
#include "framework/ui/controls.h"

#include <QAccessible>
#include <QAccessibleInterface>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>

#include <memory>

namespace {

using namespace cb_test;
using tessaly::sms::CbTicker;
using tessaly::sms::TickerOrientation;
using tessaly::sms::TickerPlacement;
namespace testkit = tessaly::testkit;

constexpr std::u16string_view kLongText =
    u"Severe weather warning for the Halvern district: gales of up to 90 km/h expected "
    u"from the west this evening.";

class TickerTest : public CbWindowTest {
protected:
    void SetUp() override {
        CbWindowTest::SetUp();
        line = std::make_unique<tessaly::StaticLabel>();
        line->resize(240, 15);
        line->show();
    }

    void TearDown() override {
        ticker.reset();
        line.reset();
        CbWindowTest::TearDown();
    }

    CbTicker& startTicker() {
        ticker = std::make_unique<CbTicker>(line.get());
        ticker->setShownChanged([this](bool shown) { shownChanges.push_back(shown); });
        ticker->refresh();
        return *ticker;
    }

    std::vector<TickerPlacement> visible() const {
        return ticker->scroller()->strategy().visibleItems();
    }

    QImage frame() const {
        QImage image(line->size(), QImage::Format_RGB32);
        line->render(&image);
        return image;
    }

    // The leftmost column holding a dark (text) pixel; -1 when none.
    static int leftmostInk(const QImage& image) {
        for (int x = 0; x < image.width(); ++x)
            for (int y = 0; y < image.height(); ++y)
                if (qGray(image.pixel(x, y)) < 110)
                    return x;
        return -1;
    }

    std::unique_ptr<tessaly::StaticLabel> line;
    std::unique_ptr<CbTicker> ticker;
    std::vector<bool> shownChanges;
};

TEST_F(TickerTest, OffOrWithoutMessagesItShowsNothingAndRunsNoTimer) {
    subscribe({{50, 51}});
    startTicker();
    EXPECT_FALSE(ticker->isShown());
    EXPECT_EQ(clock.activeTimers(), 0u);

    broadcast(50, std::u16string(kLongText));
    EXPECT_TRUE(ticker->isShown());
    EXPECT_EQ(clock.activeTimers(), 1u);

    setTicker(false, true);
    EXPECT_FALSE(ticker->isShown());
    EXPECT_EQ(ticker->scroller(), nullptr);
    EXPECT_EQ(clock.activeTimers(), 0u);
    EXPECT_EQ(shownChanges, (std::vector<bool>{true, false}));

    // Switched off, new messages do not bring it back.
    broadcast(50, u"Halvern Centre");
    EXPECT_FALSE(ticker->isShown());
    EXPECT_EQ(clock.activeTimers(), 0u);
}

// A screen reader reads the painted line through the label's accessible name.
TEST_F(TickerTest, ItsLabelIsNamedWithTheTextsItShows) {
    const auto spokenName = [this] {
        QAccessibleInterface* node = QAccessible::queryAccessibleInterface(line.get());
        return node ? node->text(QAccessible::Name) : QStringLiteral("(no interface)");
    };
    subscribe({{50, 51}, {221, 222}});
    broadcast(50, u"Halvern Centre");
    startTicker();
    EXPECT_EQ(spokenName(), QStringLiteral("50 (09:30) Halvern Centre"));

    broadcast(221, u"Sunny spells");
    clock.advance(60000); // a cycle ends and the items are rebuilt with the new message
    EXPECT_TRUE(spokenName().startsWith(QStringLiteral("50 (09:30) Halvern Centre")))
        << spokenName().toStdString();
    EXPECT_TRUE(spokenName().contains(QStringLiteral("Sunny spells")))
        << spokenName().toStdString();

    setTicker(false, true);
    EXPECT_EQ(spokenName(), QString());
}

TEST_F(TickerTest, OneShortItemStandsStillInBothOrientations) {
    subscribe({{50, 51}});
    broadcast(50, u"Halvern Centre");
    for (const bool horizontal : {true, false}) {
        setTicker(true, horizontal);
        startTicker();
        ASSERT_TRUE(ticker->isShown()) << horizontal;
        EXPECT_EQ(ticker->scroller()->orientation(),
                  horizontal ? TickerOrientation::Horizontal : TickerOrientation::Vertical);
        EXPECT_FALSE(ticker->scroller()->hasTimer());
        EXPECT_EQ(clock.activeTimers(), 0u);
        ASSERT_EQ(ticker->scroller()->items().size(), 1u);
        EXPECT_EQ(ticker->scroller()->items()[0].text, QStringLiteral("50 (09:30) Halvern Centre"));
        EXPECT_EQ(visible(), (std::vector<TickerPlacement>{{0, 0, 2}})) << horizontal;
        clock.advance(5000);
        EXPECT_EQ(visible(), (std::vector<TickerPlacement>{{0, 0, 2}})) << horizontal;
    }
}

TEST_F(TickerTest, AWideItemRunsInFromTheRightAndStartsAgainAfterPassing) {
    subscribe({{50, 51}});
    broadcast(50, std::u16string(kLongText));
    startTicker();
    const auto& scroller = *ticker->scroller();
    ASSERT_TRUE(scroller.hasTimer());
    EXPECT_EQ(scroller.period(), 50);
    EXPECT_EQ(clock.nextDueInMs(), 50);
    EXPECT_EQ(visible().front().x, 238);

    // 2 px to the left every 50 ms, tick by tick, until the item and its gap have passed.
    int x = 238;
    int ticks = 0;
    while (true) {
        clock.advance(50);
        ++ticks;
        ASSERT_LT(ticks, 2000);
        const int now = visible().front().x;
        if (now == 238)
            break;
        ASSERT_EQ(now, x - 2) << ticks;
        x = now;
    }
    // The first tick that finds it passed starts the cycle over at the right edge.
    const int width = QFontMetrics(line->font()).horizontalAdvance(scroller.items()[0].text);
    EXPECT_EQ(ticks, (238 + width + 10 + 1) / 2);
    EXPECT_EQ(scroller.period(), 50);
    EXPECT_EQ(clock.activeTimers(), 1u);
}

TEST_F(TickerTest, VerticalItemsRiseEvery45MsAndRestTwoSecondsAtTheTop) {
    subscribe({{50, 51}, {221, 222}});
    broadcast(50, u"Halvern Centre");
    broadcast(221, u"Sunny spells");
    setTicker(true, false);
    startTicker();
    const auto& scroller = *ticker->scroller();
    EXPECT_EQ(scroller.period(), 45); // a new scroller starts moving at once
    // The line is 15 px high, 11 between the insets: item 0 needs 11 steps to the top.
    std::vector<int> periods;
    std::vector<int> ys;
    for (int i = 0; i < 11; ++i) {
        clock.advance(scroller.period());
        periods.push_back(scroller.period());
        ys.push_back(visible().back().y);
    }
    EXPECT_EQ(ys, (std::vector<int>{12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2}));
    EXPECT_EQ(periods, (std::vector<int>{45, 45, 45, 45, 45, 45, 45, 45, 45, 45, 2000}));
    EXPECT_EQ(clock.nextDueInMs(), 2000);

    // Item 1 rises next; when it, the last, is up, the cycle starts over resting on it.
    clock.advance(2000);
    EXPECT_EQ(visible(), (std::vector<TickerPlacement>{{0, 0, 1}, {1, 0, 12}}));
    clock.advance(45 * 10);
    EXPECT_EQ(scroller.period(), 2000);
    EXPECT_EQ(visible(), (std::vector<TickerPlacement>{{1, 0, 2}}));
    clock.advance(2000);
    EXPECT_EQ(visible(), (std::vector<TickerPlacement>{{1, 0, 1}, {0, 0, 12}}));
    EXPECT_EQ(scroller.period(), 45);
}

TEST_F(TickerTest, TheNewestChannelIsDrawnInTheEmphasisFont) {
    subscribe({{50, 51}, {221, 222}});
    startTicker();
    broadcast(50, u"Halvern Centre");
    broadcast(221, std::u16string(kLongText));
    ASSERT_TRUE(ticker->isShown());
    EXPECT_EQ(ticker->emphasisChannel(), 221);
    auto emphasis = [this] {
        std::vector<bool> flags;
        for (const auto& item : ticker->scroller()->items())
            flags.push_back(item.emphasis);
        return flags;
    };
    EXPECT_EQ(emphasis(), (std::vector<bool>{false, true}));
    // A new message starts the ticker over at once, from the right edge.
    clock.advance(50 * 40);
    broadcast(50, u"Halvern North");
    EXPECT_EQ(emphasis(), (std::vector<bool>{true, false}));
    EXPECT_EQ(ticker->scroller()->items()[0].text, QStringLiteral("50 (09:30) Halvern North"));
    EXPECT_EQ(visible().front().x, 238);
    EXPECT_EQ(ticker->scroller()->emphasisFont().weight(), QFont::Bold);
    EXPECT_EQ(tessaly::sms::emphasisFontFor(ticker->scroller()->emphasisFont()).weight(),
              QFont::Normal);
}

TEST_F(TickerTest, AChangeOfOrientationReplacesTheScroller) {
    subscribe({{50, 51}});
    broadcast(50, std::u16string(kLongText));
    startTicker();
    ASSERT_EQ(ticker->scroller()->orientation(), TickerOrientation::Horizontal);
    setTicker(true, false);
    ASSERT_TRUE(ticker->isShown());
    EXPECT_EQ(ticker->scroller()->orientation(), TickerOrientation::Vertical);
    // One long item in a vertical ticker stands still.
    EXPECT_EQ(clock.activeTimers(), 0u);
    setTicker(true, true);
    EXPECT_EQ(ticker->scroller()->period(), 50);
    EXPECT_EQ(clock.activeTimers(), 1u);
}

TEST_F(TickerTest, FramesShowTheTextMovingLeft) {
    subscribe({{50, 51}});
    broadcast(50, std::u16string(kLongText));
    startTicker();
    std::vector<QImage> frames;
    std::vector<int> edges;
    for (int shot = 0; shot < 5; ++shot) {
        clock.advance(50 * 20); // 20 ticks: 40 px
        frames.push_back(frame());
        edges.push_back(leftmostInk(frames.back()));
    }
    for (std::size_t i = 1; i < edges.size(); ++i)
        EXPECT_NEAR(edges[i - 1] - edges[i], 40, 1) << i;

    // A film strip of the frames, one below the other, for a person to look at.
    const int height = frames.front().height();
    QImage strip(frames.front().width(), int(frames.size()) * (height + 2), QImage::Format_RGB32);
    strip.fill(Qt::white);
    QPainter painter(&strip);
    for (std::size_t i = 0; i < frames.size(); ++i)
        painter.drawImage(0, int(i) * (height + 2), frames[i]);
    painter.end();
    const QString path = testkit::testOutputPath(QStringLiteral("cb_ticker_frames.png"));
    QDir().mkpath(QFileInfo(path).absolutePath());
    EXPECT_TRUE(strip.save(path));
}

} // namespace
