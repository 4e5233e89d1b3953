// The editors' rules without windows: sorting, the value list, and saving a template or a
// variable with each question and refusal.

#include "resources/resource.h"
#include "templates/factory_defaults.h"
#include "templates/placeholder_expander.h"
#include "templates/template_editing.h"

#include "templates_test_support.h"

namespace {

using tessaly::sms::EditorStep;
using tessaly::sms::PlaceholderExpander;
using tessaly::sms::TemplateEdit;
using tessaly::sms::TemplateStore;
using tessaly::sms::VariableDefinition;
using tessaly::sms::VariableEdit;
using tessaly::sms::VariableValueList;

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

class TemplateEditingTest : public templates_test::TemplatesTest {
protected:
    void SetUp() override {
        TemplatesTest::SetUp();
        tessaly::sms::restoreFactoryTemplates(true);
        tessaly::sms::restoreFactoryVariables(true);
    }

    // A template opened in the editor as the dialog opens it.
    static TemplateEdit opened(const QString& name) {
        TemplateEdit edit;
        edit.isNew = false;
        edit.loadedName = edit.name = name;
        edit.loadedBody = TemplateStore::readTemplate(name);
        edit.loadedText = edit.text = PlaceholderExpander::templateToComposerText(edit.loadedBody);
        return edit;
    }
    static TemplateEdit fresh(const QString& name, const QString& body) {
        TemplateEdit edit;
        edit.name = name;
        edit.text = body;
        return edit;
    }
    static VariableEdit openedVariable(const QString& name) {
        VariableEdit edit;
        edit.loadedName = edit.name = name;
        edit.loaded = edit.list = VariableValueList::of(TemplateStore::readVariable(name));
        return edit;
    }
};

TEST(TemplateEditingSort, NamesGoInCodePointOrder) {
    const QStringList sorted = tessaly::sms::sortedByCodePoint(
        {text("apple"), text("Zebra"), text("\xC3\x84rger"), text("\xF0\x9F\x98\x80"),
         text("\xEF\xBF\xBD"), text("Apple"), text("apple")});
    // A supplementary character sorts after U+FFFD by code point (not by UTF-16 unit).
    EXPECT_EQ(sorted,
              (QStringList{text("Apple"), text("Zebra"), text("apple"), text("apple"),
                           text("\xC3\x84rger"), text("\xEF\xBF\xBD"), text("\xF0\x9F\x98\x80")}));
}

TEST(VariableValueListTest, RowsChangeAsThePersonEditsThem) {
    VariableValueList list = VariableValueList::of({"Mood", "happy", {"sad", "happy", "calm"}});
    EXPECT_EQ(list.rowCount(), 4);
    EXPECT_TRUE(list.isNewValueRow(3));
    EXPECT_EQ(list.defaultRow(), 1);

    EXPECT_TRUE(list.setRowText(3, "angry")); // typed into "<<New value>>"
    EXPECT_FALSE(list.setRowText(4, ""));     // the new, empty "<<New value>>" row
    EXPECT_TRUE(list.setRowText(0, "glum"));
    EXPECT_FALSE(list.setRowText(0, "glum"));
    EXPECT_FALSE(list.setChecked(4, true)); // "<<New value>>" has no check box
    EXPECT_TRUE(list.setChecked(2, true));  // the check moves
    EXPECT_EQ(list.values(), (QStringList{"glum", "happy", "calm", "angry"}));
    EXPECT_EQ(list.defaultValue(), "calm");

    EXPECT_TRUE(list.setRowText(1, "")); // emptied: the row goes, the check follows its row
    EXPECT_EQ(list.values(), (QStringList{"glum", "calm", "angry"}));
    EXPECT_EQ(list.defaultRow(), 1);
    EXPECT_TRUE(list.removeRow(1));
    EXPECT_EQ(list.defaultRow(), -1);
    EXPECT_EQ(list.defaultValue(), "");
    EXPECT_TRUE(list.setChecked(0, true));
    EXPECT_TRUE(list.setChecked(0, false));
    EXPECT_EQ(list.defaultRow(), -1);

    // The two-digit count holds 99 values: then "<<New value>>" goes.
    while (list.values().size() < 99)
        EXPECT_TRUE(list.setRowText(list.rowCount() - 1, "more"));
    EXPECT_EQ(list.rowCount(), 99);
    EXPECT_FALSE(list.isNewValueRow(98));
    EXPECT_FALSE(list.setRowText(99, "one too many"));
}

TEST_F(TemplateEditingTest, AComputedVariableKeepsItsValues) {
    VariableValueList list = VariableValueList::of(TemplateStore::readVariable("Date"));
    EXPECT_FALSE(list.isExtendable());
    EXPECT_EQ(list.rowCount(), 3);
    EXPECT_EQ(list.defaultValue(), "today");
    EXPECT_FALSE(list.setRowText(0, "someday"));
    EXPECT_FALSE(list.removeRow(0));
    EXPECT_TRUE(list.setChecked(2, true));
    EXPECT_EQ(list.defaultValue(), "tomorrow");
}

TEST_F(TemplateEditingTest, SavedTemplatesReachTheStore) {
    // New, list values shown as marks become placeholders.
    person.boxAnswers = {IDOK};
    EXPECT_EQ(tessaly::sms::saveTemplate(fresh("Later", "<Hi>, at [Time:in 1 hour]"), nullptr),
              EditorStep::Close);
    EXPECT_EQ(TemplateStore::readTemplate("Later"), "[Greeting:Hi], at [Time:in 1 hour]");

    // New over an existing name, after Yes: the body is replaced.
    person.boxAnswers = {IDOK, IDYES};
    EXPECT_EQ(tessaly::sms::saveTemplate(fresh("Later", "Soon"), nullptr), EditorStep::Close);
    EXPECT_EQ(TemplateStore::readTemplate("Later"), "Soon");

    // Edited under a new name: the old one goes.
    TemplateEdit renamed = opened("Call me");
    renamed.name = "Ring me";
    person.boxAnswers = {IDOK};
    EXPECT_EQ(tessaly::sms::saveTemplate(renamed, nullptr), EditorStep::Close);
    EXPECT_FALSE(TemplateStore::templateNames().contains("Call me"));
    EXPECT_EQ(TemplateStore::readTemplate("Ring me"), "Please call me at [Sender:Phone].");

    // Renamed onto an existing template: overwritten without the question.
    TemplateEdit onto = opened("Ring me");
    onto.name = "Later";
    person.boxAnswers = {IDOK};
    person.boxTexts.clear();
    EXPECT_EQ(tessaly::sms::saveTemplate(onto, nullptr), EditorStep::Close);
    EXPECT_EQ(person.boxTexts, QStringList{"Do you want to save changes?"});
    EXPECT_EQ(TemplateStore::readTemplate("Later"), "Please call me at [Sender:Phone].");
    EXPECT_FALSE(TemplateStore::templateNames().contains("Ring me"));
}

TEST_F(TemplateEditingTest, EditedTemplatesKeepTheirPlaceholders) {
    // Each factory template with a word added keeps every placeholder as it was written,
    // "[Time span:30 minutes]" too, although the built-in name is spelt "Time Span".
    for (const QString& name : TemplateStore::templateNames()) {
        SCOPED_TRACE(name.toStdString());
        TemplateEdit edit = opened(name);
        const QString body = edit.loadedBody;
        edit.text += " Thanks";
        person.boxAnswers = {IDOK};
        EXPECT_EQ(tessaly::sms::saveTemplate(edit, nullptr), EditorStep::Close);
        EXPECT_EQ(TemplateStore::readTemplate(name), body + " Thanks");
    }
    // A user variable sharing a value with a built-in one keeps its own name.
    TemplateStore::writeVariable({"Mood", "Hello", {"Hello", "Grumpy"}});
    TemplateStore::registerUserVariable("Mood");
    TemplateStore::writeTemplate("Moody", "[Greeting:Hello] [Mood:Hello]");
    TemplateEdit moody = opened("Moody");
    EXPECT_EQ(moody.loadedText, "<Hello> <Hello>");
    moody.text = "<Hello>! <Hello>? <Grumpy> <Good day>";
    person.boxAnswers = {IDOK};
    tessaly::sms::saveTemplate(moody, nullptr);
    EXPECT_EQ(TemplateStore::readTemplate("Moody"),
              "[Greeting:Hello]! [Mood:Hello]? [Mood:Grumpy] [Greeting:Good day]");
}

TEST_F(TemplateEditingTest, ARefusedOrCancelledVariableLeavesTheStoreAlone) {
    // The values check comes before the rename, which would delete the old key.
    VariableEdit renamedEmpty = openedVariable("Greeting");
    renamedEmpty.name = "Salute";
    while (renamedEmpty.list.removeRow(0)) {
    }
    VariableEdit cancelled = openedVariable("Greeting");
    cancelled.list.setRowText(0, "Howdy");
    VariableEdit nested;
    nested.name = "Mood\\Happy";
    nested.list.setRowText(0, "glad");
    VariableEdit taken;
    taken.name = "greeting";
    taken.list.setRowText(0, "Yo");
    VariableEdit renamedOntoAnother = openedVariable("Greeting");
    renamedOntoAnother.name = "TIME";
    const struct {
        const char* what;
        VariableEdit edit;
        std::vector<int> answers;
        QStringList shown;
        EditorStep step;
    } cases[] = {
        {"renamed without values",
         renamedEmpty,
         {IDOK, IDOK},
         {"Do you want to save changes?", "Variable without values cannot be stored."},
         EditorStep::Stay},
        {"changed, cancelled",
         cancelled,
         {IDCANCEL},
         {"Do you want to save changes?"},
         EditorStep::Close},
        {"a backslash in the name",
         nested,
         {IDOK, IDOK},
         {"Do you want to save changes?", "A variable name cannot contain a backslash (\\)."},
         EditorStep::Stay},
        {"new, named like an existing one",
         taken,
         {IDOK, IDOK},
         {"Do you want to save changes?",
          "A variable of this name already exists. Choose another name."},
         EditorStep::Stay},
        {"renamed onto another",
         renamedOntoAnother,
         {IDOK, IDOK},
         {"Do you want to save changes?",
          "A variable of this name already exists. Choose another name."},
         EditorStep::Stay},
    };
    const VariableDefinition greeting = TemplateStore::readVariable("Greeting");
    const QString greetingTemplate = TemplateStore::readTemplate("Greeting");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        person.boxTexts.clear();
        person.boxAnswers.assign(c.answers.begin(), c.answers.end());
        EXPECT_EQ(tessaly::sms::saveVariable(c.edit, nullptr), c.step);
        EXPECT_EQ(person.boxTexts, c.shown);
        EXPECT_EQ(TemplateStore::readVariable("Greeting"), greeting);
        EXPECT_EQ(TemplateStore::readTemplate("Greeting"), greetingTemplate);
        EXPECT_TRUE(TemplateStore::userAddedVariables().isEmpty());
    }
}

