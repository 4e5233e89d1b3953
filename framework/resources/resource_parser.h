#pragma once

// Reads a resource script in the Windows resource-script syntax into a ResourceScript:
// STRINGTABLE, DIALOG/DIALOGEX with their controls, MENU with POPUP/MENUITEM, file resources
// (BITMAP "x.bmp" and the like), and the preprocessor lines a shared header needs
// (#define, #undef, #include, #ifdef/#ifndef/#else/#endif, #pragma).

#include "framework/resources/resource_model.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace tessaly {

struct ResourceParseError {
    QString file; // the name the file was given to the parser with, e.g. "sms.rc"
    int line = 0;
    QString message; // e.g. "expected END, found MENUITEM"

    QString toString() const; // "sms.rc:42: expected END, found MENUITEM"
};

struct ResourceParseResult {
    ResourceScript script; // partial when there is an error; do not use it then
    std::optional<ResourceParseError> error;

    bool ok() const { return !error.has_value(); }
};

// Supplies the text of an #include'd file. `includeName` is the name as written; `includingFile`
// is the name of the file that holds the #include. Sets `displayName` (used in messages) and
// returns the text, or nothing when the file cannot be found.
using IncludeResolver = std::function<std::optional<QString>(
    const QString& includeName, const QString& includingFile, QString* displayName)>;

// Looks an include up in each directory in turn (Qt resource paths such as ":/x" work too).
IncludeResolver includeSearchPath(const QStringList& directories);

ResourceParseResult parseResourceScript(const QString& text, const QString& fileName,
                                        const IncludeResolver& resolveInclude = {});

// Reads `path` (UTF-8, or UTF-16 with a byte-order mark) and parses it; includes are looked up
// beside the file first, then in `includeDirectories`. Messages name the file without its folder.
ResourceParseResult parseResourceFile(const QString& path,
                                      const QStringList& includeDirectories = {});

// Decodes the bytes of a script file: UTF-16 when it starts with a byte-order mark, else UTF-8.
// Returns nothing when the bytes are not valid text in that encoding.
std::optional<QString> decodeScriptText(const QByteArray& bytes);

} // namespace tessaly
