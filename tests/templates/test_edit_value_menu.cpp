#include "templates/edit_value_menu.h"

#include "framework/registry/profile.h"
#include "framework/registry/registry.h"
#include "framework/resources/resource_parser.h"
#include "framework/resources/resources.h"
#include "resources/resource.h"
#include "resources/sms_resources.h"
#include "suite/telephony/host_hooks.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"
#include "templates/factory_defaults.h"
#include "tests/testkit/qstring_printer.h"
#include "tests/testkit/system_time.h"
#include "tests/testkit/window_test.h"

namespace {

using tessaly::Dialog;
using tessaly::sms::EditValueMenu;
using tessaly::sms::ValueMenu;
using tessaly::sms::ValueMenuContext;
namespace testkit = tessaly::testkit;

constexpr int kText = 10058;

const tessaly::DialogTemplate& editorTemplate() {
    static const tessaly::ResourceParseResult parsed = tessaly::parseResourceScript(
        QStringLiteral("100 DIALOG 0, 0, 145, 156\n"
                       "CAPTION \"Compose\"\n"
                       "BEGIN\n"
                       "    EDITTEXT 10058, 0, 0, 145, 80, ES_MULTILINE | ES_WANTRETURN\n"
                       "END\n"),
        QStringLiteral("editor.rc"), {});
    return parsed.script.dialogs.at(100);
}

// A window with one multi-line edit and the value menu on it, as the composer and the template
// editor have.
class EditorWindow final : public Dialog {
public:
    explicit EditorWindow(ValueMenuContext context)
        : Dialog(editorTemplate())
        , valueMenu(*this, kText, context) {}

    EditValueMenu valueMenu;

protected:
    bool onInitDialog() override {
        EXPECT_TRUE(valueMenu.attach());
        return true;
    }
};

using tessaly::testkit::at;

class EditValueMenuTest : public testkit::WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        tessaly::profile::setRegistryKey(QStringLiteral("Halvern\\Tessaly"));
        tessaly::profile::setProfileName(QStringLiteral("SMS"));
        previousResources_ = tessaly::currentResources();
        tessaly::setCurrentResources(&tessaly::sms::resources());
        tessaly::sms::restoreFactoryVariables(true);
        tessaly::telephony::Options options;
        options.databasePath = QStringLiteral(":memory:");
        ASSERT_TRUE(tessaly::telephony::open(options).isOk());
        clock.setLocalNow(at(2024, 5, 17, 10, 0));
    }
    void TearDown() override {
        window.reset();
        WindowTest::TearDown();
        tessaly::telephony::close();
        tessaly::telephony::installHostHooks({});
        tessaly::setCurrentResources(previousResources_);
        tessaly::releaseRegistryHives();
    }

    tessaly::Edit& open(const QString& text,
                        ValueMenuContext context = ValueMenuContext::Composer) {
        window = std::make_unique<EditorWindow>(context);
        EXPECT_TRUE(window->create());
        window->showWindow(SW_SHOW);
        tessaly::Edit* edit = window->edit(kText);
        edit->setText(text);
        return *edit;
    }
    // The stylus held on the character at `position`; answers the phone book's picker too.
    void tapAndHold(int position) {
        ASSERT_TRUE(testkit::tapAndHoldText(*window, kText, position));
        testkit::pumpMessages();
    }

    std::unique_ptr<EditorWindow> window;

private:
    const tessaly::ResourceScript* previousResources_ = nullptr;
};

TEST_F(EditValueMenuTest, AChosenValueReplacesTheTappedOne) {
    const struct {
        const char* text;
        int tap;
        ValueMenuContext context;
        int command; // 0 dismisses the menu
        const char* after;
        int caret;
    } cases[] = {
        {"Dear <Hello> you", 8, ValueMenuContext::Composer, 3, "Dear <Hi> you", 9},
        {"Dear <Hello> you", 8, ValueMenuContext::Composer, 0, "Dear <Hello> you", 8},
        // Line breaks count two characters in the caret, as the edit counts them.
        {"Hi,\r\nat [Time:Now]\r\nok", 11, ValueMenuContext::Composer, 5,
         "Hi,\r\nat [Time:11:00]\r\nok", 20},
        {"Hi,\r\nat [Time:Now]\r\nok", 11, ValueMenuContext::TemplateEditor, 5,
         "Hi,\r\nat [Time:in 1 hour]\r\nok", 24},
        {"Hi,\r\nat [Time:Now]\r\nok", 11, ValueMenuContext::Composer, 0,
         "Hi,\r\nat [Time:Now]\r\nok", 11},
        {"[Date:today] <Hello>", 14, ValueMenuContext::Composer, 6, "[Date:today] <Good evening>",
         27},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        tessaly::Edit& edit = open(QString::fromLatin1(c.text), c.context);
        edit.setCaretPos(0);
        user.chooseMenu(c.command);
        tapAndHold(c.tap);
        EXPECT_EQ(edit.text(), QString::fromLatin1(c.after));
        EXPECT_EQ(edit.caretPos(), c.caret);
    }
}

TEST_F(EditValueMenuTest, NoMenuOutsideAKnownValue) {
    tessaly::Edit& edit = open(QStringLiteral("Plain words <unknown> here"));
    tapAndHold(2);
    tapAndHold(15);
    EXPECT_TRUE(user.menus().empty());
    EXPECT_EQ(edit.text(), QStringLiteral("Plain words <unknown> here"));
}

