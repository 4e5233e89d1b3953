// The phone against a real ModemManager: a private D-Bus bus, the daemon in its test mode, and
// the project's modem emulator as the modem (ModemManager's test profile connects to the
// emulator's unix socket). Skipped when ModemManager or dbus-daemon is not installed.

#include "framework/ui/dialog.h"
#include "gsm/device.h"
#include "gsm/preferences.h"
#include "host/host_session.h"
#include "host/modem_watcher.h"
#include "host/phone_window.h"
#include "host/radio_choice.h"
#include "modem-emulator/emulated_modem.h"
#include "modem-emulator/ports.h"
#include "resources/resource.h"
#include "suite/modemmanager/modemmanager_backend.h"
#include "suite/telephony/events.h"
#include "suite/telephony/telephony.h"
#include "tests/e2e/phone_test_support.h"
#include "tests/testkit/scripted_user.h"
#include "tests/testkit/window_driver.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

namespace modem = tessaly::modem;
namespace pdu = tessaly::pdu;
namespace telephony = tessaly::telephony;
namespace testkit = tessaly::testkit;
using e2e_test::windowsOf;

constexpr auto kService = "org.freedesktop.ModemManager1";
constexpr int kModemStateDisabled = 3;
constexpr int kModemStateRegistered = 8;
constexpr int kWaitMs = 90'000;

QString findProgram(const QString& name) {
    return QStandardPaths::findExecutable(
        name, {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/bin"), QStringLiteral("/sbin"),
               QStringLiteral("/usr/local/sbin"), QStringLiteral("/usr/local/bin")});
}

// Runs the event loop (and the telephony library's queue) until `done` or the time is up.
template <class Condition> bool waitFor(Condition done, int timeoutMs = kWaitMs) {
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        telephony::EventQueue::instance().deliverAll();
        QThread::msleep(5);
    }
    return true;
}

