#pragma once

// The host keeps the system language where the platform kept it: the "LCID" value under
// HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\International, written at start from the locale
// (TESSALY_LANGUAGE, else the system locale). The SMS module picks its resources from it.

#include "framework/win32types.h"

#include <QString>

namespace tessaly::host {

// The language identifier of a language code ("de", "de_AT.UTF-8", "C"): the language's
// primary identifier in its main country; English (0x0409) for a language the suite does not
// know.
DWORD lcidForLanguage(const QString& language);

// Writes the LCID of `language`; false when the registry refused.
bool recordSystemLanguage(const QString& language);

} // namespace tessaly::host
