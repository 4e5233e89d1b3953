#include "framework/resources/module_state.h"
#include "framework/resources/resources.h"
#include "framework/time/thread_timer.h"
#include "framework/ui/dialog.h"
#include "framework/ui/menu.h"
#include "framework/ui/property_sheet.h"
#include "framework/ui/screen.h"
#include "resources/resource.h"
#include "resources/sms_resources.h"
#include "tests/framework/recording_dialog.h"
#include "tests/framework/window_templates.h"

#include "tests/testkit/window_test.h"
#include <QMenu>

#include <QImage>

#include <optional>

using namespace tessaly;
using namespace tessaly::testdata;

namespace {

class WindowLifeTest : public testkit::WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        setCurrentResources(&windowScript());
    }
    void TearDown() override {
        WindowTest::TearDown();
        setCurrentResources(nullptr);
    }
};

// A modeless window that owns itself, as the module's notifications do: the module keeps a
// pointer to it, which its destruction clears.
RecordingDialog* openOwnedWindow(RecordingDialog*& modulePointer) {
    auto* window = new RecordingDialog(kSmallBox);
    window->setPresentation(Presentation::PopUp);
    window->postDestroyHook = [window, &modulePointer] {
        modulePointer = nullptr;
        delete window;
    };
    EXPECT_TRUE(window->create());
    window->showWindow(SW_SHOW);
    modulePointer = window;
    return window;
}

TEST_F(WindowLifeTest, WindowTimerFiresOnlyWhenTheClockIsAdvanced) {
    RecordingDialog window(kAllControls);
    ASSERT_TRUE(window.create());
    EXPECT_EQ(window.setTimer(1, 300000), 1u);
    struct Step {
        std::int64_t advance;
        size_t ticks;
    } const steps[] = {{0, 0}, {299999, 0}, {1, 1}, {299999, 1}, {1, 2}, {900000, 5}};
    for (const Step& step : steps) {
        clock.advance(step.advance);
        EXPECT_EQ(window.entries("timer 1").size(), step.ticks) << "after +" << step.advance;
    }
    EXPECT_TRUE(window.killTimer(1));
    EXPECT_FALSE(window.killTimer(1));
    clock.advance(600000);
    EXPECT_EQ(window.entries("timer").size(), 5u);
    EXPECT_EQ(window.setTimer(0, 10), 0u);
}

TEST_F(WindowLifeTest, ReArmedTimerRestartsItsPeriod) {
    RecordingDialog window(kAllControls);
    ASSERT_TRUE(window.create());
    window.setTimer(1, 300000);
    clock.advance(200000);
    window.setTimer(1, 300000); // a new message: five fresh minutes
    clock.advance(200000);
    EXPECT_TRUE(window.entries("timer").empty());
    clock.advance(100000);
    EXPECT_EQ(window.entries("timer 1").size(), 1u);
}

TEST_F(WindowLifeTest, TimersOfSeveralWindowsAndThreadFireInOrder) {
    RecordingDialog first(kAllControls);
    RecordingDialog second(kSmallBox);
    ASSERT_TRUE(first.create());
    ASSERT_TRUE(second.create());
    std::vector<std::string> order;
    first.timerHook = [&](RecordingDialog&, UINT_PTR id) {
        order.push_back("first " + std::to_string(id));
    };
    second.timerHook = [&](RecordingDialog&, UINT_PTR id) {
        order.push_back("second " + std::to_string(id));
    };
    first.setTimer(1, 500);
    second.setTimer(7, 300);
    const UINT_PTR thread = setThreadTimer(400, [&](UINT_PTR id) {
        order.push_back("thread");
        EXPECT_TRUE(killThreadTimer(id)); // one shot: stops itself from its own tick
    });
    EXPECT_NE(thread, 0u);
    clock.advance(1000);
    EXPECT_EQ(order, (std::vector<std::string>{"second 7", "thread", "first 1", "second 7",
                                               "second 7", "first 1"}));
    EXPECT_FALSE(killThreadTimer(thread));
}

