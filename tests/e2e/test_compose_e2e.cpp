// Writing a message on the whole phone: the host loads Sms.tsm, "New" in the main window goes
// to the telephony library, which answers through the host's editMessage; the composer hands the
// message over and the simulated radio sends it. Reply from the message view fills in the sender.

#include "framework/ui/dialog.h"
#include "framework/ui/property_sheet.h"
#include "host/demo_data.h"
#include "host/host_session.h"
#include "host/phone_window.h"
#include "resources/resource.h"
#include "suite/telephony/events.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"
#include "tests/e2e/phone_test_support.h"
#include "tests/testkit/qstring_printer.h"
#include "tests/testkit/scripted_user.h"
#include "tests/testkit/window_driver.h"

#include "framework/time/clock.h"

#include <QCoreApplication>
#include <QPushButton>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

namespace sim = tessaly::telephony::simulator;
namespace testkit = tessaly::testkit;
using e2e_test::savePicture;
using e2e_test::settleUntil;
using e2e_test::windowsOf;

class ComposeEndToEnd : public e2e_test::PhoneDataTest {
protected:
    // A second of the loop: enough for the radio's real timers.
    static void settle() {
        settleUntil([] { return false; });
    }

    // Starts the module in the phone and opens the main window from the home screen; nullptr
    // when it did not come.
    static tessaly::Dialog* openMessages(tessaly::host::PhoneWindow& phone,
                                         tessaly::host::HostSession& session) {
        if (!e2e_test::startModule(session)) {
            ADD_FAILURE() << "the module did not start";
            return nullptr;
        }
        phone.homeScreen()->messagesButton()->click();
        settle();
        const std::vector<tessaly::Dialog*> main = windowsOf(IDD_MAIN);
        return main.size() == 1 ? main.front() : nullptr;
    }

    static GSM::Message* newestOutboxMessage() {
        GSM::MessageContainer* outbox =
            GSM::sms.getMessages(GSM::Sms::FolderOutbox, GSM::Sms::SortByDate);
        return outbox && outbox->size() > 0 ? outbox->get(outbox->size() - 1) : nullptr;
    }
};

