// Picture buttons of the command bar from a bitmap resource: a strip of square pictures cut
// into buttons, top-level commands shown as their picture, the module's own strip complete.

#include "framework/resources/resource_parser.h"
#include "framework/resources/resources.h"
#include "framework/ui/menu.h"
#include "resources/command_bar_images.h"
#include "resources/resource.h"
#include "resources/sms_resources.h"
#include "tests/framework/recording_dialog.h"
#include "tests/testkit/window_test.h"

#include <QAction>
#include <QImage>
#include <QMenu>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using namespace tessaly;
using testdata::RecordingDialog;

constexpr int kBar = 100;
constexpr int kStrip = 200;
constexpr int kMissing = 300;
constexpr int kNew = 1, kCut = 2, kCopy = 3;

constexpr char kScript[] = R"(
10 DIALOG 0, 0, 145, 156
STYLE WS_POPUP | WS_CAPTION
CAPTION "Bar"
BEGIN
END

100 MENU
BEGIN
    MENUITEM "New", 1
    POPUP "Edit"
    BEGIN
        MENUITEM "Cut", 2
        MENUITEM "Copy", 3
    END
END

200 BITMAP "strip.png"
300 BITMAP "missing.png"
)";

class CommandBarButtons : public testkit::WindowTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(folder_.isValid());
        QImage strip(32, 16, QImage::Format_RGB32);
        strip.fill(Qt::red);
        for (int y = 0; y < 16; ++y)
            for (int x = 16; x < 32; ++x)
                strip.setPixel(x, y, qRgb(0, 0, 255));
        ASSERT_TRUE(strip.save(folder_.filePath(QStringLiteral("strip.png"))));
        QFile script(folder_.filePath(QStringLiteral("bar.rc")));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write(kScript);
        script.close();
        ResourceParseResult parsed = parseResourceFile(script.fileName());
        ASSERT_TRUE(parsed.ok()) << parsed.error->toString().toStdString();
        script_ = std::move(parsed.script);
        setCurrentResources(&script_);
    }
    void TearDown() override { setCurrentResources(nullptr); }

    QTemporaryDir folder_;
    ResourceScript script_;
};

QAction* topLevel(CommandBar& bar, int command) {
    for (QAction* action : bar.actions())
        if (!action->menu() && action->data().toInt() == command)
            return action;
    return nullptr;
}

QRgb pictureColour(const QAction* action) {
    return action->icon().pixmap(16, 16).toImage().pixel(8, 8);
}

TEST_F(CommandBarButtons, PicturesFromTheStripOnCommandsAndButtons) {
    RecordingDialog window(10);
    ASSERT_TRUE(window.create());
    CommandBar* bar = window.createCommandBar(kBar);
    ASSERT_NE(bar, nullptr);
    EXPECT_FALSE(bar->addButtons(kMissing, {{kNew, 0}})) << "a file the script names, missing";
    EXPECT_FALSE(bar->addButtons(4711, {{kNew, 0}})) << "no such resource";
    ASSERT_EQ(bar->actions().size(), 2);

    ASSERT_TRUE(bar->addButtons(kStrip, {{kNew, 0}, {kCut, 1}, {kCopy, 2}}));
    const struct {
        int command;
        QString text;
        QRgb colour; // 0: no button
    } expected[] = {
        {kNew, QStringLiteral("New"), qRgb(255, 0, 0)},
        {kCut, QStringLiteral("Cut"), qRgb(0, 0, 255)},
        {kCopy, QString(), 0}, // its picture lies past the strip's end
    };
    for (const auto& e : expected) {
        SCOPED_TRACE(e.command);
        QAction* button = topLevel(*bar, e.command);
        if (e.colour == 0) {
            EXPECT_EQ(button, nullptr);
            continue;
        }
        ASSERT_NE(button, nullptr);
        EXPECT_EQ(button->text(), e.text);
        EXPECT_EQ(button->toolTip(), e.text);
        EXPECT_EQ(pictureColour(button), e.colour);
    }
    EXPECT_EQ(bar->actions().size(), 3) << "New shows its picture; Cut is added";

    // The button and the popup's entry are one command.
    ASSERT_TRUE(bar->enableItem(kCut, false));
    for (QAction* action : bar->findChildren<QAction*>()) {
        if (action->data().toInt() == kCut) {
            EXPECT_FALSE(action->isEnabled());
        }
    }
    ASSERT_TRUE(bar->enableItem(kCut, true));
    emit bar->triggered(topLevel(*bar, kCut));
    EXPECT_EQ(window.entries("command"), std::vector<std::string>{"command 2"});

    ASSERT_TRUE(bar->setMenu(kBar, &window));
    EXPECT_EQ(bar->actions().size(), 2) << "the buttons go with the menu";
    EXPECT_TRUE(topLevel(*bar, kNew)->icon().isNull());
}

// Every picture the module's bars ask for is in its strip, and none is empty.
TEST_F(CommandBarButtons, TheModuleStripHoldsEveryPicture) {
    setCurrentResources(&sms::resources());
    const QImage strip(findFileResource(QStringLiteral("BITMAP"), IDB_COMMAND_BAR));
    ASSERT_FALSE(strip.isNull());
    EXPECT_EQ(strip.height(), 16);
    for (int image : {sms::kImageNew, sms::kImageCut, sms::kImageCopy, sms::kImagePaste}) {
        SCOPED_TRACE(image);
        ASSERT_LE((image + 1) * 16, strip.width());
        int drawn = 0;
        for (int y = 0; y < 16; ++y)
            for (int x = image * 16; x < (image + 1) * 16; ++x)
                drawn += qAlpha(strip.pixel(x, y)) > 0;
        EXPECT_GT(drawn, 40);
    }
}

} // namespace
