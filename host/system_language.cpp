#include "host/system_language.h"

#include "framework/resources/language.h"
#include "util/registry_key.h"

#include <QHash>

namespace tessaly::host {

DWORD lcidForLanguage(const QString& language) {
    static const QHash<QString, DWORD> lcids = {
        {QStringLiteral("en"), 0x0409},  {QStringLiteral("de"), 0x0407},
        {QStringLiteral("es"), 0x0c0a},  {QStringLiteral("it"), 0x0410},
        {QStringLiteral("fr"), 0x040c},  {QStringLiteral("nl"), 0x0413},
        {QStringLiteral("pt"), 0x0816},  {QStringLiteral("sv"), 0x041d},
        {QStringLiteral("da"), 0x0406},  {QStringLiteral("fi"), 0x040b},
        {QStringLiteral("nb"), 0x0414},  {QStringLiteral("pl"), 0x0415},
        {QStringLiteral("cs"), 0x0405},  {QStringLiteral("ru"), 0x0419},
        {QStringLiteral("zh"), 0x0804},  {QStringLiteral("ja"), 0x0411},
        {QStringLiteral("qps"), 0x0501}, // the pseudo-language (qps-ploc), for layout checks
    };
    const QString code = normalizeLanguage(language);
    // Traditional Chinese is told apart by its region or script, which the code drops.
    if (code == u"zh") {
        const QString full = language.toLower();
        if (full.contains(u"tw") || full.contains(u"hk") || full.contains(u"hant"))
            return 0x0404;
    }
    return lcids.value(code, 0x0409);
}

bool recordSystemLanguage(const QString& language) {
    RegistryKey international;
    international.create(HKEY_LOCAL_MACHINE, u"SOFTWARE\\Microsoft\\International", nullptr, 0, 0,
                         nullptr);
    return international.setDword(u"LCID", lcidForLanguage(language));
}

} // namespace tessaly::host
