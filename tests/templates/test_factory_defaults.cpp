#include "templates/factory_defaults.h"
#include "templates/template_store.h"

#include "resources/resource.h"
#include "templates_test_support.h"

namespace {

using templates_test::TemplatesTest;
using tessaly::sms::TemplateDefinition;
using tessaly::sms::TemplateStore;
using tessaly::sms::VariableDefinition;

const std::vector<TemplateDefinition> kFactoryTemplates = {
    {"Call me", "Please call me at [Sender:Phone]."},
    {"Incoming call", "[Contact:Name and Phone] has called."},
    {"Meeting", "Can we meet [Date:Today] at [Time:Now] [Meet...:for lunch]?"},
    {"Meeting update", "The meeting with [Contact:Full Name] has been [Meeting Status:confirmed]."},
    {"Signature", "[Ending:Regards], [Sender:Full Name]"},
    {"Greeting", "[Greeting:Hello] [Recipient:First Name],"},
    {"Return call", "Please return call to [Contact:Name and Phone]."},
    {"Thanks for", "Thanks for [Thanks for...:the meeting]."},
    {"Will be late", "I will be [Time span:30 minutes] late."},
};

// Name, default, then the values; in the registry's order of subkeys (case-insensitive names).
const char* const kFactoryVariableLines[] = {
    "Contact|Name and Phone|First name|Last name|Full Name|Initials|Name and Phone|Phone",
    "Date|today|yesterday|today|tomorrow",
    "Ending|Regards|Best wishes|Yours Faithfully|Yours sincerely|Regards|Best regards|"
    "Kind regards|Bye|Cheers",
    "Greeting|Hello|Dear|Hello|Hi|Good morning|Good day|Good evening",
    "Meet...|for lunch|for dinner|for lunch|after work",
    "Meeting Status|confirmed|canceled|confirmed|postponed",
    "Recipient|Name and Phone|First name|Last name|Full Name|Initials|Name and Phone|Phone",
    "Sender|Name and Phone|First name|Last name|Full Name|Initials|Name and Phone|Phone",
    "Thanks for...|the meeting|dinner|lunch|the contract|the invitation|the funds transfer|"
    "the meeting|your understanding",
    "Time|Now|Now|in 15 minutes|in 30 minutes|in 45 minutes|in 1 hour|in 1 hour 30 minutes|"
    "in 2 hours|in 3 hours|in 4 hours",
    "Time span|30 minutes|15 minutes|30 minutes|1 hour|2 hours|4 hours|1 week|2 weeks|1 month|"
    "2 months",
};

const std::vector<VariableDefinition> kFactoryVariables = [] {
    std::vector<VariableDefinition> variables;
    for (const char* line : kFactoryVariableLines) {
        const QStringList parts = QString::fromLatin1(line).split(u'|');
        variables.push_back({parts[0], parts[1], parts.mid(2)});
    }
    return variables;
}();

std::vector<VariableDefinition> storedVariables() {
    std::vector<VariableDefinition> variables;
    for (const QString& name : TemplateStore::variableNames())
        variables.push_back(TemplateStore::readVariable(name));
    return variables;
}

class FactoryDefaultsTest : public TemplatesTest {};

TEST_F(FactoryDefaultsTest, FirstStartSeedsSilently) {
    tessaly::sms::seedFactoryDefaults();
    EXPECT_EQ(TemplateStore::templates(), kFactoryTemplates);
    EXPECT_EQ(storedVariables(), kFactoryVariables);
    EXPECT_TRUE(person.boxTexts.isEmpty());
}

// An existing but empty "Templates" key is left alone at start; the request brings them back.
TEST_F(FactoryDefaultsTest, RestoreOnRequestAsksFirstAndReplacesEverything) {
    RegCloseKey(tessaly::profile::getSectionKey(TemplateStore::kTemplatesSection));
    tessaly::sms::seedFactoryDefaults();
    ASSERT_TRUE(TemplateStore::templates().empty());
    ASSERT_EQ(storedVariables(), kFactoryVariables);
    TemplateStore::writeTemplate(QStringLiteral("Mine"), QStringLiteral("[Mood:happy]"));
    TemplateStore::writeVariable(
        {QStringLiteral("Mood"), QStringLiteral("happy"), {QStringLiteral("happy")}});
    TemplateStore::registerUserVariable(QStringLiteral("Mood"));
    TemplateStore::writeVariable(
        {QStringLiteral("Greeting"), QStringLiteral("Yo"), {QStringLiteral("Yo")}});

    person.boxAnswers = {IDOK, IDOK};
    EXPECT_TRUE(tessaly::sms::restoreFactoryTemplates(false));
    EXPECT_TRUE(tessaly::sms::restoreFactoryVariables(false));

    EXPECT_EQ(person.boxTexts, (QStringList{tessaly::loadString(IDS_RESTORE_TEMPLATES_QUESTION),
                                            tessaly::loadString(IDS_RESTORE_VARIABLES_QUESTION)}));
    EXPECT_EQ(TemplateStore::templates(), kFactoryTemplates);
    EXPECT_EQ(storedVariables(), kFactoryVariables);
    EXPECT_FALSE(sectionExists(TemplateStore::kUserAddedSection));
}

TEST_F(FactoryDefaultsTest, AnythingButOkLeavesTheStoreUntouched) {
    TemplateStore::writeTemplate(QStringLiteral("Mine"), QStringLiteral("body"));
    TemplateStore::writeVariable(
        {QStringLiteral("Mood"), QStringLiteral("happy"), {QStringLiteral("happy")}});
    TemplateStore::registerUserVariable(QStringLiteral("Mood"));
    for (const int answer : {IDCANCEL, IDNO}) {
        person.boxAnswers = {answer, answer};
        EXPECT_FALSE(tessaly::sms::restoreFactoryTemplates(false));
        EXPECT_FALSE(tessaly::sms::restoreFactoryVariables(false));
        EXPECT_EQ(TemplateStore::templateNames(), QStringList{"Mine"});
        EXPECT_EQ(TemplateStore::variableNames(), QStringList{"Mood"});
        EXPECT_EQ(TemplateStore::userAddedVariables(), QStringList{"Mood"});
    }
}

// A variable run of a translator's making, to pin the walk's quirks.
class VariableRunTest : public TemplatesTest {
protected:
    void SetUp() override {
        TemplatesTest::SetUp();
        tessaly::setCurrentResources(&script);
    }
    void runWith(std::map<int, QString> lines) {
        script.strings = std::move(lines);
        tessaly::sms::restoreFactoryVariables(true);
    }
    tessaly::ResourceScript script;
};

TEST_F(VariableRunTest, QuirksOfTheWalk) {
    runWith({
        {11000, "Start of Variable Definitions"},
        {11001, "VAR:First"},
        {11002, "DEF:one"},
        {11003, "VAL:one"},
        {11004, "VAL:"},          // four characters: skipped, no number used
        {11005, "xyz:two"},       // any other prefix is a value all the same
        {11006, "VAR:NoDefault"}, // inherits "one"
        {11007, "VAL:a"},
        {11009, "VAR:NoValues"}, // inherits the count of NoDefault
        {11010, "DEF:d"},
        {11011, "VAR:Twice"},
        {11012, "DEF:first"},
        {11013, "VAL:p"},
        {11014, "VAL:q"},
        {11015, "VAR:Twice"},
        {11016, "DEF:second"},
        {11017, "VAL:r"},
        {11018, "END:end"},
    });
    EXPECT_EQ(TemplateStore::readVariable(QStringLiteral("First")),
              (VariableDefinition{"First", "one", {"one", "two"}}));
    EXPECT_EQ(TemplateStore::readVariable(QStringLiteral("NoDefault")),
              (VariableDefinition{"NoDefault", "one", {"a"}}));
    EXPECT_EQ(entry(QStringLiteral("Variables\\NoValues"), QStringLiteral("Values")),
              QStringLiteral("01"));
    EXPECT_EQ(entry(QStringLiteral("Variables\\NoValues"), QStringLiteral("Def")),
              QStringLiteral("d"));
    // The later definition wins "01" and the count; its "02" stays from the first.
    EXPECT_EQ(TemplateStore::readVariable(QStringLiteral("Twice")),
              (VariableDefinition{"Twice", "second", {"r"}}));
    EXPECT_EQ(entry(QStringLiteral("Variables\\Twice"), QStringLiteral("02")), QStringLiteral("q"));
}

TEST_F(VariableRunTest, ARunWithoutEndStopsAtTheLastStringId) {
    runWith({{11001, "VAR:Open"}, {11002, "DEF:x"}, {11003, "VAL:x"}, {20000, "VAL:far away"}});
    EXPECT_EQ(TemplateStore::readVariable(QStringLiteral("Open")),
              (VariableDefinition{"Open", "x", {"x", "far away"}}));
}

} // namespace
