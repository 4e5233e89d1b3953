// Finding messages: what a typed query becomes, and what a store with a text index finds for it.

#include "suite/telephony/database.h"
#include "suite/telephony/schema_sql.h" // generated
#include "suite/telephony/search_query.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"

#include "gsm/gsm.h"
#include "gsm/search.h"

#include <QDir>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <gtest/gtest.h>

namespace {

namespace telephony = tessaly::telephony;
namespace sim = tessaly::telephony::simulator;
using telephony::parseSearchQuery;

TEST(SearchQuery, TypedTextBecomesQuotedTermsAndDigits) {
    const struct {
        std::u16string typed;
        std::u16string index;
        std::u16string digits;
    } cases[] = {
        {u"", u"", u""},
        {u"  \t", u"", u""},
        {u"lunch", u"\"lunch\"*", u""},
        {u"lunch ", u"\"lunch\"", u""},
        {u"Café AT noon", u"\"cafe\" AND \"at\" AND \"noon\"*", u""},
        {u"\"see you\" soon", u"\"see you\" AND \"soon\"*", u""},
        {u"\"see you", u"\"see you\"", u""},
        {u"say \"\"hi\"\"", u"\"say\" AND \"hi\"*", u""},
        {u"a\"b", u"\"a\" AND \"b\"", u""},
        {u"-- ** OR NEAR(", u"\"or\" AND \"near(\"*", u""},
        {u"Straße", u"(\"stra\u00DFe\"* OR \"strasse\"*)", u""},
        {u"strasse ", u"(\"strasse\" OR \"stra\u00DFe\")", u""},
        {u"0171 234", u"\"0171\" AND \"234\"*", u"171234"},
        {u"+49 (171) 234-5", u"\"+49\" AND \"(171)\" AND \"234-5\"*", u"491712345"},
        {u"0049 171", u"\"0049\" AND \"171\"*", u"49171"},
        {u"12", u"\"12\"*", u""},
        {u"call 0171", u"\"call\" AND \"0171\"*", u""},
        {u"a b c d e f g h i j k l m n o p q r",
         u"\"a\" AND \"b\" AND \"c\" AND \"d\" AND \"e\" AND \"f\" AND \"g\" AND \"h\" AND \"i\" "
         u"AND \"j\" AND \"k\" AND \"l\" AND \"m\" AND \"n\" AND \"o\" AND \"p\"",
         u""},
        {u"in straße ", u"\"in\" AND (\"stra\u00DFe\" OR \"strasse\")", u""},
        {std::u16string(u"a\0b \xD800", 5), u"\"a\" AND \"b\" AND \"\uFFFD\"*", u""},
    };
    for (const auto& c : cases) {
        const telephony::SearchQuery query = parseSearchQuery(c.typed);
        EXPECT_EQ(query.textIndexQuery, c.index)
            << QString::fromStdU16String(c.typed).toStdString();
        EXPECT_EQ(query.numberDigits, c.digits) << QString::fromStdU16String(c.typed).toStdString();
        EXPECT_EQ(query.empty(), c.index.empty());
    }
}

TEST(SearchQuery, NamesMatchWholeWordsAndTheLastAsABeginning) {
    const struct {
        std::u16string typed;
        std::u16string name;
        bool matches;
    } cases[] = {
        {u"anna", u"Anna Schmidt", true},
        {u"schm", u"Anna Schmidt", true},
        {u"schm ", u"Anna Schmidt", false},
        {u"nna", u"Anna Schmidt", false},
        {u"schmidt anna", u"Anna Schmidt", true},
        {u"zoe", u"Zoë Brandt", true},
        {u"\"anna schmidt\"", u"Anna Schmidt", true},
        {u"\"schmidt anna\"", u"Anna Schmidt", false},
        {u"anna bob", u"Anna Schmidt", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(
            telephony::nameMatches(telephony::foldForSearch(c.name), parseSearchQuery(c.typed)),
            c.matches)
            << QString::fromStdU16String(c.typed).toStdString();
    }
}

class MessageSearchTest : public ::testing::Test {
protected:
    void SetUp() override {
        telephony::Options options;
        options.databasePath = directory_.filePath(QStringLiteral("telephony.db"));
        ASSERT_TRUE(telephony::open(options).isOk());
        ASSERT_TRUE(sim::addContact(u"Anna", u"Schmidt", {u"+4917111"}).isOk());
        const std::vector<sim::StoredMessage> messages = {
            {0, GSM::Message::Read, {u"+4917111"}, u"Lunch at the café?", at(1)},
            {0, GSM::Message::Read, {u"+4917222"}, u"We meet in the Straße by the station", at(2)},
            {1, GSM::Message::Sent, {u"+4917222"}, u"see you at lunch", at(3)},
            {1, GSM::Message::Sent, {u"+4917333", u"+4917111"}, u"you see, it is late", at(4)},
            {0,
             GSM::Message::Unread,
             {u"+4917333"},
             u"\xFEFF"
             u"odd lunch \xD800 text",
             at(5)},
        };
        ASSERT_TRUE(sim::addStoredMessages(messages).isOk());
    }
    void TearDown() override { telephony::close(); }

    static FILETIME at(int minute) {
        return fileTimeFromUInt64(133545744000000000ULL + std::uint64_t(minute) * 600000000ULL);
    }

    // The texts found, newest first, read a page of two at a time.
    std::vector<std::u16string> found(const std::u16string& typed, int* count = nullptr) {
        std::vector<std::u16string> texts;
        const auto search = GSM::searchMessages(typed.c_str());
        if (!search)
            return texts;
        if (count)
            *count = search->count();
        for (auto page = search->next(2); !page.empty(); page = search->next(2)) {
            for (const GSM::SearchHit& hit : page)
                texts.push_back(GSM::sms.getMessage(hit.messageId)->getText());
        }
        return texts;
    }

    QTemporaryDir directory_;
};

TEST_F(MessageSearchTest, TextsNamesAndNumbersAreFoundNewestFirst) {
    const std::u16string odd = u"\xFEFF"
                               u"odd lunch \xD800 text";
    const struct {
        std::u16string typed;
        std::vector<std::u16string> texts;
    } cases[] = {
        {u"lunch", {odd, u"see you at lunch", u"Lunch at the café?"}},
        {u"LUN", {odd, u"see you at lunch", u"Lunch at the café?"}},
        {u"cafe", {u"Lunch at the café?"}},
        {u"strasse", {u"We meet in the Straße by the station"}},
        {u"\"see you\"", {u"see you at lunch"}},
        {u"see you", {u"you see, it is late", u"see you at lunch"}},
        {u"anna", {u"you see, it is late", u"Lunch at the café?"}},
        {u"0173 33", {odd, u"you see, it is late"}},
        {u"supper", {}},
        {u"odd", {odd}},
    };
    for (const auto& c : cases) {
        int count = -1;
        EXPECT_EQ(found(c.typed, &count), c.texts)
            << QString::fromStdU16String(c.typed).toStdString();
        EXPECT_EQ(count, int(c.texts.size()));
    }
    EXPECT_EQ(GSM::searchMessages(u"  "), nullptr);
}

TEST_F(MessageSearchTest, TheExcerptMarksTheFirstMatch) {
    const auto search = GSM::searchMessages(u"station");
    ASSERT_NE(search, nullptr);
    const std::vector<GSM::SearchHit> hits = search->next(10);
    ASSERT_EQ(hits.size(), 1u);
    const GSM::SearchHit& hit = hits.front();
    EXPECT_EQ(hit.excerpt.substr(size_t(hit.matchStart), size_t(hit.matchLength)), u"station");
    EXPECT_EQ(hit.excerpt.front(), u'…');
}

TEST_F(MessageSearchTest, TheIndexFollowsChangesAndPassesItsIntegrityCheck) {
    GSM::MessageContainer* inbox = GSM::sms.getMessages(0, 0);
    const long lunch = inbox->get(0)->getId();
    ASSERT_EQ(std::u16string(inbox->get(0)->getText()), u"Lunch at the café?");
    ASSERT_TRUE(GSM::sms.setMessageStatus(lunch, GSM::Message::Deleted).isOk());
    EXPECT_EQ(found(u"cafe"), std::vector<std::u16string>{});
    ASSERT_TRUE(sim::receiveMessage(u"+4917999", u"Dinner at the café instead").isOk());
    EXPECT_EQ(found(u"cafe"), std::vector<std::u16string>{u"Dinner at the café instead"});
    telephony::close();

    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(directory_.filePath(QStringLiteral("telephony.db")).toUtf8(), &db),
              SQLITE_OK);
    char* error = nullptr;
    EXPECT_EQ(sqlite3_exec(db,
                           "INSERT INTO message_search(message_search, rank) VALUES "
                           "('integrity-check', 1)",
                           nullptr, nullptr, &error),
              SQLITE_OK)
        << (error ? error : "");
    sqlite3_free(error);
    sqlite3_close(db);
}

TEST_F(MessageSearchTest, DeletedMessagesAndContactsTakeTheirAddressesAndNumbersWithThem) {
    GSM::MessageContainer* inbox = GSM::sms.getMessages(0, 0);
    ASSERT_TRUE(GSM::sms.setMessageStatus(inbox->get(0)->getId(), GSM::Message::Deleted).isOk());
    ASSERT_TRUE(GSM::sms.deleteMessages(GSM::Sms::FolderOutbox, 0).isOk());
    GSM::Folder* contacts = GSM::PhoneBook::getFolder(GSM::PhoneBook::FolderContacts);
    ASSERT_GT(contacts->size(), 0);
    ASSERT_TRUE(contacts->remove(0).isOk());
    telephony::close();

    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(directory_.filePath(QStringLiteral("telephony.db")).toUtf8(), &db),
              SQLITE_OK);
    for (const char* orphans :
         {"SELECT count(*) FROM addresses WHERE message_id NOT IN (SELECT id FROM messages)",
          "SELECT count(*) FROM contact_numbers WHERE contact_id NOT IN (SELECT id FROM "
          "contacts)"}) {
        sqlite3_stmt* statement = nullptr;
        ASSERT_EQ(sqlite3_prepare_v2(db, orphans, -1, &statement, nullptr), SQLITE_OK);
        ASSERT_EQ(sqlite3_step(statement), SQLITE_ROW);
        EXPECT_EQ(sqlite3_column_int(statement, 0), 0) << orphans;
        sqlite3_finalize(statement);
    }
    sqlite3_close(db);
}

TEST(MessageSearchMigration, AStoreFromBeforeTheIndexIsIndexedWhenOpened) {
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("telephony.db"));
    {
        // The first schema, as a store written before the search index had it.
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open(path.toUtf8(), &db), SQLITE_OK);
        const std::string schema = telephony::kSchemaMigrations[0];
        ASSERT_EQ(sqlite3_exec(db, schema.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
        ASSERT_EQ(
            sqlite3_exec(db,
                         "PRAGMA user_version=1;"
                         "INSERT INTO messages(id, folder, status, text, date) VALUES"
                         " (1, 0, 3, 'Old news from 2019', 1), (2, 0, 3, x'4800', 2);"
                         "INSERT INTO addresses VALUES (1, 0, '+4917111'), (2, 0, '+4917111');",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
        sqlite3_close(db);
    }
    telephony::Options options;
    options.databasePath = path;
    ASSERT_TRUE(telephony::open(options).isOk());
    const auto search = GSM::searchMessages(u"news");
    ASSERT_NE(search, nullptr);
    EXPECT_EQ(search->count(), 1);
    telephony::close();
}

} // namespace