class ModemEndToEnd : public ::testing::Test {
protected:
    void SetUp() override {
        const QString modemManager = findProgram(QStringLiteral("ModemManager"));
        const QString dbusDaemon = findProgram(QStringLiteral("dbus-daemon"));
        if (modemManager.isEmpty() || dbusDaemon.isEmpty())
            GTEST_SKIP() << "ModemManager or dbus-daemon is not installed (tools/install-deps "
                            "installs the Debian packages modemmanager and dbus-daemon)";
        ASSERT_TRUE(work_.isValid());
        ASSERT_TRUE(e2e_test::openPhoneData(work_.filePath(QStringLiteral("data"))));

        // A private bus, so that nothing of the machine's own buses is touched.
        bus_.setProgram(dbusDaemon);
        bus_.setArguments({QStringLiteral("--session"), QStringLiteral("--nofork"),
                           QStringLiteral("--nopidfile"), QStringLiteral("--print-address=1")});
        bus_.start();
        ASSERT_TRUE(bus_.waitForReadyRead(20'000)) << "dbus-daemon did not start";
        busAddress_ = QString::fromLocal8Bit(bus_.readLine()).trimmed();
        ASSERT_FALSE(busAddress_.isEmpty());
        connection_ = std::make_unique<QDBusConnection>(
            QDBusConnection::connectToBus(busAddress_, QStringLiteral("modem-e2e")));
        ASSERT_TRUE(connection_->isConnected());

        // The emulated modem on a unix socket in this test's folder.
        socketPath_ = work_.filePath(QStringLiteral("modem.sock"));
        emulated_ = std::make_unique<modem::EmulatedModem>(
            [this](std::string_view bytes) { port_.send(bytes); });
        port_.onReceive = [this](std::string_view bytes) { emulated_->receive(bytes); };
        ASSERT_TRUE(port_.listen(socketPath_)) << port_.errorString().toStdString();
        QObject::connect(&ticks_, &QTimer::timeout, [this] { emulated_->tick(); });
        ticks_.start(300);

        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), busAddress_);
        modemManager_.setProcessEnvironment(environment);
        // Its debug log goes to a file, printed when the test fails.
        modemManager_.setStandardOutputFile(QProcess::nullDevice());
        modemManager_.setStandardErrorFile(QProcess::nullDevice());
        modemManager_.setProgram(modemManager);
        modemManager_.setArguments(
            {QStringLiteral("--test-session"), QStringLiteral("--test-enable"),
             QStringLiteral("--test-no-udev"), QStringLiteral("--no-auto-scan"),
             QStringLiteral("--log-level=DEBUG"),
             QStringLiteral("--log-file=") + work_.filePath(QStringLiteral("modemmanager.log"))});
        modemManager_.start();
        ASSERT_TRUE(modemManager_.waitForStarted(10'000));
        ASSERT_TRUE(waitFor([this] {
            return connection_->interface()->isServiceRegistered(kService).value();
        })) << "ModemManager did not appear on the bus";
    }

    void TearDown() override {
        telephony::setRadioBackend(nullptr);
        if (HasFailure())
            printModemManagerLog();
        ticks_.stop();
        for (QProcess* process : {&modemManager_, &bus_}) {
            if (process->state() == QProcess::NotRunning)
                continue;
            process->terminate();
            if (!process->waitForFinished(5000))
                process->kill();
            process->waitForFinished(2000);
        }
        if (connection_)
            QDBusConnection::disconnectFromBus(QStringLiteral("modem-e2e"));
        e2e_test::closePhoneData();
    }

    // What ModemManager's plugin tests do: a virtual device whose AT port is a unix socket.
    void createModem() {
        QDBusMessage setProfile = QDBusMessage::createMethodCall(
            kService, QStringLiteral("/org/freedesktop/ModemManager1"),
            QStringLiteral("org.freedesktop.ModemManager1.Test"), QStringLiteral("SetProfile"));
        setProfile << QStringLiteral("tessaly") << QStringLiteral("generic")
                   << QStringList{socketPath_};
        const QDBusMessage reply = connection_->call(setProfile);
        ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
        // The probe ends with the modem disabled; the backend enables it.
        ASSERT_TRUE(waitFor([this] {
            const auto found = telephony::ModemManagerBackend::find(*connection_);
            return found && modemState(found->modemPath()) >= kModemStateDisabled;
        })) << "ModemManager never finished probing the emulator";
    }

    int modemState(const QString& path) const {
        QDBusMessage get = QDBusMessage::createMethodCall(
            kService, path, QStringLiteral("org.freedesktop.DBus.Properties"),
            QStringLiteral("Get"));
        get << QStringLiteral("org.freedesktop.ModemManager1.Modem") << QStringLiteral("State");
        const QDBusMessage reply = connection_->call(get);
        return reply.arguments().isEmpty()
                   ? 0
                   : reply.arguments().at(0).value<QDBusVariant>().variant().toInt();
    }

    void printModemManagerLog() const {
        QFile log(work_.filePath(QStringLiteral("modemmanager.log")));
        if (!log.open(QIODevice::ReadOnly))
            return;
        const QList<QByteArray> lines = log.readAll().split('\n');
        std::fprintf(stderr, "---- the last lines of ModemManager's log\n");
        for (qsizetype i = std::max<qsizetype>(0, lines.size() - 60); i < lines.size(); ++i)
            std::fprintf(stderr, "%s\n", lines[i].constData());
        std::fprintf(stderr, "---- commands the emulator did not know: %zu\n",
                     emulated_ ? emulated_->unknownCommands().size() : 0);
    }

    static std::vector<std::u16string> inboxTexts() {
        std::vector<std::u16string> texts;
        GSM::MessageContainer* inbox =
            GSM::sms.getMessages(GSM::Sms::FolderInbox, GSM::Sms::SortByDate);
        for (int i = 0; inbox && i < inbox->size(); ++i)
            texts.emplace_back(inbox->get(i)->getText());
        return texts;
    }
    static bool inboxHas(const std::u16string& text) {
        const std::vector<std::u16string> texts = inboxTexts();
        return std::find(texts.begin(), texts.end(), text) != texts.end();
    }

    static GSM::Message* queue(const std::u16string& to, const std::u16string& text) {
        GSM::Message* message = GSM::Message::make();
        message->getContacts()->add(to.c_str(), 0);
        message->setText(text.c_str());
        message->setValidityPeriod(GSM::Message::OneDay);
        EXPECT_TRUE(message->endEdit(false).isOk());
        return message;
    }

    QTemporaryDir work_;
    QProcess bus_;
    QProcess modemManager_;
    QString busAddress_;
    QString socketPath_;
    std::unique_ptr<QDBusConnection> connection_;
    modem::UnixSocketPort port_;
    std::unique_ptr<modem::EmulatedModem> emulated_;
    QTimer ticks_;
};

TEST_F(ModemEndToEnd, SendsAndReceivesThroughModemManager) {
    // A message waits on the SIM before anything starts.
    pdu::Deliver onSim;
    onSim.originator = pdu::Address::fromText(u"+447700900555");
    onSim.serviceCentreTime = {2026, 1, 2, 3, 4, 5, 0};
    onSim.userData.text = u"Left on the SIM";
    ASSERT_TRUE(emulated_->store(onSim, true));
    createModem();

    testkit::ScriptedUser user;
    tessaly::host::PhoneWindow phone;
    phone.show();
    tessaly::host::HostSession session(&phone);
    ASSERT_TRUE(e2e_test::startModule(session));

    const tessaly::host::RadioChoice radio =
        tessaly::host::chooseRadio(tessaly::host::RadioKind::ModemManager, *connection_);
    ASSERT_TRUE(radio.ok) << radio.error.toStdString();
    EXPECT_EQ(radio.description, QStringLiteral("ModemManager: Tessaly Emulated GSM modem"));
    auto* backend = static_cast<telephony::ModemManagerBackend*>(telephony::radioBackend());
    ASSERT_TRUE(waitFor([&] { return modemState(backend->modemPath()) >= kModemStateRegistered; }))
        << "the backend did not enable the modem";

    // The SIM transfer: offered, moved into the store, and only then gone from the modem.
    ASSERT_TRUE(waitFor([] { return !windowsOf(IDD_SIM_TRANSFER).empty(); }))
        << "the SIM message was not offered";
    user.answerBox(IDOK);
    windowsOf(IDD_SIM_TRANSFER).front()->sendCommand(IDC_SIM_YES);
    EXPECT_TRUE(waitFor([] { return inboxHas(u"Left on the SIM"); }));
    EXPECT_TRUE(waitFor([&] { return emulated_->storedCount("SM") == 0; }))
        << "the modem's copy of the SIM message was not deleted";
    EXPECT_TRUE(waitFor([&] { return user.boxes().size() == 1; }));

    // The device answers from the modem: registered at home on the emulator's network.
    EXPECT_TRUE(waitFor([] {
        return std::u16string(GSM::device.operatorName()) == u"Tessaly Net" &&
               GSM::device.getState() == GSM::Device::StateRegisteredHome;
    })) << "operator \""
        << QString::fromStdU16String(GSM::device.operatorName()).toStdString() << "\", state "
        << GSM::device.getState();
    std::printf("the modem's signal as the phone shows it: %d %%\n", GSM::device.signalStrength());

    // SEND from the composer: the message reaches the emulator as a correct SUBMIT, with the
    // Sending page's validity (one day) and service centre.
    GSM::MainPreferences& sending = *GSM::Preferences::getMainPreferences();
    ASSERT_TRUE(sending.setValidityPeriod(GSM::Message::OneDay).isOk());
    GSM::ServiceCentreList& centres = *sending.serviceCentres();
    ASSERT_TRUE(centres.add(u"Operator", u"+447700900900").isOk());
    ASSERT_TRUE(centres.setPreferred(centres.count() - 1).isOk());
    ASSERT_TRUE(centres.commit(true).isOk());
    phone.homeScreen()->messagesButton()->click();
    ASSERT_TRUE(waitFor([] { return !windowsOf(IDD_MAIN).empty(); }));
    ASSERT_TRUE(testkit::chooseCommand(*windowsOf(IDD_MAIN).front(), IDM_MAIN_NEW));
    ASSERT_TRUE(waitFor([] { return !windowsOf(IDD_COMPOSER).empty(); }));
    tessaly::Dialog& composer = *windowsOf(IDD_COMPOSER).front();
    ASSERT_TRUE(testkit::type(composer, IDC_COMPOSE_TO, QStringLiteral("+447700900123")));
    ASSERT_TRUE(
        testkit::type(composer, IDC_COMPOSE_TEXT, QStringLiteral("Hello from Tessaly {€} ✓")));
    user.answerBox(IDYES); // the sender information is empty: send anyway
    user.answerBox(IDOK);  // sent
    ASSERT_TRUE(testkit::click(composer, IDC_COMPOSE_SEND));
    ASSERT_TRUE(waitFor([&] { return emulated_->sent().size() == 1; }))
        << "nothing reached the modem";
    const pdu::Submit& submit = emulated_->sent()[0].submit;
    EXPECT_EQ(submit.destination.text(), u"+447700900123");
    // The composer framed the typed text with its greeting and closing.
    GSM::MessageContainer* outbox =
        GSM::sms.getMessages(GSM::Sms::FolderOutbox, GSM::Sms::SortByDate);
    ASSERT_TRUE(outbox && outbox->size() > 0);
    EXPECT_EQ(submit.userData.text, std::u16string(outbox->get(outbox->size() - 1)->getText()));
    EXPECT_NE(submit.userData.text.find(u"Hello from Tessaly {€} ✓"), std::u16string::npos);
    EXPECT_EQ(submit.userData.alphabet, pdu::Alphabet::Ucs2);
    EXPECT_EQ(submit.validity, pdu::Validity::relativeCode(GSM::Message::OneDay));
    const std::u16string centre = outbox->get(outbox->size() - 1)->getServiceCentre();
    EXPECT_EQ(centre, u"+447700900900");
    ASSERT_TRUE(emulated_->sent()[0].serviceCentre.has_value()) << "the PDU names no centre";
    EXPECT_EQ(emulated_->sent()[0].serviceCentre->text(), centre);
    ASSERT_TRUE(waitFor([&] { return user.boxes().size() == 3; }));
    EXPECT_EQ(user.boxes().back().text, QStringLiteral("Your message was sent successfully."));

    // A send the network refuses ends Failed, and the completion shows the modem's words.
    emulated_->failNextSend(38);
    user.answerBox(IDOK);
    GSM::Message* refused = queue(u"+447700900124", u"This one is refused");
    ASSERT_TRUE(waitFor([&] { return refused->getStatus() == GSM::Message::Failed; }));
    ASSERT_TRUE(waitFor([&] { return user.boxes().size() == 4; }));
    EXPECT_FALSE(user.boxes().back().text.isEmpty());
    EXPECT_NE(user.boxes().back().text, QStringLiteral("Your message was sent successfully."));
    std::printf("the modem's refusal as the completion shows it: %s\n",
                qPrintable(user.boxes().back().text));

    // A network timeout (+CMS ERROR 332) is temporary: the message waits for its next attempt
    // instead of failing, and Send now sends it at once.
    user.answerBox(IDOK);
    emulated_->failNextSend(332);
    GSM::Message* delayed = queue(u"+447700900125", u"This one waits a while");
    ASSERT_TRUE(waitFor([&] { return !emulated_->failsNextSend(); })) << "the modem was not asked";
    const std::size_t sentBefore = emulated_->sent().size();
    // Once the modem's answer is in, the message waits for its next attempt.
    ASSERT_TRUE(waitFor([&] {
        GSM::sms.setMessageStatus(delayed->getId(), GSM::Message::SendNow);
        return emulated_->sent().size() > sentBefore;
    })) << "Send now did not send the waiting message";
    EXPECT_EQ(user.boxes().size(), 4u) << "a message waiting to be tried again has not ended";
    ASSERT_TRUE(waitFor([&] { return delayed->getStatus() == GSM::Message::Sent; }));
    EXPECT_EQ(emulated_->sent().size(), sentBefore + 1);
    ASSERT_TRUE(waitFor([&] { return user.boxes().size() == 5; }));

    // Ten messages through ModemManager: the longest time the user-interface thread spends
    // in one turn of its event loop while they go out (every D-Bus call is asynchronous, so
    // nothing waits for the daemon or the modem there). A figure, not a test of speed.
    user.answerBox(IDOK);
    std::vector<GSM::Message*> ten;
    for (int i = 0; i < 10; ++i)
        ten.push_back(queue(u"+4477009002" + QString::number(10 + i).toStdU16String(),
                            u"Message " + QString::number(i).toStdU16String()));
    qint64 longestTurnMs = 0;
    QElapsedTimer sendingFor;
    sendingFor.start();
    while (!std::all_of(ten.begin(), ten.end(), [](GSM::Message* message) {
        return message->getStatus() == GSM::Message::Sent;
    })) {
        ASSERT_LT(sendingFor.elapsed(), kWaitMs) << "the ten messages did not go out";
        QElapsedTimer turn;
        turn.start();
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        telephony::EventQueue::instance().deliverAll();
        longestTurnMs = std::max(longestTurnMs, turn.elapsed());
        QThread::msleep(1);
    }
    ASSERT_TRUE(waitFor([&] { return user.boxes().size() == 6; }));
    std::printf("ten messages through ModemManager in %lld ms; the longest event-loop turn "
                "took %lld ms\n",
                static_cast<long long>(sendingFor.elapsed()),
                static_cast<long long>(longestTurnMs));

    // A three-part message with an emoji goes out as three UCS-2 parts of one concatenated
    // message, which read together give the text.
    user.answerBox(IDOK);
    const std::u16string emojiText = u"Grüße 😀 " + std::u16string(140, u'ж');
    const std::size_t partsBefore = emulated_->sent().size();
    GSM::Message* long3 = queue(u"+447700900126", emojiText);
    ASSERT_TRUE(waitFor([&] { return long3->getStatus() == GSM::Message::Sent; }));
    ASSERT_EQ(emulated_->sent().size(), partsBefore + 3);
    std::u16string joined;
    for (std::size_t i = partsBefore; i < partsBefore + 3; ++i) {
        const pdu::UserData& part = emulated_->sent()[i].submit.userData;
        EXPECT_EQ(part.alphabet, pdu::Alphabet::Ucs2);
        ASSERT_TRUE(part.concatenation.has_value());
        EXPECT_EQ(part.concatenation->total, 3);
        EXPECT_EQ(part.concatenation->sequence, int(i - partsBefore) + 1);
        EXPECT_EQ(part.concatenation->reference,
                  emulated_->sent()[partsBefore].submit.userData.concatenation->reference);
        joined += part.text;
    }
    EXPECT_EQ(joined, emojiText);
    ASSERT_TRUE(waitFor([&] { return user.boxes().size() == 7; }));

    // A status report asked for on the Sending page: the emulator's network reports delivery
    // with +CDS, ModemManager matches it to the message, and the store keeps the time.
    user.answerBox(IDOK);
    ASSERT_TRUE(sending.setStatusReport(true).isOk());
    GSM::Message* reported = queue(u"+447700900127", u"Tell me when it arrives");
    ASSERT_TRUE(waitFor([&] { return reported->getStatus() == GSM::Message::Sent; }));
    EXPECT_TRUE(emulated_->sent().back().submit.statusReportRequest);
    EXPECT_TRUE(waitFor([&] { return fileTimeToUInt64(reported->deliveredTo(0)) != 0; }))
        << "no delivery report reached the store";
    ASSERT_TRUE(waitFor([&] { return user.boxes().size() == 8; }));
    ASSERT_TRUE(sending.setStatusReport(false).isOk());

    // RECEIVE: messages injected at the emulator land in the Inbox with the new-message
    // notification, a long one (three parts) and one with an emoji reassembled, and the
    // modem's copies are deleted.
    const std::u16string longText(400, u'z');
    emulated_->deliverText(u"+447700900777", emojiText, {2026, 11, 23, 17, 59, 0, 0});
    emulated_->deliverText(u"+447700900777", u"Reply from the network 😀",
                           {2026, 11, 23, 18, 0, 0, 0});
    emulated_->deliverText(u"Bank", longText, {2026, 11, 23, 18, 1, 0, 0});
    ASSERT_TRUE(waitFor([&] {
        return inboxHas(u"Reply from the network 😀") && inboxHas(longText) && inboxHas(emojiText);
    })) << "the received messages did not reach the Inbox";
    ASSERT_TRUE(waitFor([] { return !windowsOf(IDD_NEW_MESSAGE_NOTIFICATION).empty(); }));
    EXPECT_TRUE(waitFor([&] { return emulated_->storedCount("ME") == 0; }))
        << "the modem's copies of received messages were not deleted";
    EXPECT_EQ(phone.homeScreen()->unreadText(), QStringLiteral("3 new messages"));
    waitFor([] { return false; }, 300);
    EXPECT_TRUE(e2e_test::savePicture(phone, QStringLiteral("modem_new_message.png")));
    session.stop();
}

// A modem that comes after the phone started is used without a restart, and when ModemManager
// goes the simulator takes over again, with a message queued meanwhile kept.
TEST_F(ModemEndToEnd, AModemThatComesAndGoesIsFollowed) {
    testkit::ScriptedUser user;
    user.answerBox(IDOK); // sent through the modem
    user.answerBox(IDOK); // sent through the simulator
    tessaly::host::PhoneWindow phone;
    tessaly::host::HostSession session(&phone);
    ASSERT_TRUE(e2e_test::startModule(session));
    ASSERT_TRUE(tessaly::host::chooseRadio(tessaly::host::RadioKind::Auto, *connection_).ok);
    EXPECT_EQ(telephony::radioDescription(), u"simulator") << "no modem yet";
    tessaly::host::ModemWatcher watcher(*connection_);

    createModem();
    ASSERT_TRUE(waitFor([] { return telephony::radioDescription() != u"simulator"; }))
        << "the modem that appeared was not taken";
    EXPECT_TRUE(waitFor([] {
        return std::u16string(GSM::device.operatorName()) == u"Tessaly Net";
    })) << "the device does not answer from the modem";
    GSM::Message* first = queue(u"+447700900130", u"Through the modem that came");
    ASSERT_TRUE(waitFor([&] { return first->getStatus() == GSM::Message::Sent; }));
    EXPECT_EQ(emulated_->sent().size(), 1u);

    // ModemManager ends: the simulator takes over, and a message queued now goes out there.
    modemManager_.terminate();
    ASSERT_TRUE(modemManager_.waitForFinished(10'000));
    ASSERT_TRUE(waitFor([] { return telephony::radioDescription() == u"simulator"; }))
        << "the vanished modem is still in use";
    EXPECT_EQ(std::u16string(GSM::device.operatorName()), u"Tessaly Mobile");
    GSM::Message* second = queue(u"+447700900131", u"After the modem went");
    EXPECT_TRUE(waitFor([&] { return second->getStatus() == GSM::Message::Sent; }));
    EXPECT_EQ(emulated_->sent().size(), 1u) << "nothing more reached the gone modem";
    EXPECT_TRUE(waitFor([&] { return user.boxes().size() == 2; }));
    session.stop();
}

} // namespace