TEST_F(WindowLifeTest, TimersStopWithTheirWindow) {
    RecordingDialog* modulePointer = nullptr;
    RecordingDialog* window = openOwnedWindow(modulePointer);
    window->setTimer(1, 100);
    const size_t before = clock.activeTimers();
    window->destroyWindow();
    EXPECT_EQ(modulePointer, nullptr);
    EXPECT_EQ(clock.activeTimers(), before - 1);
    clock.advance(1000); // nothing may reach the deleted window
}

TEST_F(WindowLifeTest, PostedMessageIsHandledOnTheNextTurnNeverReentrantly) {
    RecordingDialog window(kAllControls);
    ASSERT_TRUE(window.create());
    int depth = 0;
    int maxDepth = 0;
    int handled = 0;
    window.messageHook = [&](RecordingDialog& self, UINT message) {
        ++depth;
        maxDepth = std::max(maxDepth, depth);
        ++handled;
        if (message == WM_APP && handled < 4)
            self.postMessage(WM_APP); // handled after this handler returns
        EXPECT_EQ(handled, int(self.entries("message").size()));
        --depth;
    };
    EXPECT_TRUE(window.postMessage(WM_APP, 3, 4));
    EXPECT_TRUE(window.postMessage(WM_APP + 1));
    EXPECT_TRUE(window.entries("message").empty()); // not inside postMessage
    testkit::pumpMessages();
    EXPECT_EQ(window.entries("message"),
              (std::vector<std::string>{"message 0x8000 3 4", "message 0x8001 0 0",
                                        "message 0x8000 0 0", "message 0x8000 0 0"}));
    EXPECT_EQ(maxDepth, 1);
}

TEST_F(WindowLifeTest, PostedCommandsSettingChangesAndClose) {
    RecordingDialog window(kAllControls);
    ASSERT_TRUE(window.create());
    window.commandHook = [](RecordingDialog&, int id) { return id == IDCANCEL; };
    window.postMessage(WM_COMMAND, IDOK);
    window.postMessage(WM_CLOSE);
    broadcastSettingChange(SPI_SETSIPINFO);
    testkit::pumpMessages();
    EXPECT_EQ(window.entries("command"), (std::vector<std::string>{"command 1", "command 2"}));
    EXPECT_EQ(window.entries("settingchange"), (std::vector<std::string>{"settingchange 224"}));
    EXPECT_TRUE(window.hasEnded());
    EXPECT_EQ(window.endCode(), IDOK);
}

TEST_F(WindowLifeTest, MessagesPostedToADestroyedWindowAreDropped) {
    RecordingDialog* modulePointer = nullptr;
    RecordingDialog* window = openOwnedWindow(modulePointer);
    window->postMessage(WM_APP);
    window->destroyWindow();
    testkit::pumpMessages();
    EXPECT_EQ(modulePointer, nullptr);
}

TEST_F(WindowLifeTest, WindowDestroysItselfFromItsOwnHandlers) {
    // Each way in which the window's own handler closes it: the object deletes itself in its
    // post-destroy hook, after the handler has returned (checked by the sanitizer build).
    struct Case {
        const char* name;
        std::function<void(RecordingDialog&)> arrange;
        std::function<void(RecordingDialog&)> trigger;
    } const cases[] = {
        {"button",
         [](RecordingDialog& w) {
             w.commandHook = [](RecordingDialog& self, int id) {
                 self.destroyWindow();
                 EXPECT_FALSE(self.isWindow()); // the object is still there inside its handler
                 self.log.push_back("after destroy");
                 return true;
             };
         },
         [](RecordingDialog& w) { testkit::click(w, IDOK); }},
        {"timer",
         [](RecordingDialog& w) {
             w.timerHook = [](RecordingDialog& self, UINT_PTR) { self.destroyWindow(); };
             w.setTimer(1, 300000);
         },
         [](RecordingDialog&) {}},
        {"posted message",
         [](RecordingDialog& w) {
             w.messageHook = [](RecordingDialog& self, UINT) { self.destroyWindow(); };
             w.postMessage(WM_APP + 1);
         },
         [](RecordingDialog&) {}},
        {"typing",
         [](RecordingDialog& w) {
             w.editChangeHook = [](RecordingDialog& self, int) { self.destroyWindow(); };
         },
         [](RecordingDialog& w) { testkit::type(w, 12055, QStringLiteral("12")); }},
    };
    for (const Case& c : cases) {
        RecordingDialog* modulePointer = nullptr;
        RecordingDialog* window = openOwnedWindow(modulePointer);
        c.arrange(*window);
        c.trigger(*window);
        clock.advance(300000);
        testkit::pumpMessages();
        EXPECT_EQ(modulePointer, nullptr) << c.name;
        EXPECT_EQ(testkit::findWindow(kSmallBox), nullptr) << c.name;
    }
}

