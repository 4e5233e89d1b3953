#include "cellbroadcast/cb_message_view.h"
#include "cellbroadcast/cb_ticker.h"
#include "lists_fixture.h"
#include "resources/resource.h"

#include <QFileInfo>

namespace {

using namespace lists_test;
using tessaly::Dialog;
using tessaly::sms::MainSmsWindow;
namespace testkit = tessaly::testkit;

class CellBroadcastListTest : public ListsWindowTest {
protected:
    void SetUp() override {
        ListsWindowTest::SetUp();
        const Utilities::Range channels[] = {{50, 51}, {221, 222}};
        ASSERT_TRUE(GSM::CellBroadcast::setMessageTypes(2, channels, 0, nullptr).isOk());
    }

    static void broadcast(int channel, const std::u16string& text, const SYSTEMTIME& time) {
        ASSERT_TRUE(simulator::receiveCellBroadcast(channel, text, -1, fileTime(time)).isOk());
    }

    void twoChannels() {
        broadcast(221, u"Sunny spells,\r\n18\u00b0C ", at(2024, 5, 17, 9, 25));
        broadcast(50, u"Halvern Centre", at(2024, 5, 17, 9, 30));
        settle();
    }

    static QStringList column(MainSmsWindow& window, int column) {
        QStringList texts;
        const tessaly::ListView* list = window.listView(IDC_MAIN_CB_LIST);
        for (int row = 0; row < list->itemCount(); ++row)
            texts << list->itemText(row, column);
        return texts;
    }

