#include "module/notification_texts.h"
#include "util/text_format.h"

#include "framework/resources/resources.h"
#include "framework/ui/useragent.h"
#include "resources/sms_resources.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"

#include <gtest/gtest.h>

namespace {

using tessaly::sms::formatText;

class NotificationTexts : public ::testing::Test {
protected:
    void SetUp() override { tessaly::setCurrentResources(&tessaly::sms::resources()); }
    void TearDown() override { tessaly::setCurrentResources(nullptr); }
};

TEST(FormatText, FillsPrintfFieldsInOrderAndNothingElse) {
    const struct {
        const char* format;
        QStringList values;
        const char* expected;
    } cases[] = {
        {"There are %d other new messages.", {"4"}, "There are 4 other new messages."},
        {"%d of %d", {"2", "3"}, "2 of 3"},
        {"You can not call %s, now.", {"Ada"}, "You can not call Ada, now."},
        {"100%% sure, %i and %u", {"1", "2"}, "100% sure, 1 and 2"},
        {"%d of %d", {"7"}, "7 of %d"},         // a field without a value stays
        {"no fields", {"unused"}, "no fields"}, // a value without a field is dropped
        {"%x %n %s%", {"v"}, "%x %n v%"},       // other fields and a trailing % stay
        {"%s", {"%d"}, "%d"},                   // values are not read again
    };
    for (const auto& c : cases)
        EXPECT_EQ(formatText(QLatin1String(c.format), c.values), QLatin1String(c.expected))
            << c.format;
}

TEST_F(NotificationTexts, FurtherMessagesLine) {
    const struct {
        int unread;
        const char* text;
    } cases[] = {{-1, ""},
                 {0, ""},
                 {1, ""},
                 {2, "There is another new message."},
                 {3, "There are 2 other new messages."},
                 {12, "There are 11 other new messages."}};
    for (const auto& c : cases)
        EXPECT_EQ(tessaly::sms::otherNewMessagesText(c.unread), QLatin1String(c.text)) << c.unread;
}

TEST_F(NotificationTexts, OnlyGrowthRestartsTheCloseTimer) {
    EXPECT_TRUE(tessaly::sms::restartsCloseTimer(-1, 0)) << "the first count starts it";
    EXPECT_TRUE(tessaly::sms::restartsCloseTimer(1, 2));
    EXPECT_FALSE(tessaly::sms::restartsCloseTimer(2, 2));
    EXPECT_FALSE(tessaly::sms::restartsCloseTimer(3, 1));
}

TEST_F(NotificationTexts, SegmentLine) {
    EXPECT_EQ(tessaly::sms::segmentText(1, 1), QString());
    EXPECT_EQ(tessaly::sms::segmentText(1, 0), QString());
    EXPECT_EQ(tessaly::sms::segmentText(2, 3), QStringLiteral("2 of 3"));
}

TEST_F(NotificationTexts, PersonLines) {
    const struct {
        const char* name;
        const char* number;
        const char* nameLine;
        const char* numberLine;
        bool known;
        bool hasNumber;
    } cases[] = {
        {"Ada Lovelace", "+447700900111", "Ada Lovelace", "+447700900111", true, true},
        {"", "+447700900111", "+447700900111", "", true, true},
        {"Ada Lovelace", "", "Ada Lovelace", "", true, false},
        {"", "", "Unknown", "", false, false},
    };
    for (const auto& c : cases) {
        const tessaly::sms::PersonLines lines =
            tessaly::sms::personLines(QLatin1String(c.name), QLatin1String(c.number));
        EXPECT_EQ(lines.name, QLatin1String(c.nameLine)) << c.name << c.number;
        EXPECT_EQ(lines.number, QLatin1String(c.numberLine));
        EXPECT_EQ(lines.known, c.known);
        EXPECT_EQ(lines.hasNumber, c.hasNumber);
    }
    EXPECT_EQ(tessaly::sms::personLines(nullptr).name, QStringLiteral("Unknown"));
}

TEST_F(NotificationTexts, UnreadCountFromTheInboxByStatus) {
    tessaly::telephony::Options options;
    options.databasePath = QStringLiteral(":memory:");
    ASSERT_TRUE(tessaly::telephony::open(options).isOk());
    EXPECT_EQ(tessaly::sms::unreadInInbox(nullptr), 0);
    namespace simulator = tessaly::telephony::simulator;
    const auto inbox = [] {
        return GSM::sms.getMessages(GSM::Sms::FolderInbox, GSM::Sms::SortByStatus);
    };
    EXPECT_EQ(tessaly::sms::unreadInInbox(inbox()), 0);
    std::vector<simulator::StoredMessage> messages;
    for (GSM::Message::Status status :
         {GSM::Message::Read, GSM::Message::Unread, GSM::Message::Replied, GSM::Message::Unread,
          GSM::Message::Incomplete}) {
        messages.push_back({GSM::Sms::FolderInbox, status, {u"+447700900101"}, u"Hi", {}});
    }
    ASSERT_TRUE(simulator::addStoredMessages(messages).isOk());
    EXPECT_EQ(tessaly::sms::unreadInInbox(inbox()), 2);
    tessaly::telephony::close();
}

} // namespace