TEST_F(WindowLifeTest, HandlersRunInOrderAroundDestruction) {
    RecordingDialog window(kSmallBox);
    window.commandHook = [](RecordingDialog& self, int) {
        self.destroyWindow();
        self.log.push_back("handler returns");
        return true;
    };
    ASSERT_TRUE(window.create());
    ASSERT_TRUE(testkit::click(window, 2));
    const std::vector<std::string> tail(window.log.end() - 4, window.log.end());
    EXPECT_EQ(tail,
              (std::vector<std::string>{"command 2", "destroy", "handler returns", "postdestroy"}));
    // Destroying again, or from outside any handler, is harmless.
    window.destroyWindow();
    EXPECT_EQ(window.entries("postdestroy").size(), 1u);
}

TEST_F(WindowLifeTest, ChildWindowGoesWithItsParent) {
    RecordingDialog parent(kAllControls);
    ASSERT_TRUE(parent.create());
    RecordingDialog* modulePointer = nullptr;
    auto* child = new RecordingDialog(kSmallBox, &parent);
    child->setPresentation(Presentation::PopUp);
    child->postDestroyHook = [child, &modulePointer] {
        modulePointer = nullptr;
        delete child;
    };
    ASSERT_TRUE(child->create());
    modulePointer = child;
    child->setTimer(3, 10);
    parent.destroyWindow();
    EXPECT_EQ(modulePointer, nullptr);
    clock.advance(100);
}

TEST_F(WindowLifeTest, CommandBarIsBuiltFromAMenuAndRoutesCommands) {
    RecordingDialog window(kAllControls);
    ASSERT_TRUE(window.create());
    CommandBar* bar = window.createCommandBar(kBarMenu);
    ASSERT_NE(bar, nullptr);
    const std::vector<MenuItem> items = bar->items();
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0].text, QStringLiteral("New"));
    EXPECT_EQ(items[0].id, cmdNew);
    EXPECT_TRUE(items[1].isPopup);
    ASSERT_EQ(items[1].children.size(), 2u);
    EXPECT_EQ(items[1].children[1].id, cmdOptions);

    EXPECT_TRUE(testkit::chooseCommand(window, cmdOptions));
    EXPECT_TRUE(bar->enableItem(cmdNew, false));
    EXPECT_FALSE(testkit::chooseCommand(window, cmdNew));
    EXPECT_FALSE(testkit::chooseCommand(window, 4711));
    EXPECT_EQ(window.entries("command"), (std::vector<std::string>{"command 10274"}));

    EXPECT_EQ(window.createCommandBar(4711), nullptr);
    RecordingDialog popUp(kSmallBox);
    popUp.setPresentation(Presentation::PopUp);
    ASSERT_TRUE(popUp.create());
    EXPECT_EQ(popUp.createCommandBar(kBarMenu), nullptr);
}

TEST_F(WindowLifeTest, CommandBarMenusOpenUpwardInsideTheScreen) {
    RecordingDialog window(kAllControls);
    ASSERT_TRUE(window.create());
    window.showWindow(SW_SHOW);
    CommandBar* bar = window.createCommandBar(kBarMenu);
    ASSERT_NE(bar, nullptr);
    QMenu* popup = nullptr;
    for (QAction* action : bar->actions())
        popup = action->menu() ? action->menu() : popup;
    ASSERT_NE(popup, nullptr);
    popup->popup(bar->mapToGlobal(QPoint(0, bar->height())));
    const QRect menu = popup->geometry();
    const QRect barArea(bar->mapToGlobal(QPoint(0, 0)), bar->size());
    EXPECT_EQ(menu.bottom(), barArea.top() - 1) << "the menu ends where the bar begins";
    EXPECT_GE(menu.top(), window.window()->mapToGlobal(QPoint(0, 0)).y());
    popup->hide();
}

