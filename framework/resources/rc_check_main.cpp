// Parses resource scripts and reports the first error of each as "file:line: message". With a
// reference script (the English one), every script must also have exactly the reference's ids.
// Usage: tessaly-rccheck [-I folder]... [--reference script.rc] [--stamp file] script.rc...

#include "framework/resources/resource_ids.h"
#include "framework/resources/resource_parser.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <cstdio>

int main(int argc, char** argv) {
    QStringList includeDirectories;
    QStringList scripts;
    QString stamp;
    QString reference;
    for (int i = 1; i < argc; ++i) {
        const QString argument = QString::fromLocal8Bit(argv[i]);
        if (argument == u"-I" && i + 1 < argc) {
            includeDirectories.append(QString::fromLocal8Bit(argv[++i]));
        } else if (argument == u"--reference" && i + 1 < argc) {
            reference = QString::fromLocal8Bit(argv[++i]);
        } else if (argument == u"--stamp" && i + 1 < argc) {
            stamp = QString::fromLocal8Bit(argv[++i]);
        } else if (argument.startsWith(u"-I")) {
            includeDirectories.append(argument.mid(2));
        } else {
            scripts.append(argument);
        }
    }
    if (scripts.isEmpty()) {
        std::fputs("usage: tessaly-rccheck [-I folder]... [--reference script.rc] [--stamp file] "
                   "script.rc...\n",
                   stderr);
        return 2;
    }
    tessaly::ResourceParseResult referenceScript;
    if (!reference.isEmpty()) {
        referenceScript = tessaly::parseResourceFile(reference, includeDirectories);
        if (!referenceScript.ok()) {
            std::fprintf(stderr, "%s\n", qPrintable(referenceScript.error->toString()));
            return 1;
        }
    }
    int failures = 0;
    for (const QString& script : scripts) {
        const tessaly::ResourceParseResult result =
            tessaly::parseResourceFile(script, includeDirectories);
        if (!result.ok()) {
            std::fprintf(stderr, "%s\n", qPrintable(result.error->toString()));
            ++failures;
            continue;
        }
        // A picture the script names but the tree lacks would show as nothing at run time. A
        // generated script lies in the build folder; its pictures lie with the include files.
        const auto fileExists = [&](const QString& fileName) {
            for (const QString& folder : QStringList(result.script.folder) + includeDirectories) {
                if (QFileInfo::exists(QDir(folder).filePath(fileName)))
                    return true;
            }
            return false;
        };
        for (const auto& [key, file] : result.script.files) {
            if (!fileExists(file.fileName)) {
                std::fprintf(stderr, "%s: %s %d names %s, which does not exist\n",
                             qPrintable(QFileInfo(script).fileName()), qPrintable(file.type),
                             file.id, qPrintable(file.fileName));
                ++failures;
            }
        }
        if (reference.isEmpty() || QFileInfo(script) == QFileInfo(reference))
            continue;
        const QStringList differences =
            tessaly::compareResourceIds(referenceScript.script, result.script);
        for (const QString& difference : differences)
            std::fprintf(stderr, "%s: %s, compared with %s\n",
                         qPrintable(QFileInfo(script).fileName()), qPrintable(difference),
                         qPrintable(QFileInfo(reference).fileName()));
        if (!differences.isEmpty())
            ++failures;
    }
    if (failures == 0 && !stamp.isEmpty()) {
        QFile file(stamp);
        if (!file.open(QIODevice::WriteOnly))
            return 1;
    }
    return failures == 0 ? 0 : 1;
}
