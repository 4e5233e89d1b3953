#pragma once

// The application's per-user profile: HKEY_CURRENT_USER\Software\<registry key>\<profile name>,
// with one subkey per section and string values.

#include "framework/registry/registry.h"

#include <QString>

namespace tessaly::profile {

// Sets the registry key ("Halvern\Tessaly") and the profile name ("SMS").
void setRegistryKey(const QString& registryKey);
void setProfileName(const QString& profileName);
QString registryKey();
QString profileName();

// Returns the entry's text, or defaultValue when the section or the entry is missing.
QString getProfileString(const QString& section, const QString& entry,
                         const QString& defaultValue = QString());
// Writes the entry as REG_SZ; a null value deletes the entry, a null entry deletes the whole
// section (refused while it has subkeys). Deleting what is absent succeeds and creates nothing.
// Returns false when the write failed or no registry key and profile name are set.
bool writeProfileString(const QString& section, const QString& entry, const QString& value);

// The profile key, created when missing; nullptr on failure. The caller closes it.
HKEY getAppRegistryKey();
// A section's key below the profile key, created when missing; nullptr on failure.
HKEY getSectionKey(const QString& section);

} // namespace tessaly::profile