TEST_F(ComposeEndToEnd, NewMessageIsSentAndReplyAddressesTheSender) {
    ASSERT_EQ(tessaly::host::seedDemoData(tessaly::Clock::current().localNow()),
              tessaly::host::DemoSeeding::Seeded);
    testkit::ScriptedUser user;
    tessaly::host::PhoneWindow phone;
    phone.show();
    tessaly::host::HostSession session(&phone);
    tessaly::Dialog* opened = openMessages(phone, session);
    ASSERT_NE(opened, nullptr);
    tessaly::Dialog& mainWindow = *opened;

    // New: the library answers through the host's editMessage with a composer.
    ASSERT_TRUE(testkit::chooseCommand(mainWindow, IDM_MAIN_NEW));
    ASSERT_TRUE(settleUntil([] { return !windowsOf(IDD_COMPOSER).empty(); }));
    tessaly::Dialog& composer = *windowsOf(IDD_COMPOSER).front();
    EXPECT_TRUE(composer.isVisible());
    ASSERT_TRUE(testkit::type(composer, IDC_COMPOSE_TO, QStringLiteral("+447700900555")));
    ASSERT_TRUE(testkit::type(composer, IDC_COMPOSE_TEXT, QStringLiteral("Running late")));
    settle();
    EXPECT_TRUE(savePicture(phone, QStringLiteral("phone_composer.png")));

    // The demo phone has no signature names: SEND asks once about the empty sender; the
    // sending notification then shows the progress and ends in the completion box.
    user.answerBox(IDYES).answerBox(IDOK);
    const int outboxBefore = GSM::sms.messageCount(GSM::Sms::FolderOutbox);
    ASSERT_TRUE(testkit::click(composer, IDC_COMPOSE_SEND));
    EXPECT_EQ(user.boxes().back().text,
              QStringLiteral("The sender information is empty. Do you want to continue?"));
    EXPECT_TRUE(settleUntil([] {
        const GSM::Message* sent = newestOutboxMessage();
        return sent && sent->getStatus() == GSM::Message::Sent;
    }));
    EXPECT_TRUE(settleUntil([&user] { return user.boxes().size() == 2; }));
    EXPECT_EQ(user.boxes().back().text, QStringLiteral("Your message was sent successfully."));
    EXPECT_TRUE(windowsOf(IDD_COMPOSER).empty()) << "the composer closed after the hand-over";
    EXPECT_EQ(GSM::sms.messageCount(GSM::Sms::FolderOutbox), outboxBefore + 1);
    GSM::Message* sent = newestOutboxMessage();
    ASSERT_NE(sent, nullptr);
    const QString sentText = QString::fromUtf16(sent->getText());
    EXPECT_TRUE(sentText.contains(QStringLiteral("Running late"))) << sentText.toStdString();
    EXPECT_FALSE(sentText.contains(u'[')) << sentText.toStdString();
    EXPECT_EQ(QString::fromUtf16(sent->getContacts()->get(0)->getText(0, 1)),
              QStringLiteral("+447700900555"));

    // The Outbox list shows it as sent.
    mainWindow.sendCommand(IDM_FOLDER_OUTBOX);
    settle();
    EXPECT_EQ(mainWindow.listView(IDC_MAIN_LIST)->itemCount(), outboxBefore + 1);

    // Reply from the message view: the composer starts addressed to the sender.
    long id = 0;
    ASSERT_TRUE(
        sim::receiveMessage(u"+447700900101", u"Are you there?", std::nullopt, u"", &id).isOk());
    settle();
    user.runModal([](tessaly::Dialog& view) {
        EXPECT_TRUE(testkit::chooseCommand(view, IDM_VIEW_REPLY));
        view.endDialog(IDOK);
    });
    session.exports().openMessage(id);
    ASSERT_TRUE(settleUntil([] { return !windowsOf(IDD_COMPOSER).empty(); }));
    tessaly::Dialog& reply = *windowsOf(IDD_COMPOSER).front();
    EXPECT_EQ(reply.itemText(IDC_COMPOSE_TO), QStringLiteral("+447700900101"));
    EXPECT_TRUE(reply.itemText(IDC_COMPOSE_RECIPIENTS).isEmpty());

    // openSms brings the open composer to the front rather than the main window.
    reply.showWindow(SW_HIDE);
    session.exports().openSms();
    EXPECT_TRUE(reply.isVisible());

    session.stop();
    EXPECT_TRUE(windowsOf(IDD_COMPOSER).empty()) << "exitModule destroyed the composer";
}

// Picks an entry by its text, as the person would in the list.
bool choose(tessaly::Dialog& dialog, int comboId, const QString& entry) {
    tessaly::ComboBox* box = dialog.comboBox(comboId);
    return box && testkit::select(dialog, comboId, box->findStringExact(-1, entry));
}

