// Every window of the module's resource scripts, walked as a screen reader walks it: each
// control a person can operate must have a name.

#include "framework/resources/resources.h"
#include "framework/ui/dialog.h"
#include "resources/sms_resources.h"
#include "tests/testkit/accessibility.h"
#include "tests/testkit/window_test.h"

#include <QAccessible>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

using namespace tessaly;

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
        ASSERT_NE(QAccessible::queryAccessibleInterface(dialog.window()), nullptr);
        const QStringList unnamed = testkit::unnamedOperableControls(dialog.window());
        EXPECT_TRUE(unnamed.isEmpty()) << unnamed.join(QStringLiteral("; ")).toStdString();
        dialog.destroyWindow();
        ++walked;
    }
    EXPECT_EQ(walked, int(script.dialogs.size()));
    setCurrentResources(nullptr);
}

INSTANTIATE_TEST_SUITE_P(Languages, SmsAccessibility, ::testing::Values("en", "de"));

} // namespace
