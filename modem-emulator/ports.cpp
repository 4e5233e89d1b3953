#include "modem-emulator/ports.h"

#include <QLocalSocket>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace tessaly::modem {

UnixSocketPort::UnixSocketPort(QObject* parent)
    : Port(parent) {
    connect(&server_, &QLocalServer::newConnection, this, &UnixSocketPort::accept);
}

bool UnixSocketPort::listen(const QString& name) {
    if (name.startsWith(u'@')) {
        server_.setSocketOptions(QLocalServer::AbstractNamespaceOption);
        return server_.listen(name.mid(1));
    }
    QLocalServer::removeServer(name);
    return server_.listen(name);
}

void UnixSocketPort::accept() {
    while (QLocalSocket* socket = server_.nextPendingConnection()) {
        if (client_)
            client_->disconnectFromServer();
        client_ = socket;
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            const QByteArray bytes = socket->readAll();
            if (onReceive && socket == client_)
                onReceive(std::string_view(bytes.constData(), std::size_t(bytes.size())));
        });
    }
}

void UnixSocketPort::send(std::string_view bytes) {
    if (client_)
        client_->write(bytes.data(), qint64(bytes.size()));
}

PseudoTerminalPort::PseudoTerminalPort(QObject* parent)
    : Port(parent) {}

PseudoTerminalPort::~PseudoTerminalPort() {
    notifier_.reset();
    if (slave_ >= 0)
        ::close(slave_);
    if (master_ >= 0)
        ::close(master_);
}

bool PseudoTerminalPort::open() {
    master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0) {
        error_ = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    slavePath_ = QString::fromLocal8Bit(::ptsname(master_));
    slave_ = ::open(::ptsname(master_), O_RDWR | O_NOCTTY);
    termios mode{};
    if (slave_ < 0 || ::tcgetattr(slave_, &mode) != 0) {
        error_ = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    ::cfmakeraw(&mode);
    ::tcsetattr(slave_, TCSANOW, &mode);
    notifier_ = std::make_unique<QSocketNotifier>(master_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &PseudoTerminalPort::readMaster);
    return true;
}

void PseudoTerminalPort::readMaster() {
    char buffer[4096];
    const ssize_t count = ::read(master_, buffer, sizeof buffer);
    if (count > 0 && onReceive)
        onReceive(std::string_view(buffer, std::size_t(count)));
}

void PseudoTerminalPort::send(std::string_view bytes) {
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(master_, bytes.data() + written, bytes.size() - written);
        if (count <= 0 && errno != EINTR)
            return;
        written += std::size_t(std::max<ssize_t>(count, 0));
    }
}

} // namespace tessaly::modem
