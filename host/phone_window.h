#pragma once

// The host's window: a 240x320 phone screen with the home screen, and beside it the simulator
// panel that plays the network, the SIM and the radio.

#include "gsm/sms.h"

#include <QWidget>

#include <functional>
#include <memory>

class QLabel;
class QPushButton;

namespace tessaly::host {

// Calls the home screen's count refresh whenever the message store changes.
class UnreadWatcher final : public GSM::SmsEventHandler {
public:
    explicit UnreadWatcher(std::function<void()> changed)
        : changed_(std::move(changed)) {}
    void eventMessagesChanged() override { changed_(); }

private:
    std::function<void()> changed_;
};

class HomeScreen final : public QWidget {
    Q_OBJECT
public:
    explicit HomeScreen(QWidget* parent = nullptr);

    void refreshUnreadCount();
    // A line under the Messages button ("Calling +44...", "Contacts are not on this phone").
    void showStatus(const QString& text);
    QString unreadText() const;
    QPushButton* messagesButton() const { return messages_; }

signals:
    void messagesRequested();

private:
    void updateClock();

    QLabel* clock_ = nullptr;
    QLabel* date_ = nullptr;
    QPushButton* messages_ = nullptr;
    QLabel* unread_ = nullptr;
    QLabel* status_ = nullptr;
    UnreadWatcher watcher_;
};

class SimulatorPanel final : public QWidget {
    Q_OBJECT
public:
    explicit SimulatorPanel(QWidget* parent = nullptr);

    // The radio finished sending: an armed failure has been used up.
    void sendingCompleted();
    // What the composer hands over: a new Outbox message to one number, stored and queued.
    static GSM::Result sendFromPhone(const QString& number, const QString& text);

private:
    QWidget* buildIncomingSms();
    QWidget* buildCellBroadcast();
    QWidget* buildSim();
    QWidget* buildNetwork();
    QWidget* buildSending();
    void report(const QString& text);

    QLabel* nextSend_ = nullptr;
    QLabel* log_ = nullptr;
};

// The host's two top-level windows. The phone screen stands at the desktop's top-left corner,
// where the module's full-screen windows and pop-ups appear over it; the simulator panel stands
// beside it.
class PhoneWindow {
public:
    PhoneWindow();
    ~PhoneWindow();
    PhoneWindow(const PhoneWindow&) = delete;
    PhoneWindow& operator=(const PhoneWindow&) = delete;

    HomeScreen* homeScreen() const { return home_.get(); }
    SimulatorPanel* simulator() const { return simulator_.get(); }
    void show();
    // Whether the person works in the phone: the active window is the phone screen or one of
    // the module's windows over it (not the simulator panel, not another program).
    bool isActive() const;
    // Raises the home screen (the module has gone idle).
    void showHomeScreen();

private:
    std::unique_ptr<HomeScreen> home_;
    std::unique_ptr<SimulatorPanel> simulator_;
};

} // namespace tessaly::host