// A template made in the editor: Tools / Options opens the sheet, the Templates page turns the
// greeting and signature off and makes a template; the composer then offers it and the sent
// message has its placeholders filled in.
TEST_F(ComposeEndToEnd, ATemplateMadeInTheEditorIsOfferedAndExpandedWhenSent) {
    testkit::ScriptedUser user;
    tessaly::host::PhoneWindow phone;
    phone.show();
    tessaly::host::HostSession session(&phone);
    tessaly::Dialog* opened = openMessages(phone, session);
    ASSERT_NE(opened, nullptr);
    tessaly::Dialog& mainWindow = *opened;

    user.runModal([&](tessaly::Dialog& sheet) {
            // The fourth tab, after Signature, Sending and Receiving.
            ASSERT_TRUE(static_cast<tessaly::PropertySheet&>(sheet).setActivePage(3));
            ASSERT_EQ(windowsOf(IDD_PAGE_TEMPLATES).size(), 1u);
            tessaly::Dialog* page = windowsOf(IDD_PAGE_TEMPLATES).front();
            ASSERT_TRUE(testkit::click(*page, IDC_TEMPLATES_INSERT_GREETING));
            ASSERT_TRUE(testkit::click(*page, IDC_TEMPLATES_INSERT_SIGNATURE));
            ASSERT_TRUE(testkit::click(*page, IDC_TEMPLATES_NEW));
            EXPECT_EQ(page->listView(IDC_TEMPLATES_LIST)->itemCount(), 10);
            EXPECT_TRUE(savePicture(phone, QStringLiteral("phone_templates_page.png")));
            sheet.sendCommand(IDOK);
        })
        .runModal([&](tessaly::Dialog& editor) {
            ASSERT_TRUE(testkit::type(editor, IDC_EDIT_TEMPLATE_NAME, "Pick up"));
            ASSERT_TRUE(testkit::type(editor, IDC_EDIT_TEMPLATE_BODY, "See you "));
            ASSERT_TRUE(choose(editor, IDC_EDIT_TEMPLATE_VARIABLE, "Meet..."));
            ASSERT_TRUE(testkit::type(editor, IDC_EDIT_TEMPLATE_BODY, " at "));
            ASSERT_TRUE(choose(editor, IDC_EDIT_TEMPLATE_VARIABLE, "Time"));
            EXPECT_EQ(editor.itemText(IDC_EDIT_TEMPLATE_BODY), "See you <for lunch> at [Time:Now]");
            editor.sendCommand(IDOK);
        })
        .answerBox(IDOK); // "Do you want to save changes?"
    ASSERT_TRUE(testkit::chooseCommand(mainWindow, IDM_MAIN_OPTIONS));

    // The composer starts empty (no greeting, no signature) and offers the new template.
    ASSERT_TRUE(testkit::chooseCommand(mainWindow, IDM_MAIN_NEW));
    ASSERT_TRUE(settleUntil([] { return !windowsOf(IDD_COMPOSER).empty(); }));
    tessaly::Dialog& composer = *windowsOf(IDD_COMPOSER).front();
    EXPECT_EQ(composer.itemText(IDC_COMPOSE_TEXT), QString());
    tessaly::ComboBox* templates = composer.comboBox(IDC_COMPOSE_TEMPLATES);
    ASSERT_TRUE(testkit::dropDown(composer, IDC_COMPOSE_TEMPLATES));
    const int pickUp = templates->findStringExact(-1, QStringLiteral("Pick up"));
    ASSERT_GE(pickUp, 0);
    templates->setCurrentIndex(pickUp);
    ASSERT_TRUE(testkit::closeUp(composer, IDC_COMPOSE_TEMPLATES));
    emit templates->activated(pickUp);
    testkit::pumpMessages();
    EXPECT_EQ(composer.itemText(IDC_COMPOSE_TEXT), "See you <for lunch> at [Time:Now]");

    ASSERT_TRUE(testkit::type(composer, IDC_COMPOSE_TO, QStringLiteral("+447700900555")));
    const int outboxBefore = GSM::sms.messageCount(GSM::Sms::FolderOutbox);
    user.answerBox(IDOK); // the completion box
    ASSERT_TRUE(testkit::click(composer, IDC_COMPOSE_SEND));
    EXPECT_TRUE(settleUntil([&] {
        const GSM::Message* sent = newestOutboxMessage();
        return GSM::sms.messageCount(GSM::Sms::FolderOutbox) > outboxBefore && sent &&
               sent->getStatus() == GSM::Message::Sent;
    }));
    GSM::Message* sent = newestOutboxMessage();
    ASSERT_NE(sent, nullptr);
    const QString sentText = QString::fromUtf16(sent->getText());
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^See you for lunch at \\d\\d:\\d\\d$"))
                    .match(sentText)
                    .hasMatch())
        << sentText.toStdString();
    EXPECT_TRUE(settleUntil([&user] { return user.boxes().size() == 2; }));
    ASSERT_EQ(user.boxes().size(), 2u) << "the editor's question and the completion box";
    EXPECT_EQ(user.boxes().back().text, QStringLiteral("Your message was sent successfully."));

    session.stop();
}

