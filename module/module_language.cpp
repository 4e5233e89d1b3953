#include "module/module_language.h"

#include "framework/resources/language.h"
#include "resources/sms_resources.h"
#include "util/suite_registry.h"

namespace tessaly::sms {

QString languageForIndex(int languageIndex) {
    switch (languageIndex) {
    case 1:
        return QStringLiteral("de");
    case 2:
        return QStringLiteral("es");
    case 3:
        return QStringLiteral("it");
    case 4:
        return QStringLiteral("fr");
    case 5: // traditional
    case 6: // simplified
        return QStringLiteral("zh");
    case 7:
        return QStringLiteral("qps");
    default:
        return QString::fromUtf16(kEnglish);
    }
}

const ResourceScript& systemLanguageResources() {
    return resourcesFor(languageForIndex(systemLanguageIndex()));
}

} // namespace tessaly::sms
