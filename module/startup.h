#pragma once

// What the module's application object does when the library is loaded: place the per-user
// profile at HKEY_CURRENT_USER\Software\Halvern\Tessaly\SMS, choose the resources of the system
// language, and let the factory templates and variables be written where their keys are
// missing. Nothing else happens before initModule.

namespace tessaly::sms {

using FactorySeeding = void (*)();

// `seedFactoryData` runs inside the module's scope (its resources in force, the profile set);
// null skips it.
void startModule(FactorySeeding seedFactoryData);
// The start-up of the loaded module, with the seeding of the factory templates and variables.
void startModule();

} // namespace tessaly::sms
