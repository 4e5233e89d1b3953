#include "host/phone_window.h"

#include "host/outgoing_message.h"

#include "framework/time/clock.h"
#include "gsm/device.h"
#include "gsm/message.h"
#include "suite/telephony/simulator.h"

#include <QApplication>
#include <QComboBox>
#include <QDate>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTime>
#include <QTimer>
#include <QVBoxLayout>

namespace tessaly::host {

namespace {

namespace sim = tessaly::telephony::simulator;

constexpr int kScreenWidth = 240;
constexpr int kScreenHeight = 320;
constexpr int kPanelGap = 10;

std::u16string toU16(const QString& text) {
    return text.toStdU16String();
}

QString resultText(const GSM::Result& result) {
    return QString::fromUtf16(result.getErrorMessage());
}

} // namespace

HomeScreen::HomeScreen(QWidget* parent)
    : QWidget(parent)
    , watcher_([this] { refreshUnreadCount(); }) {
    setObjectName(QStringLiteral("homeScreen"));
    setFixedSize(kScreenWidth, kScreenHeight);
    setAutoFillBackground(true);
    QPalette colours = palette();
    colours.setColor(QPalette::Window, QColor(0x1f, 0x3a, 0x5a));
    colours.setColor(QPalette::WindowText, Qt::white);
    setPalette(colours);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 8, 12, 12);
    auto* operatorName = new QLabel(QStringLiteral("Tessaly"), this);
    operatorName->setAlignment(Qt::AlignCenter);
    clock_ = new QLabel(this);
    clock_->setAlignment(Qt::AlignCenter);
    QFont big = clock_->font();
    big.setPointSize(30);
    clock_->setFont(big);
    date_ = new QLabel(this);
    date_->setAlignment(Qt::AlignCenter);

    messages_ = new QPushButton(QStringLiteral("Messages"), this);
    messages_->setObjectName(QStringLiteral("messagesButton"));
    messages_->setMinimumHeight(48);
    unread_ = new QLabel(this);
    unread_->setObjectName(QStringLiteral("unreadCount"));
    unread_->setAlignment(Qt::AlignCenter);
    status_ = new QLabel(this);
    status_->setAlignment(Qt::AlignCenter);
    status_->setWordWrap(true);

    layout->addWidget(operatorName);
    layout->addWidget(clock_);
    layout->addWidget(date_);
    layout->addStretch();
    layout->addWidget(messages_);
    layout->addWidget(unread_);
    layout->addWidget(status_);
    layout->addStretch();

    connect(messages_, &QPushButton::clicked, this, &HomeScreen::messagesRequested);
    auto* ticker = new QTimer(this);
    connect(ticker, &QTimer::timeout, this, &HomeScreen::updateClock);
    ticker->start(10000);
    updateClock();
    refreshUnreadCount();
}

QString HomeScreen::unreadText() const {
    return unread_->text();
}

void HomeScreen::refreshUnreadCount() {
    const int unread = GSM::sms.unreadCount();
    unread_->setText(unread == 0   ? QStringLiteral("No new messages")
                     : unread == 1 ? QStringLiteral("1 new message")
                                   : QStringLiteral("%1 new messages").arg(unread));
}

void HomeScreen::showStatus(const QString& text) {
    status_->setText(text);
}

void HomeScreen::updateClock() {
    const SYSTEMTIME now = Clock::current().localNow();
    clock_->setText(QTime(now.wHour, now.wMinute).toString(QStringLiteral("HH:mm")));
    date_->setText(QDate(now.wYear, now.wMonth, now.wDay).toString(QStringLiteral("yyyy-MM-dd")));
}

SimulatorPanel::SimulatorPanel(QWidget* parent)
    : QWidget(parent) {
    setObjectName(QStringLiteral("simulator"));
    auto* layout = new QVBoxLayout(this);
    auto* heading = new QLabel(QStringLiteral("<b>Simulator</b> — what the network, the SIM and "
                                              "the radio would do"),
                               this);
    heading->setWordWrap(true);
    layout->addWidget(heading);
    // Two columns, so that the panel fits beside the phone on an 800x480 virtual screen.
    auto* columns = new QGridLayout;
    columns->addWidget(buildIncomingSms(), 0, 0);
    columns->addWidget(buildCellBroadcast(), 1, 0);
    columns->addWidget(buildNetwork(), 2, 0);
    columns->addWidget(buildSim(), 0, 1);
    columns->addWidget(buildSending(), 1, 1, 2, 1);
    layout->addLayout(columns);
    log_ = new QLabel(this);
    log_->setObjectName(QStringLiteral("simulatorLog"));
    log_->setWordWrap(true);
    layout->addWidget(log_);
    layout->addStretch();
}

