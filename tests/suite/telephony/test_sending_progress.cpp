// How far the radio got with each recipient is kept in the store: a restart goes on from there,
// a failure says whom the message did not reach, and a hand-over is stored all or nothing.

#include "telephony_fixture.h"

#include "gsm/gsm.h"
#include "suite/telephony/schema_sql.h" // generated

#include <sqlite3.h>

#include <tuple>

namespace {

using telephony_test::text;
namespace sim = tessaly::telephony::simulator;

using Transmission = std::tuple<long, int, int>; // id, recipient, segment

class SendingProgress : public telephony_test::TelephonyTest {
protected:
    void watch() {
        sim::watchTransmissions([this](long id, int recipient, int segment, int) {
            onTheAir.emplace_back(id, recipient, segment);
        });
    }
    long handOver(const std::vector<std::u16string>& numbers, const std::u16string& body) {
        GSM::Message* message = GSM::Message::make();
        for (const std::u16string& number : numbers)
            message->getContacts()->add(number.c_str(), 0);
        message->setText(body.c_str());
        EXPECT_TRUE(message->endEdit(false).isOk());
        return message->getId();
    }
    // Lets the radio put this many more segments on the air.
    void sendSegments(std::size_t count) {
        const std::size_t target = onTheAir.size() + count;
        for (int turn = 0; turn < 100 && onTheAir.size() < target; ++turn)
            clock.fireDue();
        ASSERT_EQ(onTheAir.size(), target);
    }

    std::vector<Transmission> onTheAir;
    const std::u16string twoParts = std::u16string(200, u'x');
};

TEST_F(SendingProgress, ARestartGoesOnFromTheRecipientAndSegmentWhereTheRadioStopped) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("telephony.db"));
    openStore(path);
    watch();
    const long id = handOver({u"+4917011", u"+4917022", u"+4917033"}, twoParts);
    sendSegments(3);
    EXPECT_EQ(onTheAir.back(), Transmission(id, 1, 1));

    tessaly::telephony::close();
    openStore(path);
    watch();
    settle();
    EXPECT_EQ(onTheAir,
              (std::vector<Transmission>{
                  {id, 0, 1}, {id, 0, 2}, {id, 1, 1}, {id, 1, 2}, {id, 2, 1}, {id, 2, 2}}))
        << "nothing sent twice";
    GSM::Message* message = GSM::sms.getMessage(id);
    EXPECT_EQ(message->getStatus(), GSM::Message::Sent);
    for (int position = 0; position < 3; ++position)
        EXPECT_TRUE(message->wasSentTo(position)) << position;
}

TEST_F(SendingProgress, AFailureNamesWhomItDidNotReachAndSendNowGoesOnlyToThem) {
    ASSERT_TRUE(sim::addContact(u"Anna", u"Berg", {u"+4917022"}).isOk());
    watch();
    const long id = handOver({u"+4917011", u"+4917022", u"+4917033"}, u"Hi");
    sendSegments(1);
    sim::failNextSend(GSM::ErrorNetworkRejected, u"Unknown number.");
    settle();
    GSM::Message* message = GSM::sms.getMessage(id);
    EXPECT_EQ(message->getStatus(), GSM::Message::Failed);
    EXPECT_TRUE(message->wasSentTo(0));
    EXPECT_FALSE(message->wasSentTo(1));
    EXPECT_FALSE(message->wasSentTo(2));
    EXPECT_FALSE(message->wasSentTo(3)) << "no such recipient";
    ASSERT_EQ(completions.size(), 1u);
    EXPECT_EQ(completions[0].first.errorCode(), GSM::ErrorNetworkRejected)
        << "the library's words are shown as they stand";
    EXPECT_EQ(text(completions[0].first.getErrorMessage()),
              u"Unknown number. Not sent to Anna Berg, +4917033.");

    onTheAir.clear();
    ASSERT_TRUE(GSM::sms.setMessageStatus(id, GSM::Message::SendNow).isOk());
    settle();
    EXPECT_EQ(onTheAir, (std::vector<Transmission>{{id, 1, 1}, {id, 2, 1}}));
    EXPECT_EQ(message->getStatus(), GSM::Message::Sent);
}

TEST_F(SendingProgress, AHandOverIsStoredAndQueuedAllAtOnce) {
    watch();
    ASSERT_TRUE(GSM::sms.beginHandOver().isOk());
    EXPECT_EQ(GSM::sms.beginHandOver().errorCode(), GSM::ErrorBusy) << "not nested";
    handOver({u"+4917011"}, u"one");
    handOver({u"+4917022"}, u"two");
    GSM::Message* dropped = GSM::Message::make();
    dropped->getContacts()->add(u"+4917033", 0);
    dropped->setText(u"three");
    dropped->endEdit(false);
    dropped->endEdit(true); // taken back before the hand-over ends
    settle();
    EXPECT_EQ(GSM::sms.messageCount(GSM::Sms::FolderOutbox), 0) << "held back";
    EXPECT_TRUE(onTheAir.empty());

    ASSERT_TRUE(GSM::sms.endHandOver().isOk());
    EXPECT_EQ(GSM::sms.messageCount(GSM::Sms::FolderOutbox), 2);
    settle();
    EXPECT_EQ(onTheAir.size(), 2u);
    EXPECT_EQ(GSM::sms.endHandOver().errorCode(), GSM::ErrorInvalidArgument) << "none open";
}

TEST_F(SendingProgress, AStoreFromBeforeProgressWasKeptOpensWithItsSentMessagesSent) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("telephony.db"));
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(path.toUtf8().constData(), &db), SQLITE_OK);
    for (int version = 0; version < 2; ++version)
        ASSERT_EQ(sqlite3_exec(db, tessaly::telephony::kSchemaMigrations[version], nullptr, nullptr,
                               nullptr),
                  SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db,
                           "PRAGMA user_version = 2;"
                           "INSERT INTO messages(id, folder, status, date) VALUES (1, 1, 8, 1);"
                           "INSERT INTO messages(id, folder, status, date) VALUES (2, 1, 9, 2);"
                           "INSERT INTO addresses VALUES (1, 0, '+4917011'), (2, 0, '+4917022');",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(db);

    openStore(path);
    EXPECT_TRUE(GSM::sms.getMessage(1)->wasSentTo(0));
    EXPECT_FALSE(GSM::sms.getMessage(2)->wasSentTo(0));
}

} // namespace