    static void setTicker(bool scrolls) {
        GSM::Preferences::getMainPreferences()->setTickerScrolls(scrolls);
        GSM::Preferences::endEdit();
    }
};

TEST_F(CellBroadcastListTest, OpensOnTheCellBroadcastListWithItsColumnsAndRows) {
    twoChannels();
    environment.settings_.currentList = 2;
    environment.settings_.setColumnWidths(2, {18, 55, 150, 0});
    MainSmsWindow* main = openMain();
    ASSERT_NE(main, nullptr);
    EXPECT_EQ(main->currentFolder(), 2);
    EXPECT_EQ(main->itemText(IDC_MAIN_FOLDER), QStringLiteral("Cellbroadcast"));
    EXPECT_FALSE(main->isItemVisible(IDC_MAIN_SORT));
    EXPECT_FALSE(main->isItemVisible(IDC_MAIN_LIST));
    EXPECT_TRUE(main->isItemVisible(IDC_MAIN_CB_LIST));
    const tessaly::ListView* list = main->listView(IDC_MAIN_CB_LIST);
    ASSERT_EQ(list->columnCount(), 3);
    EXPECT_EQ(list->columnText(1), QStringLiteral("Channel"));
    EXPECT_EQ(list->columnText(2), QStringLiteral("Text"));
    EXPECT_EQ(list->columnWidth(0), 18);
    EXPECT_EQ(list->columnWidth(1), 55);
    EXPECT_EQ(column(*main, 1), (QStringList{"50", "221"}));
    EXPECT_EQ(column(*main, 2),
              (QStringList{"Halvern Centre", QString::fromUtf16(u"Sunny spells,  18\u00b0C")}));
    EXPECT_EQ(list->getItemData(1), 221);
}

TEST_F(CellBroadcastListTest, TheFolderMenuSwitchesToItAndBack) {
    twoChannels();
    MainSmsWindow* main = openMain();
    user.chooseMenu(IDM_FOLDER_CELLBROADCAST);
    ASSERT_TRUE(testkit::click(*main, IDC_MAIN_FOLDER));
    EXPECT_EQ(main->currentFolder(), 2);
    ASSERT_FALSE(environment.saved.empty());
    EXPECT_EQ(environment.saved.back().currentList, 2);
    EXPECT_EQ(column(*main, 1), (QStringList{"50", "221"}));

    user.chooseMenu(IDM_FOLDER_INBOX);
    ASSERT_TRUE(testkit::click(*main, IDC_MAIN_FOLDER));
    EXPECT_EQ(user.menus().back().checkedIds(), std::vector<int>{IDM_FOLDER_CELLBROADCAST});
    EXPECT_TRUE(main->isItemVisible(IDC_MAIN_SORT));
    EXPECT_TRUE(main->isItemVisible(IDC_MAIN_LIST));
    EXPECT_FALSE(main->isItemVisible(IDC_MAIN_CB_LIST));
    EXPECT_EQ(environment.saved.back().currentList, 0);
}

TEST_F(CellBroadcastListTest, ARowOpensTheMessageViewWithItsReceiveTime) {
    twoChannels();
    broadcast(50, u"Halvern Centre", at(2024, 5, 17, 9, 45)); // received twice
    settle();
    environment.settings_.currentList = 2;
    MainSmsWindow* main = openMain();
    const auto expectView = [](const char* channel, const char* date, const char* count,
                               const QString& text) {
        return [=](Dialog& view) {
            EXPECT_EQ(view.templateId(), IDD_CB_MESSAGE_VIEW);
            EXPECT_EQ(view.itemText(IDC_CBVIEW_CAPTION), QStringLiteral("Cell Broadcast"));
            EXPECT_EQ(view.itemText(IDC_CBVIEW_CHANNEL), QLatin1String(channel));
            EXPECT_EQ(view.itemText(IDC_CBVIEW_DATE), QLatin1String(date));
            EXPECT_EQ(view.itemText(IDC_CBVIEW_COUNT), QLatin1String(count));
            EXPECT_EQ(view.itemText(IDC_CBVIEW_TEXT), text);
            const auto selection = view.edit(IDC_CBVIEW_TEXT)->sel();
            EXPECT_EQ(selection.first, 0);
            EXPECT_EQ(selection.second, text.size());
        };
    };
    user.runModal(expectView("50", "2024-05-17, 09:45", "2", QStringLiteral("Halvern Centre")));
    ASSERT_TRUE(testkit::select(*main, IDC_MAIN_CB_LIST, 0));
    user.chooseMenu(IDM_CB_VIEW)
        .runModal(expectView("221", "2024-05-17, 09:25", "1",
                             QString::fromUtf16(u"Sunny spells,  18\u00b0C")));
    ASSERT_TRUE(testkit::tapAndHold(*main, IDC_MAIN_CB_LIST, 1));
    EXPECT_EQ(user.modals().size(), 2u);
}

TEST_F(CellBroadcastListTest, AChannelWithoutAMessageLeavesTheViewEmpty) {
    tessaly::sms::CbMessageView view(77);
    user.runModal([](Dialog& shown) {
        EXPECT_TRUE(shown.itemText(IDC_CBVIEW_CHANNEL).isEmpty());
        EXPECT_TRUE(shown.itemText(IDC_CBVIEW_TEXT).isEmpty());
    });
    view.doModal();
    EXPECT_FALSE(view.hasMessage());
}

TEST_F(CellBroadcastListTest, ANewBroadcastRebuildsTheListShown) {
    twoChannels();
    environment.settings_.currentList = 2;
    MainSmsWindow* main = openMain();
    main->listView(IDC_MAIN_CB_LIST)->setItemSelected(1, true);
    broadcast(50, u"Halvern North", at(2024, 5, 17, 9, 50));
    settle();
    EXPECT_EQ(column(*main, 2).first(), QStringLiteral("Halvern North"));
    EXPECT_EQ(main->listView(IDC_MAIN_CB_LIST)->selectedRow(), 1);
}

TEST_F(CellBroadcastListTest, DraggedWidthsAreSavedAsTheCellBroadcastGroup) {
    environment.settings_.currentList = 2;
    MainSmsWindow* main = openMain();
    environment.saved.clear();
    ASSERT_TRUE(testkit::dragColumnDivider(*main, IDC_MAIN_CB_LIST, 1, 70));
    ASSERT_EQ(environment.saved.size(), 1u);
    EXPECT_EQ(environment.saved.back().columnWidths(2),
              (SmsSettings::ColumnWidths{20, 70, 160, 0}));
    EXPECT_EQ(environment.saved.back().columnWidths(0),
              (SmsSettings::ColumnWidths{20, 80, 100, 40}));
}

TEST_F(CellBroadcastListTest, TheTickerLineTakesRoomOnlyWhileItShowsSomething) {
    MainSmsWindow* main = openMain();
    const int fullHeight = main->itemRect(IDC_MAIN_LIST).height();
    EXPECT_FALSE(main->isItemVisible(IDC_MAIN_TICKER));
    EXPECT_FALSE(main->ticker()->isShown());

    twoChannels();
    EXPECT_TRUE(main->isItemVisible(IDC_MAIN_TICKER));
    const QRect ticker = main->itemRect(IDC_MAIN_TICKER);
    const QRect list = main->itemRect(IDC_MAIN_LIST);
    EXPECT_EQ(ticker.bottom() + 1, main->clientSize().height());
    EXPECT_EQ(list.bottom() + 1, ticker.top());
    EXPECT_LT(list.height(), fullHeight);
    EXPECT_EQ(main->ticker()->scroller()->items().size(), 2u);
    EXPECT_GT(clock.activeTimers(), 0u);

    setTicker(false);
    settle();
    EXPECT_FALSE(main->isItemVisible(IDC_MAIN_TICKER));
    EXPECT_EQ(main->itemRect(IDC_MAIN_LIST).height(), fullHeight);
    EXPECT_EQ(clock.activeTimers(), 0u);

    // The window's end stops the ticker's timer.
    setTicker(true);
    settle();
    EXPECT_GT(clock.activeTimers(), 0u);
    main->destroyWindow();
    settle();
    EXPECT_EQ(clock.activeTimers(), 0u);
}

TEST_F(CellBroadcastListTest, PicturesOfTheTickerRunningTheListAndTheView) {
    store({message(0, GSM::Message::Unread, u"+436641234567", u"Are we still on for tonight?",
                   at(2024, 5, 17, 9, 41)),
           message(0, GSM::Message::Read, u"+436765551234", u"Train is late.\nSorry!",
                   at(2024, 5, 16, 21, 3))});
    MainSmsWindow* main = openMain();
    twoChannels();           // channel 50 last: the newest, in bold
    clock.advance(50 * 100); // the line has run in by 200 px
    EXPECT_TRUE(testkit::saveScreenshot(
        *main, testkit::testOutputPath(QStringLiteral("cb_main_window_ticker.png"))));
    user.chooseMenu(IDM_FOLDER_CELLBROADCAST);
    ASSERT_TRUE(testkit::click(*main, IDC_MAIN_FOLDER));
    clock.advance(50 * 60);
    EXPECT_TRUE(testkit::saveScreenshot(
        *main, testkit::testOutputPath(QStringLiteral("cb_main_window_list.png"))));
    user.runModal([](Dialog& view) {
        testkit::pumpMessages(); // the text field settles its scroll bars
        EXPECT_TRUE(testkit::saveScreenshot(
            view, testkit::testOutputPath(QStringLiteral("cb_message_view.png"))));
    });
    ASSERT_TRUE(testkit::select(*main, IDC_MAIN_CB_LIST, 1));
}

} // namespace
