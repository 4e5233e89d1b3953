#pragma once

// The module-wide state that the exports and the windows share: one instance, created when the
// library is loaded and kept until it is unloaded. Everything runs on the host's user-interface
// thread, so nothing here is locked.
//
// Rules for the windows that live in it:
// - Each window kind exists at most once and is reached through its pointer below. The export
//   that creates the window sets the pointer; the window clears it when it is destroyed
//   (onPostDestroy: `forgetWindow(moduleContext().simTransferWindow, this)`), so a null
//   pointer always means that no such window exists.
// - A composer appends itself to `composers` when editMessage creates it and removes itself
//   when it is destroyed.
// - Every event override (telephony handlers, window handlers reached from the event loop)
//   starts with a ModuleScope, as every export does.

#include "framework/resources/module_state.h"
#include "settings/sms_settings.h"

#include <vector>

namespace tessaly {
class Dialog;
struct ResourceScript;
} // namespace tessaly

namespace tessaly::sms {

class NewMessageNotification;
class SendingNotification;
class SimTransferWindow;

struct ModuleContext {
    // The module's resources in the language chosen at load; what ModuleScope switches to.
    const ResourceScript* resources = nullptr;

    // initModule's argument, handed back to GSM::moduleIdle unchanged and never looked into.
    void* hostIdle = nullptr;

    Dialog* mainWindow = nullptr;
    NewMessageNotification* messageNotification = nullptr;
    // Shared by the progress and the completion export.
    SendingNotification* sendingNotification = nullptr;
    // While set, openSendingNotification does nothing: the person dismissed the progress
    // window; sending an Outbox message again clears it.
    bool sendingNotificationSuppressed = false;
    SimTransferWindow* simTransferWindow = nullptr;
    // Open composers in the order they were created; any number.
    std::vector<Dialog*> composers;

    // Loaded lazily, once, by the exports that need it (loadSettings).
    SmsSettings settings;
};

ModuleContext& moduleContext();

// Switches to the module's resources and state for the life of the scope and restores the
// caller's afterwards. The first statement of every export and every event override.
class ModuleScope {
public:
    ModuleScope();

private:
    ModuleStateGuard guard_;
};

// The settings load step: the first call reads the record the telephony library keeps for the
// SMS service (defaults when there is none or the read fails) and marks it loaded; later calls
// return it as it is. Returns the record.
SmsSettings& loadSettings();
// Writes the record back through the telephony library; true when the library stored it.
bool saveSettings();

// Whether any window of the module exists (main window, notifications, SIM window, composers).
bool hasOpenWindows();
// Hands control back to the host (GSM::moduleIdle with its idle pointer) when no window of the
// module is left; the new-message notification and the SIM window call it once destroyed.
void handBackControlIfIdle();
// A window is gone: its slot forgets it, but only while it still holds it (a window finishing
// its destruction late never clears a newer one). True when the slot held it.
template <typename Window> bool forgetWindow(Window*& slot, const Window* window) {
    if (slot != window)
        return false;
    slot = nullptr;
    return true;
}
// Destroys every window in a fixed order: main window, new-message notification, sending
// notification, SIM window, then the composers from the first. Afterwards every pointer is null
// and the composer list is empty.
void destroyAllWindows();

} // namespace tessaly::sms
