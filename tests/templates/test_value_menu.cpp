#include "templates/factory_defaults.h"
#include "templates/value_menu.h"

#include "templates_test_support.h"

namespace {

using templates_test::TemplatesTest;
using tessaly::sms::EditText;
using tessaly::sms::MarkedValue;
using tessaly::sms::RecipientInfo;
using tessaly::sms::ValueMenu;
using tessaly::sms::ValueMenuContext;

constexpr auto kComposer = ValueMenuContext::Composer;
constexpr auto kEditor = ValueMenuContext::TemplateEditor;
const RecipientInfo kBob{"Bob", "Marsh", "Bob Marsh", "BM", "+111"};

TEST(MarkedValueAt, FindsTheMarksAroundTheCaret) {
    const QString text = QStringLiteral("Hi <for lunch>, [Time:Now]\n<x\n[a>");
    const struct {
        int caret;
        int start; // -1: none
        int end;
        const char* name;
        const char* value;
    } cases[] = {
        {7, 3, 14, nullptr, "for lunch"},
        {3, 3, 14, nullptr, "for lunch"},  // right before the opening mark
        {14, 3, 14, nullptr, "for lunch"}, // right after the closing mark
        {20, 16, 26, "Time", "Now"},
        {1, -1, 0, nullptr, nullptr},
        {29, -1, 0, nullptr, nullptr}, // "<x" is not closed on its line
        {32, 30, 33, nullptr, "a"},    // marks of either kind
        {999, 30, 33, nullptr, "a"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.caret);
        const auto marked = tessaly::sms::markedValueAt(text, c.caret);
        if (c.start < 0) {
            EXPECT_FALSE(marked.has_value());
            continue;
        }
        ASSERT_TRUE(marked.has_value());
        EXPECT_EQ(marked->start, c.start);
        EXPECT_EQ(marked->end, c.end);
        EXPECT_EQ(marked->hasName, c.name != nullptr);
        EXPECT_EQ(marked->name, QString::fromLatin1(c.name));
        EXPECT_EQ(marked->value, QString::fromLatin1(c.value));
    }
}

class ValueMenuTest : public TemplatesTest {
protected:
    void SetUp() override {
        TemplatesTest::SetUp();
        tessaly::sms::restoreFactoryVariables(true);
    }
    static QStringList itemTexts(const tessaly::MenuItem& popup) {
        QStringList texts;
        for (const auto& item : popup.children)
            texts.append(item.separator ? QStringLiteral("-")
                                        : QStringLiteral("%1=%2").arg(item.text).arg(item.id));
        return texts;
    }
};

TEST_F(ValueMenuTest, MenusOfferTheVariablesValues) {
    const QStringList greeting = {"Dear=1",         "Hello=2",    "Hi=3",
                                  "Good morning=4", "Good day=5", "Good evening=6"};
    const QStringList contact = {"First name=1", "Last name=2",      "Full Name=3",
                                 "Initials=4",   "Name and Phone=5", "Phone=6"};
    const QStringList date = {"yesterday=1", "today=2", "tomorrow=3"};
    const struct {
        const char* text;
        ValueMenuContext context;
        const char* variable; // nullptr: no menu
        QStringList items;
    } cases[] = {
        {"<Hello>", kComposer, "Greeting", greeting},
        {"[Greeting:nonsense]", kEditor, "Greeting", greeting},
        {"[Contact:Phone]", kComposer, "Contact",
         contact + QStringList{"-", "Choose from Phonebook=10301"}},
        {"[Contact:Phone]", kEditor, "Contact", contact},
        {"<today>", kComposer, "Date", date + QStringList{"Choose...=10318"}},
        {"[Time:Now]", kComposer, "Time", {}},
        {"<nothing known>", kComposer, nullptr, {}},
        {"[greeting:Hello]", kComposer, nullptr, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const auto menu = tessaly::sms::buildValueMenu(QString::fromLatin1(c.text), 2, c.context);
        if (c.variable == nullptr) {
            EXPECT_FALSE(menu.has_value());
            continue;
        }
        ASSERT_TRUE(menu.has_value());
        EXPECT_EQ(menu->variable, QString::fromLatin1(c.variable));
        EXPECT_TRUE(menu->popup.isPopup);
        EXPECT_EQ(menu->popup.text, QStringLiteral("Variable Names"));
        if (!c.items.isEmpty()) {
            EXPECT_EQ(itemTexts(menu->popup), c.items);
        }
    }
    const auto time = tessaly::sms::buildValueMenu(QStringLiteral("[Time:Now]"), 2, kComposer);
    EXPECT_EQ(itemTexts(time->popup).size(), 10);
    EXPECT_EQ(itemTexts(time->popup).last(), QStringLiteral("Choose...=10318"));
}

TEST_F(ValueMenuTest, ReplacementsForAChoice) {
    clock.set(2003, 5, 17, 22, 0);
    const struct {
        const char* text;
        const char* choice;
        ValueMenuContext context;
        bool contactPicked;
        const char* replacement;
    } cases[] = {
        {"[Time:Now]", "in 4 hours", kComposer, false, "[Time:26:00]"},
        {"[Time:Now]", "in 4 hours", kEditor, false, "[Time:in 4 hours]"},
        {"<Now>", "Now", kComposer, false, "[Time:22:00]"},
        {"[Date:today]", "tomorrow", kComposer, false, "[Date: on 2003-05-18]"},
        {"<Hello>", "Hi", kComposer, false, "<Hi>"},
        {"[Greeting:Hello]", "Hi", kEditor, false, "[Greeting:Hi]"},
        {"[Contact:Phone]", "Full Name", kComposer, false, "[Contact:Full Name]"},
        {"[Contact:Phone]", "Full Name", kComposer, true, "[Contact:Bob Marsh]"},
        {"[Contact:Phone]", "first NAME", kComposer, true, "[Contact:Bob]"},
        {"[Contact:Phone]", "Name and Phone", kComposer, true, "[Contact:Bob Marsh,+111]"},
        {"[Contact:Phone]", "Shoe Size", kComposer, true, "[Contact:Shoe Size]"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.text) + " " + c.choice);
        const auto menu = tessaly::sms::buildValueMenu(QString::fromLatin1(c.text), 1, c.context);
        ASSERT_TRUE(menu.has_value());
        const std::optional<RecipientInfo> picked =
            c.contactPicked ? std::optional(kBob) : std::nullopt;
        EXPECT_EQ(tessaly::sms::valueMenuReplacement(*menu, QString::fromLatin1(c.choice),
                                                     c.context, picked),
                  QString::fromLatin1(c.replacement));
    }
}

TEST_F(ValueMenuTest, TheWholeTapAndHold) {
    QStringList dateTimeTitles;
    std::optional<QString> dateTimeAnswer;
    const tessaly::sms::DateTimePickerRun pickDateTime = [&](const QString& variable) {
        dateTimeTitles.append(variable);
        return dateTimeAnswer;
    };
    std::optional<RecipientInfo> pickedContact;
    const auto tap = [&](const char* text, int caret, int command) {
        person.menuAnswers = {command};
        return tessaly::sms::runValueMenu(nullptr, {}, QString::fromLatin1(text), caret, kComposer,
                                          pickDateTime, pickedContact);
    };
    const auto edited = [&](const char* text, int caret, int command) {
        const tessaly::sms::ValueMenuOutcome outcome = tap(text, caret, command);
        EXPECT_FALSE(outcome.awaitingContact.has_value());
        return outcome.edit;
    };

    EXPECT_EQ(edited("Dear <Hello> you", 7, 3), (EditText{"Dear <Hi> you", 9}));
    EXPECT_EQ(edited("Dear <Hello> you", 7, 0), std::nullopt);
    EXPECT_EQ(edited("Dear <Hello> you", 7, 77), std::nullopt);

    dateTimeAnswer = QStringLiteral("14:05 ");
    EXPECT_EQ(edited("At [Time:Now].", 6, ValueMenu::kChooseDateTimeCommand),
              (EditText{"At [Time:14:05 ].", 16}));
    dateTimeAnswer.reset();
    EXPECT_EQ(edited("At [Time:Now].", 6, ValueMenu::kChooseDateTimeCommand), std::nullopt);
    EXPECT_EQ(dateTimeTitles, (QStringList{"Time", "Time"}));
    person.menuAnswers = {ValueMenu::kChooseDateTimeCommand};
    EXPECT_EQ(tessaly::sms::runValueMenu(nullptr, {}, QStringLiteral("[Date:today]"), 3, kComposer,
                                         {}, pickedContact)
                  .edit,
              std::nullopt);

    // The phone book answers later: the menu waits, and the contact then fills the field the
    // placeholder names; later choices name fields of that contact.
    const QString called = QStringLiteral("[Contact:Name and Phone] called");
    const auto waiting =
        tap("[Contact:Name and Phone] called", 3, ValueMenu::kChooseFromPhonebookCommand);
    EXPECT_FALSE(waiting.edit.has_value());
    ASSERT_TRUE(waiting.awaitingContact.has_value());
    EXPECT_EQ(tessaly::sms::fillPickedContact(called, *waiting.awaitingContact, kComposer, kBob),
              (EditText{"[Contact:Bob Marsh,+111] called", 24}));
    pickedContact = kBob;
    EXPECT_EQ(edited("[Contact:Bob Marsh,+111] called", 3, 6),
              (EditText{"[Contact:+111] called", 14}));
}

} // namespace
