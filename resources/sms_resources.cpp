#include "resources/sms_resources.h"

#include "framework/resources/language.h"

#include <QFile>
#include <QtGlobal>

#include <map>
#include <memory>
#include <mutex>

namespace tessaly::sms {

namespace {

// Constant-initialised or built on first use, never by a dynamic initialiser: the module's
// start-up asks for its resources while the library is still being loaded.
constexpr QLatin1StringView scriptBaseName{"sms"};

struct ScriptCache {
    std::mutex mutex;
    std::map<QString, std::unique_ptr<const ResourceScript>> scripts; // by resolved language
};

ScriptCache& scriptCache() {
    static ScriptCache cache;
    return cache;
}

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
    ScriptCache& cache = scriptCache();
    const std::lock_guard lock(cache.mutex);
    QString chosen = resolvedLanguage(language);
    auto found = cache.scripts.find(chosen);
    if (found != cache.scripts.end())
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
    return *cache.scripts.emplace(chosen, std::move(stored)).first->second;
}

const ResourceScript& resources() {
    static const ResourceScript& chosen = resourcesFor(startupLanguage());
    return chosen;
}

} // namespace tessaly::sms
