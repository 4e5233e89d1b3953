#pragma once

// What the composer needs from the module around it: the settings record (sender, greeting and
// signature options) and a word when it is gone, so the module's list of open composers stays
// exact. The module implements it over its module-wide state; tests record the calls.

class SmsSettings;

namespace tessaly {
class Dialog;
}

namespace tessaly::sms {

class ComposerEnvironment {
public:
    virtual ~ComposerEnvironment() = default;

    virtual SmsSettings& settings() = 0;
    // The composer's window is gone; the object is deleted right after this call.
    virtual void composerDestroyed(Dialog* composer) = 0;
};

} // namespace tessaly::sms
