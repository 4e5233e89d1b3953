#include "framework/datadir.h"
#include "framework/registry/profile.h"
#include "framework/ui/controls.h"
#include "framework/ui/dialog.h"
#include "resources/resource.h"
#include "suite/host/demo_data.h"
#include "suite/host/host_session.h"
#include "suite/host/phone_window.h"
#include "suite/host/screenshot.h"
#include "suite/host/system_language.h"
#include "suite/telephony/events.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"
#include "tests/module/log_capture.h"
#include "tests/testkit/scripted_user.h"
#include "tests/testkit/window_driver.h"
#include "util/registry_key.h"

#include "framework/time/clock.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
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

    // A picture of the whole phone in the build folder's test output, for a person to look at.
    static bool savePicture(const tessaly::host::PhoneWindow& phone, const QString& name) {
        const QString path = tessaly::testkit::testOutputPath(name);
        QDir().mkpath(QFileInfo(path).absolutePath());
        return tessaly::host::grabPhone(phone).save(path);
    }

    // The module's windows of one template (the framework is shared by host and module).
    static std::vector<tessaly::Dialog*> windowsOf(int templateId) {
        std::vector<tessaly::Dialog*> found;
        for (tessaly::Dialog* dialog : tessaly::Dialog::windows())
            if (dialog->templateId() == templateId)
                found.push_back(dialog);
        return found;
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

    // A message arrives: the library tells the host, the host calls the module.
    long id = 0;
    ASSERT_TRUE(
        sim::receiveMessage(u"+447700900101", u"Are you there?", std::nullopt, u"", &id).isOk());
    settle();
    EXPECT_TRUE(log.contains(QStringLiteral("openMessageNotification(%1)").arg(id)));
    EXPECT_EQ(phone.homeScreen()->unreadText(), QStringLiteral("4 new messages"));

    // The suite asks for the SMS service: the same main window comes back to the front.
    mainWindow->showWindow(SW_HIDE);
    ASSERT_TRUE(GSM::executeService(GSM::ServiceSms).isOk());
    settle();
    EXPECT_EQ(windowsOf(IDD_MAIN), std::vector<tessaly::Dialog*>{mainWindow});
    EXPECT_TRUE(mainWindow->isVisible());

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
    EXPECT_TRUE(windowsOf(IDD_MAIN).empty()) << "exitModule destroyed the main window";
    session.stop();
}

} // namespace
