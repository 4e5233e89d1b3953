#include "lists/list_sort_table.h"
#include "lists/message_texts.h"

#include "framework/resources/resources.h"
#include "resources/sms_resources.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"

#include <gtest/gtest.h>

namespace {

using namespace tessaly::sms;
namespace simulator = tessaly::telephony::simulator;

TEST(OneLineText, EveryKindOfLineBreakBecomesOneBullet) {
    const struct {
        const char16_t* text;
        const char16_t* shown;
    } cases[] = {
        {u"a\r\nb\rc\nd", u"a\u2022b\u2022c\u2022d"},
        {u"\n\r", u"\u2022\u2022"}, // LF then CR is two breaks, not one
        {u"\r\r\n", u"\u2022\u2022"},
        {u"no breaks", u"no breaks"},
        {u"", u""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(oneLineText(QString::fromUtf16(c.text)), QString::fromUtf16(c.shown))
            << QString::fromUtf16(c.text).toStdString();
}

TEST(ListSortTable, SetterAndGettersGuardTheirRanges) {
    ListSortTable table;
    for (int folder = 0; folder < 3; ++folder) {
        EXPECT_EQ(table.sortKey(folder), 0);
        EXPECT_FALSE(table.ascending(folder)); // newest first until chosen otherwise
    }
    table.setSortKey(1, 7);
    EXPECT_EQ(table.sortKey(1), 7);
    table.setSortKey(1, 8);
    table.setSortKey(1, -1);
    EXPECT_EQ(table.sortKey(1), 7);
    table.setSortKey(3, 2);
    table.setAscending(3, true);
    table.setAscending(-1, true);
    EXPECT_EQ(table.sortKey(3), 0);
    EXPECT_FALSE(table.ascending(3));
    EXPECT_EQ(table.sortKey(0), 0);
    EXPECT_FALSE(table.ascending(0));
    table.setAscending(2, true);
    EXPECT_TRUE(table.ascending(2));
}

class TextsFromTheStore : public ::testing::Test {
protected:
    void SetUp() override {
        tessaly::setCurrentResources(&resources());
        tessaly::telephony::Options options;
        options.databasePath = QStringLiteral(":memory:");
        ASSERT_TRUE(tessaly::telephony::open(options).isOk());
        ASSERT_TRUE(simulator::addContact(u"Anne", u"Ames", {u"+4917011111"}).isOk());
        ASSERT_TRUE(simulator::addContact(u"Carl", u"Cole", {u"+4917033333"}).isOk());
        ASSERT_TRUE(simulator::addContact(u"", u"", {u"+4917044444"}, u"Acme").isOk());
    }
    void TearDown() override {
        tessaly::telephony::close();
        tessaly::setCurrentResources(nullptr);
    }

    GSM::Message* storedOutbox(std::vector<std::u16string> recipients) {
        simulator::StoredMessage message;
        message.folder = 1;
        message.status = GSM::Message::Sent;
        message.addresses = std::move(recipients);
        message.text = u"hello";
        message.date = fileTimeFromUInt64(133545744000000000ULL);
        EXPECT_TRUE(simulator::addStoredMessages({message}).isOk());
        GSM::MessageContainer* outbox = GSM::sms.getMessages(1, 0);
        return outbox && outbox->size() > 0 ? outbox->get(outbox->size() - 1) : nullptr;
    }
};

TEST_F(TextsFromTheStore, RecipientsBreakTheLineOnlyBeforeNamedOnes) {
    const struct {
        std::vector<std::u16string> recipients;
        const char* text;
        int count;
    } cases[] = {
        {{u"+4917011111", u"0172222", u"+4917033333"},
         "Anne Ames (+4917011111), 0172222,\r\nCarl Cole (+4917033333)",
         3},
        {{u"0172222"}, "0172222", 1},
        {{u"0172222", u"+4917011111"}, "0172222,\r\nAnne Ames (+4917011111)", 2},
    };
    for (const auto& c : cases) {
        GSM::Message* message = storedOutbox(c.recipients);
        ASSERT_NE(message, nullptr);
        const RecipientsText shown = recipientsText(message->getContacts());
        EXPECT_EQ(shown.text, QString::fromUtf8(c.text));
        EXPECT_EQ(shown.count, c.count);
    }
    EXPECT_EQ(recipientsText(nullptr).count, 0);
}

} // namespace
