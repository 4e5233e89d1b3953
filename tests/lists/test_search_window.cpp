// Find, from the main window's Tools menu: typing searches, the list says how many were found
// and reads page by page, a tap opens the message (and an unread one becomes read).

#include "lists/search_window.h"
#include "lists_fixture.h"
#include "resources/resource.h"

#include <QScrollBar>

namespace {

using namespace lists_test;
namespace testkit = tessaly::testkit;
using tessaly::sms::SearchWindow;

class SearchWindowTest : public ListsWindowTest {
protected:
    void SetUp() override {
        ListsWindowTest::SetUp();
        ASSERT_TRUE(simulator::addContact(u"Anna", u"Berger", {u"+436641234567"}).isOk());
        store({message(0, GSM::Message::Unread, u"+436641234567", u"Lunch at the café? 🍝",
                       at(2024, 5, 17, 9, 41)),
               message(0, GSM::Message::Read, u"+436765551234", u"Train is late.\nSorry!",
                       at(2024, 5, 16, 21, 3)),
               message(1, GSM::Message::Sent, u"+436765551234", u"See you at lunch then",
                       at(2024, 5, 16, 21, 5))});
    }
};

TEST_F(SearchWindowTest, FindTypesCountsAndOpensTheMessage) {
    tessaly::sms::MainSmsWindow* main = openMain();
    ASSERT_NE(main, nullptr);
    const long lunchId = idsByDate(0).back();
    user.runModal([&](tessaly::Dialog& dialog) {
        auto& search = static_cast<SearchWindow&>(dialog);
        EXPECT_EQ(search.itemText(IDC_SEARCH_COUNT),
                  QStringLiteral("Type a word, a name or a number."));
        ASSERT_TRUE(testkit::type(search, IDC_SEARCH_TEXT, QStringLiteral("lun")));
        EXPECT_EQ(search.itemText(IDC_SEARCH_COUNT), QStringLiteral("2 messages found"));
        ASSERT_EQ(search.rowsShown(), 2);
        EXPECT_EQ(search.messageAt(0), lunchId) << "newest first";
        EXPECT_TRUE(testkit::saveScreenshot(
            search, testkit::testOutputPath(QStringLiteral("lists_find.png"))));
        ASSERT_TRUE(testkit::type(search, IDC_SEARCH_TEXT, QStringLiteral("ch zzz")));
        EXPECT_EQ(search.itemText(IDC_SEARCH_COUNT), QStringLiteral("Nothing found"));
        search.setItemText(IDC_SEARCH_TEXT, QStringLiteral("anna"));
        EXPECT_EQ(search.itemText(IDC_SEARCH_COUNT), QStringLiteral("1 message found"));
        // The message view, from a tap on the row.
        ASSERT_TRUE(testkit::select(search, IDC_SEARCH_LIST, 0));
    });
    user.runModal([](tessaly::Dialog& view) {
        EXPECT_EQ(view.templateId(), IDD_MESSAGE_VIEW);
        EXPECT_TRUE(view.itemText(IDC_VIEW_TEXT).startsWith(QStringLiteral("Lunch at the café?")));
    });
    ASSERT_TRUE(testkit::chooseCommand(*main, IDM_MAIN_FIND));
    settle();
    EXPECT_EQ(user.pendingAnswers(), 0u);
    EXPECT_EQ(GSM::sms.getMessage(lunchId)->getStatus(), GSM::Message::Read);
}

TEST_F(SearchWindowTest, TheListReadsAPageAtATimeAsItScrolls) {
    std::vector<simulator::StoredMessage> many;
    for (int i = 0; i < 45; ++i)
        many.push_back(
            message(0, GSM::Message::Read, u"+4930" + QString::number(i).toStdU16String(),
                    u"Parcel number " + QString::number(i).toStdU16String(), at(2024, 5, 1, 8, i)));
    store(many);
    SearchWindow search({});
    user.runModal([](tessaly::Dialog& dialog) {
        auto& search = static_cast<SearchWindow&>(dialog);
        ASSERT_TRUE(testkit::type(search, IDC_SEARCH_TEXT, QStringLiteral("parcel")));
        EXPECT_EQ(search.itemText(IDC_SEARCH_COUNT), QStringLiteral("45 messages found"));
        EXPECT_EQ(search.rowsShown(), SearchWindow::kPageSize);
        tessaly::ListView* list = search.listView(IDC_SEARCH_LIST);
        ASSERT_NE(list, nullptr);
        list->resize(240, 200);
        for (int page = 0; page < 3; ++page) {
            list->verticalScrollBar()->setValue(0);
            list->verticalScrollBar()->setValue(list->verticalScrollBar()->maximum());
        }
        EXPECT_EQ(search.rowsShown(), 45);
    });
    search.doModal();
}

} // namespace
