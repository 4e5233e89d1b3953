#include "module/startup.h"

#include "framework/registry/profile.h"
#include "module/module_language.h"
#include "module/module_state.h"

namespace tessaly::sms {

void startModule(FactorySeeding seedFactoryData) {
    profile::setRegistryKey(QStringLiteral("Halvern\\Tessaly"));
    profile::setProfileName(QStringLiteral("SMS"));
    moduleContext().resources = &systemLanguageResources();
    const ModuleScope scope;
    if (seedFactoryData)
        seedFactoryData();
}

} // namespace tessaly::sms
