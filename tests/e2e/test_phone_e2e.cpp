#include "framework/registry/profile.h"
#include "framework/ui/controls.h"
#include "framework/ui/dialog.h"
#include "resources/resource.h"
#include "host/demo_data.h"
#include "host/host_session.h"
#include "host/phone_window.h"
#include "suite/telephony/events.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"
#include "tests/e2e/phone_test_support.h"
#include "tests/testkit/scripted_user.h"
#include "tests/testkit/virtual_clock.h"
#include "tests/testkit/window_driver.h"
#include "util/registry_key.h"

#include "framework/time/clock.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QPushButton>

#include <gtest/gtest.h>

namespace {

namespace sim = tessaly::telephony::simulator;
using e2e_test::savePicture;
using e2e_test::windowsOf;

class PhoneEndToEnd : public e2e_test::PhoneDataTest {
protected:
    static void settle() {
        for (int round = 0; round < 50; ++round) {
            QCoreApplication::processEvents();
            tessaly::telephony::EventQueue::instance().deliverAll();
        }
    }
};

TEST_F(PhoneEndToEnd, TheHostLoadsTheModuleRoutesEventsToItAndUnloadsIt) {
    ASSERT_EQ(tessaly::host::seedDemoData(tessaly::Clock::current().localNow()),
              tessaly::host::DemoSeeding::Seeded);
    tessaly::host::PhoneWindow phone;
    phone.show();
    tessaly::host::HostSession session(&phone);

    ASSERT_TRUE(e2e_test::startModule(session));
    // The module's application object ran while it loaded.
    EXPECT_EQ(tessaly::profile::registryKey(), QStringLiteral("Halvern\\Tessaly"));
    EXPECT_EQ(tessaly::profile::profileName(), QStringLiteral("SMS"));
    RegistryKey templates;
    templates.open(HKEY_CURRENT_USER, u"Software\\Halvern\\Tessaly\\SMS\\Templates");
    EXPECT_TRUE(templates.isOpen() && !templates.isEmpty()) << "the factory templates were written";

    // Pictures for a person to look at (build/test-output/); nothing is compared.
    settle();
    EXPECT_TRUE(savePicture(phone, QStringLiteral("phone_home.png")));

    // The Messages button opens the main window on the Inbox with the demo messages.
    phone.homeScreen()->messagesButton()->click();
    settle();
    EXPECT_TRUE(savePicture(phone, QStringLiteral("phone_main_window.png")));
    std::vector<tessaly::Dialog*> mainWindows = windowsOf(IDD_MAIN);
    ASSERT_EQ(mainWindows.size(), 1u);
    tessaly::Dialog* mainWindow = mainWindows.front();
    EXPECT_TRUE(mainWindow->isVisible());
    ASSERT_NE(mainWindow->listView(IDC_MAIN_LIST), nullptr);
    EXPECT_EQ(mainWindow->listView(IDC_MAIN_LIST)->itemCount(), 32);
    EXPECT_EQ(mainWindow->itemText(IDC_MAIN_FOLDER), QStringLiteral("Inbox"));

    // openMessage runs the message view modally and returns when it is closed.
    tessaly::testkit::ScriptedUser user;
    QString viewed;
    user.runModal([&viewed](tessaly::Dialog& view) {
        viewed = view.itemText(IDC_VIEW_TEXT);
        view.endDialog(IDOK);
    });
    const long newest =
        GSM::sms.getMessages(GSM::Sms::FolderInbox, GSM::Sms::SortByDate)->get(31)->getId();
    session.exports().openMessage(newest);
    ASSERT_EQ(user.modals().size(), 1u);
    EXPECT_EQ(user.modals().front().templateId, IDD_MESSAGE_VIEW);
    EXPECT_EQ(viewed, QString::fromUtf16(GSM::sms.getMessage(newest)->getText()));

    // A message arrives: the library tells the host, the host calls the module, whose
    // notification pops up over the phone.
    long id = 0;
    ASSERT_TRUE(
        sim::receiveMessage(u"+447700900101", u"Are you there?", std::nullopt, u"", &id).isOk());
    settle();
    std::vector<tessaly::Dialog*> notifications = windowsOf(IDD_NEW_MESSAGE_NOTIFICATION);
    ASSERT_EQ(notifications.size(), 1u);
    EXPECT_TRUE(notifications.front()->isVisible());
    EXPECT_EQ(notifications.front()->itemText(IDC_NOTIFY_TEXT), QStringLiteral("Are you there?"));
    EXPECT_EQ(notifications.front()->itemText(IDC_NOTIFY_OTHERS),
              QStringLiteral("There are 3 other new messages."));
    EXPECT_EQ(phone.homeScreen()->unreadText(), QStringLiteral("4 new messages"));
    EXPECT_TRUE(savePicture(phone, QStringLiteral("phone_new_message.png")));
    notifications.front()->sendCommand(IDC_NOTIFY_READ_ALL);
    settle();
    EXPECT_TRUE(windowsOf(IDD_NEW_MESSAGE_NOTIFICATION).empty());
    EXPECT_EQ(phone.homeScreen()->unreadText(), QStringLiteral("3 new messages"))
        << "closed by the person: read";

    // The suite asks for the SMS service: the same main window comes back to the front.
    mainWindow->showWindow(SW_HIDE);
    ASSERT_TRUE(GSM::executeService(GSM::ServiceSms).isOk());
    settle();
    EXPECT_EQ(windowsOf(IDD_MAIN), std::vector<tessaly::Dialog*>{mainWindow});
    EXPECT_TRUE(mainWindow->isVisible());

    // Two sends from the Outbox: one goes through, one is refused by the network. Each
    // segment shows in the sending notification, the outcome in the completion box.
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
    user.answerBox(IDOK);
    ASSERT_TRUE(GSM::sms.setMessageStatus(unsent, GSM::Message::SendNow).isOk());
    settle();
    ASSERT_EQ(user.boxes().size(), 1u);
    EXPECT_EQ(user.boxes().back().text, QStringLiteral("Your message was sent successfully."));

    user.answerBox(IDOK);
    sim::failNextSend(GSM::ErrorNetworkRejected, u"Rejected by the network");
    ASSERT_TRUE(GSM::sms.setMessageStatus(failed, GSM::Message::SendNow).isOk());
    settle();
    ASSERT_EQ(user.boxes().size(), 2u);
    EXPECT_EQ(user.boxes().back().text, QStringLiteral("Rejected by the network"));
    EXPECT_TRUE(windowsOf(IDD_SENDING_NOTIFICATION).empty());

    session.stop();
    EXPECT_FALSE(session.isRunning());
    EXPECT_TRUE(windowsOf(IDD_MAIN).empty()) << "exitModule destroyed the main window";
    session.stop();
}

TEST_F(PhoneEndToEnd, TheSimulatorPanelDrivesEveryNotification) {
    tessaly::testkit::VirtualClock clock; // the radio's and the windows' timers
    tessaly::testkit::ScriptedUser user;
    tessaly::host::PhoneWindow phone;
    phone.show();
    tessaly::host::HostSession session(&phone);
    ASSERT_TRUE(e2e_test::startModule(session));
    const auto button = [&phone](const char* name) {
        return phone.simulator()->findChild<QPushButton*>(QLatin1String(name));
    };
    const auto step = [&clock] {
        clock.advance(1);
        settle();
    };

    // An incoming SMS pops the new-message notification.
    ASSERT_NE(button("receiveSms"), nullptr);
    button("receiveSms")->click();
    settle();
    ASSERT_EQ(windowsOf(IDD_NEW_MESSAGE_NOTIFICATION).size(), 1u);
    windowsOf(IDD_NEW_MESSAGE_NOTIFICATION).front()->sendCommand(IDOK);
    settle();
    EXPECT_EQ(session.idleCount(), 1) << "the last window went: the phone is the host's again";

    // A send from the phone: one notification, a line per segment, then the completion.
    ASSERT_NE(button("sendMessage"), nullptr);
    button("sendMessage")->click();
    settle();
    step();
    std::vector<tessaly::Dialog*> sending = windowsOf(IDD_SENDING_NOTIFICATION);
    ASSERT_EQ(sending.size(), 1u);
    EXPECT_TRUE(sending.front()->isVisible());
    EXPECT_EQ(sending.front()->itemText(IDC_SENDING_SEGMENT), QStringLiteral("1 of 2"));
    EXPECT_EQ(sending.front()->itemText(IDC_SENDING_NAME), QStringLiteral("+447700900102"));
    EXPECT_TRUE(savePicture(phone, QStringLiteral("phone_sending.png")));
    step();
    EXPECT_EQ(windowsOf(IDD_SENDING_NOTIFICATION), sending);
    EXPECT_EQ(sending.front()->itemText(IDC_SENDING_SEGMENT), QStringLiteral("2 of 2"));
    user.answerBox(IDOK);
    step();
    step();
    ASSERT_EQ(user.boxes().size(), 1u);
    EXPECT_EQ(user.boxes().back().text, QStringLiteral("Your message was sent successfully."));
    EXPECT_TRUE(windowsOf(IDD_SENDING_NOTIFICATION).empty());

    // The same send, told to fail with the network's own words.
    auto* outcome = phone.simulator()->findChild<QComboBox*>(QStringLiteral("sendOutcome"));
    ASSERT_NE(outcome, nullptr);
    outcome->setCurrentIndex(1);
    user.answerBox(IDOK);
    button("sendMessage")->click();
    for (int turn = 0; turn < 3; ++turn)
        step();
    ASSERT_EQ(user.boxes().size(), 2u);
    EXPECT_EQ(user.boxes().back().text, QStringLiteral("The network rejected the message."));
    EXPECT_EQ(user.boxes().back().icon(), MB_ICONSTOP);

    // Messages on the SIM: the offer to move them.
    auto* sim = phone.simulator()->findChild<QPushButton*>(QStringLiteral("fillSim"));
    ASSERT_NE(sim, nullptr);
    sim->click();
    settle();
    ASSERT_EQ(windowsOf(IDD_SIM_TRANSFER).size(), 1u);
    EXPECT_TRUE(savePicture(phone, QStringLiteral("phone_sim_transfer.png")));
    tessaly::Dialog* simWindow = windowsOf(IDD_SIM_TRANSFER).front();
    simWindow->sendCommand(IDC_SIM_YES);
    user.answerBox(IDOK);
    for (int turn = 0; turn < 5; ++turn)
        step();
    EXPECT_TRUE(windowsOf(IDD_SIM_TRANSFER).empty());
    EXPECT_EQ(user.boxes().back().text,
              QStringLiteral("Retrieving SMS messages from your SIM card has been completed."));
    EXPECT_EQ(session.idleCount(), 2);
    session.stop();
}

} // namespace
