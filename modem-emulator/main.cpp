// tessaly-modem-emulator: an emulated GSM modem on a unix socket or a pseudo-terminal.
//
//   tessaly-modem-emulator --socket /run/user/1000/modem.sock   (or @name: abstract namespace)
//   tessaly-modem-emulator --pty
//
// Prints where it listens, then one line per message the host sends:
//   sent <destination> <PDU in hex> <text>
// and reads commands on standard input:
//   deliver <from> <text>    a message arrives from the network (+CMTI when asked for)
//   sim <from> <text>        a message already read sits on the SIM

#include "modem-emulator/emulated_modem.h"
#include "modem-emulator/ports.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QSocketNotifier>
#include <QTimer>

#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <unistd.h>

namespace modem = tessaly::modem;
namespace pdu = tessaly::pdu;

namespace {

pdu::Timestamp now() {
    const QDateTime time = QDateTime::currentDateTime();
    const QDate date = time.date();
    const QTime clock = time.time();
    return {date.year(),
            date.month(),
            date.day(),
            clock.hour(),
            clock.minute(),
            clock.second(),
            time.offsetFromUtc() / 900};
}

void runInput(modem::EmulatedModem& emulated, const QString& line) {
    const QString command = line.section(u' ', 0, 0);
    const QString from = line.section(u' ', 1, 1);
    const QString text = line.section(u' ', 2);
    if ((command == u"deliver" || command == u"sim") && !from.isEmpty()) {
        if (command == u"deliver") {
            emulated.deliverText(from.toStdU16String(), text.toStdU16String(), now());
        } else {
            // Every part of a long text, as a phone leaves a concatenated message on the SIM.
            const auto parts = pdu::splitText(text.toStdU16String(), 0);
            if (!parts) {
                std::printf("too long for one concatenated message (%lld characters)\n",
                            static_cast<long long>(text.size()));
                std::fflush(stdout);
                return;
            }
            for (const pdu::UserData& part : *parts) {
                pdu::Deliver message;
                message.originator = pdu::Address::fromText(from.toStdU16String());
                message.serviceCentreTime = now();
                message.userData = part;
                emulated.store(message, true);
            }
        }
        std::printf("stored %s\n", qPrintable(command));
    } else if (!line.isEmpty()) {
        std::printf("unknown input: %s (deliver|sim <from> <text>)\n", qPrintable(line));
    }
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("An emulated GSM modem for ModemManager"));
    parser.addHelpOption();
    const QCommandLineOption socketOption(QStringLiteral("socket"),
                                          QStringLiteral("Listen on this unix socket."),
                                          QStringLiteral("path"));
    const QCommandLineOption ptyOption(QStringLiteral("pty"),
                                       QStringLiteral("Open a pseudo-terminal."));
    const QCommandLineOption traceOption(QStringLiteral("trace"),
                                         QStringLiteral("Log the AT traffic to stderr."));
    parser.addOptions({socketOption, ptyOption, traceOption});
    parser.process(app);

    std::unique_ptr<modem::Port> port;
    if (parser.isSet(socketOption)) {
        auto socket = std::make_unique<modem::UnixSocketPort>();
        if (!socket->listen(parser.value(socketOption))) {
            std::fprintf(stderr, "cannot listen on %s: %s\n",
                         qPrintable(parser.value(socketOption)), qPrintable(socket->errorString()));
            return 1;
        }
        std::printf("listening on %s\n", qPrintable(parser.value(socketOption)));
        port = std::move(socket);
    } else if (parser.isSet(ptyOption)) {
        auto terminal = std::make_unique<modem::PseudoTerminalPort>();
        if (!terminal->open()) {
            std::fprintf(stderr, "cannot open a pseudo-terminal: %s\n",
                         qPrintable(terminal->errorString()));
            return 1;
        }
        std::printf("pseudo-terminal %s\n", qPrintable(terminal->slavePath()));
        port = std::move(terminal);
    } else {
        parser.showHelp(2);
    }
    std::fflush(stdout);

    const bool trace = parser.isSet(traceOption);
    // Control characters percent-encoded, so that CR, LF and Ctrl-Z show.
    const auto log = [trace](const char* direction, std::string_view bytes) {
        if (trace)
            std::cerr << direction
                      << QByteArray(bytes.data(), qsizetype(bytes.size()))
                             .toPercentEncoding(" ")
                             .constData()
                      << "\n";
    };
    modem::EmulatedModem emulated([&port, log](std::string_view bytes) {
        log("<- ", bytes);
        port->send(bytes);
    });
    port->onReceive = [&emulated, log](std::string_view bytes) {
        log("-> ", bytes);
        emulated.receive(bytes);
    };
    emulated.onSent = [](const modem::SentMessage& message) {
        std::printf("sent %s %s %s\n",
                    qPrintable(QString::fromStdU16String(message.submit.destination.text())),
                    message.hex.c_str(),
                    qPrintable(QString::fromStdU16String(message.submit.userData.text)));
        std::fflush(stdout);
    };

    QTimer ticks;
    QObject::connect(&ticks, &QTimer::timeout, [&emulated] { emulated.tick(); });
    ticks.start(300);

    QSocketNotifier input(0, QSocketNotifier::Read);
    std::string pendingInput;
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        char buffer[1024];
        const ssize_t count = ::read(0, buffer, sizeof buffer);
        if (count <= 0) {
            input.setEnabled(false);
            return;
        }
        pendingInput.append(buffer, std::size_t(count));
        for (std::size_t end; (end = pendingInput.find('\n')) != std::string::npos;) {
            runInput(emulated, QString::fromUtf8(pendingInput.substr(0, end)).trimmed());
            pendingInput.erase(0, end + 1);
        }
    });
    return app.exec();
}
