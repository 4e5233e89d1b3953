#pragma once

// Where the emulated modem's AT port lives: a unix socket (what ModemManager's test profiles
// connect to) or a pseudo-terminal (what a serial modem looks like). Both only move bytes;
// whoever owns the port connects `onReceive` and `send` to an EmulatedModem.

#include <QLocalServer>
#include <QObject>
#include <QPointer>
#include <QSocketNotifier>
#include <QString>

#include <functional>
#include <memory>
#include <string_view>

class QLocalSocket;

namespace tessaly::modem {

class Port : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    virtual void send(std::string_view bytes) = 0;
    std::function<void(std::string_view)> onReceive;
};

// Listens on a socket file (a name starting with '@' lies in the abstract namespace); the
// latest client is the one that talks, as when a program reopens a serial port.
class UnixSocketPort final : public Port {
    Q_OBJECT
public:
    explicit UnixSocketPort(QObject* parent = nullptr);
    bool listen(const QString& name);
    QString errorString() const { return server_.errorString(); }
    void send(std::string_view bytes) override;

private:
    void accept();
    QLocalServer server_;
    QPointer<QLocalSocket> client_;
};

// A pseudo-terminal in raw mode; the program under test opens slavePath().
class PseudoTerminalPort final : public Port {
    Q_OBJECT
public:
    explicit PseudoTerminalPort(QObject* parent = nullptr);
    ~PseudoTerminalPort() override;
    bool open();
    QString slavePath() const { return slavePath_; }
    QString errorString() const { return error_; }
    void send(std::string_view bytes) override;

private:
    void readMaster();
    int master_ = -1;
    int slave_ = -1; // kept open so that reads do not fail while nobody else holds the slave
    QString slavePath_;
    QString error_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace tessaly::modem
