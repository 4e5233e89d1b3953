#include "lists/main_window.h"
#include "module/exports.h"
#include "module/lists_environment_adapter.h"
#include "module/module_context.h"
#include "settings/options_sheet.h"

#include "framework/resources/resources.h"
#include "resources/resource.h"
#include "resources/sms_resources.h"
#include "suite/telephony/events.h"
#include "suite/telephony/host_hooks.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"
#include "tests/module/module_window_test.h"

#include <vector>

namespace {

namespace simulator = tessaly::telephony::simulator;
namespace testkit = tessaly::testkit;
using tessaly::sms::moduleContext;

// The exports with the real list windows, on a telephony store in memory.
class ModuleWindows : public module_test::ModuleWindowTest {
protected:
    static int mainWindowCount() {
        int count = 0;
        for (tessaly::Dialog* dialog : tessaly::Dialog::windows())
            count += dialog->templateId() == IDD_MAIN;
        return count;
    }
    static long storeMessage(int folder, GSM::Message::Status status, std::u16string text) {
        simulator::StoredMessage message;
        message.folder = folder;
        message.status = status;
        message.addresses = {u"+447700900123"};
        message.text = std::move(text);
        EXPECT_TRUE(simulator::addStoredMessages({message}).isOk());
        GSM::MessageContainer* stored = GSM::sms.getMessages(folder, GSM::Sms::SortByDate);
        return stored && stored->size() > 0 ? stored->get(stored->size() - 1)->getId() : 0;
    }
};

TEST_F(ModuleWindows, OpenSmsCreatesOneMainWindowAndBringsItBack) {
    openSms();
    settle();
    tessaly::Dialog* first = moduleContext().mainWindow;
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(moduleContext().settings.loaded);
    EXPECT_EQ(first->templateId(), IDD_MAIN);
    EXPECT_EQ(first->parentDialog(), nullptr);
    EXPECT_TRUE(first->isVisible());

    first->showWindow(SW_HIDE);
    openSms();
    settle();
    EXPECT_EQ(moduleContext().mainWindow, first);
    EXPECT_TRUE(first->isVisible()) << "the existing window comes to the front";
    EXPECT_EQ(mainWindowCount(), 1);
}

TEST_F(ModuleWindows, ExitDestroysTheMainWindowAndTheNextOpenSmsBuildsANewOne) {
    openSms();
    settle();
    ASSERT_NE(moduleContext().mainWindow, nullptr);
    exitModule();
    settle();
    EXPECT_EQ(moduleContext().mainWindow, nullptr);
    EXPECT_EQ(mainWindowCount(), 0);
    EXPECT_FALSE(tessaly::sms::hasOpenWindows());

    openSms();
    settle();
    EXPECT_NE(moduleContext().mainWindow, nullptr);
    EXPECT_EQ(mainWindowCount(), 1);
}

TEST_F(ModuleWindows, TheMainWindowForgetsItselfOnlyWhileItIsTheOneKept) {
    openSms();
    settle();
    tessaly::Dialog* window = moduleContext().mainWindow;
    ASSERT_NE(window, nullptr);
    tessaly::Dialog newer(IDD_MAIN);
    moduleContext().mainWindow = &newer;
    window->destroyWindow();
    settle();
    EXPECT_EQ(moduleContext().mainWindow, &newer) << "a late destruction keeps the newer window";

    moduleContext().mainWindow = nullptr;
    openSms();
    settle();
    moduleContext().mainWindow->destroyWindow();
    settle();
    EXPECT_EQ(moduleContext().mainWindow, nullptr);
}

TEST_F(ModuleWindows, OkOnTheMainWindowHandsBackTheIdlePointerAndKeepsTheWindow) {
    openSms();
    settle();
    tessaly::Dialog* window = moduleContext().mainWindow;
    ASSERT_NE(window, nullptr);
    window->sendCommand(IDOK); // the ok button of the title strip
    settle();
    EXPECT_EQ(idleCalls, std::vector<void*>{&hostObject});
    EXPECT_EQ(moduleContext().mainWindow, window);
    EXPECT_EQ(mainWindowCount(), 1);
}

TEST_F(ModuleWindows, TheFolderShownIsSavedForTheNextModule) {
    openSms();
    settle();
    auto* window = dynamic_cast<tessaly::sms::MainSmsWindow*>(moduleContext().mainWindow);
    ASSERT_NE(window, nullptr);
    window->showFolder(1);
    exitModule();
    settle();
    moduleContext() = tessaly::sms::ModuleContext();
    EXPECT_EQ(tessaly::sms::loadSettings().currentList, 1);
}

TEST_F(ModuleWindows, TheListsEnvironmentClearsTheSuppressFlag) {
    moduleContext().sendingNotificationSuppressed = true;
    tessaly::sms::moduleListsEnvironment().allowSendingNotification();
    EXPECT_FALSE(moduleContext().sendingNotificationSuppressed);
}

TEST_F(ModuleWindows, ToolsOptionsOpensTheSheetAndItsSignatureReachesTheStore) {
    openSms();
    settle();
    tessaly::Dialog* main = moduleContext().mainWindow;
    ASSERT_NE(main, nullptr);
    user.runModal([](tessaly::Dialog& sheet) {
        auto& options = static_cast<tessaly::sms::OptionsSheet&>(sheet);
        EXPECT_EQ(options.title(), QStringLiteral("Options"));
        EXPECT_EQ(
            options.pageKinds(),
            (std::vector<tessaly::sms::OptionsPageKind>{
                tessaly::sms::OptionsPageKind::Signature, tessaly::sms::OptionsPageKind::Sending,
                tessaly::sms::OptionsPageKind::Receiving, tessaly::sms::OptionsPageKind::Templates,
                tessaly::sms::OptionsPageKind::Variables,
                tessaly::sms::OptionsPageKind::CellBroadcast}));
        QStringList tabs;
        for (int page = 0; page < options.pageCount(); ++page)
            tabs.append(options.page(page)->tabText());
        EXPECT_EQ(tabs, (QStringList{"Signature", "Sending", "Receiving", "Templates", "Variables",
                                     "Cell Broadcast"}));
        EXPECT_TRUE(
            testkit::type(*options.page(0), IDC_SIGNATURE_FIRST_NAME, QStringLiteral("Ada")));
        options.sendCommand(IDOK);
    });
    ASSERT_TRUE(testkit::chooseCommand(*main, IDM_MAIN_OPTIONS));
    settle();
    // A fresh module reads what the sheet stored when it closed.
    exitModule();
    moduleContext() = tessaly::sms::ModuleContext();
    EXPECT_EQ(tessaly::sms::loadSettings().firstName, QStringLiteral("Ada"));
}

TEST_F(ModuleWindows, OpenMessageRunsTheViewModallyInTheMessagesFolder) {
    const struct {
        int folder;
        GSM::Message::Status status;
        const char16_t* text;
        const char* contactLabel;
    } cases[] = {
        {0, GSM::Message::Unread, u"Dinner at eight?", "From:"},
        {0, GSM::Message::Replied, u"Running late", "From:"},
        {1, GSM::Message::Sent, u"On my way", "To:"},
        {1, GSM::Message::Failed, u"Call me", "To:"},
        {1, GSM::Message::NotSent, u"Draft-ish", "To:"},
    };
    for (const auto& c : cases) {
        const long id = storeMessage(c.folder, c.status, c.text);
        QString shownText;
        QString shownLabel;
        bool hadParent = true;
        user.runModal([&](tessaly::Dialog& view) {
            shownText = view.itemText(IDC_VIEW_TEXT);
            shownLabel = view.itemText(IDC_VIEW_FROM_LABEL);
            hadParent = view.parentDialog() != nullptr;
            view.endDialog(IDCANCEL);
        });
        openMessage(id);
        ASSERT_EQ(user.modals().size(), 1u) << c.contactLabel;
        EXPECT_EQ(user.modals().front().templateId, IDD_MESSAGE_VIEW);
        EXPECT_EQ(shownText, QString::fromUtf16(c.text));
        EXPECT_EQ(shownLabel, QLatin1String(c.contactLabel));
        EXPECT_FALSE(hadParent);
        EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), c.status) << "viewing changes nothing";
        user.forget();
    }
    EXPECT_TRUE(moduleContext().settings.loaded);
    EXPECT_EQ(mainWindowCount(), 0);
}

} // namespace
