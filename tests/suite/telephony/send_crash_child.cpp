// The sender that the crash test (test_send_crash.cpp) kills at random instants.
//
//   send_crash_child DATABASE LOG each|all RECIPIENTS
//
// On a store without messages it hands a text over as SEND does: `all` as one two-part
// message to every recipient, `each` as one message per recipient in one hand-over. Then it
// lets the simulated radio send and exits when the queue is done. Every segment the radio puts
// on the air is appended to LOG as "id recipient segment" before the store records it.

#include "gsm/gsm.h"
#include "suite/telephony/host_hooks.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"

#include <QCoreApplication>
#include <QString>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <string>

namespace {

namespace telephony = tessaly::telephony;

std::u16string recipientNumber(int index) {
    return QStringLiteral("+4917%1").arg(index, 7, 10, QLatin1Char('0')).toStdU16String();
}

bool handOver(bool oneMessage, int recipients) {
    if (oneMessage) {
        GSM::Message* message = GSM::Message::make();
        if (!message)
            return false;
        for (int i = 0; i < recipients; ++i)
            message->getContacts()->add(recipientNumber(i).c_str(), 0);
        message->setText(std::u16string(200, u'x').c_str()); // two parts
        return message->endEdit(false).isOk();
    }
    if (!GSM::sms.beginHandOver().isOk())
        return false;
    for (int i = 0; i < recipients; ++i) {
        GSM::Message* message = GSM::Message::make();
        if (!message)
            return false;
        message->getContacts()->add(recipientNumber(i).c_str(), 0);
        message->setText((u"Hello " + recipientNumber(i)).c_str());
        message->endEdit(false);
    }
    return GSM::sms.endHandOver().isOk();
}

int messagesToSend() {
    GSM::MessageContainer* outbox =
        GSM::sms.getMessages(GSM::Sms::FolderOutbox, GSM::Sms::SortByDate);
    int count = 0;
    for (int i = 0; outbox && i < outbox->size(); ++i)
        count += outbox->get(i)->getStatus() == GSM::Message::SendNow;
    return count;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc != 5) {
        std::fprintf(stderr, "usage: send_crash_child DATABASE LOG each|all RECIPIENTS\n");
        return 2;
    }
    telephony::Options options;
    options.databasePath = QString::fromLocal8Bit(argv[1]);
    options.segmentDelayMs = 1; // slow enough for kills to fall between segments
    if (!telephony::open(options).isOk())
        return 3;
    const int log = ::open(argv[2], O_WRONLY | O_APPEND | O_CREAT, 0600);
    if (log < 0)
        return 4;
    // One write per line: a kill leaves whole lines, and the kernel keeps what was written.
    telephony::simulator::watchTransmissions([log](long id, int recipient, int segment, int) {
        const std::string line = std::to_string(id) + ' ' + std::to_string(recipient) + ' ' +
                                 std::to_string(segment) + '\n';
        if (::write(log, line.data(), line.size()) != ssize_t(line.size()))
            std::_Exit(5);
    });
    telephony::HostHooks hooks;
    hooks.openSendingCompletion = [](GSM::Result, bool) { QCoreApplication::quit(); };
    telephony::installHostHooks(std::move(hooks));

    if (GSM::sms.messageCount(GSM::Sms::FolderOutbox) == 0 &&
        !handOver(QByteArray(argv[3]) == "all", QByteArray(argv[4]).toInt()))
        return 6;
    if (messagesToSend() == 0)
        return 0;
    const int status = app.exec();
    telephony::close();
    return status;
}
