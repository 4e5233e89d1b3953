#include "modem-emulator/emulated_modem.h"
#include "modem-emulator/ports.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLocalSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

namespace {

namespace modem = tessaly::modem;

// The emulated modem behind a port, as the program wires it.
struct Wired {
    explicit Wired(modem::Port& port)
        : emulated([&port](std::string_view bytes) { port.send(bytes); }) {
        port.onReceive = [this](std::string_view bytes) { emulated.receive(bytes); };
    }
    modem::EmulatedModem emulated;
};

template <class Condition> bool waitFor(Condition done) {
    QElapsedTimer timer;
    timer.start();
    while (!done() && timer.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

TEST(Ports, AUnixSocketCarriesCommandsAndAnswers) {
    QTemporaryDir folder;
    modem::UnixSocketPort port;
    ASSERT_TRUE(port.listen(folder.filePath(QStringLiteral("modem.sock"))));
    Wired wired(port);
    QLocalSocket host;
    host.connectToServer(folder.filePath(QStringLiteral("modem.sock")));
    ASSERT_TRUE(host.waitForConnected(5000));
    QByteArray answer;
    QObject::connect(&host, &QLocalSocket::readyRead, [&] { answer += host.readAll(); });
    host.write("ATE0\rAT+CGMI\r");
    EXPECT_TRUE(waitFor([&] { return answer.endsWith("Tessaly\r\n\r\nOK\r\n"); })) << answer.data();
}

TEST(Ports, APseudoTerminalCarriesCommandsAndAnswers) {
    modem::PseudoTerminalPort port;
    ASSERT_TRUE(port.open()) << port.errorString().toStdString();
    ASSERT_TRUE(port.slavePath().startsWith(QStringLiteral("/dev/pts/")));
    Wired wired(port);
    const int host = ::open(port.slavePath().toLocal8Bit().constData(), O_RDWR | O_NOCTTY);
    ASSERT_GE(host, 0);
    ASSERT_EQ(::write(host, "ATE0\rAT+CPIN?\r", 14), 14);
    std::string answer;
    ASSERT_EQ(::fcntl(host, F_SETFL, O_NONBLOCK), 0);
    EXPECT_TRUE(waitFor([&] {
        char buffer[256];
        const ssize_t count = ::read(host, buffer, sizeof buffer);
        if (count > 0)
            answer.append(buffer, std::size_t(count));
        return answer.ends_with("+CPIN: READY\r\n\r\nOK\r\n");
    })) << answer;
    ::close(host);
}

} // namespace