void SimulatorPanel::report(const QString& text) {
    log_->setText(text);
}

QWidget* SimulatorPanel::buildIncomingSms() {
    auto* group = new QGroupBox(QStringLiteral("Incoming SMS"), this);
    auto* form = new QFormLayout(group);
    auto* from = new QLineEdit(QStringLiteral("+447700900101"), group);
    auto* text = new QPlainTextEdit(QStringLiteral("Hello from the simulator!"), group);
    text->setFixedHeight(48);
    auto* receive = new QPushButton(QStringLiteral("Receive"), group);
    receive->setObjectName(QStringLiteral("receiveSms"));
    form->addRow(QStringLiteral("From:"), from);
    form->addRow(QStringLiteral("Text:"), text);
    form->addRow(receive);
    connect(receive, &QPushButton::clicked, this, [this, from, text] {
        const GSM::Result result =
            sim::receiveMessage(toU16(from->text()), toU16(text->toPlainText()));
        report(result.isOk() ? QStringLiteral("An SMS from %1 arrived.").arg(from->text())
                             : QStringLiteral("Not received: %1").arg(resultText(result)));
    });
    return group;
}

QWidget* SimulatorPanel::buildCellBroadcast() {
    auto* group = new QGroupBox(QStringLiteral("Cell broadcast"), this);
    auto* form = new QFormLayout(group);
    auto* channel = new QSpinBox(group);
    channel->setRange(0, 65535);
    channel->setValue(50);
    auto* text = new QLineEdit(QStringLiteral("Halvern Centre"), group);
    auto* send = new QPushButton(QStringLiteral("Broadcast"), group);
    form->addRow(QStringLiteral("Channel:"), channel);
    form->addRow(QStringLiteral("Text:"), text);
    form->addRow(send);
    connect(send, &QPushButton::clicked, this, [this, channel, text] {
        const GSM::Result result = sim::receiveCellBroadcast(channel->value(), toU16(text->text()));
        report(result.isOk()
                   ? QStringLiteral("Broadcast on channel %1 received.").arg(channel->value())
                   : QStringLiteral("Dropped: %1 (subscribe to the channel in the SMS options).")
                         .arg(resultText(result)));
    });
    return group;
}

QWidget* SimulatorPanel::buildSim() {
    auto* group = new QGroupBox(QStringLiteral("SIM card"), this);
    auto* form = new QFormLayout(group);
    auto* count = new QSpinBox(group);
    count->setRange(0, 50);
    count->setValue(3);
    auto* capacity = new QSpinBox(group);
    capacity->setRange(1, 50);
    capacity->setValue(10);
    auto* fill = new QPushButton(QStringLiteral("Put messages on the SIM"), group);
    fill->setObjectName(QStringLiteral("fillSim"));
    form->addRow(QStringLiteral("Messages:"), count);
    form->addRow(QStringLiteral("Capacity:"), capacity);
    form->addRow(fill);
    connect(fill, &QPushButton::clicked, this, [this, count, capacity] {
        const int messages = std::min(count->value(), capacity->value());
        FILETIME now{};
        const SYSTEMTIME local = Clock::current().localNow();
        SystemTimeToFileTime(&local, &now);
        std::vector<sim::SimMessage> contents;
        for (int i = 0; i < messages; ++i)
            contents.push_back({u"+447700900120",
                                toU16(QStringLiteral("Message %1 kept on the SIM.").arg(i + 1)),
                                now,
                                false,
                                {}});
        const GSM::Result result = sim::setSimContents(contents, capacity->value());
        report(result.isOk() ? QStringLiteral("The SIM holds %1 of %2 messages.")
                                   .arg(messages)
                                   .arg(capacity->value())
                             : resultText(result));
    });
    return group;
}

