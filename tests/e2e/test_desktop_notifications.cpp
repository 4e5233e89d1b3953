// New messages told to the desktop: the phone against a notification service of this test's own
// on a private session bus. Skipped when dbus-daemon is not installed.

#include "host/desktop_notifications.h"
#include "host/message_alerts.h"
#include "resources/resource.h"
#include "suite/telephony/simulator.h"
#include "tests/e2e/phone_test_support.h"
#include "tests/testkit/scripted_user.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QStandardPaths>
#include <QVariantMap>

#include <gtest/gtest.h>

namespace {

namespace host = tessaly::host;
namespace sim = tessaly::telephony::simulator;
using e2e_test::settleUntil;
using e2e_test::windowsOf;

// What the desktop's service does, as far as the phone can tell: it records what it is asked.
class FakeNotificationService : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    struct Notification {
        QString appName;
        QString icon;
        QString summary;
        QString body;
        QStringList actions;
        QVariantMap hints;
    };
    std::vector<Notification> notified;
    std::vector<uint> closed;

public slots:
    Q_SCRIPTABLE uint Notify(const QString& appName, uint, const QString& icon,
                             const QString& summary, const QString& body,
                             const QStringList& actions, const QVariantMap& hints, int) {
        notified.push_back({appName, icon, summary, body, actions, hints});
        return uint(notified.size()) + 40; // ids are the service's own
    }
    Q_SCRIPTABLE void CloseNotification(uint id) { closed.push_back(id); }
    Q_SCRIPTABLE QStringList GetCapabilities() { return {QStringLiteral("actions")}; }
};

uint idOfLast(const FakeNotificationService& service) {
    return uint(service.notified.size()) + 40;
}

// The phone as main() wires it, on the test's bus; `phoneIsActive` and `open` stand in for the
// phone's own answers when given.
struct PhoneWithAlerts {
    PhoneWithAlerts(const QString& address, std::function<bool()> phoneIsActive = {},
                    std::function<void(long)> open = {})
        : desktop(address)
        , alerts(
              desktop,
              phoneIsActive ? std::move(phoneIsActive) : [this] { return phone.isActive(); },
              open ? std::move(open) : [this](long id) { session.showMessage(id); }) {
        session.setMessageListener([this](long id) { alerts.messageArrived(id); });
        session.setDeliveryListener([this](long id, int recipient, bool delivered) {
            alerts.messageDelivered(id, recipient, delivered);
        });
    }
    ~PhoneWithAlerts() {}

    host::PhoneWindow phone;
    host::HostSession session{&phone};
    host::DesktopNotifications desktop;
    host::MessageAlerts alerts;
};

