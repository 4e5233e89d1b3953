#pragma once

// The SMS module's resource scripts, embedded in the library: sms.rc (English) and one
// sms_<language>.rc per translation. The language is chosen once at start; a language without
// a script of its own gets the English one.

#include "framework/resources/resource_model.h"
#include "framework/resources/resource_parser.h"

#include <QString>

namespace tessaly::sms {

// Where the scripts and resource.h are embedded (a Qt resource folder).
QString embeddedScriptDirectory();

// The resources in the language chosen at start (see framework/resources/language.h).
// Parsed on first use, then kept for the life of the process.
const ResourceScript& resources();

// The resources of `language` ("de", "en", ...), English when that language has no script.
// Parsed once per language and kept.
const ResourceScript& resourcesFor(const QString& language);

// The language that resourcesFor(language) gives: `language` itself or "en".
QString resolvedLanguage(const QString& language);

// Parses the embedded script of `language` afresh (English when it has none), for checks.
ResourceParseResult parseEmbeddedScript(const QString& language);

} // namespace tessaly::sms
