// Containers of large folders read a page at a time: the same order as a folder read whole,
// a snapshot that does not change under its holder, message objects within their budget, counts
// kept by the database, sort names that follow the phone book, and an older store brought over.

#include "telephony_fixture.h"

#include "gsm/gsm.h"
#include "suite/telephony/schema_sql.h" // generated
#include "suite/telephony/store.h"

#include <sqlite3.h>

#include <numeric>
#include <random>

namespace {

using telephony_test::text;
namespace sim = tessaly::telephony::simulator;
namespace telephony = tessaly::telephony;

class MessageWindows : public telephony_test::TelephonyTest {
protected:
    void SetUp() override {
        TelephonyTest::SetUp();
        path_ = dir_.filePath(QStringLiteral("telephony.db"));
        reopen();
    }
    // Every folder is read by page, and few message objects are kept.
    void reopen() {
        telephony::Options options;
        options.databasePath = path_;
        options.segmentDelayMs = 0;
        options.readWholeUpTo = 0;
        options.messageObjectsKept = 16;
        ASSERT_TRUE(telephony::open(options).isOk());
    }
    telephony::Store& store() { return *telephony::Store::current(); }

    // `count` messages from `senders` numbers, a third of them named in the phone book, with
    // dates that repeat (so that the id decides) and every status.
    void seed(int count, int senders = 12) {
        std::mt19937 random(11);
        for (int i = 0; i < senders; i += 3)
            ASSERT_TRUE(sim::addContact(u"Name" + number(i), u"", {u"+49170" + number(i)}).isOk());
        std::vector<sim::StoredMessage> messages;
        const GSM::Message::Status statuses[] = {GSM::Message::Unread, GSM::Message::Read,
                                                 GSM::Message::Replied, GSM::Message::Incomplete};
        for (int i = 0; i < count; ++i) {
            sim::StoredMessage message;
            message.folder = GSM::Sms::FolderInbox;
            message.status = statuses[random() % 4];
            message.addresses = {u"+49170" + number(int(random() % senders))};
            message.text = u"message " + number(i);
            message.date = daysAgo(clock, double(random() % 200));
            messages.push_back(message);
        }
        ASSERT_TRUE(sim::addStoredMessages(messages).isOk());
    }
    static std::u16string number(int value) { return QString::number(value).toStdU16String(); }
    std::vector<long> idsOf(const GSM::MessageContainer& container, std::vector<int> positions) {
        std::vector<long> ids;
        for (const int position : positions) {
            const GSM::Message* message = container.get(position);
            ids.push_back(message ? message->getId() : -1);
        }
        return ids;
    }
    // The positions in an order that jumps: the last page first, then the middle, then the rest.
    static std::vector<int> jumpingOrder(int count) {
        std::vector<int> positions;
        for (int position = count - 1; position >= count / 2; --position)
            positions.push_back(position);
        for (int position = 0; position < count / 2; ++position)
            positions.push_back(position);
        std::rotate(positions.begin(), positions.begin() + positions.size() / 3, positions.end());
        return positions;
    }

