#pragma once

// The machine-wide registry entries the module reads and writes, all below HKEY_LOCAL_MACHINE:
// the system language, the list of active drivers and the suite's own key.

#include "framework/win32types.h"

#include <QString>

// Index of the language resources for a system language identifier: German 1, Spanish 2,
// Italian 3, French 4, Chinese 5 (traditional, 1028) or 6 (other), the pseudo-language 7
// (0x0501), anything else 0 (English).
int languageIndexForLcid(DWORD lcid);
// The same for the "LCID" value the host keeps under SOFTWARE\Microsoft\International;
// 0 when the key or the value is missing.
int systemLanguageIndex();

// Whether one of the keys below Drivers\Active names driverKeyPath in its "Key" value
// (compared without regard to case, like every registry path).
bool isDriverActive(const QString& driverKeyPath);

// 32-bit values of the suite's key, Software\Tessaly.
bool writeSuiteValue(const QString& name, DWORD value);
// 0 when the key or the value is missing.
DWORD readSuiteValue(const QString& name);
// Deletes the value, or a subkey of that name when there is no such value; a key left with
// neither values nor subkeys is deleted too. False when nothing was deleted.
bool removeSuiteValue(const QString& name);
