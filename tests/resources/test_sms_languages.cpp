// The translations against the English script: texts the code matches against each other must
// agree within each language, and format specifiers must survive translation.

#include "resources/resource.h"
#include "resources/sms_resources.h"

#include "tests/testkit/qstring_printer.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <map>

namespace {

const char* const kTranslations[] = {"de", "qps"};

// The factory variables of a language: name → its default and values, lower-cased.
std::map<QString, QStringList> factoryVariables(const tessaly::ResourceScript& script) {
    std::map<QString, QStringList> variables;
    QString current;
    for (int id = IDS_FACTORY_VARIABLES_FIRST; id <= IDS_FACTORY_VARIABLES_LAST; ++id) {
        const QString line = script.string(id);
        if (line.startsWith(u"VAR:"))
            current = line.mid(4).toLower();
        else if (line.startsWith(u"DEF:") || line.startsWith(u"VAL:"))
            variables[current].append(line.mid(4).toLower());
    }
    return variables;
}

QStringList formatSpecifiers(const QString& text) {
    static const QRegularExpression specifier(QStringLiteral("%[-+ 0#]*\\d*[a-zA-Z%]"));
    QStringList found;
    for (auto match = specifier.globalMatch(text); match.hasNext();)
        found.append(match.next().captured());
    return found;
}

TEST(SmsLanguages, EveryTranslationIsEmbeddedAndChosenByItsCode) {
    const struct {
        const char* requested;
        const char* chosen;
    } cases[] = {{"de_DE.UTF-8", "de"}, {"de-AT", "de"}, {"qps", "qps"}, {"fr", "en"}};
    for (const auto& c : cases)
        EXPECT_EQ(tessaly::sms::resolvedLanguage(c.requested), QLatin1String(c.chosen))
            << c.requested;
    EXPECT_EQ(tessaly::sms::resourcesFor("de").string(IDS_INBOX), QStringLiteral("Posteingang"));
}

TEST(SmsLanguages, FormatSpecifiersMatchTheEnglishText) {
    const tessaly::ResourceScript& english = tessaly::sms::resourcesFor("en");
    for (const char* language : kTranslations) {
        const tessaly::ResourceScript& translated = tessaly::sms::resourcesFor(language);
        for (const auto& [id, text] : english.strings)
            EXPECT_EQ(formatSpecifiers(translated.string(id)), formatSpecifiers(text))
                << language << " string " << id;
    }
}

// The placeholder code finds variables, person fields and time and date words by their text.
TEST(SmsLanguages, WordsTheCodeMatchesAreTheFactoryVariablesWords) {
    const struct {
        int nameId;       // the variable's name in the string table
        int firstValueId; // ids of words that must be among its values
        int lastValueId;
    } cases[] = {
        {IDS_VAR_CONTACT, IDS_FIELD_FIRST_NAME, IDS_FIELD_PHONE},
        {IDS_VAR_SENDER, IDS_FIELD_FIRST_NAME, IDS_FIELD_PHONE},
        {IDS_VAR_RECIPIENT, IDS_FIELD_FIRST_NAME, IDS_FIELD_PHONE},
        {IDS_VAR_TIME, IDS_TIME_IN_15_MINUTES, IDS_TIME_IN_4_HOURS},
        {IDS_VAR_TIME, IDS_TIME_NOW, IDS_TIME_NOW},
        {IDS_VAR_DATE, IDS_DATE_TODAY, IDS_DATE_YESTERDAY},
        {IDS_VAR_MEET, 0, -1},
        {IDS_VAR_MEETING_STATUS, 0, -1},
        {IDS_VAR_THANKS_FOR, 0, -1},
        {IDS_VAR_TIME_SPAN, 0, -1},
        {IDS_VAR_ENDING, 0, -1},
        {IDS_VAR_GREETING, 0, -1},
    };
    for (const char* language : {"en", "de", "qps"}) {
        const tessaly::ResourceScript& script = tessaly::sms::resourcesFor(language);
        const auto variables = factoryVariables(script);
        for (const auto& c : cases) {
            const QString name = script.string(c.nameId).toLower();
            const auto variable = variables.find(name);
            ASSERT_NE(variable, variables.end())
                << language << " has no variable " << qPrintable(name);
            for (int id = c.firstValueId; id <= c.lastValueId; ++id)
                EXPECT_TRUE(variable->second.contains(script.string(id).toLower()))
                    << language << ": " << qPrintable(script.string(id)) << " is no value of "
                    << qPrintable(name);
        }
    }
}

TEST(SmsLanguages, TemplatePlaceholdersNameFactoryVariablesAndTheirValues) {
    static const QRegularExpression placeholder(QStringLiteral("\\[([^\\[\\]:]*):([^\\[\\]]*)\\]"));
    for (const char* language : {"en", "de", "qps"}) {
        const tessaly::ResourceScript& script = tessaly::sms::resourcesFor(language);
        const auto variables = factoryVariables(script);
        for (int id = IDS_FACTORY_TEMPLATES_FIRST + 1; id < IDS_FACTORY_TEMPLATES_END; id += 2) {
            for (auto match = placeholder.globalMatch(script.string(id)); match.hasNext();) {
                const auto found = match.next();
                const auto variable = variables.find(found.captured(1).toLower());
                ASSERT_NE(variable, variables.end()) << language << " template " << id;
                EXPECT_TRUE(variable->second.contains(found.captured(2).toLower()))
                    << language << " template " << id << ": " << qPrintable(found.captured(0));
            }
        }
    }
}

} // namespace
