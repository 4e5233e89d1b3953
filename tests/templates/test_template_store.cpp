#include "templates/factory_defaults.h"
#include "templates/template_store.h"

#include "templates_test_support.h"

namespace {

using templates_test::TemplatesTest;
using tessaly::sms::TemplateStore;
using tessaly::sms::VariableDefinition;
using tessaly::sms::VariableMatch;

const QString kUserAdded = QStringLiteral("User-Added");

QStringList numbered(int first, int last) {
    QStringList keys;
    for (int i = first; i <= last; ++i)
        keys.append(QString::asprintf("%02d", i));
    return keys;
}

TEST(TemplateStoreWalk, CountIsComparedAsText) {
    const struct {
        const char* count;
        int entries; // the walk reads "01" up to this number
    } cases[] = {
        {"", 0},
        {"00", 0},
        {"03", 3},
        {"09", 9},
        {"10", 10},
        {"99", 99},
        {"1", 10},                         // "10" does not sort below "1"
        {"100", 11},                       // "11" does not sort below "100": the walk ends early
        {"x9", TemplateStore::kWalkLimit}, // never reached: stops at the limit
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.count);
        EXPECT_EQ(TemplateStore::walkKeys(QString::fromLatin1(c.count)), numbered(1, c.entries));
    }
}

class TemplateStoreTest : public TemplatesTest {
protected:
    void putUserAdded(const QStringList& names) {
        for (int i = 0; i < names.size(); ++i)
            put(kUserAdded, QString::asprintf("%02d", i + 1), names[i]);
        put(kUserAdded, QStringLiteral("Values"), QString::asprintf("%02d", int(names.size())));
    }
    // Entries "01".."04" of User-Added as they stand, "-" for a missing one.
    QStringList userAddedEntries() {
        QStringList entries;
        for (const QString& key : numbered(1, 4)) {
            const QString text = entry(kUserAdded, key);
            entries.append(text.isNull() ? QStringLiteral("-") : text);
        }
        return entries;
    }
};

