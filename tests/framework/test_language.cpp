#include "framework/resources/language.h"
#include "tests/testkit/qstring_printer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <ostream>

namespace {

TEST(Language, NamesNormaliseToTheirLanguageCode) {
    const std::pair<const char*, const char*> cases[] = {
        {"de_DE.UTF-8", "de"}, {"de-AT", "de"}, {"DE", "de"}, {"en_GB", "en"},
        {"fr", "fr"},          {"", "en"},      {"C", "en"},  {"POSIX", "en"},
        {"C.UTF-8", "en"},     {"_x", "en"},
    };
    for (const auto& [name, code] : cases) {
        SCOPED_TRACE(name);
        EXPECT_EQ(tessaly::normalizeLanguage(QString::fromLatin1(name)), QLatin1String(code));
    }
}

TEST(Language, EnglishScriptHasNoSuffix) {
    EXPECT_EQ(tessaly::scriptFileName("sms", "en_US"), QStringLiteral("sms.rc"));
    EXPECT_EQ(tessaly::scriptFileName("sms", "de_DE"), QStringLiteral("sms_de.rc"));
}

TEST(Language, MissingTranslationFallsBackToEnglish) {
    QTemporaryDir folder;
    for (const char* name : {"sms.rc", "sms_de.rc"}) {
        QFile file(QDir(folder.path()).filePath(QLatin1String(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    struct Case {
        const char* language;
        const char* file;
        const char* chosen;
    };
    const Case cases[] = {
        {"de_CH", "sms_de.rc", "de"}, {"fr_FR", "sms.rc", "en"}, {"en", "sms.rc", "en"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.language);
        QString chosen;
        const QString path =
            tessaly::findLanguageScript(folder.path(), "sms", QLatin1String(c.language), &chosen);
        EXPECT_EQ(path, QDir(folder.path()).filePath(QLatin1String(c.file)));
        EXPECT_EQ(chosen, QLatin1String(c.chosen));
    }
}

TEST(Language, EnvironmentChoosesTheStartLanguage) {
    qputenv("TESSALY_LANGUAGE", "de_DE");
    EXPECT_EQ(tessaly::startupLanguage(), QStringLiteral("de"));
    qunsetenv("TESSALY_LANGUAGE");
    EXPECT_FALSE(tessaly::startupLanguage().isEmpty());
}

} // namespace