TEST_F(EditValueMenuTest, ChooseOpensTheDateTimePicker) {
    const struct {
        const char* text;
        const char* title;
        SYSTEMTIME chosen;
        int button;
        const char* after;
    } cases[] = {
        {"At [Time:Now].", "Time", at(2000, 1, 1, 9, 30), IDOK, "At [Time:09:30 ]."},
        {"Due [Date:today]", "Date", at(2024, 6, 1, 9, 30), IDOK, "Due [Date: on 2024-06-01]"},
        {"At [Time:Now].", "Time", at(2000, 1, 1, 9, 30), IDCANCEL, "At [Time:Now]."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.after);
        tessaly::Edit& edit = open(QString::fromLatin1(c.text));
        user.chooseMenu(ValueMenu::kChooseDateTimeCommand).runModal([&](Dialog& picker) {
            EXPECT_EQ(picker.templateId(), IDD_DATETIME_PICKER);
            EXPECT_EQ(picker.title(), QString::fromLatin1(c.title));
            const int shown = picker.isItemVisible(10003) ? 10003 : 10002;
            picker.dateTimePicker(shown)->setSystemTime(c.chosen);
            testkit::click(picker, c.button);
        });
        tapAndHold(6);
        EXPECT_EQ(edit.text(), QString::fromLatin1(c.after));
        const int end = QString::fromLatin1(c.after).indexOf(u']') + 1;
        EXPECT_EQ(edit.caretPos(), c.button == IDOK ? end : 6);
    }
}

TEST_F(EditValueMenuTest, APhoneBookContactFillsThePlaceholder) {
    ASSERT_TRUE(
        tessaly::telephony::simulator::addContact(u"Bob", u"Marsh", {u"+111", u"+222"}).isOk());
    tessaly::Edit& edit = open(QStringLiteral("[Contact:Name and Phone] called"));

    user.chooseMenu(ValueMenu::kChooseFromPhonebookCommand).pickContact(0, 1);
    tapAndHold(3);
    EXPECT_EQ(user.contactPickerRuns(), 1);
    EXPECT_EQ(edit.text(), QStringLiteral("[Contact:Bob Marsh,+222] called"));
    EXPECT_EQ(edit.caretPos(), 24);
    ASSERT_TRUE(window->valueMenu.pickedContact().has_value());
    EXPECT_EQ(*window->valueMenu.pickedContact(),
              (tessaly::sms::RecipientInfo{"Bob", "Marsh", "Bob Marsh", "BM", "+222"}));
    EXPECT_FALSE(window->valueMenu.isWaitingForContact());

    // Later choices name fields of the picked contact.
    user.chooseMenu(ValueMenu::kFirstValueCommand + 3);
    tapAndHold(3);
    EXPECT_EQ(edit.text(), QStringLiteral("[Contact:BM] called"));

    // Cancelled: nothing changes and the contact picked before stays.
    user.chooseMenu(ValueMenu::kChooseFromPhonebookCommand).pickContact(-1);
    tapAndHold(3);
    EXPECT_EQ(edit.text(), QStringLiteral("[Contact:BM] called"));
    EXPECT_EQ(window->valueMenu.pickedContact()->phone, QStringLiteral("+222"));
    EXPECT_FALSE(window->valueMenu.isWaitingForContact());
}

TEST_F(EditValueMenuTest, APhoneBookAnswerAfterTheTextChangedIsNotWritten) {
    ASSERT_TRUE(tessaly::telephony::simulator::addContact(u"Bob", u"Marsh", {u"+111"}).isOk());
    tessaly::Edit& edit = open(QStringLiteral("[Contact:Phone]"));
    user.chooseMenu(ValueMenu::kChooseFromPhonebookCommand).pickContact(0);
    // The answer is queued; typing gets in before it arrives.
    ASSERT_TRUE(testkit::tapAndHoldText(*window, kText, 3));
    EXPECT_TRUE(window->valueMenu.isWaitingForContact());
    edit.setCaretPos(15);
    ASSERT_TRUE(testkit::type(*window, kText, QStringLiteral("!")));
    testkit::pumpMessages();
    EXPECT_EQ(edit.text(), QStringLiteral("[Contact:Phone]!"));
    EXPECT_EQ(window->valueMenu.pickedContact()->phone, QStringLiteral("+111"));
}

TEST_F(EditValueMenuTest, WithoutThePhoneBookNothingOpens) {
    tessaly::telephony::HostHooks hooks;
    hooks.isServiceAvailable = [](GSM::ServiceId service) {
        return service != GSM::ServicePhoneBook;
    };
    tessaly::telephony::installHostHooks(hooks);
    tessaly::Edit& edit = open(QStringLiteral("[Contact:Phone]"));
    user.chooseMenu(ValueMenu::kChooseFromPhonebookCommand);
    tapAndHold(3);
    EXPECT_EQ(user.contactPickerRuns(), 0);
    EXPECT_EQ(edit.text(), QStringLiteral("[Contact:Phone]"));
    EXPECT_FALSE(window->valueMenu.isWaitingForContact());
}

} // namespace
