// A sender is killed with SIGKILL at random instants while it hands a message over and while
// the radio sends, then started again on the same store, until it finishes. The radio's log
// then tells how often each recipient got each segment: at least once, and twice only for the
// segment that was on the air when a kill came.

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdio>
#include <map>
#include <random>
#include <set>
#include <string>
#include <tuple>

namespace {

struct Scenario {
    const char* mode; // as send_crash_child takes it
    int recipients;
    int segments; // per recipient
    int kills;
};

// Whole-number answers of one SQL query on the store, or -1.
long long queryNumber(const QString& path, const char* sql) {
    sqlite3* db = nullptr;
    long long value = -1;
    if (sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) ==
        SQLITE_OK) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) == SQLITE_OK &&
            sqlite3_step(statement) == SQLITE_ROW)
            value = sqlite3_column_type(statement, 0) == SQLITE_TEXT
                        ? (std::string(reinterpret_cast<const char*>(
                               sqlite3_column_text(statement, 0))) == "ok")
                        : sqlite3_column_int64(statement, 0);
        sqlite3_finalize(statement);
    }
    sqlite3_close(db);
    return value;
}

// (message id, position) → number, for every stored address.
std::map<std::pair<long, int>, std::string> addressesOf(const QString& path) {
    std::map<std::pair<long, int>, std::string> numbers;
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) ==
        SQLITE_OK) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(db, "SELECT message_id, position, number FROM addresses", -1,
                               &statement, nullptr) == SQLITE_OK) {
            while (sqlite3_step(statement) == SQLITE_ROW)
                numbers[{long(sqlite3_column_int64(statement, 0)),
                         sqlite3_column_int(statement, 1)}] =
                    reinterpret_cast<const char*>(sqlite3_column_text(statement, 2));
        }
        sqlite3_finalize(statement);
    }
    sqlite3_close(db);
    return numbers;
}

class SendCrash : public testing::TestWithParam<Scenario> {
protected:
    QProcess* start(const Scenario& scenario) {
        child_ = std::make_unique<QProcess>();
        child_->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child_->start(QStringLiteral(SEND_CRASH_CHILD_PATH),
                      {database(), log(), QString::fromLatin1(scenario.mode),
                       QString::number(scenario.recipients)});
        return child_.get();
    }
    QString database() const { return dir_.filePath(QStringLiteral("telephony.db")); }
    QString log() const { return dir_.filePath(QStringLiteral("radio.log")); }
    void appendToLog(const char* line) {
        QFile file(log());
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write(line);
    }

    QTemporaryDir dir_;
    std::unique_ptr<QProcess> child_;
};

TEST_P(SendCrash, NothingLostAndNothingSentTwiceButTheSegmentOnTheAir) {
    const Scenario scenario = GetParam();
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    // Kills fall anywhere from before the store opens to well into the sending.
    std::uniform_int_distribution<int> delayMs(0, 150);
    const long long handedOver = std::string(scenario.mode) == "all" ? 1 : scenario.recipients;

    int kills = 0;
    bool finished = false;
    for (int attempt = 0; attempt < scenario.kills && !finished; ++attempt) {
        QProcess* child = start(scenario);
        ASSERT_TRUE(child->waitForStarted());
        if (child->waitForFinished(delayMs(random))) {
            ASSERT_EQ(child->exitCode(), 0) << "the sender failed on its own";
            finished = true;
            break;
        }
        child->kill();
        ASSERT_TRUE(child->waitForFinished());
        ++kills;
        appendToLog("kill\n");
        // A kill before the child made its store leaves nothing to check.
        if (QFile::exists(database())) {
            EXPECT_EQ(queryNumber(database(), "PRAGMA integrity_check"), 1);
        }
        const long long stored =
            queryNumber(database(), "SELECT count(*) FROM messages WHERE folder = 1");
        EXPECT_TRUE(stored <= 0 || stored == handedOver)
            << stored << " of " << handedOver << " messages handed over";
    }
    if (!finished) {
        QProcess* child = start(scenario);
        ASSERT_TRUE(child->waitForFinished(30000));
        ASSERT_EQ(child->exitCode(), 0);
    }
    EXPECT_EQ(queryNumber(database(), "SELECT count(*) FROM messages WHERE folder = 1"),
              handedOver);
    EXPECT_EQ(queryNumber(database(), "SELECT count(*) FROM messages WHERE status != 8"), 0)
        << "every message ends sent";

    const auto numbers = addressesOf(database());
    QFile file(log());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    std::map<std::pair<std::string, int>, int> sent; // (number, segment) → times on the air
    std::pair<std::string, int> lastOnTheAir;
    std::set<std::pair<std::string, int>> inFlightAtAKill;
    int repeats = 0;
    int killsWhileSending = 0;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.isEmpty())
            continue;
        if (line == "kill") {
            killsWhileSending += !lastOnTheAir.first.empty();
            inFlightAtAKill.insert(lastOnTheAir);
            lastOnTheAir = {};
            continue;
        }
        long id = 0;
        int recipient = 0;
        int segment = 0;
        ASSERT_EQ(std::sscanf(line.constData(), "%ld %d %d", &id, &recipient, &segment), 3);
        const auto number = numbers.find({id, recipient});
        ASSERT_NE(number, numbers.end()) << "sent from a message the store does not hold";
        const std::pair<std::string, int> key{number->second, segment};
        if (sent[key]++ > 0) {
            ++repeats;
            EXPECT_EQ(inFlightAtAKill.erase(key), 1u)
                << number->second << " got segment " << segment
                << " again, and it was not on the air when the sender was killed";
        }
        lastOnTheAir = key;
    }
    EXPECT_EQ(int(sent.size()), scenario.recipients * scenario.segments) << "something lost";
    std::printf("[ crash    ] %s: %d recipients, %d kills (%d while sending), %d segments "
                "sent again\n",
                scenario.mode, scenario.recipients, kills, killsWhileSending, repeats);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, SendCrash,
                         testing::Values(Scenario{"all", 1000, 2, 40},
                                         Scenario{"each", 1000, 1, 40}),
                         [](const testing::TestParamInfo<Scenario>& info) {
                             return std::string(info.param.mode) == "all"
                                        ? std::string("OneMessageToManyRecipients")
                                        : std::string("OneMessagePerRecipient");
                         });

} // namespace
