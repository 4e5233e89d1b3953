#pragma once

// Where the registry hives and telephony.db live: $TESSALY_DATA_DIR if set, else
// $XDG_DATA_HOME/tessaly (~/.local/share/tessaly). Created 0700 on first use.

#include <QString>

namespace tessaly {

QString dataDirectory();
// Overrides the directory (tests use a temporary one); an empty path restores the default.
void setDataDirectory(const QString& path);

} // namespace tessaly