TEST_F(WindowLifeTest, CommandBarFromTheModulesOwnMenu) {
    setCurrentResources(&sms::resources());
    DialogTemplate plain;
    plain.id = 1;
    plain.caption = QStringLiteral("SMS");
    RecordingDialog window(plain);
    ASSERT_TRUE(window.create());
    CommandBar* bar = window.createCommandBar(IDR_MENU_MAIN);
    ASSERT_NE(bar, nullptr);
    const std::vector<MenuItem> items = bar->items();
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0].text, QStringLiteral("New"));
    EXPECT_EQ(items[1].text, QStringLiteral("Tools"));
    EXPECT_TRUE(testkit::chooseCommand(window, IDM_MAIN_OPTIONS));
    EXPECT_EQ(window.entries("command"),
              (std::vector<std::string>{"command " + std::to_string(IDM_MAIN_OPTIONS)}));
}

class Page : public PropertyPage {
public:
    Page(int templateId, std::vector<std::string>& log, int menuId = 0)
        : PropertyPage(templateId)
        , log_(log)
        , menuId_(menuId) {}
    bool allowLeaving = true;

    bool onSetActive() override {
        note("active");
        if (CommandBar* bar = sheet()->commandBar(); bar && menuId_)
            bar->setMenu(menuId_, this);
        return true;
    }
    bool onKillActive() override {
        note("leave");
        return allowLeaving;
    }
    void onOK() override { note("ok"); }
    void onCancel() override { note("cancel"); }

protected:
    bool onInitDialog() override {
        note("init");
        return true;
    }
    void onCommand(int id) override { note("command " + std::to_string(id)); }

private:
    void note(const std::string& what) { log_.push_back(tabText().toStdString() + " " + what); }
    std::vector<std::string>& log_;
    int menuId_;
};

TEST_F(WindowLifeTest, PropertySheetActivatesLeavesAndClosesPages) {
    std::vector<std::string> log;
    Page signature(kPageOne, log);
    Page sending(kPageTwo, log, kPageMenu);
    PropertySheet sheet(QStringLiteral("SMS"));
    sheet.addPage(&signature);
    sheet.addPage(&sending);
    user.runModal([&](Dialog& dialog) {
        auto& shown = static_cast<PropertySheet&>(dialog);
        EXPECT_EQ(shown.activeIndex(), 0);
        EXPECT_FALSE(sending.isWindow()); // pages are built when first shown
        ASSERT_TRUE(shown.setActivePage(1));
        // The page's menu in the sheet's bar reaches the page.
        EXPECT_TRUE(testkit::chooseCommand(shown, cmdAdd));
        sending.allowLeaving = false;
        EXPECT_FALSE(shown.setActivePage(0));
        EXPECT_EQ(shown.activeIndex(), 1);
        sending.allowLeaving = true;
        ASSERT_TRUE(testkit::type(sending, 10200, QStringLiteral("x")));
        shown.sendCommand(IDOK);
    });
    EXPECT_EQ(sheet.doModal(), IDOK);
    EXPECT_EQ(log, (std::vector<std::string>{"Signature init", "Signature active",
                                             "Signature leave", "Sending init", "Sending active",
                                             "Sending command 12041", "Sending leave",
                                             "Sending leave", "Signature ok", "Sending ok"}));
    EXPECT_FALSE(signature.isWindow());
    EXPECT_FALSE(sending.isWindow());
}

