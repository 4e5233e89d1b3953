// tessaly-phone --import / --export as a person types them: one job, no phone shown, what was
// done on stdout, why not on stderr with a non-zero status.

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

struct CommandRun {
    int exitCode = -1;
    QString output;
    QString errors;
};

CommandRun runCommand(const QStringList& arguments) {
    QProcess phone;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // No display is needed for these jobs.
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    phone.setProcessEnvironment(environment);
    phone.start(QStringLiteral(TESSALY_PHONE_PATH), arguments);
    CommandRun run;
    if (!phone.waitForFinished(60000)) {
        phone.kill();
        phone.waitForFinished();
        return run;
    }
    run.exitCode = phone.exitStatus() == QProcess::NormalExit ? phone.exitCode() : -1;
    run.output = QString::fromLocal8Bit(phone.readAllStandardOutput());
    run.errors = QString::fromLocal8Bit(phone.readAllStandardError());
    return run;
}

TEST(ArchiveProcess, ImportExportAndRefusal) {
    QTemporaryDir directory;
    const QString data = directory.filePath(QStringLiteral("data"));
    const QString backup = directory.filePath(QStringLiteral("backup.xml"));
    QFile file(backup);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        "<?xml version='1.0' encoding='UTF-8' standalone='yes' ?>\n<smses count=\"2\">\n"
        "<sms address=\"+4917111\" date=\"1709299385123\" type=\"1\" body=\"a\" read=\"1\" />\n"
        "<mms date=\"1709299385124\" />\n</smses>\n");
    file.close();

    CommandRun run =
        runCommand({QStringLiteral("--data-dir"), data, QStringLiteral("--import"), backup});
    EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_EQ(run.output.trimmed(), QStringLiteral("Imported 1 message; 1 skipped (1 MMS)."));

    run = runCommand({QStringLiteral("--data-dir"), data, QStringLiteral("--import"), backup});
    EXPECT_EQ(run.output.trimmed(),
              QStringLiteral("Imported 0 messages; 1 was already here; 1 skipped (1 MMS)."));

    const QString csv = directory.filePath(QStringLiteral("out.csv"));
    run = runCommand({QStringLiteral("--data-dir"), data, QStringLiteral("--export"), csv});
    EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_TRUE(QFile::exists(csv));

    run = runCommand({QStringLiteral("--data-dir"), data, QStringLiteral("--import"),
                      directory.filePath(QStringLiteral("missing.xml"))});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.errors.contains(QStringLiteral("nothing imported")))
        << run.errors.toStdString();
    EXPECT_TRUE(run.output.isEmpty());
    // The store was closed cleanly each time.
    EXPECT_TRUE(
        QDir(data).entryList({QStringLiteral("*-wal"), QStringLiteral("*.staging")}).isEmpty());
}

} // namespace
