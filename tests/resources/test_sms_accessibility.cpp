// Every window of the module's resource scripts, walked as a screen reader walks it: each
// control a person can operate must have a name.

#include "framework/resources/resources.h"
#include "framework/ui/dialog.h"
#include "resources/sms_resources.h"
#include "tests/testkit/window_test.h"

#include <QAccessible>
#include <QAccessibleInterface>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

using namespace tessaly;

bool isOperable(QAccessible::Role role) {
    switch (role) {
    case QAccessible::PushButton:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::EditableText:
    case QAccessible::ComboBox:
    case QAccessible::List:
    case QAccessible::Table:
    case QAccessible::Tree:
    case QAccessible::SpinBox:
    case QAccessible::Slider:
    case QAccessible::ButtonMenu:
    case QAccessible::ButtonDropDown:
        return true;
    default:
        return false;
    }
}

// "role 'objectName/class'" for every unnamed operable control under `node`.
void collectUnnamed(QAccessibleInterface* node, QStringList& unnamed, int depth = 0) {
    if (!node || depth > 12)
        return;
    if (isOperable(node->role()) && node->text(QAccessible::Name).trimmed().isEmpty()) {
        QObject* object = node->object();
        unnamed.append(QStringLiteral("role %1 %2")
                           .arg(int(node->role()))
                           .arg(object ? QString::fromUtf8(object->metaObject()->className())
                                       : QStringLiteral("(item)")));
    }
    // Rows and cells of a list carry their own text; the list itself is what must be named.
    if (node->role() == QAccessible::Table || node->role() == QAccessible::List)
        return;
    for (int i = 0; i < node->childCount(); ++i)
        collectUnnamed(node->child(i), unnamed, depth + 1);
}

class SmsAccessibility : public testkit::WindowTest,
                         public ::testing::WithParamInterface<const char*> {};

TEST_P(SmsAccessibility, EveryOperableControlOfEveryWindowHasAName) {
    const ResourceScript& script = sms::resourcesFor(QString::fromLatin1(GetParam()));
    ASSERT_FALSE(script.dialogs.empty());
    setCurrentResources(&script);
    QWidget host;
    host.resize(240, 320);
    int walked = 0;
    for (const auto& [id, dialogTemplate] : script.dialogs) {
        SCOPED_TRACE(testing::Message()
                     << "dialog " << id << " \"" << dialogTemplate.caption.toStdString() << "\"");
        Dialog dialog(id);
        ASSERT_TRUE(dialog.create(&host));
        QAccessibleInterface* root = QAccessible::queryAccessibleInterface(dialog.window());
        ASSERT_NE(root, nullptr);
        QStringList unnamed;
        collectUnnamed(root, unnamed);
        EXPECT_TRUE(unnamed.isEmpty()) << unnamed.join(QStringLiteral("; ")).toStdString();
        dialog.destroyWindow();
        ++walked;
    }
    EXPECT_EQ(walked, int(script.dialogs.size()));
    setCurrentResources(nullptr);
}

INSTANTIATE_TEST_SUITE_P(Languages, SmsAccessibility, ::testing::Values("en", "de"));

} // namespace
