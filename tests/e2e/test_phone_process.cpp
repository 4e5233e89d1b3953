// tessaly-phone run as a person runs it, as a process of its own: a screenshot run ends by
// itself whatever is showing, a clean exit leaves no journal files behind, and a damaged
// registry file stops the phone before anything is written.

#include "framework/time/clock.h"
#include "host/running_phone.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"
#include "tests/testkit/window_driver.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

namespace {

namespace sim = tessaly::telephony::simulator;

struct PhoneRun {
    bool finished = false;
    int exitCode = -1;
    QString errors;
};

PhoneRun runPhone(const QStringList& arguments) {
    QProcess phone;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    phone.setProcessEnvironment(environment);
    phone.start(QStringLiteral(TESSALY_PHONE_PATH), arguments);
    PhoneRun run;
    run.finished = phone.waitForFinished(60000);
    if (!run.finished) {
        phone.kill();
        phone.waitForFinished();
    }
    run.exitCode = phone.exitStatus() == QProcess::NormalExit ? phone.exitCode() : -1;
    run.errors = QString::fromLocal8Bit(phone.readAllStandardError());
    return run;
}

void storeInboxMessages(const QString& directory, int count) {
    tessaly::telephony::Options options;
    options.databasePath = QDir(directory).filePath(QStringLiteral("telephony.db"));
    ASSERT_TRUE(tessaly::telephony::open(options).isOk());
    FILETIME now{};
    const SYSTEMTIME local = tessaly::Clock::current().localNow();
    SystemTimeToFileTime(&local, &now);
    std::vector<sim::StoredMessage> messages;
    for (int i = 0; i < count; ++i) {
        sim::StoredMessage& message = messages.emplace_back();
        message.addresses = {u"+447700900123"};
        message.text = u"Message " + QString::number(i).toStdU16String();
        message.date = now;
    }
    ASSERT_TRUE(sim::addStoredMessages(messages).isOk());
    tessaly::telephony::close();
}

QStringList journalFiles(const QString& directory) {
    return QDir(directory).entryList({QStringLiteral("*-wal"), QStringLiteral("*-shm")},
                                     QDir::Files);
}

TEST(PhoneProcess, ScreenshotRunEndsWithTheSizeWarningInThePicture) {
    QTemporaryDir data;
    storeInboxMessages(data.path(), 1001); // over 1,000: the main window warns in a modal box
    const QString picture = data.filePath(QStringLiteral("phone.png"));

    const PhoneRun run =
        runPhone({QStringLiteral("--data-dir"), data.path(), QStringLiteral("--open-messages"),
                  QStringLiteral("--screenshot"), picture});
    ASSERT_TRUE(run.finished) << "the run waited for a person";
    EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
    const QImage image(picture);
    ASSERT_FALSE(image.isNull());
    EXPECT_GE(image.width(), 240);
    EXPECT_GE(image.height(), 320);
    const QString kept = tessaly::testkit::testOutputPath(QStringLiteral("phone-size-warning.png"));
    QDir().mkpath(QFileInfo(kept).path());
    QFile::remove(kept);
    EXPECT_TRUE(QFile::copy(picture, kept));

    // The clean exit closed the hives and the store: everything is back in the files.
    EXPECT_TRUE(journalFiles(data.path()).isEmpty())
        << journalFiles(data.path()).join(u' ').toStdString();
}

TEST(PhoneProcess, DamagedHiveStopsThePhoneAndStaysAsItWas) {
    for (const char* hive : {"registry-current-user.db", "registry-local-machine.db"}) {
        SCOPED_TRACE(hive);
        QTemporaryDir data;
        const QString path = data.filePath(QString::fromLatin1(hive));
        QByteArray noise(8192, '\0');
        QRandomGenerator(7).fillRange(reinterpret_cast<quint32*>(noise.data()), noise.size() / 4);
        {
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(noise);
        }

        const PhoneRun run =
            runPhone({QStringLiteral("--data-dir"), data.path(), QStringLiteral("--screenshot"),
                      data.filePath(QStringLiteral("phone.png"))});
        ASSERT_TRUE(run.finished);
        EXPECT_NE(run.exitCode, 0);
        EXPECT_TRUE(run.errors.contains(path)) << run.errors.toStdString();
        EXPECT_TRUE(run.errors.contains(QStringLiteral("Move it aside")))
            << run.errors.toStdString();
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), noise);
        EXPECT_FALSE(QFile::exists(data.filePath(QStringLiteral("phone.png"))));
    }
}

// Logout, `systemctl stop` and Ctrl+C end the phone as closing it does: the store and the
// hives are checkpointed and closed, no journal is left.
TEST(PhoneProcess, TerminationSignalsEndThePhoneCleanly) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        SCOPED_TRACE(signal);
        QTemporaryDir data;
        QProcess phone;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        phone.setProcessEnvironment(environment);
        phone.start(QStringLiteral(TESSALY_PHONE_PATH),
                    {QStringLiteral("--data-dir"), data.path(), QStringLiteral("--demo"),
                     QStringLiteral("--modem"), QStringLiteral("simulator")});
        // Started once it names its radio.
        QByteArray output;
        while (!output.contains("radio:") && phone.waitForReadyRead(20000))
            output += phone.readAllStandardOutput();
        ASSERT_TRUE(output.contains("radio:")) << phone.readAllStandardError().toStdString();
        ASSERT_FALSE(journalFiles(data.path()).isEmpty()) << "the store is open while it runs";
        ::kill(pid_t(phone.processId()), signal);
        ASSERT_TRUE(phone.waitForFinished(20000));
        EXPECT_EQ(phone.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(phone.exitCode(), 0);
        EXPECT_TRUE(journalFiles(data.path()).isEmpty())
            << journalFiles(data.path()).join(u' ').toStdString();
    }
}

// A second start on the same data directory (an sms: link from the desktop) hands the link
// to the phone that runs and ends, leaving the files to that phone alone.
TEST(PhoneProcess, ASecondStartHandsItsLinkToTheRunningPhone) {
    QTemporaryDir data;
    QProcess phone;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    phone.setProcessEnvironment(environment);
    phone.start(QStringLiteral(TESSALY_PHONE_PATH),
                {QStringLiteral("--data-dir"), data.path(), QStringLiteral("--modem"),
                 QStringLiteral("simulator")});
    QByteArray output;
    while (!output.contains("radio:") && phone.waitForReadyRead(20000))
        output += phone.readAllStandardOutput();
    ASSERT_TRUE(output.contains("radio:")) << phone.readAllStandardError().toStdString();

    const PhoneRun second = runPhone({QStringLiteral("--data-dir"), data.path(),
                                      QStringLiteral("sms:+447700900123?body=Hello")});
    EXPECT_TRUE(second.finished);
    EXPECT_EQ(second.exitCode, 0) << second.errors.toStdString();
    EXPECT_EQ(phone.state(), QProcess::Running) << "the first phone goes on";

    ::kill(pid_t(phone.processId()), SIGTERM);
    ASSERT_TRUE(phone.waitForFinished(20000));
    EXPECT_EQ(phone.exitCode(), 0);
    // Gone, the phone no longer answers: the next start runs a phone of its own.
    EXPECT_FALSE(QFile::exists(tessaly::host::runningPhoneName(data.path())));
}

} // namespace
