// The home screen's Menu: an import and an export as a person runs them, with the file chosen,
// the progress shown and the outcome told in a box.

#include "host/archive_command.h"
#include "host/host_options.h"

#include "gsm/gsm.h"
#include "suite/telephony/telephony.h"
#include "tests/testkit/scripted_user.h"

#include <QFile>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace {

namespace telephony = tessaly::telephony;
using tessaly::host::ArchiveMenu;
using tessaly::testkit::ScriptedUser;

const QByteArray kBackup = "<?xml version='1.0' encoding='UTF-8' standalone='yes' ?>\n"
                           "<smses count=\"2\">\n"
                           "<sms address=\"+4917111\" date=\"1709299385123\" type=\"1\" "
                           "body=\"Hello\" read=\"0\" />\n"
                           "<sms address=\"+4917111\" date=\"1709299395123\" type=\"2\" "
                           "body=\"Hi back\" read=\"1\" />\n"
                           "</smses>\n";

class ArchiveMenuTest : public ::testing::Test {
protected:
    void SetUp() override {
        telephony::Options options;
        options.databasePath = directory_.filePath(QStringLiteral("telephony.db"));
        ASSERT_TRUE(telephony::open(options).isOk());
        new QVBoxLayout(&home_);
    }
    void TearDown() override { telephony::close(); }

    // Presses Menu, lets the script answer, and waits for the outcome.
    QString run(ScriptedUser& user) {
        ArchiveMenu menu(&home_);
        QSignalSpy finished(&menu, &ArchiveMenu::finished);
        menu.button()->click();
        EXPECT_TRUE(finished.wait(20000));
        EXPECT_EQ(user.pendingAnswers(), 0u);
        return user.boxes().empty() ? QString() : user.boxes().back().text;
    }

    QTemporaryDir directory_;
    QWidget home_;
};

TEST_F(ArchiveMenuTest, ImportThenExportFromTheMenu) {
    const QString backup = directory_.filePath(QStringLiteral("backup.xml"));
    QFile file(backup);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(kBackup);
    file.close();

    ScriptedUser user;
    user.chooseMenu(ArchiveMenu::ImportMessages).chooseFile(backup).answerBox(IDOK);
    EXPECT_EQ(run(user), QStringLiteral("Imported 2 messages."));
    EXPECT_EQ(GSM::sms.messageCount(0), 1);
    EXPECT_EQ(GSM::sms.unreadCount(), 1);
    ASSERT_FALSE(user.menus().empty());
    EXPECT_NE(user.menus().front().find(ArchiveMenu::ExportMessages), nullptr);

    const QString exported = directory_.filePath(QStringLiteral("out.csv"));
    user.forget();
    user.chooseMenu(ArchiveMenu::ExportMessages).chooseFile(exported).answerBox(IDOK);
    EXPECT_EQ(run(user), QStringLiteral("Exported 2 messages to %1.").arg(exported));
    EXPECT_TRUE(QFile::exists(exported));
}

TEST_F(ArchiveMenuTest, AFileThatIsNoBackupIsRefusedWithWhereItStopped) {
    const QString notes = directory_.filePath(QStringLiteral("notes.xml"));
    QFile file(notes);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<?xml version='1.0'?>\n<notes><note/></notes>\n");
    file.close();

    ScriptedUser user;
    user.chooseMenu(ArchiveMenu::ImportMessages).chooseFile(notes).answerBox(IDOK);
    const QString told = run(user);
    EXPECT_TRUE(told.startsWith(QStringLiteral("Nothing was imported."))) << told.toStdString();
    EXPECT_TRUE(told.contains(QStringLiteral("line 2"))) << told.toStdString();
    EXPECT_EQ(GSM::sms.messageCount(0) + GSM::sms.messageCount(1), 0);
}

TEST_F(ArchiveMenuTest, CancellingTheFileChooserDoesNothing) {
    ScriptedUser user;
    user.chooseMenu(ArchiveMenu::ExportMessages).chooseFile(QString());
    ArchiveMenu menu(&home_);
    menu.button()->click();
    EXPECT_FALSE(menu.busy());
    EXPECT_TRUE(user.boxes().empty());
}

TEST(ArchiveOptions, ImportAndExportAreOneJobEach) {
    const struct {
        QStringList arguments;
        bool ok;
        QString importFile;
        QString exportFile;
    } cases[] = {
        {{"--import", "a.xml"}, true, "a.xml", {}},
        {{"--data-dir", "/tmp/p", "--export=b.csv"}, true, {}, "b.csv"},
        {{"--import", "a.xml", "--export", "b.csv"}, false, {}, {}},
        {{"--import"}, false, {}, {}},
    };
    for (const auto& c : cases) {
        QString error;
        const auto options = tessaly::host::parseHostArguments(
            QStringList{QStringLiteral("tessaly-phone")} + c.arguments, &error);
        ASSERT_EQ(options.has_value(), c.ok) << c.arguments.join(u' ').toStdString();
        if (!c.ok)
            continue;
        EXPECT_EQ(options->importFile, c.importFile);
        EXPECT_EQ(options->exportFile, c.exportFile);
    }
}

TEST(ArchiveSummary, SaysWhatWasImportedPresentAndSkipped) {
    const struct {
        tessaly::telephony::archive::ImportCounts counts;
        const char* text;
    } cases[] = {
        {{0, 0, 0, 0}, "Imported 0 messages."},
        {{1, 0, 0, 0}, "Imported 1 message."},
        {{5, 1, 0, 0}, "Imported 5 messages; 1 was already here."},
        {{5, 2, 3, 2}, "Imported 5 messages; 2 were already here; 3 skipped (2 MMS)."},
        {{0, 0, 4, 0}, "Imported 0 messages; 4 skipped."},
    };
    for (const auto& c : cases)
        EXPECT_EQ(tessaly::host::importSummary(c.counts), QString::fromUtf8(c.text));
}

} // namespace