TEST(VariableNames, WhatANewOrRenamedVariableMayNotBeCalled) {
    const QStringList existing = {"Greeting", "Time", "Mood"};
    const struct {
        const char* name;
        const char* loaded;
        int added;
        int problem;
    } cases[] = {
        {"Salute", "", 0, 0},
        {"Salute", "", 98, 0},
        {"Salute", "", 99, IDS_VARIABLE_LIMIT},
        {"Salute", "Mood", 99, 0}, // a rename adds no variable
        {"mood", "", 0, IDS_VARIABLE_NAME_TAKEN},
        {"GREETING", "Mood", 0, IDS_VARIABLE_NAME_TAKEN},
        {"MOOD", "Mood", 0, 0}, // the same variable, in other letters
        {"Mood\\Happy", "", 0, IDS_VARIABLE_NAME_BACKSLASH},
        {"\\", "Mood", 0, IDS_VARIABLE_NAME_BACKSLASH},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(tessaly::sms::variableNameProblem(c.name, c.loaded, existing, c.added), c.problem)
            << c.name << " from " << c.loaded << " with " << c.added;
    }
}

TEST_F(TemplateEditingTest, TheHundredthAddedVariableIsRefusedAndNothingIsLost) {
    for (int i = 1; i <= 99; ++i) {
        VariableEdit added;
        added.name = QStringLiteral("Var%1").arg(i);
        added.list.setRowText(0, QStringLiteral("v%1").arg(i));
        person.boxAnswers = {IDOK};
        ASSERT_EQ(tessaly::sms::saveVariable(added, nullptr), EditorStep::Close) << i;
    }
    VariableEdit hundredth;
    hundredth.name = "Var100";
    hundredth.list.setRowText(0, "v100");
    person.boxTexts.clear();
    person.boxAnswers = {IDOK, IDOK};
    EXPECT_EQ(tessaly::sms::saveVariable(hundredth, nullptr), EditorStep::Stay);
    EXPECT_EQ(person.boxTexts.back(), "No more than 99 variables can be added. Delete one first.");
    const QStringList added = TemplateStore::userAddedVariables();
    ASSERT_EQ(added.size(), 99);
    EXPECT_EQ(added.front(), "Var1");
    EXPECT_EQ(added.back(), "Var99");
    EXPECT_FALSE(TemplateStore::variableNames().contains("Var100"));
}

