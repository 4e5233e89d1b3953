#pragma once

// The language the module's resources are chosen in. The host records the system language as
// the "LCID" value under HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\International; the module turns
// it into a language index (util/suite_registry.h) and the index into a language code.

#include "framework/resources/resource_model.h"

#include <QString>

namespace tessaly::sms {

// 1 German, 2 Spanish, 3 Italian, 4 French, 5 and 6 Chinese, 7 the pseudo-language;
// anything else English.
QString languageForIndex(int languageIndex);

// The resources of the system language, English when the language has no script of its own or
// no language is recorded.
const ResourceScript& systemLanguageResources();

} // namespace tessaly::sms