QWidget* SimulatorPanel::buildNetwork() {
    auto* group = new QGroupBox(QStringLiteral("Network"), this);
    auto* form = new QFormLayout(group);
    auto* state = new QComboBox(group);
    const std::pair<const char*, int> states[] = {
        {"Home network", GSM::Device::StateRegisteredHome},
        {"Roaming", GSM::Device::StateRegisteredRoaming},
        {"Searching", GSM::Device::StateSearching},
        {"PIN required", GSM::Device::StatePinRequired},
        {"No SIM", GSM::Device::StateNoSim},
        {"Radio off", GSM::Device::StateOff},
    };
    for (const auto& [name, value] : states)
        state->addItem(QString::fromLatin1(name), value);
    state->setCurrentIndex(std::max(0, state->findData(GSM::device.getState())));
    form->addRow(QStringLiteral("Device state:"), state);
    connect(state, &QComboBox::activated, this, [this, state](int index) {
        sim::setDeviceState(state->itemData(index).toInt());
        report(QStringLiteral("Device state: %1.").arg(state->itemText(index)));
    });
    return group;
}

QWidget* SimulatorPanel::buildSending() {
    auto* group = new QGroupBox(QStringLiteral("Sending"), this);
    auto* form = new QFormLayout(group);
    auto* to = new QLineEdit(QStringLiteral("+447700900102"), group);
    auto* text = new QPlainTextEdit(
        QStringLiteral("A message long enough to need two segments: the radio sends one segment "
                       "per step, so the sending notification shows each of them before the "
                       "completion box tells how it went."),
        group);
    text->setFixedHeight(48);
    auto* outcome = new QComboBox(group);
    outcome->setObjectName(QStringLiteral("sendOutcome"));
    outcome->addItem(QStringLiteral("Succeeds"));
    outcome->addItem(QStringLiteral("Fails with the code below"));
    auto* code = new QSpinBox(group);
    code->setObjectName(QStringLiteral("sendErrorCode"));
    code->setRange(1, 9999);
    code->setValue(GSM::ErrorNetworkRejected);
    auto* reason = new QLineEdit(QStringLiteral("The network rejected the message."), group);
    reason->setObjectName(QStringLiteral("sendErrorText"));
    auto* send = new QPushButton(QStringLiteral("Send from the phone"), group);
    send->setObjectName(QStringLiteral("sendMessage"));
    auto* arm = new QPushButton(QStringLiteral("Fail the next send"), group);
    nextSend_ = new QLabel(QStringLiteral("The next send succeeds."), group);
    nextSend_->setWordWrap(true);
    form->addRow(QStringLiteral("To:"), to);
    form->addRow(QStringLiteral("Text:"), text);
    form->addRow(QStringLiteral("Outcome:"), outcome);
    form->addRow(QStringLiteral("Error code:"), code);
    form->addRow(QStringLiteral("Error text:"), reason);
    form->addRow(send);
    form->addRow(arm);
    form->addRow(nextSend_);
    const auto armFailure = [this, code, reason] {
        sim::failNextSend(code->value(), toU16(reason->text()));
        nextSend_->setText(QStringLiteral("The next send fails with code %1.").arg(code->value()));
    };
    connect(arm, &QPushButton::clicked, this, armFailure);
    connect(send, &QPushButton::clicked, this, [this, to, text, outcome, armFailure] {
        if (outcome->currentIndex() == 1)
            armFailure();
        const GSM::Result result = sendFromPhone(to->text(), text->toPlainText());
        report(result.isOk() ? QStringLiteral("A message to %1 is on its way.").arg(to->text())
                             : QStringLiteral("Not sent: %1").arg(resultText(result)));
    });
    return group;
}

GSM::Result SimulatorPanel::sendFromPhone(const QString& number, const QString& text) {
    GSM::Result error;
    GSM::Message* message = makeOutgoingMessage({number}, text, &error);
    return message ? message->endEdit(false) : error;
}

void SimulatorPanel::sendingCompleted() {
    if (nextSend_)
        nextSend_->setText(QStringLiteral("The next send succeeds."));
}

PhoneWindow::PhoneWindow()
    : home_(std::make_unique<HomeScreen>())
    , simulator_(std::make_unique<SimulatorPanel>()) {
    home_->setWindowTitle(QStringLiteral("Tessaly"));
    simulator_->setWindowTitle(QStringLiteral("Tessaly simulator"));
}

PhoneWindow::~PhoneWindow() = default;

void PhoneWindow::show() {
    home_->move(0, 0);
    home_->show();
    simulator_->move(kScreenWidth + kPanelGap, 0);
    simulator_->show();
}

bool PhoneWindow::isActive() const {
    const QWidget* active = QApplication::activeWindow();
    return active && active != simulator_.get();
}

void PhoneWindow::showHomeScreen() {
    home_->refreshUnreadCount();
    home_->show();
    home_->raise();
    home_->activateWindow();
}

} // namespace tessaly::host
