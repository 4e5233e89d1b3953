#include "framework/resources/language.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

namespace tessaly {

QString normalizeLanguage(const QString& name) {
    QString code;
    for (const QChar c : name) {
        if (!c.isLetter())
            break;
        code += c.toLower();
    }
    if (code.isEmpty() || code == u"c" || code == u"posix")
        return QString::fromUtf16(kEnglish);
    return code;
}

QString startupLanguage() {
    const QString requested = qEnvironmentVariable("TESSALY_LANGUAGE");
    if (!requested.isEmpty())
        return normalizeLanguage(requested);
    return normalizeLanguage(QLocale::system().name());
}

QString scriptFileName(const QString& baseName, const QString& language) {
    const QString code = normalizeLanguage(language);
    if (code == QStringView(kEnglish))
        return baseName + QStringLiteral(".rc");
    return QStringLiteral("%1_%2.rc").arg(baseName, code);
}

QString findLanguageScript(const QString& directory, const QString& baseName,
                           const QString& language, QString* chosenLanguage) {
    const QDir folder(directory);
    QString code = normalizeLanguage(language);
    QString path = folder.filePath(scriptFileName(baseName, code));
    if (!QFileInfo::exists(path)) {
        code = QString::fromUtf16(kEnglish);
        path = folder.filePath(scriptFileName(baseName, code));
    }
    if (chosenLanguage)
        *chosenLanguage = code;
    return path;
}

} // namespace tessaly
