#include "resources/sms_resources.h"

#include "framework/resources/language.h"

#include <QFile>
#include <QtGlobal>

#include <map>
#include <memory>
#include <mutex>

namespace tessaly::sms {

namespace {

const QString scriptBaseName = QStringLiteral("sms");

std::mutex cacheMutex;
std::map<QString, std::unique_ptr<const ResourceScript>> cache; // by resolved language

} // namespace

QString embeddedScriptDirectory() {
    return QStringLiteral(":/tessaly/sms");
}

QString resolvedLanguage(const QString& language) {
    QString chosen;
    findLanguageScript(embeddedScriptDirectory(), scriptBaseName, language, &chosen);
    return chosen;
}

ResourceParseResult parseEmbeddedScript(const QString& language) {
    const QString path = findLanguageScript(embeddedScriptDirectory(), scriptBaseName, language);
    return parseResourceFile(path);
}

const ResourceScript& resourcesFor(const QString& language) {
    const std::lock_guard lock(cacheMutex);
    QString chosen = resolvedLanguage(language);
    auto found = cache.find(chosen);
    if (found != cache.end())
        return *found->second;

    ResourceParseResult result = parseEmbeddedScript(chosen);
    if (!result.ok() && chosen != QStringView(kEnglish)) {
        // The build checks every script, so this means a damaged build: English rather than
        // nothing.
        qWarning("Resource script for language %s: %s; using English", qPrintable(chosen),
                 qPrintable(result.error->toString()));
        result = parseEmbeddedScript(QString::fromUtf16(kEnglish));
    }
    if (!result.ok()) {
        qWarning("Resource script: %s", qPrintable(result.error->toString()));
        result.script = ResourceScript();
    }
    auto stored = std::make_unique<const ResourceScript>(std::move(result.script));
    return *cache.emplace(chosen, std::move(stored)).first->second;
}

const ResourceScript& resources() {
    static const ResourceScript& chosen = resourcesFor(startupLanguage());
    return chosen;
}

} // namespace tessaly::sms
