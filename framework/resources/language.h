#pragma once

// Which language's resource script a module runs with. The choice is made once at start:
// the TESSALY_LANGUAGE environment variable when set (e.g. "de"), else the system locale.
// English is the script without a suffix (sms.rc); another language adds "_<code>" (sms_de.rc);
// a language without a script of its own falls back to English.

#include <QString>

namespace tessaly {

inline constexpr char16_t kEnglish[] = u"en";

// "de_DE.UTF-8", "de-AT", "DE" → "de"; "", "C" and "POSIX" → "en".
QString normalizeLanguage(const QString& name);

QString startupLanguage();

// The file name of `baseName`'s script in `language`: "sms.rc" for English, "sms_de.rc" else.
QString scriptFileName(const QString& baseName, const QString& language);

// The path of the script to use in `directory` (a folder or a Qt resource prefix such as
// ":/tessaly/sms"), falling back to English when there is none for `language`.
// `chosenLanguage` receives the language of the returned script.
QString findLanguageScript(const QString& directory, const QString& baseName,
                           const QString& language, QString* chosenLanguage = nullptr);

} // namespace tessaly