TEST_F(TemplateStoreTest, WritingVariablesOverLongerAndShorterLists) {
    const struct {
        int before;
        int after;
        const char* count;
        QStringList leftBehind; // entries above the new count that stay in the registry
    } cases[] = {
        {9, 12, "12", {}},
        {8, 5, "05", {"v6", "v7", "v8"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.count);
        const QString name = QStringLiteral("List %1 %2").arg(c.before).arg(c.after);
        const auto values = [](int count) {
            QStringList list;
            for (int i = 1; i <= count; ++i)
                list.append(QStringLiteral("v%1").arg(i));
            return list;
        };
        TemplateStore::writeVariable({name, QStringLiteral("v1"), values(c.before)});
        TemplateStore::writeVariable({name, QStringLiteral("v2"), values(c.after)});

        const QString section = TemplateStore::variableSection(name);
        EXPECT_EQ(entry(section, QStringLiteral("Values")), QString::fromLatin1(c.count));
        EXPECT_EQ(TemplateStore::readVariable(name),
                  (VariableDefinition{name, QStringLiteral("v2"), values(c.after)}));
        for (int i = 0; i < c.leftBehind.size(); ++i)
            EXPECT_EQ(entry(section, QString::asprintf("%02d", c.after + 1 + i)), c.leftBehind[i]);
    }
}

TEST_F(TemplateStoreTest, UnregisterWalkResults) {
    const struct {
        QStringList before;
        const char* name;
        QStringList entries; // "01".."04" afterwards
        const char* count;
    } cases[] = {
        {{"Alpha", "Beta", "Gamma"}, "Gamma", {"Alpha", "Beta", "-", "-"}, "02"},
        {{"Alpha", "Beta", "Gamma"}, "Beta", {"Alpha", "Gamma", "Gamma", ""}, "03"},
        {{"Alpha", "Beta", "Gamma"}, "Alpha", {"Beta", "Beta", "-", "-"}, "01"},
        {{"Alpha"}, "Alpha", {"-", "-", "-", "-"}, "00"},
        {{"Alpha", "Beta"}, "Zeta", {"Alpha", "Beta", "-", "-"}, "02"},
        {{}, "Alpha", {"-", "-", "-", "-"}, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " from " + c.before.join(u',').toStdString());
        put(kUserAdded, QString(), QString());
        if (!c.before.isEmpty())
            putUserAdded(c.before);
        TemplateStore::unregisterUserVariable(QString::fromLatin1(c.name));
        EXPECT_EQ(userAddedEntries(), c.entries);
        EXPECT_EQ(entry(kUserAdded, QStringLiteral("Values")), QString::fromLatin1(c.count));
    }
}

TEST_F(TemplateStoreTest, UnregisterDeletesTheKeyOfAUserVariableOnly) {
    const struct {
        const char* name;
        bool keyKept;
    } cases[] = {{"Date", true}, {"Time", true}, {"Greeting", false}, {"Mood", false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const QString name = QString::fromLatin1(c.name);
        TemplateStore::writeVariable({name, QStringLiteral("x"), {QStringLiteral("x")}});
        TemplateStore::registerUserVariable(name);
        TemplateStore::unregisterUserVariable(name);
        EXPECT_EQ(sectionExists(TemplateStore::variableSection(name)), c.keyKept);
    }
}

TEST_F(TemplateStoreTest, RenameRewritesTheVariablePartWithoutRegardToCase) {
    const struct {
        const char* before;
        const char* after;
    } bodies[] = {
        {"[greeting:Hi] [Greetings:Hi]", "[Salute:Hi] [Greetings:Hi]"},
        {"[GREETING] and [Greeting:a:b].", "[Salute] and [Salute:a:b]."},
        {"Greeting: [Greeting:Hi", "Greeting: [Greeting:Hi"},
        {"[Ending:Regards]", "[Ending:Regards]"},
    };
    for (int i = 0; i < int(std::size(bodies)); ++i)
        TemplateStore::writeTemplate(QString::number(i), QString::fromLatin1(bodies[i].before));
    TemplateStore::writeVariable(
        {QStringLiteral("Greeting"), QStringLiteral("Hi"), {QStringLiteral("Hi")}});

    TemplateStore::renameVariable(QStringLiteral("Greeting"), QStringLiteral("Salute"));

    for (int i = 0; i < int(std::size(bodies)); ++i)
        EXPECT_EQ(TemplateStore::readTemplate(QString::number(i)),
                  QString::fromLatin1(bodies[i].after));
    EXPECT_FALSE(sectionExists(TemplateStore::variableSection(QStringLiteral("Greeting"))));
    EXPECT_EQ(TemplateStore::templateNames(), (QStringList{"0", "1", "2", "3"}));
}

TEST_F(TemplateStoreTest, FindTheVariableOfAValue) {
    tessaly::sms::restoreFactoryVariables(true);
    TemplateStore::writeVariable({QStringLiteral("Mood"),
                                  QStringLiteral("happy"),
                                  {QStringLiteral("happy"), QStringLiteral("Hello")}});
    TemplateStore::registerUserVariable(QStringLiteral("Mood"));

    const struct {
        const char* text;
        const char* name; // nullptr: no answer
        const char* value;
    } cases[] = {
        {"Hello", "Greeting", "Hello"}, // built-ins come before user variables
        {"happy", "Mood", "happy"},
        {"Mood", "Mood", "Mood"}, // a user variable's own name
        {"Now", "Time", "Now"},
        {"First name", "Contact", "First name"}, // Contact is the first built-in that has it
        {"Time span", nullptr, nullptr},         // the built-in list spells it "Time Span"
        {"30 minutes", "Time Span", "30 minutes"},
        {"Contact:Bob", "Contact", "Bob"},
        {"Sender:Bob", "Sender", "Sender:Bob"},
        {"sender:Bob", nullptr, nullptr},
        {"hello", nullptr, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const auto match = TemplateStore::findVariableOfValue(QString::fromLatin1(c.text));
        if (c.name == nullptr) {
            EXPECT_FALSE(match.has_value()) << match->name.toStdString();
            continue;
        }
        ASSERT_TRUE(match.has_value());
        EXPECT_EQ(*match,
                  (VariableMatch{QString::fromLatin1(c.name), QString::fromLatin1(c.value)}));
    }
}

} // namespace