TEST_F(WindowLifeTest, WhatTheFrameworkDeliversRunsInTheModuleStateTheWindowWasMadeIn) {
    // Made while a module's state is in force, delivered while another's is: each handler
    // must see the first, including those the framework calls outside an event.
    struct StatePage : PropertyPage {
        using PropertyPage::PropertyPage;
        std::function<void(const std::string&)> note;
        bool onSetActive() override {
            note(tabText().toStdString() + " active");
            return true;
        }
        bool onKillActive() override {
            note(tabText().toStdString() + " leave");
            return true;
        }
    };
    int madeIn = 0;
    int elsewhere = 0;
    std::vector<std::string> wrongState;
    std::vector<std::string> heard;
    const auto note = [&](const std::string& what) {
        heard.push_back(what);
        if (currentModuleState().moduleData != &madeIn)
            wrongState.push_back(what);
    };
    const ResourceScript* resources = currentModuleState().resources;
    std::optional<ModuleStateGuard> made(std::in_place, resources, &madeIn);
    auto* window = new RecordingDialog(kSmallBox);
    StatePage first(kPageOne);
    StatePage second(kPageTwo);
    PropertySheet sheet(QStringLiteral("SMS"));
    made.reset();

    const ModuleStateGuard other(resources, &elsewhere);
    window->messageHook = [&](RecordingDialog&, UINT) { note("message"); };
    window->timerHook = [&](RecordingDialog& self, UINT_PTR id) {
        note("timer");
        self.killTimer(id);
    };
    window->postDestroyHook = [&, window] {
        note("postdestroy");
        delete window;
    };
    ASSERT_TRUE(window->create());
    window->postMessage(WM_APP);
    testkit::pumpMessages();
    window->setTimer(1, 1000);
    clock.advance(1000);
    window->destroyWindow(); // from outside any of its handlers

    first.note = note;
    second.note = note;
    sheet.addPage(&first);
    sheet.addPage(&second);
    user.runModal([&](Dialog& dialog) {
        ASSERT_TRUE(static_cast<PropertySheet&>(dialog).setActivePage(1));
        dialog.sendCommand(IDOK);
    });
    EXPECT_EQ(sheet.doModal(), IDOK);
    EXPECT_EQ(heard,
              (std::vector<std::string>{"message", "timer", "postdestroy", "Signature active",
                                        "Signature leave", "Sending active", "Sending leave"}));
    EXPECT_TRUE(wrongState.empty()) << wrongState.front();
    EXPECT_EQ(currentModuleState().moduleData, &elsewhere);
}

TEST_F(WindowLifeTest, PropertySheetTitleComesFromItsCallback) {
    struct TitledSheet : PropertySheet {
        using PropertySheet::PropertySheet;
        void onSheetCallback(UINT message, QString& title) override {
            if (message == PSCB_GETTITLE)
                title = QStringLiteral("Options");
        }
    };
    std::vector<std::string> log;
    Page page(kPageOne, log);
    TitledSheet sheet(QStringLiteral("SMS"));
    sheet.addPage(&page);
    user.runModal([](Dialog& dialog) {
        EXPECT_EQ(dialog.title(), QStringLiteral("Options"));
        EXPECT_EQ(testkit::findWindow(QStringLiteral("Options")), &dialog);
        dialog.sendCommand(IDCANCEL);
    });
    EXPECT_EQ(sheet.doModal(), IDCANCEL);
    EXPECT_EQ(log.back(), "Signature cancel");
}

TEST_F(WindowLifeTest, ScreenshotOfAWindowIsAPhoneSizedPng) {
    RecordingDialog window(kAllControls);
    ASSERT_TRUE(window.create());
    window.createCommandBar(kBarMenu);
    window.listView(idList)->insertColumn(0, QStringLiteral("From"), 80);
    window.listView(idList)->insertItem(0, QStringLiteral("+4917012345"));
    window.showWindow(SW_SHOW);
    const QString path = testkit::testOutputPath(QStringLiteral("all-controls.png"));
    ASSERT_TRUE(testkit::saveScreenshot(window, path));
    const QImage image(path);
    EXPECT_EQ(image.size(), QSize(kScreenWidth, kScreenHeight));
}

TEST_F(WindowLifeTest, FindsWindowsByTitleAndTemplate) {
    RecordingDialog main(kAllControls);
    RecordingDialog box(kSmallBox);
    ASSERT_TRUE(main.create());
    ASSERT_TRUE(box.create());
    EXPECT_EQ(testkit::findWindow(QStringLiteral("SMS")), &main);
    EXPECT_EQ(testkit::findWindow(kSmallBox), &box);
    box.destroyWindow();
    EXPECT_EQ(testkit::findWindow(QStringLiteral("Cell Broadcast")), nullptr);
    EXPECT_EQ(testkit::findWindow(4711), nullptr);
}

} // namespace
