// The Templates and Variables pages and their edit dialogs, driven as a person would, in a
// property sheet of their own.

#include "framework/registry/profile.h"
#include "framework/registry/registry.h"
#include "resources/resource.h"
#include "templates/factory_defaults.h"
#include "templates/template_editors.h"
#include "templates/template_pages.h"
#include "templates/template_store.h"
#include "templates/value_menu.h"
#include "tests/settings/options_fixture.h"
#include "tests/testkit/qstring_printer.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QtTest/QTest>

namespace {

using tessaly::Dialog;
using tessaly::sms::TemplateStore;
using tessaly::sms::VariableDefinition;
namespace testkit = tessaly::testkit;

const QString kSaveQuestion = QStringLiteral("Do you want to save changes?");

QStringList rowsOf(Dialog& page, int listId) {
    QStringList rows;
    tessaly::ListView* list = page.listView(listId);
    for (int row = 0; list && row < list->itemCount(); ++row)
        rows.append(list->itemText(row, 0));
    return rows;
}

int rowOf(Dialog& page, int listId, const QString& name) {
    return int(rowsOf(page, listId).indexOf(name));
}

// A tap, or the stylus held, on the row that shows `name`.
bool tapRow(Dialog& page, int listId, const QString& name) {
    return testkit::select(page, listId, rowOf(page, listId, name));
}
bool holdRow(Dialog& page, int listId, const QString& name) {
    return testkit::tapAndHold(page, listId, rowOf(page, listId, name));
}

// Types into the in-place editor of the value row being edited and presses Enter.
void typeIntoValueRow(Dialog& dialog, const QString& text) {
    tessaly::ListView* values = dialog.listView(IDC_EDIT_VARIABLE_VALUES);
    auto* editor = qobject_cast<QLineEdit*>(values->indexWidget(values->currentIndex()));
    ASSERT_NE(editor, nullptr);
    editor->selectAll();
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    testkit::pumpMessages();
}

class TemplatePagesTest : public options_test::OptionsTest {
protected:
    void SetUp() override {
        OptionsTest::SetUp();
        tessaly::profile::setRegistryKey(QStringLiteral("Halvern\\Tessaly"));
        tessaly::profile::setProfileName(QStringLiteral("SMS"));
        tessaly::sms::seedFactoryDefaults();

        // The two pages as the module adds them, in a sheet of their own.
        static constexpr tessaly::sms::OptionsPageFactory pages[] = {
            {tessaly::sms::OptionsPageKind::Variables, &tessaly::sms::VariablesPage::make},
            {tessaly::sms::OptionsPageKind::Templates, &tessaly::sms::TemplatesPage::make},
        };
        sheet = std::make_unique<tessaly::sms::OptionsSheet>(nullptr, environment, pages);
        ASSERT_TRUE(sheet->create());
        sheet->showWindow(SW_SHOW);
        templatesPage = static_cast<tessaly::sms::TemplatesPage*>(sheet->page(0));
        variablesPage_ = static_cast<tessaly::sms::VariablesPage*>(sheet->page(1));
    }
    void TearDown() override {
        OptionsTest::TearDown();
        sheet.reset();
        tessaly::releaseRegistryHives();
    }

    Dialog& variablesPage() {
        EXPECT_TRUE(sheet->setActivePage(1));
        return *variablesPage_;
    }

