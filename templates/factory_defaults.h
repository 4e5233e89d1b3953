#pragma once

// The factory templates and variables. They are not compiled in: they are two runs of the string
// table, so that every language's resources carry their own. The variable run holds marker
// lines ("VAR:" name, "DEF:" default, "VAL:" value, "END:" note); the template run holds name
// and body pairs. Strings come from the resources in force (tessaly::loadString).

class QWidget;

namespace tessaly::sms {

// Writes the nine factory templates. Unless silent, first asks (OK/Cancel) and, on OK, deletes
// every template and the "Templates" key. Returns false when the person cancelled.
bool restoreFactoryTemplates(bool silent, QWidget* owner = nullptr);

// Writes the factory variables. Unless silent, first asks (OK/Cancel) and, on OK, deletes every
// variable key, "Variables" and "User-Added". Returns false when the person cancelled.
bool restoreFactoryVariables(bool silent, QWidget* owner = nullptr);

// The module's start-up, once the profile key is set: restores templates and variables, silently,
// whose key is missing. A key that exists but is empty is left alone.
void seedFactoryDefaults();

} // namespace tessaly::sms
