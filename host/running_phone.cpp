#include "host/running_phone.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>

namespace tessaly::host {

namespace {

// One line each way: the link (UTF-8), then the phone's "ok".
constexpr char kAnswer[] = "ok\n";
// A link is a few hundred bytes; a peer that sends more is not a phone.
constexpr qint64 kMaxLine = 64 * 1024;

} // namespace

QString runningPhoneName(const QString& dataDirectory) {
    const QString canonical = QFileInfo(dataDirectory).canonicalFilePath();
    const QByteArray key = QCryptographicHash::hash(
        (canonical.isEmpty() ? QDir::cleanPath(dataDirectory) : canonical).toUtf8(),
        QCryptographicHash::Sha256);
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty())
        folder = QDir::tempPath();
    return folder +
           QStringLiteral("/tessaly-phone-%1").arg(QString::fromLatin1(key.toHex().left(16)));
}

HandOver handToRunningPhone(const QString& name, const QString& link, int timeoutMs) {
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected(timeoutMs))
        return HandOver::NoPhone;
    socket.write(link.toUtf8() + '\n');
    if (!socket.waitForBytesWritten(timeoutMs))
        return HandOver::NoAnswer;
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(timeoutMs))
            return HandOver::NoAnswer;
    }
    return socket.readLine() == kAnswer ? HandOver::HandedOver : HandOver::NoAnswer;
}

RunningPhoneListener::RunningPhoneListener()
    : server_(std::make_unique<QLocalServer>()) {
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    connect(server_.get(), &QLocalServer::newConnection, this,
            &RunningPhoneListener::acceptConnection);
}

RunningPhoneListener::~RunningPhoneListener() = default;

bool RunningPhoneListener::listen(const QString& name, QString* error) {
    if (server_->listen(name))
        return true;
    // Nobody answered there (the caller asked first): the file is a crashed phone's.
    if (server_->serverError() == QAbstractSocket::AddressInUseError) {
        QLocalServer::removeServer(name);
        if (server_->listen(name))
            return true;
    }
    if (error)
        *error = QStringLiteral("cannot listen on %1: %2").arg(name, server_->errorString());
    return false;
}

void RunningPhoneListener::acceptConnection() {
    while (QLocalSocket* socket = server_->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            if (!socket->canReadLine()) {
                if (socket->bytesAvailable() > kMaxLine)
                    socket->abort();
                return;
            }
            const QString link = QString::fromUtf8(socket->readLine()).trimmed();
            socket->write(kAnswer);
            socket->flush();
            socket->disconnectFromServer();
            emit handedOver(link);
        });
    }
}

} // namespace tessaly::host
