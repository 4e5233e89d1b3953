// Names a screen reader says for controls made from a dialog template.

#include "framework/resources/resource_parser.h"
#include "framework/resources/resources.h"
#include "framework/ui/accessible_names.h"
#include "framework/ui/dialog.h"
#include "tests/testkit/accessibility.h"
#include "tests/testkit/window_test.h"

#include <QAccessible>
#include <QAccessibleInterface>

#include <gtest/gtest.h>

namespace {

using namespace tessaly;

TEST(AccessibleText, MnemonicsAndTrailingColonsGo) {
    const struct {
        const char* controlText;
        const char* spoken;
    } cases[] = {
        {"&To:", "To"},
        {"Save && Close", "Save & Close"},
        {" Days : ", "Days"},
        {"Re&ply", "Reply"},
        {"Ratio 1:2", "Ratio 1:2"},
        {"&", ""},
        {"", ""},
        {"::", ":"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(accessibleText(QString::fromUtf8(c.controlText)), QString::fromUtf8(c.spoken))
            << c.controlText;
}

constexpr char kScript[] = R"(
100 DIALOG 0, 0, 145, 156
STYLE WS_POPUP | WS_CAPTION
CAPTION "Options"
BEGIN
    LTEXT           "&Name:", -1, 2, 2, 30, 9
    EDITTEXT        10, 34, 2, 100, 12
    LTEXT           "Keep:", -1, 2, 16, 30, 9
    AUTOCHECKBOX    "&Sent messages", 11, 34, 16, 100, 12
    PUSHBUTTON      "&Clear", 12, 2, 30, 40, 14
    LTEXT           "Days:", -1, 2, 46, 30, 9
    EDITTEXT        13, 34, 46, 30, 12, ES_NUMBER
    CONTROL         "", 14, "msctls_updown32", UDS_AUTOBUDDY | UDS_ALIGNRIGHT, 0, 0, 10, 12
    COMBOBOX        15, 2, 60, 100, 40, CBS_DROPDOWNLIST
    CONTROL         "", 16, "SysListView32", LVS_REPORT, 0, 80, 145, 70
    LTEXT           "Status", 17, 2, 150, 60, 9
END
)";

class AccessibleNames : public testkit::WindowTest {
protected:
    void SetUp() override {
        testkit::WindowTest::SetUp();
        ResourceParseResult parsed =
            parseResourceScript(QString::fromUtf8(kScript), QStringLiteral("names.rc"));
        ASSERT_TRUE(parsed.ok());
        script_ = std::move(parsed.script);
        setCurrentResources(&script_);
    }
    void TearDown() override {
        testkit::WindowTest::TearDown();
        setCurrentResources(nullptr);
    }
    ResourceScript script_;
};

TEST_F(AccessibleNames, LabelsNameTheirBuddyButtonsThemselvesTheRestTheCaption) {
    Dialog dialog(100);
    ASSERT_TRUE(dialog.create());
    const struct {
        int id;
        QAccessible::Role role;
        const char* name;
    } cases[] = {
        {11, QAccessible::CheckBox, "Sent messages"}, // its own text, not the label's
        {12, QAccessible::PushButton, "Clear"},
        {14, QAccessible::SpinBox, "Days"},  // the up-down, after its buddy
        {16, QAccessible::Table, "Options"}, // no label before it: the caption
        {17, QAccessible::StaticText, "Status"},
    };
    for (const auto& c : cases) {
        QAccessibleInterface* node = QAccessible::queryAccessibleInterface(dialog.item(c.id));
        ASSERT_NE(node, nullptr) << c.id;
        EXPECT_EQ(node->role(), c.role) << c.id;
        EXPECT_EQ(node->text(QAccessible::Name), QString::fromUtf8(c.name)) << c.id;
    }
    // Edit fields are named on the line that takes the focus.
    for (const auto& [id, name] : {std::pair{10, "Name"}, std::pair{13, "Days"}}) {
        QAccessibleInterface* line =
            QAccessible::queryAccessibleInterface(dialog.item(id)->focusProxy());
        ASSERT_NE(line, nullptr) << id;
        EXPECT_EQ(line->role(), QAccessible::EditableText) << id;
        EXPECT_EQ(line->text(QAccessible::Name), QString::fromUtf8(name)) << id;
    }
    EXPECT_EQ(testkit::unnamedOperableControls(dialog.window()), QStringList());
}

TEST_F(AccessibleNames, ANameAWindowGaveIsKept) {
    Dialog dialog(100);
    ASSERT_TRUE(dialog.create());
    setControlAccessibleName(dialog.item(12), QStringLiteral("Clear all"));
    std::vector<NamedControl> controls{{nullptr, dialog.item(12)}};
    nameControls(controls, QStringLiteral("Options"));
    EXPECT_EQ(dialog.item(12)->accessibleName(), QStringLiteral("Clear all"));
}

} // namespace
