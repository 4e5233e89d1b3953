#include "lists/delete_messages_window.h"
#include "lists_fixture.h"
#include "resources/resource.h"

namespace {

using namespace lists_test;
using tessaly::sms::DeleteMessagesWindow;
namespace testkit = tessaly::testkit;

TEST(ParseDays, ReadsLeadingDigitsLikeThePlatform) {
    const std::pair<const char*, int> cases[] = {
        {"30", 30}, {" 7", 7},  {"100", 100}, {"101", 101}, {"12abc", 12},
        {"", 0},    {"abc", 0}, {"-5", -5},   {"+8", 8},    {"99999999999999", INT_MAX},
    };
    for (const auto& [text, days] : cases)
        EXPECT_EQ(tessaly::sms::parseDays(QString::fromLatin1(text)), days) << text;
}

class DeleteMessagesTest : public ListsWindowTest {
protected:
    void SetUp() override {
        ListsWindowTest::SetUp();
        storeMessages();
    }

    // Inbox messages of today and 40, 99.5 and 150 days ago; one old Outbox message.
    void storeMessages() {
        store({message(0, GSM::Message::Read, u"0172222", u"today", at(2024, 5, 17, 9, 0)),
               message(0, GSM::Message::Read, u"0172222", u"40", at(2024, 4, 7, 9, 0)),
               message(0, GSM::Message::Read, u"0172222", u"99.5", at(2024, 2, 7, 22, 0)),
               message(0, GSM::Message::Read, u"0172222", u"150", at(2023, 12, 19, 9, 0)),
               message(1, GSM::Message::Sent, u"0172222", u"out", at(2023, 1, 1, 9, 0))});
    }

    static int count(int folder) { return GSM::sms.messageCount(folder); }
};

TEST_F(DeleteMessagesTest, OpensWithAllMessagesCheckedAndThirtyDaysWaiting) {
    DeleteMessagesWindow* window = DeleteMessagesWindow::open(0);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->title(), QStringLiteral("Delete Messages"));
    EXPECT_EQ(window->isItemChecked(IDC_DELETE_ALL), BST_CHECKED);
    EXPECT_EQ(window->itemText(IDC_DELETE_DAYS), QStringLiteral("30"));
    EXPECT_FALSE(window->isItemEnabled(IDC_DELETE_DAYS));
    EXPECT_FALSE(window->isItemEnabled(IDC_DELETE_DAYS_SPIN));
    EXPECT_EQ(window->upDown(IDC_DELETE_DAYS_SPIN)->upper(), 100);
    ASSERT_TRUE(testkit::click(*window, IDC_DELETE_OLDER));
    EXPECT_TRUE(window->isItemEnabled(IDC_DELETE_DAYS));
    EXPECT_TRUE(window->isItemEnabled(IDC_DELETE_DAYS_SPIN));
    ASSERT_TRUE(testkit::click(*window, IDC_DELETE_ALL));
    EXPECT_FALSE(window->isItemEnabled(IDC_DELETE_DAYS));
}

TEST_F(DeleteMessagesTest, DeletesByAgeUpToAHundredDays) {
    const struct {
        bool byAge;
        const char* days;
        int inboxLeft;
        bool refused;
    } cases[] = {
        {false, "", 0, false},   {true, "0", 0, false}, // no age deletes the whole folder too
        {true, "100", 3, false}, {true, "50", 2, false},
        {true, "101", 4, true},  {true, "9999999999", 4, true},
    };
    for (const auto& c : cases) {
        tessaly::telephony::close();
        tessaly::telephony::Options options;
        options.databasePath = QStringLiteral(":memory:");
        ASSERT_TRUE(tessaly::telephony::open(options).isOk());
        storeMessages();
        DeleteMessagesWindow* window = DeleteMessagesWindow::open(0);
        if (c.byAge) {
            ASSERT_TRUE(testkit::click(*window, IDC_DELETE_OLDER));
            window->edit(IDC_DELETE_DAYS)->setText(QString());
            ASSERT_TRUE(testkit::type(*window, IDC_DELETE_DAYS, QLatin1String(c.days)));
        }
        user.forget();
        if (c.refused)
            user.answerBox(IDOK);
        ASSERT_TRUE(testkit::click(*window, IDOK));
        settle();
        EXPECT_EQ(count(0), c.inboxLeft) << c.days;
        EXPECT_EQ(count(1), 1) << c.days;
        EXPECT_EQ(tessaly::Dialog::exists(window), c.refused) << c.days;
        if (c.refused) {
            EXPECT_EQ(user.boxes().back().text,
                      QStringLiteral("Number of days cannot be greater than 100."));
            window->destroyWindow();
            settle();
        }
    }
}

TEST_F(DeleteMessagesTest, CancelDeletesNothingAndTheOutboxWindowDeletesOnlyTheOutbox) {
    DeleteMessagesWindow* window = DeleteMessagesWindow::open(0);
    ASSERT_TRUE(testkit::click(*window, IDCANCEL));
    settle();
    EXPECT_EQ(count(0), 4);
    window = DeleteMessagesWindow::open(1);
    ASSERT_TRUE(testkit::click(*window, IDOK));
    settle();
    EXPECT_EQ(count(0), 4);
    EXPECT_EQ(count(1), 0);
}

} // namespace