// The signature written on the options sheet's Signature page ends a new message.
TEST_F(ComposeEndToEnd, TheSignatureSetInTheOptionsEndsANewMessage) {
    testkit::ScriptedUser user;
    tessaly::host::PhoneWindow phone;
    phone.show();
    tessaly::host::HostSession session(&phone);
    tessaly::Dialog* opened = openMessages(phone, session);
    ASSERT_NE(opened, nullptr);
    tessaly::Dialog& mainWindow = *opened;

    user.runModal([&phone](tessaly::Dialog& dialog) {
        auto& sheet = static_cast<tessaly::PropertySheet&>(dialog);
        EXPECT_EQ(sheet.title(), QStringLiteral("Options"));
        ASSERT_EQ(sheet.pageCount(), 6);
        tessaly::Dialog& signature = *sheet.page(0); // the first tab
        EXPECT_TRUE(testkit::type(signature, IDC_SIGNATURE_FIRST_NAME, QStringLiteral("Ada")));
        EXPECT_TRUE(testkit::type(signature, IDC_SIGNATURE_LAST_NAME, QStringLiteral("Lovelace")));
        EXPECT_TRUE(testkit::type(signature, IDC_SIGNATURE_PHONE, QStringLiteral("+442079460018")));
        settle();
        EXPECT_TRUE(savePicture(phone, QStringLiteral("phone_options.png")));
        sheet.sendCommand(IDOK);
    });
    ASSERT_TRUE(testkit::chooseCommand(mainWindow, IDM_MAIN_OPTIONS));
    settle();

    ASSERT_TRUE(testkit::chooseCommand(mainWindow, IDM_MAIN_NEW));
    ASSERT_TRUE(settleUntil([] { return !windowsOf(IDD_COMPOSER).empty(); }));
    tessaly::Dialog& composer = *windowsOf(IDD_COMPOSER).front();
    ASSERT_TRUE(testkit::type(composer, IDC_COMPOSE_TO, QStringLiteral("+447700900555")));
    ASSERT_TRUE(testkit::type(composer, IDC_COMPOSE_TEXT, QStringLiteral("See you")));
    // No question about the sender, who is known now; only the completion box.
    user.answerBox(IDOK);
    ASSERT_TRUE(testkit::click(composer, IDC_COMPOSE_SEND));
    EXPECT_TRUE(settleUntil([&user] { return user.boxes().size() == 1; }));
    ASSERT_EQ(user.boxes().size(), 1u);
    EXPECT_EQ(user.boxes().back().text, QStringLiteral("Your message was sent successfully."));
    ASSERT_NE(newestOutboxMessage(), nullptr);
    const QString sentText = QString::fromUtf16(newestOutboxMessage()->getText());
    EXPECT_TRUE(sentText.contains(QStringLiteral("Ada Lovelace"))) << sentText.toStdString();
    session.stop();
}

// An sms: link as the desktop hands it to the phone: the host fills a new message in and opens
// the module's composer with it, which sends it as typed.
TEST_F(ComposeEndToEnd, AnSmsLinkOpensTheComposerWithItsNumberAndText) {
    testkit::ScriptedUser user;
    tessaly::host::PhoneWindow phone;
    phone.show();
    tessaly::host::HostSession session(&phone);
    const tessaly::host::SmsLink link{{"+447700900123"}, QStringLiteral("Dinner at 8?\n— Sam")};
    EXPECT_FALSE(session.openComposer(link).isOk()) << "no module, no composer";
    ASSERT_TRUE(e2e_test::startModule(session));

    ASSERT_TRUE(session.openComposer(link).isOk());
    ASSERT_TRUE(settleUntil([] { return !windowsOf(IDD_COMPOSER).empty(); }));
    tessaly::Dialog& composer = *windowsOf(IDD_COMPOSER).front();
    EXPECT_EQ(composer.itemText(IDC_COMPOSE_TO), QStringLiteral("+447700900123"));
    EXPECT_EQ(composer.itemText(IDC_COMPOSE_TEXT), QStringLiteral("Dinner at 8?\r\n— Sam"));
    EXPECT_TRUE(savePicture(phone, QStringLiteral("phone_sms_link.png")));

    ASSERT_TRUE(testkit::click(composer, IDC_COMPOSE_SEND));
    EXPECT_TRUE(settleUntil([] {
        const GSM::Message* sent = newestOutboxMessage();
        return sent && sent->getStatus() == GSM::Message::Sent;
    }));
    EXPECT_EQ(QString::fromUtf16(newestOutboxMessage()->getText()),
              QStringLiteral("Dinner at 8?\r\n— Sam"));
    session.stop();
}

} // namespace
