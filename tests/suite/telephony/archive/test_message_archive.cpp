// Imports and exports through a store on a temporary file: all or nothing, nothing doubled,
// nothing sent, and a round trip that changes nothing.

#include "suite/telephony/archive/message_archive.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"

#include "gsm/gsm.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

namespace archive = tessaly::telephony::archive;
namespace telephony = tessaly::telephony;

const QByteArray kBackup = R"x(<?xml version='1.0' encoding='UTF-8' standalone='yes' ?>
<smses count="5">
  <sms protocol="0" address="+491711234567" date="1709299385123" type="1" body="Hi &#55357;&#56832;&#10;lone &#55357;" service_center="+491760000443" read="0" status="-1" />
  <sms protocol="0" address="+4917111~+4917122" date="1709299400000" type="2" body="to a group" service_center="null" read="1" status="-1" />
  <sms protocol="0" address="+4917111" date="1709299500000" type="6" body="queued" read="1" />
  <mms date="1709299600000" msg_box="1"><parts><part text="an MMS" /></parts></mms>
  <sms protocol="0" address="+4917111~+4917122" date="1709299400000" type="2" body="to a group" service_center="null" read="1" />
</smses>
)x";

class MessageArchive : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(directory_.isValid());
        telephony::Options options;
        options.databasePath = directory_.filePath(QStringLiteral("telephony.db"));
        options.segmentDelayMs = 0;
        ASSERT_TRUE(telephony::open(options).isOk());
    }
    void TearDown() override { telephony::close(); }

    QString write(const QString& name, const QByteArray& bytes) {
        const QString path = directory_.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }

    static QByteArray read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    archive::ImportCounts import(const QString& path, bool* ok = nullptr) {
        archive::MessageImport import(path);
        const bool done = import.read() && import.commit().isOk();
        if (ok)
            *ok = done;
        return import.counts();
    }

    int total() const { return GSM::sms.messageCount(0) + GSM::sms.messageCount(1); }

    QTemporaryDir directory_;
};

TEST_F(MessageArchive, ASecondImportOfTheSameFileAddsNothing) {
    const QString file = write("backup.xml", kBackup);
    bool ok = false;
    archive::ImportCounts counts = import(file, &ok);
    ASSERT_TRUE(ok);
    EXPECT_EQ(counts.imported, 3);
    EXPECT_EQ(counts.alreadyPresent, 1) << "the file holds the group send twice";
    EXPECT_EQ(counts.skipped, 1);
    EXPECT_EQ(counts.skippedMms, 1);
    EXPECT_EQ(GSM::sms.messageCount(0), 1);
    EXPECT_EQ(GSM::sms.messageCount(1), 2);
    EXPECT_EQ(GSM::sms.unreadCount(), 1);

    counts = import(file, &ok);
    ASSERT_TRUE(ok);
    EXPECT_EQ(counts.imported, 0);
    EXPECT_EQ(counts.alreadyPresent, 4);
    EXPECT_EQ(total(), 3);
}

TEST_F(MessageArchive, AnImportNeverSends) {
    ASSERT_EQ(import(write("backup.xml", kBackup)).imported, 3);
    GSM::MessageContainer* outbox = GSM::sms.getMessages(1, 0);
    ASSERT_NE(outbox, nullptr);
    for (int i = 0; i < outbox->size(); ++i)
        EXPECT_NE(outbox->get(i)->getStatus(), GSM::Message::SendNow);
}

TEST_F(MessageArchive, ADamagedFileChangesNothingAndSaysWhere) {
    ASSERT_EQ(import(write("first.xml", kBackup)).imported, 3);
    const QByteArray truncated = kBackup.left(kBackup.indexOf("<mms"));
    archive::MessageImport damaged(
        write("damaged.xml", truncated + "<sms date=\"1\" type=\"1\" body="));
    EXPECT_FALSE(damaged.read());
    EXPECT_TRUE(damaged.error().contains(QStringLiteral("line 6")))
        << damaged.error().toStdString();
    EXPECT_EQ(total(), 3);

    archive::MessageImport foreign(write("notes.csv", "name,phone\r\nAnna,+4917\r\n"));
    EXPECT_FALSE(foreign.read());
    EXPECT_TRUE(foreign.error().contains(QStringLiteral("line 1")))
        << foreign.error().toStdString();
    archive::MessageImport unknown(write("backup.json", "{}"));
    EXPECT_FALSE(unknown.read());
    archive::MessageImport missing(directory_.filePath("nowhere.xml"));
    EXPECT_FALSE(missing.read());
    EXPECT_EQ(total(), 3);
    // The staging files are gone.
    EXPECT_TRUE(QDir(directory_.path()).entryList({QStringLiteral("*.staging")}).isEmpty());
}

