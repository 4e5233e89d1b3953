#include "framework/datadir.h"
#include "framework/registry/profile.h"
#include "suite/host/demo_data.h"
#include "suite/host/host_session.h"
#include "suite/host/phone_window.h"
#include "suite/host/system_language.h"
#include "suite/telephony/events.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"
#include "tests/module/log_capture.h"
#include "util/registry_key.h"

#include "framework/time/clock.h"

#include <QCoreApplication>
#include <QPushButton>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

namespace sim = tessaly::telephony::simulator;
using module_test::LogCapture;

class PhoneEndToEnd : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dataDir_.isValid());
        tessaly::setDataDirectory(dataDir_.path());
        ASSERT_TRUE(tessaly::host::recordSystemLanguage(QStringLiteral("en_GB.UTF-8")));
        tessaly::telephony::Options options;
        options.segmentDelayMs = 0;
        options.simTransferDelayMs = 0;
        ASSERT_TRUE(tessaly::telephony::open(options).isOk());
    }
    void TearDown() override {
        tessaly::telephony::close();
        tessaly::setDataDirectory(QString());
    }

    static void settle() {
        for (int round = 0; round < 50; ++round) {
            QCoreApplication::processEvents();
            tessaly::telephony::EventQueue::instance().deliverAll();
        }
    }

private:
    QTemporaryDir dataDir_;
};

TEST_F(PhoneEndToEnd, TheHostLoadsTheModuleRoutesEventsToItAndUnloadsIt) {
    ASSERT_EQ(tessaly::host::seedDemoData(tessaly::Clock::current().localNow()),
              tessaly::host::DemoSeeding::Seeded);
    tessaly::host::PhoneWindow phone;
    phone.show();
    tessaly::host::HostSession session(&phone);
    LogCapture log;

    QString error;
    ASSERT_TRUE(session.start(QStringLiteral(TESSALY_SMS_MODULE_PATH), &error))
        << error.toStdString();
    // The module's application object ran while it loaded.
    EXPECT_EQ(tessaly::profile::registryKey(), QStringLiteral("Halvern\\Tessaly"));
    EXPECT_EQ(tessaly::profile::profileName(), QStringLiteral("SMS"));
    RegistryKey templates;
    templates.open(HKEY_CURRENT_USER, u"Software\\Halvern\\Tessaly\\SMS\\Templates");
    EXPECT_TRUE(templates.isOpen() && !templates.isEmpty()) << "the factory templates were written";

    // The exports that exist answer; the windows of later work say they are not there yet.
    phone.homeScreen()->messagesButton()->click();
    session.exports().openMessage(1);
    EXPECT_TRUE(log.contains(QStringLiteral("openSms: the main window is not built yet")));
    EXPECT_TRUE(log.contains(QStringLiteral("openMessage(1)")));

    // A message arrives: the library tells the host, the host calls the module.
    long id = 0;
    ASSERT_TRUE(
        sim::receiveMessage(u"+447700900101", u"Are you there?", std::nullopt, u"", &id).isOk());
    settle();
    EXPECT_TRUE(log.contains(QStringLiteral("openMessageNotification(%1)").arg(id)));
    EXPECT_EQ(phone.homeScreen()->unreadText(), QStringLiteral("4 new messages"));

    // The suite asks for the SMS service; a send fails with the network's own words.
    log.clear();
    ASSERT_TRUE(GSM::executeService(GSM::ServiceSms).isOk());
    settle();
    EXPECT_TRUE(log.contains(QStringLiteral("openSms:")));

    // Two sends from the Outbox: one goes through, one is refused by the network.
    long unsent = 0;
    long failed = 0;
    GSM::MessageContainer* outbox =
        GSM::sms.getMessages(GSM::Sms::FolderOutbox, GSM::Sms::SortByDate);
    for (int i = 0; i < outbox->size(); ++i) {
        if (outbox->get(i)->getStatus() == GSM::Message::NotSent)
            unsent = outbox->get(i)->getId();
        if (outbox->get(i)->getStatus() == GSM::Message::Failed)
            failed = outbox->get(i)->getId();
    }
    log.clear();
    ASSERT_TRUE(GSM::sms.setMessageStatus(unsent, GSM::Message::SendNow).isOk());
    settle();
    EXPECT_TRUE(log.contains(QStringLiteral("openSendingNotification(%1, 0, 1, 1)").arg(unsent)));
    EXPECT_TRUE(log.contains(QStringLiteral("openSendingCompletion(0, single)")));

    log.clear();
    sim::failNextSend(GSM::ErrorNetworkRejected, u"Rejected by the network");
    ASSERT_TRUE(GSM::sms.setMessageStatus(failed, GSM::Message::SendNow).isOk());
    settle();
    EXPECT_TRUE(log.contains(QStringLiteral("openSendingCompletion(520, single)")));

    session.stop();
    EXPECT_FALSE(session.isRunning());
    session.stop();
}

} // namespace
