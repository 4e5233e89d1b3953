#include "framework/ui/shell.h"

#include "framework/datadir.h"
#include "framework/ui/dialog.h"
#include "framework/ui/useragent.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace tessaly {

namespace {

QString soundPlayer() {
    for (const char* player : {"paplay", "aplay"}) {
        const QString path = QStandardPaths::findExecutable(QString::fromLatin1(player));
        if (!path.isEmpty())
            return path;
    }
    return QString();
}

Shell* installedShell = nullptr;

} // namespace

bool Shell::defaultPlayback() {
    return qEnvironmentVariableIsEmpty("TESSALY_TEST") && !soundPlayer().isEmpty();
}

bool Shell::sipPreference(QWidget*, int request) {
    inputPanelRequests_.push_back(request);
    bool up = inputPanelUp_;
    if (request == SIP_UP)
        up = true;
    else if (request == SIP_DOWN || request == SIP_FORCEDOWN)
        up = false;
    if (up != inputPanelUp_) {
        inputPanelUp_ = up;
        broadcastSettingChange(SPI_SETSIPINFO);
    }
    return request >= SIP_UP && request <= SIP_UNCHANGED;
}

QString Shell::soundPath(const QString& name) const {
    if (QFileInfo(name).isAbsolute())
        return QFileInfo(name).isFile() ? name : QString();
    const QDir folder(soundsFolder());
    if (QFileInfo(folder.filePath(name)).isFile())
        return folder.filePath(name);
    // The phone's file names ignore case ("ring.wav" plays ring.WAV).
    for (const QString& file : folder.entryList(QDir::Files))
        if (file.compare(name, Qt::CaseInsensitive) == 0)
            return folder.filePath(file);
    return QString();
}

bool Shell::playSound(const QString& name) {
    const QString path = soundPath(name);
    if (path.isEmpty())
        return false;
    soundsPlayed_.append(path);
    if (playbackEnabled_) {
        const QString player = soundPlayer();
        if (!player.isEmpty() && QCoreApplication::instance()) {
            // A new sound replaces the one still playing.
            if (player_)
                player_->kill();
            player_ = new QProcess(QCoreApplication::instance());
            QObject::connect(player_, &QProcess::finished, player_, &QObject::deleteLater);
            QObject::connect(player_, &QProcess::errorOccurred, player_,
                             [player = player_.data()](QProcess::ProcessError error) {
                                 if (error == QProcess::FailedToStart)
                                     player->deleteLater();
                             });
            player_->start(player, {path});
        }
    }
    return true;
}

QString Shell::soundsFolder() const {
    if (!soundsFolder_.isEmpty())
        return soundsFolder_;
    return QDir(dataDirectory()).filePath(QStringLiteral("sounds"));
}

QStringList Shell::findFiles(const QString& pattern) const {
    return QDir(soundsFolder()).entryList({pattern}, QDir::Files, QDir::Name | QDir::IgnoreCase);
}

void Shell::showAbout(QWidget* owner) {
    ++aboutShown_;
    UserAgent::current().messageBox(owner, QStringLiteral("Tessaly phone suite"),
                                    QStringLiteral("About"), MB_OK | MB_ICONINFORMATION);
}

void Shell::clearRecord() {
    inputPanelUp_ = false;
    inputPanelRequests_.clear();
    soundsPlayed_.clear();
    aboutShown_ = 0;
}

Shell& Shell::current() {
    static Shell defaultShell;
    return installedShell ? *installedShell : defaultShell;
}

void Shell::install(Shell* shell) {
    installedShell = shell;
}

} // namespace tessaly