TEST_F(TemplateEditingTest, SavedVariablesReachTheStore) {
    VariableEdit mood;
    mood.name = "Mood";
    mood.list.setRowText(0, "sad");
    mood.list.setRowText(1, "happy");
    mood.list.setChecked(1, true);
    person.boxAnswers = {IDOK};
    EXPECT_EQ(tessaly::sms::saveVariable(mood, nullptr), EditorStep::Close);
    EXPECT_EQ(TemplateStore::readVariable("Mood"),
              (VariableDefinition{"Mood", "happy", {"sad", "happy"}}));
    EXPECT_EQ(TemplateStore::userAddedVariables(), QStringList{"Mood"});

    // A computed variable's new default.
    VariableEdit time = openedVariable("Time");
    time.list.setChecked(4, true);
    person.boxAnswers = {IDOK};
    EXPECT_EQ(tessaly::sms::saveVariable(time, nullptr), EditorStep::Close);
    EXPECT_EQ(TemplateStore::readDefault("Time"), "in 1 hour");

    // Renamed: placeholders follow (without regard to case), the old key goes, the new name is
    // registered and the old entry stays.
    TemplateStore::writeTemplate("Hi", "[greeting:Hi] [Greetings:Hi] [Mood:sad]");
    VariableEdit salute = openedVariable("Greeting");
    salute.name = "Salute";
    salute.list.setRowText(salute.list.rowCount() - 1, "Howdy");
    person.boxAnswers = {IDOK};
    EXPECT_EQ(tessaly::sms::saveVariable(salute, nullptr), EditorStep::Close);
    EXPECT_EQ(TemplateStore::readTemplate("Hi"), "[Salute:Hi] [Greetings:Hi] [Mood:sad]");
    EXPECT_EQ(TemplateStore::readTemplate("Greeting"), "[Salute:Hello] [Recipient:First Name],");
    EXPECT_FALSE(TemplateStore::variableNames().contains("Greeting"));
    EXPECT_EQ(TemplateStore::readVariable("Salute").values.last(), "Howdy");
    EXPECT_EQ(TemplateStore::readDefault("Salute"), "Hello");
    EXPECT_EQ(TemplateStore::userAddedVariables(), (QStringList{"Mood", "Salute"}));
}

} // namespace
