// The composer through the module's entry points: editMessage opens one per call and keeps the
// list, openSms brings the first to the front, closing and exitModule leave the list empty.

#include "compose/composer_window.h"
#include "tests/module/module_window_test.h"

#include "resources/resource.h"
#include "suite/telephony/simulator.h"
#include "tests/testkit/window_driver.h"

namespace {

using tessaly::sms::moduleContext;

class ModuleComposers : public tessaly::testkit::WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        tessaly::telephony::Options options;
        options.databasePath = QStringLiteral(":memory:");
        ASSERT_TRUE(tessaly::telephony::open(options).isOk());
        tessaly::telephony::HostHooks hooks;
        hooks.editMessage = [](GSM::Message* message) { editMessage(message); };
        hooks.setActiveService = [](GSM::ServiceId) {};
        tessaly::telephony::installHostHooks(hooks);
        moduleContext() = tessaly::sms::ModuleContext();
        moduleContext().resources = &tessaly::sms::resources();
    }
    void TearDown() override {
        exitModule();
        WindowTest::TearDown();
        module_test::closeModuleStore();
    }
    static void settle() { module_test::settleModule(); }
};

TEST_F(ModuleComposers, EditMessageOpensComposersThatLeaveTheListWhenClosed) {
    openSms();
    settle();
    ASSERT_NE(moduleContext().mainWindow, nullptr);
    ASSERT_TRUE(GSM::sms.newMessage(0).isOk());
    ASSERT_TRUE(GSM::sms.newMessage(0).isOk());
    settle();
    ASSERT_EQ(moduleContext().composers.size(), 2u);
    tessaly::Dialog* first = moduleContext().composers.front();
    EXPECT_EQ(first->templateId(), IDD_COMPOSER);
    EXPECT_EQ(first->title(), QStringLiteral("New Message"));
    EXPECT_TRUE(first->isVisible());

    // The main window exists, yet openSms brings the first composer back.
    first->showWindow(SW_HIDE);
    moduleContext().mainWindow->showWindow(SW_HIDE);
    openSms();
    EXPECT_TRUE(first->isVisible());
    EXPECT_FALSE(moduleContext().mainWindow->isVisible());

    first->sendCommand(IDCANCEL); // nothing typed: no question
    settle();
    ASSERT_EQ(moduleContext().composers.size(), 1u);
    EXPECT_NE(moduleContext().composers.front(), first);

    ASSERT_TRUE(GSM::sms.newMessage(0).isOk());
    settle();
    EXPECT_EQ(moduleContext().composers.size(), 2u);
    exitModule();
    settle();
    EXPECT_TRUE(moduleContext().composers.empty());
    EXPECT_FALSE(tessaly::sms::hasOpenWindows());
    EXPECT_TRUE(user.boxes().empty());
}

// Reply from an open message view: the view ends, and the composer it hands over to takes the
// person's typing and SEND.
TEST_F(ModuleComposers, ReplyFromTheMessageViewGivesAComposerThatWorks) {
    ASSERT_TRUE(tessaly::telephony::simulator::receiveMessage(u"+447700900123", u"Lunch?").isOk());
    settle();
    GSM::MessageContainer* inbox = GSM::sms.getMessages(0, GSM::Sms::SortByDate);
    ASSERT_EQ(inbox->size(), 1);
    const long id = inbox->get(0)->getId();
    bool ended = false;
    user.runModal([&](tessaly::Dialog& view) {
        ASSERT_TRUE(tessaly::testkit::chooseCommand(view, IDM_VIEW_REPLY));
        ended = view.hasEnded();
    });
    openMessage(id);
    settle();
    EXPECT_TRUE(ended) << "the view no longer holds the person";
    ASSERT_EQ(moduleContext().composers.size(), 1u);
    tessaly::Dialog* composer = moduleContext().composers.front();
    ASSERT_TRUE(tessaly::testkit::type(*composer, IDC_COMPOSE_TEXT, QStringLiteral("Yes, at one")));
    EXPECT_TRUE(tessaly::testkit::saveScreenshot(
        *composer, tessaly::testkit::testOutputPath(QStringLiteral("fit_2_after.png"))));
    ASSERT_TRUE(tessaly::testkit::click(*composer, IDC_COMPOSE_SEND));
    settle();
    EXPECT_TRUE(moduleContext().composers.empty()) << "SEND closed the composer";
    GSM::MessageContainer* outbox = GSM::sms.getMessages(1, GSM::Sms::SortByDate);
    ASSERT_EQ(outbox->size(), 1);
    EXPECT_EQ(QString::fromUtf16(outbox->get(0)->getText()), QStringLiteral("Yes, at one"));
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::Replied);
}

} // namespace