class DesktopNotificationsTest : public e2e_test::PhoneDataTest {
protected:
    void SetUp() override {
        PhoneDataTest::SetUp();
        const QString dbusDaemon = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
        if (dbusDaemon.isEmpty())
            GTEST_SKIP() << "dbus-daemon is not installed (tools/install-deps installs it)";
        bus_.setProgram(dbusDaemon);
        bus_.setArguments({QStringLiteral("--session"), QStringLiteral("--nofork"),
                           QStringLiteral("--nopidfile"), QStringLiteral("--print-address=1")});
        bus_.start();
        ASSERT_TRUE(bus_.waitForReadyRead(20'000)) << "dbus-daemon did not start";
        address_ = QString::fromLocal8Bit(bus_.readLine()).trimmed();
        ASSERT_FALSE(address_.isEmpty());
        ASSERT_TRUE(sim::addContact(u"Ada", u"Lovelace", {u"+447700900111"}, u"").isOk());
    }

    void TearDown() override {
        QDBusConnection::disconnectFromBus(QStringLiteral("fake-notifications"));
        if (bus_.state() != QProcess::NotRunning) {
            bus_.terminate();
            bus_.waitForFinished(5000);
        }
        PhoneDataTest::TearDown();
    }

    // The service on a connection of its own, as the desktop's would be.
    void startService() {
        QDBusConnection connection =
            QDBusConnection::connectToBus(address_, QStringLiteral("fake-notifications"));
        ASSERT_TRUE(connection.isConnected());
        ASSERT_TRUE(connection.registerObject(QStringLiteral("/org/freedesktop/Notifications"),
                                              &service_, QDBusConnection::ExportScriptableSlots));
        ASSERT_TRUE(connection.registerService(QStringLiteral("org.freedesktop.Notifications")));
    }

    void invokeAction(uint id, const QString& action) {
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/Notifications"),
            QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("ActionInvoked"));
        signal << id << action;
        ASSERT_TRUE(QDBusConnection(QStringLiteral("fake-notifications")).send(signal));
    }

    long receive(const std::u16string& from, const std::u16string& text) {
        long id = 0;
        EXPECT_TRUE(sim::receiveMessage(from, text, std::nullopt, u"", &id).isOk());
        return id;
    }

    QProcess bus_;
    QString address_;
    FakeNotificationService service_;
};

TEST_F(DesktopNotificationsTest, TellsOfMessagesWhileThePhoneIsNotInFront) {
    startService();
    bool phoneActive = false;
    long opened = 0;
    PhoneWithAlerts running(
        address_, [&] { return phoneActive; }, [&](long id) { opened = id; });
    ASSERT_TRUE(e2e_test::startModule(running.session));
    running.phone.show();

    struct Case {
        const char* what;
        bool phoneActive;
        std::u16string from;
        std::u16string text;
        const char* summary; // null: nothing posted
        std::string body;
    };
    const Case cases[] = {
        {"a contact: the name", false, u"+447700900111", u"Tea at five?", "Ada Lovelace",
         "Tea at five?"},
        {"a stranger: the number", false, u"+447700900999", u"Hello", "+447700900999", "Hello"},
        {"first line only, trimmed", false, u"+447700900999", u"\n   Line one  \r\nLine two",
         "+447700900999", "Line one"},
        {"markup shown as text", false, u"+447700900999", u"<b>A & B</b>", "+447700900999",
         "&lt;b&gt;A &amp; B&lt;/b&gt;"},
        {"a long line cut, never inside a pair", false, u"+447700900999",
         std::u16string(118, u'x') + u"\U0001F600 and more", "+447700900999",
         std::string(118, 'x') + "\u2026"},
        {"the phone in front: none", true, u"+447700900111", u"Seen already", nullptr, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        phoneActive = c.phoneActive;
        const size_t before = service_.notified.size();
        receive(c.from, c.text);
        if (!c.summary) {
            settleUntil([] { return false; }, 300);
            EXPECT_EQ(service_.notified.size(), before);
            continue;
        }
        ASSERT_TRUE(settleUntil([&] { return service_.notified.size() == before + 1; }, 5000));
        const auto& posted = service_.notified.back();
        EXPECT_EQ(posted.summary, QString::fromUtf8(c.summary));
        EXPECT_EQ(posted.body, QString::fromStdString(c.body));
        EXPECT_EQ(posted.icon, QStringLiteral("tessaly-phone"));
        EXPECT_EQ(posted.hints.value(QStringLiteral("desktop-entry")).toString(),
                  QStringLiteral("tessaly-phone"));
        EXPECT_EQ(posted.actions.value(0), QStringLiteral("default"));
    }
    // The module's own window came up for every one of them.
    EXPECT_EQ(windowsOf(IDD_NEW_MESSAGE_NOTIFICATION).size(), 1u);

    // Another program's notification, and an action of ours we do not offer, are ignored;
    // the default action of ours opens its message.
    phoneActive = false;
    const long id = receive(u"+447700900111", u"Open me");
    ASSERT_TRUE(settleUntil([&] { return service_.notified.back().body == "Open me"; }, 5000));
    invokeAction(7, QStringLiteral("default"));
    invokeAction(idOfLast(service_), QStringLiteral("reply"));
    settleUntil([] { return false; }, 300);
    EXPECT_EQ(opened, 0);
    invokeAction(idOfLast(service_), QStringLiteral("default"));
    ASSERT_TRUE(settleUntil([&] { return opened != 0; }, 5000));
    EXPECT_EQ(opened, id);

    // Read in the phone ("Read All" on the module's window, which holds the first of them):
    // that one notification is closed, the others stay.
    const std::vector<tessaly::Dialog*> notifications = windowsOf(IDD_NEW_MESSAGE_NOTIFICATION);
    ASSERT_EQ(notifications.size(), 1u);
    notifications.front()->sendCommand(IDC_NOTIFY_READ_ALL);
    ASSERT_TRUE(settleUntil([&] { return !service_.closed.empty(); }, 5000));
    settleUntil([] { return false; }, 200);
    EXPECT_EQ(service_.closed, std::vector<uint>{41});
}

TEST_F(DesktopNotificationsTest, TellsWhenTheNetworkDeliveredASentMessage) {
    startService();
    tessaly::testkit::ScriptedUser user;
    user.answerBox(IDOK); // sent
    PhoneWithAlerts running(address_, [] { return true; });
    ASSERT_TRUE(e2e_test::startModule(running.session));
    ASSERT_TRUE(GSM::Preferences::getMainPreferences()->setStatusReport(true).isOk());
    GSM::Message* message = GSM::Message::make();
    message->getContacts()->add(u"+447700900111", 0);
    message->setText(u"See you at the station\nAnna");
    ASSERT_TRUE(message->endEdit(false).isOk());
    // The simulated network reports the delivery two seconds after sending.
    ASSERT_TRUE(settleUntil([&] { return !service_.notified.empty(); }, 10'000));
    EXPECT_EQ(service_.notified.back().summary, QStringLiteral("Delivered to Ada Lovelace"));
    EXPECT_EQ(service_.notified.back().body, QStringLiteral("See you at the station"));
    EXPECT_NE(fileTimeToUInt64(message->deliveredTo(0)), 0u);
}

TEST_F(DesktopNotificationsTest, ChoosingTheNotificationShowsTheMessageInThePhone) {
    startService();
    PhoneWithAlerts running(address_);
    ASSERT_TRUE(e2e_test::startModule(running.session));
    host::PhoneWindow& phone = running.phone;
    phone.show();
    QApplication::setActiveWindow(phone.simulator());
    ASSERT_FALSE(phone.isActive()) << "the simulator panel is not the phone";

    receive(u"+447700900111", u"Dinner?");
    ASSERT_TRUE(settleUntil([&] { return service_.notified.size() == 1; }, 5000));

    tessaly::testkit::ScriptedUser user;
    QString shown;
    user.runModal([&](tessaly::Dialog& view) {
        shown = view.itemText(IDC_VIEW_TEXT);
        view.endDialog(IDOK);
    });
    invokeAction(idOfLast(service_), QStringLiteral("default"));
    ASSERT_TRUE(settleUntil([&] { return !user.modals().empty(); }, 5000));
    EXPECT_EQ(user.modals().front().templateId, IDD_MESSAGE_VIEW);
    EXPECT_EQ(shown, QStringLiteral("Dinner?"));
    EXPECT_TRUE(phone.homeScreen()->isVisible());
    EXPECT_TRUE(user.boxes().empty());
}

// Without a service, or without a bus, nothing is shown and nothing waits.
TEST_F(DesktopNotificationsTest, NoServiceOrNoBusIsQuiet) {
    const QString addresses[] = {address_, QStringLiteral("unix:path=/nonexistent/bus")};
    for (const QString& address : addresses) {
        SCOPED_TRACE(address.toStdString());
        PhoneWithAlerts running(
            address, [] { return false; }, [](long) {});
        ASSERT_TRUE(e2e_test::startModule(running.session));
        tessaly::testkit::ScriptedUser user;
        const long id = receive(u"+447700900111", u"Anyone?");
        settleUntil([] { return false; }, 500);
        running.desktop.withdraw(id);
        settleUntil([] { return false; }, 200);
        EXPECT_TRUE(user.boxes().empty());
        EXPECT_EQ(windowsOf(IDD_NEW_MESSAGE_NOTIFICATION).size(), 1u) << "the phone's own window";
    }
}

} // namespace

#include "test_desktop_notifications.moc"
