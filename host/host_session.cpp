#include "host/host_session.h"

#include "host/outgoing_message.h"
#include "host/phone_window.h"
#include "suite/telephony/events.h"
#include "suite/telephony/host_hooks.h"

#include <QCoreApplication>
#include <QtGlobal>

namespace tessaly::host {

HostSession::HostSession(PhoneWindow* phone)
    : phone_(phone) {}

HostSession::~HostSession() {
    stop();
}

bool HostSession::start(const QString& modulePath, QString* error) {
    if (!module_.load(modulePath, error))
        return false;
    installHooks();
    if (phone_)
        QObject::connect(phone_->homeScreen(), &HomeScreen::messagesRequested, phone_->homeScreen(),
                         [openSms = module_.exports().openSms] { openSms(); });
    module_.exports().initModule(idlePointer());
    return true;
}

void HostSession::stop() {
    if (!module_.isLoaded())
        return;
    module_.exports().exitModule();
    telephony::installHostHooks({});
    if (phone_)
        QObject::disconnect(phone_->homeScreen(), &HomeScreen::messagesRequested, nullptr, nullptr);
    // Windows the module destroyed may finish on the next loop turns, and queued library
    // events still name the module's handlers: both must be done before the code goes.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    telephony::EventQueue::instance().deliverAll();
    module_.unload();
}

GSM::Result HostSession::openComposer(const SmsLink& link) {
    if (!isRunning())
        return GSM::Result(GSM::ErrorNotAvailable, u"The SMS module is not running.");
    GSM::Result error;
    GSM::Message* message = makeOutgoingMessage(link.numbers, link.body, &error);
    if (!message)
        return error;
    module_.exports().editMessage(message);
    return {};
}

void HostSession::showMessage(long id) {
    if (!isRunning())
        return;
    if (phone_)
        phone_->showHomeScreen();
    module_.exports().openMessage(id);
}

void HostSession::installHooks() {
    const SmsExports exports = module_.exports();
    telephony::HostHooks hooks;
    hooks.editMessage = exports.editMessage;
    hooks.openMessageNotification = [this, exports](long id) {
        exports.openMessageNotification(id);
        if (messageListener_)
            messageListener_(id);
    };
    hooks.openSendingNotification = exports.openSendingNotification;
    hooks.openSendingCompletion = [this, exports](GSM::Result result, bool plural) {
        if (phone_)
            phone_->simulator()->sendingCompleted();
        exports.openSendingCompletion(std::move(result), plural);
    };
    hooks.openSimNotification = exports.openSimNotification;
    hooks.openDeliveryReport = [this](long id, int recipient, bool delivered) {
        if (deliveryListener_)
            deliveryListener_(id, recipient, delivered);
    };
    hooks.moduleIdle = [this](void* hostIdle) { moduleWentIdle(hostIdle); };
    hooks.setActiveService = [](GSM::ServiceId) {};
    hooks.isServiceAvailable = [](GSM::ServiceId service) {
        return service == GSM::ServiceVoice || service == GSM::ServiceSms ||
               service == GSM::ServicePhoneBook;
    };
    hooks.executeService = [this, exports](GSM::ServiceId service) {
        if (service == GSM::ServiceSms) {
            exports.openSms();
        } else if (phone_) {
            phone_->showHomeScreen();
            phone_->homeScreen()->showStatus(
                service == GSM::ServicePhoneBook
                    ? QStringLiteral("The contacts application is not part of this phone.")
                    : QStringLiteral("The dialler is not part of this phone."));
        }
    };
    hooks.makeCall = [this](const WCHAR* number) {
        if (phone_) {
            phone_->showHomeScreen();
            phone_->homeScreen()->showStatus(
                QStringLiteral("Calling %1 …").arg(QString::fromUtf16(number)));
        }
        return GSM::Result();
    };
    telephony::installHostHooks(std::move(hooks));
}

void HostSession::moduleWentIdle(void* hostIdle) {
    if (hostIdle != idlePointer()) {
        qWarning("The SMS module handed back an idle pointer that is not the host's");
        return;
    }
    ++idleCount_;
    if (phone_)
        phone_->showHomeScreen();
}

} // namespace tessaly::host