TEST_F(MessageArchive, ACancelledImportAddsNothing) {
    std::atomic<bool> cancel{true};
    QByteArray big = kBackup.left(kBackup.indexOf("</smses>"));
    for (int i = 0; i < 20000; ++i)
        big +=
            "<sms address=\"1\" date=\"" + QByteArray::number(i) + "\" type=\"1\" body=\"x\" />\n";
    archive::MessageImport import(write("big.xml", big + "</smses>\n"));
    int reports = 0;
    EXPECT_FALSE(import.read([&](qint64, qint64) { ++reports; }, &cancel));
    EXPECT_GE(reports, 1);
    EXPECT_EQ(total(), 0);
}

TEST_F(MessageArchive, XmlAndCsvRoundTripsChangeNothing) {
    // Messages the phone itself made, with texts SQLite would not keep as text.
    namespace sim = telephony::simulator;
    const FILETIME date = fileTimeFromUInt64(133545744001230000ULL);
    std::vector<sim::StoredMessage> stored = {
        {0,
         GSM::Message::Read,
         {u"+4930123"},
         u"\xFEFF"
         u"leading mark",
         date},
        {0, GSM::Message::Unread, {u"+4930123"}, u"lone \xDC00 and \xFFFF", date},
        {1, GSM::Message::Failed, {u"+4930123", u"+4940456"}, u"two\r\nlines", date},
        {1, GSM::Message::Sent, {u"+4930123"}, std::u16string(70000, u'x'), date},
    };
    ASSERT_TRUE(sim::addStoredMessages(stored).isOk());
    ASSERT_EQ(import(write("backup.xml", kBackup)).imported, 3);
    const QString store = archive::storeDatabasePath();
    for (const char* name : {"out.xml", "out.csv"}) {
        const QString first = directory_.filePath(QString::fromLatin1("first-") + name);
        qint64 exported = 0;
        ASSERT_TRUE(archive::exportMessages(store, first, &exported).isOk());
        EXPECT_EQ(exported, 7);
        // Into an empty store and out again: the same file.
        telephony::close();
        QTemporaryDir other;
        telephony::Options options;
        options.databasePath = other.filePath(QStringLiteral("telephony.db"));
        ASSERT_TRUE(telephony::open(options).isOk());
        bool ok = false;
        EXPECT_EQ(import(first, &ok).imported, 7) << name;
        EXPECT_TRUE(ok);
        const QString second = directory_.filePath(QString::fromLatin1("second-") + name);
        ASSERT_TRUE(archive::exportMessages(archive::storeDatabasePath(), second).isOk());
        EXPECT_EQ(read(first), read(second)) << name;
        telephony::close();
        options.databasePath = store;
        ASSERT_TRUE(telephony::open(options).isOk());
    }
}

TEST_F(MessageArchive, AFailedExportLeavesNoFile) {
    ASSERT_EQ(import(write("backup.xml", kBackup)).imported, 3);
    const QString store = archive::storeDatabasePath();
    EXPECT_FALSE(archive::exportMessages(store, directory_.filePath("no/such/dir/out.xml")).isOk());
    std::atomic<bool> cancel{true};
    const QString cancelled = directory_.filePath("cancelled.csv");
    EXPECT_EQ(archive::exportMessages(store, cancelled, nullptr, {}, &cancel).errorCode(),
              GSM::ErrorCancelled);
    EXPECT_FALSE(QFile::exists(cancelled));
    EXPECT_FALSE(archive::exportMessages(store, directory_.filePath("out.txt")).isOk());
    EXPECT_FALSE(QFile::exists(directory_.filePath("out.txt")));
    const QStringList leftovers =
        QDir(directory_.path()).entryList({QStringLiteral("*.xml.*"), QStringLiteral("*.csv.*")});
    EXPECT_TRUE(leftovers.isEmpty()) << leftovers.join(u',').toStdString();
}

} // namespace
