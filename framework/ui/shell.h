#pragma once

// The phone's shell: input-panel requests, sound playback, the sounds folder and the suite's
// about dialog. Every request is recorded, so that tests and the host can see them. The host
// (or a test) may install its own Shell.

#include "framework/win32types.h"

#include <QPointer>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <vector>

class QWidget;

// Input-panel preferences.
constexpr int SIP_UP = 0;
constexpr int SIP_DOWN = 1;
constexpr int SIP_FORCEDOWN = 2;
constexpr int SIP_UNCHANGED = 3;

namespace tessaly {

class Shell {
public:
    virtual ~Shell() = default;

    // Raises or lowers the software input panel for a window. A change of the panel's state
    // reaches every window as the setting change SPI_SETSIPINFO on a later loop turn.
    virtual bool sipPreference(QWidget* window, int request);
    bool inputPanelUp() const { return inputPanelUp_; }
    const std::vector<int>& inputPanelRequests() const { return inputPanelRequests_; }

    // Plays a .wav file: a bare name is looked up in the sounds folder, ignoring case as the
    // phone's file system does. Returns false when the file does not exist. A sound still
    // playing is cut off. Playback itself is optional (see setPlaybackEnabled); the request
    // is recorded (as the file's path) either way.
    virtual bool playSound(const QString& name);
    // The file a sound name stands for, or an empty string when there is none.
    QString soundPath(const QString& name) const;
    const QStringList& soundsPlayed() const { return soundsPlayed_; }
    // Plays through an external player (paplay or aplay) when one is installed and tests are
    // not running; off otherwise.
    void setPlaybackEnabled(bool enabled) { playbackEnabled_ = enabled; }
    bool playbackEnabled() const { return playbackEnabled_; }

    // The folder searched for sounds: "sounds" in the data directory unless set.
    QString soundsFolder() const;
    void setSoundsFolder(const QString& path) { soundsFolder_ = path; }
    // File names (not paths) matching the pattern in the sounds folder, sorted by name.
    virtual QStringList findFiles(const QString& pattern = QStringLiteral("*.wav")) const;

    // The suite's about dialog (a message box through the UserAgent).
    virtual void showAbout(QWidget* owner);
    int aboutShown() const { return aboutShown_; }

    // Forgets the recorded requests (and puts the input panel down).
    void clearRecord();

    static Shell& current();
    // Installs a shell (not owned); nullptr restores the default one.
    static void install(Shell* shell);

private:
    bool inputPanelUp_ = false;
    std::vector<int> inputPanelRequests_;
    QStringList soundsPlayed_;
    QPointer<QProcess> player_;
    QString soundsFolder_;
    bool playbackEnabled_ = defaultPlayback();
    int aboutShown_ = 0;

    static bool defaultPlayback();
};

} // namespace tessaly