    SmsSettings& settings = environment.record;
    std::unique_ptr<tessaly::sms::OptionsSheet> sheet;
    tessaly::sms::TemplatesPage* templatesPage = nullptr;
    tessaly::sms::VariablesPage* variablesPage_ = nullptr;
};

TEST_F(TemplatePagesTest, TheTemplatesPageListsByCodePointAndKeepsTheFlags) {
    TemplateStore::writeTemplate("apple", "a");
    TemplateStore::writeTemplate("Zebra", "z");
    templatesPage->reloadList();
    EXPECT_EQ(
        rowsOf(*templatesPage, IDC_TEMPLATES_LIST),
        (QStringList{"Call me", "Greeting", "Incoming call", "Meeting", "Meeting update",
                     "Return call", "Signature", "Thanks for", "Will be late", "Zebra", "apple"}));

    EXPECT_EQ(templatesPage->isItemChecked(IDC_TEMPLATES_INSERT_GREETING), BST_CHECKED);
    ASSERT_TRUE(testkit::click(*templatesPage, IDC_TEMPLATES_INSERT_GREETING));
    EXPECT_TRUE(settings.insertGreeting); // written when the page is left
    variablesPage();
    EXPECT_FALSE(settings.insertGreeting);
    EXPECT_TRUE(settings.insertSignature);
}

TEST_F(TemplatePagesTest, ANewTemplateIsCheckedAskedAndStored) {
    user.runModal([&](Dialog& editor) {
            EXPECT_EQ(editor.templateId(), IDD_EDIT_TEMPLATE);
            EXPECT_EQ(editor.itemText(IDC_EDIT_TEMPLATE_TITLE), "Variable");
            editor.sendCommand(IDOK); // nothing typed: closes without a question
        })
        .runModal([&](Dialog& editor) {
            testkit::type(editor, IDC_EDIT_TEMPLATE_BODY, "Later ");
            editor.sendCommand(IDOK); // no name
            EXPECT_FALSE(editor.hasEnded());
            testkit::type(editor, IDC_EDIT_TEMPLATE_NAME, "Call me");
            editor.edit(IDC_EDIT_TEMPLATE_BODY)->setText(QString());
            editor.sendCommand(IDOK); // no body
            EXPECT_FALSE(editor.hasEnded());
            testkit::type(editor, IDC_EDIT_TEMPLATE_BODY, "Later ");
            editor.sendCommand(IDOK); // the name exists: No
            EXPECT_FALSE(editor.hasEnded());
            editor.edit(IDC_EDIT_TEMPLATE_NAME)->setText("Back soon");
            // Choosing variables puts their placeholders in at the caret.
            testkit::select(
                editor, IDC_EDIT_TEMPLATE_VARIABLE,
                editor.comboBox(IDC_EDIT_TEMPLATE_VARIABLE)->findStringExact(-1, "Greeting"));
            editor.edit(IDC_EDIT_TEMPLATE_BODY)->setCaretPos(0);
            testkit::select(
                editor, IDC_EDIT_TEMPLATE_VARIABLE,
                editor.comboBox(IDC_EDIT_TEMPLATE_VARIABLE)->findStringExact(-1, "Time"));
            EXPECT_EQ(editor.itemText(IDC_EDIT_TEMPLATE_BODY), "[Time:Now]Later <Hello>");
            editor.sendCommand(IDOK);
            EXPECT_TRUE(editor.hasEnded());
        })
        .answerBox(IDOK)
        .answerBox(IDOK)
        .answerBox(IDOK)
        .answerBox(IDOK)
        .answerBox(IDOK)
        .answerBox(IDNO)
        .answerBox(IDOK);
    ASSERT_TRUE(testkit::click(*templatesPage, IDC_TEMPLATES_NEW));
    ASSERT_TRUE(testkit::click(*templatesPage, IDC_TEMPLATES_NEW));

    QStringList shown;
    for (const testkit::ShownBox& box : user.boxes())
        shown.append(box.text);
    EXPECT_EQ(shown, (QStringList{kSaveQuestion, "Template name cannot be empty!", kSaveQuestion,
                                  "Template body cannot be empty!", kSaveQuestion,
                                  "Template name already exists. Do you really want to "
                                  "overwrite it?",
                                  kSaveQuestion}));
    EXPECT_EQ(user.boxes()[1].icon(), MB_ICONSTOP);
    EXPECT_EQ(user.boxes()[5].buttons(), MB_YESNO);
    EXPECT_EQ(TemplateStore::readTemplate("Back soon"), "[Time:Now]Later [Greeting:Hello]");
    EXPECT_EQ(TemplateStore::readTemplate("Call me"), "Please call me at [Sender:Phone].");
    EXPECT_NE(rowOf(*templatesPage, IDC_TEMPLATES_LIST, "Back soon"), -1);
}

TEST_F(TemplatePagesTest, ATemplateIsChangedRenamedAndDeletedFromTheList) {
    // A tap opens the template as the composer would show it; saved, its placeholders stay.
    user.runModal([&](Dialog& editor) {
            EXPECT_EQ(editor.itemText(IDC_EDIT_TEMPLATE_NAME), "Will be late");
            EXPECT_EQ(editor.itemText(IDC_EDIT_TEMPLATE_BODY), "I will be <30 minutes> late.");
            editor.edit(IDC_EDIT_TEMPLATE_BODY)->setCaretPos(28);
            testkit::type(editor, IDC_EDIT_TEMPLATE_BODY, " Sorry!");
            editor.sendCommand(IDOK);
        })
        .answerBox(IDOK);
    ASSERT_TRUE(tapRow(*templatesPage, IDC_TEMPLATES_LIST, "Will be late"));
    EXPECT_EQ(TemplateStore::readTemplate("Will be late"),
              "I will be [Time span:30 minutes] late. Sorry!");

    // "Edit" of the tap-and-hold menu; a new name replaces the old one. The body's value menu
    // picks another value; the placeholder keeps the template's spelling of its name.
    user.chooseMenu(IDM_CONTEXT_EDIT)
        .runModal([&](Dialog& editor) {
            editor.edit(IDC_EDIT_TEMPLATE_NAME)->setText("Running late");
            ASSERT_TRUE(testkit::tapAndHoldText(editor, IDC_EDIT_TEMPLATE_BODY, 13));
            EXPECT_EQ(editor.itemText(IDC_EDIT_TEMPLATE_BODY), "I will be <1 hour> late. Sorry!");
            editor.sendCommand(IDOK);
        })
        .chooseMenu(tessaly::sms::ValueMenu::kFirstValueCommand + 2)
        .answerBox(IDOK);
    ASSERT_TRUE(holdRow(*templatesPage, IDC_TEMPLATES_LIST, "Will be late"));
    EXPECT_EQ(user.menus().front().items.size(), 3u);
    EXPECT_EQ(rowOf(*templatesPage, IDC_TEMPLATES_LIST, "Will be late"), -1);
    EXPECT_EQ(TemplateStore::readTemplate("Running late"),
              "I will be [Time span:1 hour] late. Sorry!");

    // A change answered with Cancel is not saved.
    user.runModal([&](Dialog& editor) {
            testkit::type(editor, IDC_EDIT_TEMPLATE_BODY, "!");
            editor.sendCommand(IDOK);
        })
        .answerBox(IDCANCEL);
    ASSERT_TRUE(tapRow(*templatesPage, IDC_TEMPLATES_LIST, "Running late"));
    EXPECT_EQ(TemplateStore::readTemplate("Running late"),
              "I will be [Time span:1 hour] late. Sorry!");

    user.chooseMenu(IDM_CONTEXT_DELETE);
    ASSERT_TRUE(holdRow(*templatesPage, IDC_TEMPLATES_LIST, "Running late"));
    EXPECT_EQ(rowOf(*templatesPage, IDC_TEMPLATES_LIST, "Running late"), -1);
    EXPECT_FALSE(TemplateStore::templateNames().contains("Running late"));
}

TEST_F(TemplatePagesTest, FactorySettingsBringTheNineTemplatesBack) {
    TemplateStore::deleteTemplate("Call me");
    TemplateStore::writeTemplate("Mine", "x");
    templatesPage->reloadList();
    ASSERT_TRUE(testkit::click(*templatesPage, IDC_TEMPLATES_INSERT_SIGNATURE));

    user.answerBox(IDCANCEL);
    ASSERT_TRUE(testkit::click(*templatesPage, IDC_FACTORY_SETTINGS));
    EXPECT_EQ(rowsOf(*templatesPage, IDC_TEMPLATES_LIST).size(), 9);
    EXPECT_EQ(templatesPage->isItemChecked(IDC_TEMPLATES_INSERT_SIGNATURE), BST_UNCHECKED);

    user.answerBox(IDOK);
    ASSERT_TRUE(testkit::click(*templatesPage, IDC_FACTORY_SETTINGS));
    EXPECT_EQ(user.boxes().back().text,
              "Restores the specified templates (factory settings)\nand deletes the "
              "user-defined templates!");
    EXPECT_EQ(rowsOf(*templatesPage, IDC_TEMPLATES_LIST),
              (QStringList{"Call me", "Greeting", "Incoming call", "Meeting", "Meeting update",
                           "Return call", "Signature", "Thanks for", "Will be late"}));
    EXPECT_EQ(templatesPage->isItemChecked(IDC_TEMPLATES_INSERT_SIGNATURE), BST_CHECKED);
}

TEST_F(TemplatePagesTest, TheVariablesPageListsNamesWithTheirKind) {
    Dialog& page = variablesPage();
    tessaly::ListView* list = page.listView(IDC_VARIABLES_LIST);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(rowsOf(page, IDC_VARIABLES_LIST),
              (QStringList{"Contact", "Date", "Ending", "Greeting", "Meet...", "Meeting Status",
                           "Recipient", "Sender", "Thanks for...", "Time", "Time span"}));
    EXPECT_EQ(list->itemText(1, 1), "Calculating");
    EXPECT_EQ(list->itemText(2, 1), "List selection");
    EXPECT_EQ(list->columnText(0), "Name");
    EXPECT_EQ(list->columnText(1), "Type");
}

TEST_F(TemplatePagesTest, ANewVariableNeedsANameAndValues) {
    Dialog& page = variablesPage();
    user.runModal([&](Dialog& editor) {
            EXPECT_EQ(editor.templateId(), IDD_EDIT_VARIABLE);
            EXPECT_EQ(rowsOf(editor, IDC_EDIT_VARIABLE_VALUES), QStringList{"<<New value>>"});
            // A name longer than a registry key name could not be stored: typing stops there.
            testkit::type(editor, IDC_EDIT_VARIABLE_NAME, QString(300, u'x'));
            EXPECT_EQ(editor.itemText(IDC_EDIT_VARIABLE_NAME).size(), 255);
            editor.edit(IDC_EDIT_VARIABLE_NAME)->setText(QString());
            editor.sendCommand(IDOK); // no name
            testkit::type(editor, IDC_EDIT_VARIABLE_NAME, "Mood");
            editor.sendCommand(IDOK); // no values
            EXPECT_FALSE(editor.hasEnded());

            testkit::select(editor, IDC_EDIT_VARIABLE_VALUES, 0);
            typeIntoValueRow(editor, "sad");
            testkit::select(editor, IDC_EDIT_VARIABLE_VALUES, 1);
            typeIntoValueRow(editor, "happy");
            // Left empty, "<<New value>>" comes back.
            testkit::select(editor, IDC_EDIT_VARIABLE_VALUES, 2);
            typeIntoValueRow(editor, "");
            tessaly::ListView* values = editor.listView(IDC_EDIT_VARIABLE_VALUES);
            EXPECT_EQ(rowsOf(editor, IDC_EDIT_VARIABLE_VALUES),
                      (QStringList{"sad", "happy", "<<New value>>"}));
            EXPECT_EQ(values->itemText(0, 1), QString(QChar(0x25CF)));
            // The check box of a row makes it the default; only one row is checked.
            values->item(0, 0)->setCheckState(Qt::Checked);
            testkit::pumpMessages();
            values->item(1, 0)->setCheckState(Qt::Checked);
            testkit::pumpMessages();
            EXPECT_FALSE(values->isItemChecked(0));
            EXPECT_TRUE(values->isItemChecked(1));
            editor.sendCommand(IDOK);
            EXPECT_TRUE(editor.hasEnded());
        })
        .answerBox(IDOK)
        .answerBox(IDOK)
        .answerBox(IDOK)
        .answerBox(IDOK)
        .answerBox(IDOK);
    ASSERT_TRUE(testkit::click(page, IDC_VARIABLES_NEW));

    ASSERT_GE(user.boxes().size(), 5u);
    EXPECT_EQ(user.boxes()[1].text, "Variable name cannot be empty!");
    EXPECT_EQ(user.boxes()[3].text, "Variable without values cannot be stored.");
    EXPECT_EQ(TemplateStore::readVariable("Mood"),
              (VariableDefinition{"Mood", "happy", {"sad", "happy"}}));
    EXPECT_EQ(TemplateStore::userAddedVariables(), QStringList{"Mood"});
    const int row = rowOf(page, IDC_VARIABLES_LIST, "Mood");
    ASSERT_NE(row, -1);
    EXPECT_EQ(page.listView(IDC_VARIABLES_LIST)->itemText(row, 1), "List selection");
}

TEST_F(TemplatePagesTest, AVariableIsChangedAndRenamedWithItsPlaceholders) {
    Dialog& page = variablesPage();
    user.runModal([&](Dialog& editor) {
            EXPECT_EQ(editor.itemText(IDC_EDIT_VARIABLE_NAME), "Greeting");
            EXPECT_FALSE(editor.edit(IDC_EDIT_VARIABLE_NAME)->isReadOnly());
            tessaly::ListView* values = editor.listView(IDC_EDIT_VARIABLE_VALUES);
            EXPECT_EQ(values->itemCount(), 7);
            EXPECT_TRUE(values->isItemChecked(1)); // "Hello"
            // "Delete" from the row's tap-and-hold menu, then "Edit" of another row.
            testkit::tapAndHold(editor, IDC_EDIT_VARIABLE_VALUES, 0);
            testkit::tapAndHold(editor, IDC_EDIT_VARIABLE_VALUES, 1);
            typeIntoValueRow(editor, "Yo");
            editor.edit(IDC_EDIT_VARIABLE_NAME)->setText("Salute");
            editor.sendCommand(IDOK);
        })
        .chooseMenu(IDM_CONTEXT_DELETE)
        .chooseMenu(IDM_CONTEXT_EDIT)
        .answerBox(IDOK);
    ASSERT_TRUE(tapRow(page, IDC_VARIABLES_LIST, "Greeting"));

    EXPECT_EQ(TemplateStore::readVariable("Salute"),
              (VariableDefinition{
                  "Salute", "Hello", {"Hello", "Yo", "Good morning", "Good day", "Good evening"}}));
    EXPECT_EQ(TemplateStore::readTemplate("Greeting"), "[Salute:Hello] [Recipient:First Name],");
    EXPECT_EQ(TemplateStore::userAddedVariables(), QStringList{"Salute"});
    EXPECT_EQ(rowOf(page, IDC_VARIABLES_LIST, "Greeting"), -1);
}

TEST_F(TemplatePagesTest, AComputedVariableOnlyChangesItsDefault) {
    Dialog& page = variablesPage();
    user.runModal([&](Dialog& editor) {
            EXPECT_TRUE(editor.edit(IDC_EDIT_VARIABLE_NAME)->isReadOnly());
            EXPECT_EQ(rowsOf(editor, IDC_EDIT_VARIABLE_VALUES),
                      (QStringList{"yesterday", "today", "tomorrow"}));
            editor.sendCommand(IDOK); // unchanged: closes without a question
        })
        .runModal([&](Dialog& editor) {
            editor.listView(IDC_EDIT_VARIABLE_VALUES)->item(2, 0)->setCheckState(Qt::Checked);
            testkit::pumpMessages();
            editor.sendCommand(IDOK);
        })
        .answerBox(IDOK);
    const int date = rowOf(page, IDC_VARIABLES_LIST, "Date");
    ASSERT_TRUE(testkit::select(page, IDC_VARIABLES_LIST, date));
    ASSERT_TRUE(testkit::select(page, IDC_VARIABLES_LIST, date));
    EXPECT_EQ(user.boxes().size(), 1u);
    EXPECT_EQ(TemplateStore::readDefault("Date"), "tomorrow");
    // The edited variable is selected again after the reload.
    EXPECT_EQ(page.listView(IDC_VARIABLES_LIST)->selectedRow(), date);
}

TEST_F(TemplatePagesTest, DeletingDateChangesNothingDeletingGreetingRemovesIt) {
    Dialog& page = variablesPage();
    const QStringList before = rowsOf(page, IDC_VARIABLES_LIST);
    user.chooseMenu(IDM_CONTEXT_DELETE);
    ASSERT_TRUE(holdRow(page, IDC_VARIABLES_LIST, "Date"));
    // Only "Delete" is offered.
    ASSERT_EQ(user.menus().back().items.size(), 1u);
    EXPECT_EQ(user.menus().back().items[0].id, IDM_CONTEXT_DELETE);
    EXPECT_EQ(rowsOf(page, IDC_VARIABLES_LIST), before);
    EXPECT_EQ(TemplateStore::readDefault("Date"), "today");
    EXPECT_EQ(page.listView(IDC_VARIABLES_LIST)->selectedRow(), -1);

    user.chooseMenu(IDM_CONTEXT_DELETE);
    ASSERT_TRUE(holdRow(page, IDC_VARIABLES_LIST, "Greeting"));
    EXPECT_EQ(rowOf(page, IDC_VARIABLES_LIST, "Greeting"), -1);
    EXPECT_FALSE(TemplateStore::variableNames().contains("Greeting"));

    // Factory Settings brings the eleven back and forgets the user's variables.
    TemplateStore::writeVariable({"Mood", "sad", {"sad"}});
    TemplateStore::registerUserVariable("Mood");
    user.answerBox(IDOK);
    ASSERT_TRUE(testkit::click(page, IDC_FACTORY_SETTINGS));
    EXPECT_EQ(user.boxes().back().text,
              "Restores specified variables (factory settings)\nand deletes user-defined "
              "variables!");
    EXPECT_EQ(rowsOf(page, IDC_VARIABLES_LIST), before);
    EXPECT_TRUE(TemplateStore::userAddedVariables().isEmpty());
    EXPECT_EQ(TemplateStore::readDefault("Greeting"), "Hello");
}

TEST_F(TemplatePagesTest, PicturesOfThePagesAndDialogs) {
    ASSERT_TRUE(testkit::saveScreenshot(
        *sheet, testkit::testOutputPath(QStringLiteral("templates_page.png"))));
    user.runModal([](Dialog& editor) {
        tessaly::Edit* body = editor.edit(IDC_EDIT_TEMPLATE_BODY);
        body->setCaretPos(body->textLength());
        testkit::type(editor, IDC_EDIT_TEMPLATE_BODY, "\n");
        testkit::select(editor, IDC_EDIT_TEMPLATE_VARIABLE,
                        editor.comboBox(IDC_EDIT_TEMPLATE_VARIABLE)->findStringExact(-1, "Ending"));
        EXPECT_TRUE(testkit::saveScreenshot(
            editor, testkit::testOutputPath(QStringLiteral("templates_edit_template.png"))));
    });
    ASSERT_TRUE(tapRow(*templatesPage, IDC_TEMPLATES_LIST, "Meeting"));

    Dialog& page = variablesPage();
    ASSERT_TRUE(testkit::saveScreenshot(
        *sheet, testkit::testOutputPath(QStringLiteral("templates_variables_page.png"))));
    user.runModal([](Dialog& editor) {
        EXPECT_TRUE(testkit::saveScreenshot(
            editor, testkit::testOutputPath(QStringLiteral("templates_edit_variable.png"))));
    });
    ASSERT_TRUE(tapRow(page, IDC_VARIABLES_LIST, "Greeting"));
}

} // namespace
