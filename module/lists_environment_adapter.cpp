#include "module/lists_environment_adapter.h"

#include "module/module_context.h"
#include "module/options_pages.h"
#include "gsm/services.h"

namespace tessaly::sms {

SmsSettings& ModuleListsEnvironment::settings() {
    return loadSettings();
}

void ModuleListsEnvironment::saveSettings() {
    // A refused write keeps the record in memory; the next change tries again.
    sms::saveSettings();
}

void ModuleListsEnvironment::handBackControl() {
    GSM::moduleIdle(moduleContext().hostIdle);
}

void ModuleListsEnvironment::allowSendingNotification() {
    moduleContext().sendingNotificationSuppressed = false;
}

void ModuleListsEnvironment::mainWindowDestroyed(Dialog* window) {
    // A window finishing its destruction late must not forget a newer one.
    ModuleContext& context = moduleContext();
    if (context.mainWindow == window)
        context.mainWindow = nullptr;
}

void ModuleListsEnvironment::openOptionsSheet(Dialog& owner) {
    const ModuleScope scope;
    runOptionsSheet(owner, moduleOptionsEnvironment(), moduleOptionsPages());
}

ListsEnvironment& moduleListsEnvironment() {
    static ModuleListsEnvironment environment;
    return environment;
}

} // namespace tessaly::sms
