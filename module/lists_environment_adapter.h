#pragma once

// The module as the list windows see it: the settings record, handing control back to the host,
// the sending notification's suppress flag and the main-window pointer, all in the module-wide
// state.

#include "lists/lists_environment.h"

namespace tessaly::sms {

class ModuleListsEnvironment final : public ListsEnvironment {
public:
    SmsSettings& settings() override;
    void saveSettings() override;
    void handBackControl() override;
    void allowSendingNotification() override;
    void mainWindowDestroyed(Dialog* window) override;
    bool hasOptionsSheet() const override { return true; }
    void openOptionsSheet(Dialog& owner) override;
};

// The one the module's windows use; lives as long as the module.
ListsEnvironment& moduleListsEnvironment();

} // namespace tessaly::sms
