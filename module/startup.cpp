#include "module/startup.h"

#include "framework/registry/profile.h"
#include "framework/registry/registry.h"
#include "module/module_language.h"
#include "module/module_context.h"
#include "templates/factory_defaults.h"

namespace tessaly::sms {

void startModule(FactorySeeding seedFactoryData) {
    profile::setRegistryKey(QStringLiteral("Halvern\\Tessaly"));
    profile::setProfileName(QStringLiteral("SMS"));
    moduleContext().resources = &systemLanguageResources();
    const ModuleScope scope;
    // Hundreds of small writes on a first start: one commit and one sync for all of them.
    const RegistryWriteBatch batch;
    if (seedFactoryData)
        seedFactoryData();
}

void startModule() {
    startModule(&seedFactoryDefaults);
}

} // namespace tessaly::sms
