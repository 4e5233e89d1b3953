#include "host/demo_data.h"

#include "framework/time/clock.h"
#include "gsm/gsm.h"
#include "suite/telephony/events.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <set>

namespace {

using tessaly::host::DemoSeeding;
using tessaly::host::seedDemoData;

class DemoData : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir_.isValid());
        openStore();
        now_ = {2026, 3, 2, 10, 14, 30, 0, 0}; // Tuesday 10 March 2026, 14:30
    }
    void TearDown() override { tessaly::telephony::close(); }

    void openStore() {
        tessaly::telephony::Options options;
        options.databasePath = dir_.filePath(QStringLiteral("telephony.db"));
        ASSERT_TRUE(tessaly::telephony::open(options).isOk());
    }
    static int contactCount() {
        return GSM::PhoneBook::getFolder(GSM::PhoneBook::FolderContacts)->size();
    }

    SYSTEMTIME now_{};

private:
    QTemporaryDir dir_;
};

TEST_F(DemoData, AFreshPhoneGetsALivingDataSet) {
    ASSERT_EQ(seedDemoData(now_), DemoSeeding::Seeded);
    tessaly::telephony::EventQueue::instance().deliverAll();

    EXPECT_GE(contactCount(), 10);
    EXPECT_GE(GSM::sms.messageCount(GSM::Sms::FolderInbox), 24);
    EXPECT_GE(GSM::sms.messageCount(GSM::Sms::FolderOutbox), 12);
    EXPECT_EQ(GSM::sms.unreadCount(), 3);

    // Spread over several days, none in the future, and most senders are known by name.
    FILETIME nowFileTime;
    SystemTimeToFileTime(&now_, &nowFileTime);
    GSM::MessageContainer* inbox =
        GSM::sms.getMessages(GSM::Sms::FolderInbox, GSM::Sms::SortByDate);
    ASSERT_NE(inbox, nullptr);
    std::set<int> days;
    int named = 0;
    for (int i = 0; i < inbox->size(); ++i) {
        GSM::Message* message = inbox->get(i);
        EXPECT_LE(fileTimeToUInt64(message->date()), fileTimeToUInt64(nowFileTime));
        SYSTEMTIME date;
        const FILETIME stamp = message->date();
        FileTimeToSystemTime(&stamp, &date);
        days.insert(date.wDay);
        GSM::Folder* from = message->getContacts();
        if (from->size() > 0 && *from->get(0)->getText(GSM::Contact::FieldDisplayName) != u'\0')
            ++named;
    }
    EXPECT_GE(days.size(), 5u);
    EXPECT_GT(named, inbox->size() / 2);

    const GSM::CbFolder broadcasts;
    EXPECT_EQ(broadcasts.size(), 2);
}

TEST_F(DemoData, APhoneWithDataIsLeftAlone) {
    ASSERT_TRUE(
        tessaly::telephony::simulator::addContact(u"Only", u"One", {u"+447700900999"}).isOk());
    EXPECT_EQ(seedDemoData(now_), DemoSeeding::AlreadyHadData);
    EXPECT_EQ(contactCount(), 1);
    EXPECT_EQ(GSM::sms.messageCount(GSM::Sms::FolderInbox), 0);
}

} // namespace
