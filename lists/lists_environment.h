#pragma once

// What the list windows need from the module around them. The module implements it over its
// module-wide state; tests give a recording stand-in. It must outlive the windows.

class SmsSettings;

namespace tessaly {
class Dialog;
}

namespace tessaly::sms {

class ListsEnvironment {
public:
    virtual ~ListsEnvironment() = default;

    // The module's settings record, already loaded.
    virtual SmsSettings& settings() = 0;
    // Writes the record back (folder shown, column widths).
    virtual void saveSettings() = 0;
    // OK on the main window: control goes back to the host; the window stays.
    virtual void handBackControl() = 0;
    // "Send Now" queued a message: the sending notification may show again.
    virtual void allowSendingNotification() = 0;
    // The main window is gone; the module forgets it.
    virtual void mainWindowDestroyed(Dialog* window) = 0;
    // The options sheet, once it exists; until then its command is disabled.
    virtual bool hasOptionsSheet() const { return false; }
    virtual void openOptionsSheet(Dialog& owner) {}
};

} // namespace tessaly::sms
