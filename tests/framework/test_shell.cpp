#include "framework/ui/shell.h"
#include "tests/framework/recording_dialog.h"
#include "tests/framework/window_templates.h"
#include "tests/testkit/window_test.h"

#include "framework/resources/resources.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace tessaly;
using namespace tessaly::testdata;

namespace {

using ShellTest = testkit::WindowTest;

TEST_F(ShellTest, InputPanelRequestsAreRecordedAndChangesReachWindows) {
    setCurrentResources(&windowScript());
    RecordingDialog window(kAllControls);
    ASSERT_TRUE(window.create());
    Shell& shell = Shell::current();
    struct Step {
        int request;
        bool upAfter;
        size_t settingChanges; // after the posted messages were handled
    } const steps[] = {
        {SIP_UP, true, 1},    {SIP_UP, true, 1},         {SIP_UNCHANGED, true, 1},
        {SIP_DOWN, false, 2}, {SIP_FORCEDOWN, false, 2}, {SIP_UP, true, 3},
    };
    for (const Step& step : steps) {
        shell.sipPreference(window.window(), step.request);
        EXPECT_EQ(shell.inputPanelUp(), step.upAfter);
        testkit::pumpMessages();
        EXPECT_EQ(window.entries("settingchange 224").size(), step.settingChanges);
    }
    EXPECT_EQ(shell.inputPanelRequests(),
              (std::vector<int>{SIP_UP, SIP_UP, SIP_UNCHANGED, SIP_DOWN, SIP_FORCEDOWN, SIP_UP}));
    window.destroyWindow();
    setCurrentResources(nullptr);
}

TEST_F(ShellTest, SoundsAreFoundAndPlayedFromTheSoundsFolder) {
    Shell& shell = Shell::current();
    shell.setPlaybackEnabled(false);
    const QString folder = dataDirectory.filePath(QStringLiteral("sounds"));
    QDir().mkpath(folder);
    for (const char* name : {"Ring.wav", "alarm.WAV", "beep.wav", "notes.txt"}) {
        QFile file(folder + u'/' + QString::fromLatin1(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    QDir().mkpath(folder + QStringLiteral("/folder.wav"));
    EXPECT_EQ(shell.soundsFolder(), folder);
    EXPECT_EQ(shell.findFiles(), (QStringList{"alarm.WAV", "beep.wav", "Ring.wav"}));
    EXPECT_EQ(shell.findFiles(QStringLiteral("*.txt")), QStringList{"notes.txt"});

    EXPECT_TRUE(shell.playSound(QStringLiteral("beep.wav")));
    EXPECT_FALSE(shell.playSound(QStringLiteral("missing.wav")));
    EXPECT_FALSE(shell.playSound(QStringLiteral("folder.wav")));
    EXPECT_TRUE(shell.playSound(folder + QStringLiteral("/Ring.wav")));
    EXPECT_TRUE(shell.playSound(QStringLiteral("ring.WAV"))); // names ignore case, as on the phone
    EXPECT_EQ(shell.soundsPlayed(),
              (QStringList{folder + "/beep.wav", folder + "/Ring.wav", folder + "/Ring.wav"}));

    shell.setSoundsFolder(dataDirectory.filePath(QStringLiteral("none")));
    EXPECT_TRUE(shell.findFiles().isEmpty());
    shell.setSoundsFolder(QString());
}

// Playback goes to an external player; a stand-in "paplay" that notes its process id and waits
// shows that a new sound cuts off the one still playing.
TEST_F(ShellTest, ANewSoundCutsOffTheOneStillPlaying) {
    QTemporaryDir bin;
    const QString log = bin.filePath(QStringLiteral("played"));
    QFile player(bin.filePath(QStringLiteral("paplay")));
    ASSERT_TRUE(player.open(QIODevice::WriteOnly));
    player.write(QStringLiteral("#!/bin/sh\necho $$ >> '%1'\nexec sleep 30\n").arg(log).toUtf8());
    player.close();
    player.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", bin.path().toUtf8() + ':' + path);
    const QString folder = dataDirectory.filePath(QStringLiteral("sounds"));
    QDir().mkpath(folder);
    for (const char* name : {"a.wav", "b.wav"})
        QFile(folder + u'/' + QString::fromLatin1(name)).open(QIODevice::WriteOnly);
    Shell& shell = Shell::current();
    shell.setPlaybackEnabled(true);

    const auto players = [&log] {
        QFile file(log);
        return file.open(QIODevice::ReadOnly)
                   ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)
                   : QStringList();
    };
    ASSERT_TRUE(shell.playSound(QStringLiteral("a.wav")));
    ASSERT_TRUE(QTest::qWaitFor([&] { return players().size() == 1; }));
    const QString first = QStringLiteral("/proc/") + players().front();
    ASSERT_TRUE(shell.playSound(QStringLiteral("b.wav")));
    ASSERT_TRUE(QTest::qWaitFor([&] { return players().size() == 2; }));
    // Killed and reaped: its process is gone.
    EXPECT_TRUE(QTest::qWaitFor([&] { return !QFile::exists(first); }));
    const QString second = QStringLiteral("/proc/") + players().back();
    EXPECT_TRUE(QFile::exists(second));

    shell.setPlaybackEnabled(false);
    ASSERT_TRUE(shell.playSound(QStringLiteral("a.wav"))); // recorded, not played, and the
    EXPECT_TRUE(QFile::exists(second));                    // one playing goes on
    qputenv("PATH", path);
    ::kill(pid_t(players().back().toLongLong()), SIGKILL);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !QFile::exists(second); }));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_F(ShellTest, AboutDialogIsShownToThePerson) {
    user.answerBox(IDOK);
    Shell::current().showAbout(nullptr);
    EXPECT_EQ(Shell::current().aboutShown(), 1);
    ASSERT_EQ(user.boxes().size(), 1u);
    EXPECT_EQ(user.boxes()[0].icon(), MB_ICONINFORMATION);
}

TEST(LabelChain, LabelsAreTheirTextWidePlusPaddingAndTenApart) {
    QWidget parent;
    std::vector<std::unique_ptr<StaticLabel>> owned;
    std::vector<StaticLabel*> labels;
    for (const char* text : {"To:", "", "Segment:"}) {
        owned.push_back(std::make_unique<StaticLabel>(&parent));
        owned.back()->setText(QString::fromLatin1(text));
        owned.back()->setGeometry(0, 30, 10, 12);
        labels.push_back(owned.back().get());
    }
    const int w0 = labels[0]->preferredWidth();
    const int w1 = labels[1]->preferredWidth();
    const int w2 = labels[2]->preferredWidth();
    EXPECT_EQ(w1, 16);
    EXPECT_EQ(w0, labels[0]->fontMetrics().horizontalAdvance(QStringLiteral("To:")) + 16);

    EXPECT_EQ(layoutLabelChain(labels, 5, Qt::AlignLeft), 5 + w0 + w1 + w2 + 20);
    EXPECT_EQ(labels[0]->geometry(), QRect(5, 30, w0, 12));
    EXPECT_EQ(labels[1]->x(), 5 + w0 + 10);
    EXPECT_EQ(labels[2]->x(), 5 + w0 + w1 + 20);

    labels[1]->hide(); // hidden labels leave no gap
    EXPECT_EQ(layoutLabelChain(labels, 240, Qt::AlignRight), 240 - w0 - w2 - 10);
    EXPECT_EQ(labels[2]->geometry().right(), 239);
    EXPECT_EQ(labels[0]->x(), 240 - w0 - w2 - 10);
}

} // namespace
