#pragma once

// One run of the SMS module inside the host: loads Sms.tsm, resolves its entry points, routes
// the telephony library's events to them and hands the phone back to the home screen when the
// module goes idle.

#include "gsm/result.h"
#include "host/module_loader.h"
#include "host/sms_link.h"

#include <QString>

#include <functional>

namespace tessaly::host {

class PhoneWindow;

class HostSession {
public:
    // `phone` may be null (no screen: tests, benchmarks).
    explicit HostSession(PhoneWindow* phone = nullptr);
    ~HostSession();
    HostSession(const HostSession&) = delete;
    HostSession& operator=(const HostSession&) = delete;

    // Loads the module, installs the telephony hooks and calls initModule with this session's
    // idle pointer. False with `error` set when the module cannot be loaded or lacks an entry
    // point; nothing is left installed then.
    bool start(const QString& modulePath, QString* error);
    // exitModule, then the hooks go, the library's pending events are delivered, and the
    // module is unloaded. Safe to call twice.
    void stop();

    // Opens the module's composer with the link's recipients and text, as "New" would with
    // them filled in. Fails when the module is not running or the store refuses the message.
    GSM::Result openComposer(const SmsLink& link);

    // Brings the phone forward and shows one stored message (modal: returns when it is closed).
    void showMessage(long id);
    // Called after the module was told of each new message.
    void setMessageListener(std::function<void(long id)> listener) {
        messageListener_ = std::move(listener);
    }

    // Called when the network reported a sent message delivered to a recipient, or given up.
    void setDeliveryListener(std::function<void(long id, int recipient, bool delivered)> listener) {
        deliveryListener_ = std::move(listener);
    }

    bool isRunning() const { return module_.isLoaded(); }
    const SmsExports& exports() const { return module_.exports(); }
    // The pointer the module hands back with GSM::moduleIdle.
    void* idlePointer() { return this; }
    // How often the module handed control back with this session's pointer.
    int idleCount() const { return idleCount_; }

private:
    void installHooks();
    void moduleWentIdle(void* hostIdle);

    PhoneWindow* phone_;
    SmsModuleLibrary module_;
    int idleCount_ = 0;
    std::function<void(long)> messageListener_;
    std::function<void(long, int, bool)> deliveryListener_;
};

} // namespace tessaly::host