    QTemporaryDir dir_;
    QString path_;
};

TEST_F(MessageWindows, PagesReadInAnyOrderGiveTheOrderOfTheFolderReadWhole) {
    seed(1000);
    store().phoneBookChanged(); // the sort names are brought up to date on the next list
    for (const int sortKey :
         {GSM::Sms::SortByDate, GSM::Sms::SortByContact, GSM::Sms::SortByStatus}) {
        SCOPED_TRACE(sortKey);
        const std::unique_ptr<telephony::MessageWindow> byPage = store().makeWindow(0, sortKey);
        const std::unique_ptr<telephony::MessageWindow> whole =
            telephony::MessageWindow::readWhole(store(), store().db(), 0, sortKey);
        ASSERT_EQ(byPage->size(), 1000);
        std::vector<int> all(1000);
        std::iota(all.begin(), all.end(), 0);
        EXPECT_EQ(idsOf(*byPage, jumpingOrder(1000)), idsOf(*whole, jumpingOrder(1000)));
        EXPECT_EQ(byPage->get(1000), nullptr);
        EXPECT_EQ(byPage->get(-1), nullptr);
        for (const auto status : {GSM::Message::Incomplete, GSM::Message::Unread,
                                  GSM::Message::Read, GSM::Message::Replied, GSM::Message::Sent})
            EXPECT_EQ(byPage->getFirst(status), whole->getFirst(status)) << status;
    }
}

TEST_F(MessageWindows, AWindowIsASnapshotWhileMessagesArriveChangeAndGo) {
    seed(600);
    GSM::MessageContainer* window = GSM::sms.getMessages(0, GSM::Sms::SortByStatus);
    const std::unique_ptr<telephony::MessageWindow> before =
        telephony::MessageWindow::readWhole(store(), store().db(), 0, GSM::Sms::SortByStatus);
    const std::vector<int> firstPages = {0, 1, 2, 127, 128, 255};
    EXPECT_EQ(idsOf(*window, firstPages), idsOf(*before, firstPages));

    // One change that moves every later message: half the folder goes.
    ASSERT_TRUE(GSM::sms.deleteMessages(0, 100).isOk());
    ASSERT_LT(GSM::sms.messageCount(0), 500);
    EXPECT_EQ(window->size(), 600) << "the snapshot keeps its size";
    std::vector<int> laterPages(344);
    std::iota(laterPages.begin(), laterPages.end(), 256);
    const std::vector<long> expected = idsOf(*before, laterPages);
    const std::vector<long> seen = idsOf(*window, laterPages);
    int deleted = 0;
    for (std::size_t i = 0; i < seen.size(); ++i) {
        // Deleted since the window was made: null at its place, never another message.
        if (seen[i] == -1)
            ++deleted;
        else
            EXPECT_EQ(seen[i], expected[i]) << laterPages[i];
    }
    EXPECT_GT(deleted, 0);
    EXPECT_EQ(window->getFirst(GSM::Message::Read), before->getFirst(GSM::Message::Read));

    // Two changes later the window lets go of its reader: what it read still answers.
    ASSERT_TRUE(sim::receiveMessage(u"+4917099", u"new").isOk());
    ASSERT_TRUE(sim::receiveMessage(u"+4917099", u"newer").isOk());
    EXPECT_EQ(idsOf(*window, laterPages), seen);
    GSM::MessageContainer* after = GSM::sms.getMessages(0, GSM::Sms::SortByStatus);
    EXPECT_NE(after, window);
    EXPECT_EQ(after->size(), GSM::sms.messageCount(0));
}

TEST_F(MessageWindows, ScrollingAndResortingWhileMessagesArriveAndGoKeepsWithinTheBudget) {
    seed(800);
    std::mt19937 random(5);
    int arrived = 0;
    for (int round = 0; round < 60; ++round) {
        const int sortKey = round % 3;
        GSM::MessageContainer* container = GSM::sms.getMessages(0, sortKey);
        ASSERT_NE(container, nullptr);
        // A screen of rows, read the way the list reads them.
        const int top = int(random() % std::max(1, container->size()));
        for (int row = top; row < std::min(container->size(), top + 20); ++row) {
            GSM::Message* message = container->get(row);
            if (!message)
                continue;
            EXPECT_FALSE(text(message->getText()).empty());
            GSM::Folder* from = message->getContacts();
            ASSERT_NE(from, nullptr);
            EXPECT_EQ(from->size(), 1);
        }
        if (round % 4 == 0) {
            ASSERT_TRUE(sim::receiveMessage(u"+4917055", u"arrived " + number(round)).isOk());
            ++arrived;
        }
        if (round % 5 == 0 && container->size() > 0) {
            if (GSM::Message* doomed = container->get(int(random() % container->size())))
                GSM::sms.setMessageStatus(doomed->getId(), GSM::Message::Deleted);
        }
        settle();
    }
    EXPECT_LE(store().cachedMessageObjects(), 16u + 1u) << "the budget, and the one arrived last";
    EXPECT_EQ(GSM::sms.messageCount(0),
              telephony::MessageWindow::readWhole(store(), store().db(), 0, 0)->size());
}

TEST_F(MessageWindows, CountsFollowEveryChangeWithoutReadingTheFolder) {
    seed(300);
    const std::unique_ptr<telephony::MessageWindow> whole =
        telephony::MessageWindow::readWhole(store(), store().db(), 0, GSM::Sms::SortByStatus);
    const int unread = whole->getFirst(GSM::Message::Read) - whole->getFirst(GSM::Message::Unread);
    EXPECT_EQ(GSM::sms.unreadCount(), unread);
    ASSERT_TRUE(sim::receiveMessage(u"+4917011", u"one more").isOk());
    EXPECT_EQ(GSM::sms.unreadCount(), unread + 1);
    EXPECT_EQ(GSM::sms.messageCount(0), 301);
    const long first = whole->get(whole->getFirst(GSM::Message::Unread))->getId();
    ASSERT_TRUE(GSM::sms.setMessageStatus(first, GSM::Message::Read).isOk());
    EXPECT_EQ(GSM::sms.unreadCount(), unread);
    ASSERT_TRUE(GSM::sms.deleteMessages(0, 0).isOk());
    EXPECT_EQ(GSM::sms.messageCount(0), 0);
    EXPECT_EQ(GSM::sms.unreadCount(), 0);
}

TEST_F(MessageWindows, TheOrderByContactFollowsThePhoneBook) {
    sim::StoredMessage fromZed{0, GSM::Message::Read, {u"+4917001"}, u"z", daysAgo(clock, 1)};
    sim::StoredMessage fromAnna{0, GSM::Message::Read, {u"+4917002"}, u"a", daysAgo(clock, 2)};
    ASSERT_TRUE(sim::addStoredMessages({fromZed, fromAnna}).isOk());
    const auto firstText = [] {
        return text(GSM::sms.getMessages(0, GSM::Sms::SortByContact)->get(0)->getText());
    };
    EXPECT_EQ(firstText(), u"z") << "+4917001 sorts before +4917002";
    ASSERT_TRUE(sim::addContact(u"Zed", u"", {u"+4917001"}).isOk());
    ASSERT_TRUE(sim::addContact(u"anna", u"", {u"+4917002"}).isOk());
    EXPECT_EQ(firstText(), u"a") << "anna before Zed, whatever the case";
    tessaly::telephony::close();
    reopen();
    EXPECT_EQ(firstText(), u"a") << "kept in the store";
}

TEST_F(MessageWindows, AStoreFromBeforeWindowsIsBroughtOverWithItsCountsAndNames) {
    tessaly::telephony::close();
    QFile::remove(path_);
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(path_.toUtf8().constData(), &db), SQLITE_OK);
    for (int version = 0; version < 3; ++version)
        ASSERT_EQ(
            sqlite3_exec(db, telephony::kSchemaMigrations[version], nullptr, nullptr, nullptr),
            SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db,
                           "PRAGMA user_version = 3;"
                           "INSERT INTO contacts(id, first_name) VALUES (1, 'Anna');"
                           "INSERT INTO contact_numbers(contact_id, number) VALUES (1, '+4917002');"
                           "INSERT INTO messages(id, folder, status, date) VALUES "
                           "(1, 0, 2, 1), (2, 0, 3, 2), (3, 1, 8, 3);"
                           "INSERT INTO addresses(message_id, position, number) VALUES "
                           "(1, 0, '+4917001'), (2, 0, '+4917002'), (3, 0, '+4917001');",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(db);

    reopen();
    EXPECT_EQ(GSM::sms.messageCount(0), 2);
    EXPECT_EQ(GSM::sms.messageCount(1), 1);
    EXPECT_EQ(GSM::sms.unreadCount(), 1);
    GSM::MessageContainer* byName = GSM::sms.getMessages(0, GSM::Sms::SortByContact);
    ASSERT_EQ(byName->size(), 2);
    EXPECT_EQ(byName->get(0)->getId(), 1) << "+4917001 before anna";
    EXPECT_EQ(text(byName->get(1)->getContacts()->get(0)->getText(0, 1)), u"+4917002");
}

} // namespace
