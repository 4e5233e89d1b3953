// A template made in the editor on the whole phone: Tools / Options opens the sheet, the
// Templates page turns the greeting and signature off and makes a template; the composer then
// offers it and the sent message has its placeholders filled in.

#include "framework/datadir.h"
#include "framework/ui/dialog.h"
#include "framework/ui/property_sheet.h"
#include "resources/resource.h"
#include "suite/host/host_session.h"
#include "suite/host/phone_window.h"
#include "suite/host/screenshot.h"
#include "suite/host/system_language.h"
#include "suite/telephony/events.h"
#include "suite/telephony/telephony.h"
#include "tests/testkit/qstring_printer.h"
#include "tests/testkit/scripted_user.h"
#include "tests/testkit/window_driver.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

namespace testkit = tessaly::testkit;

// Runs the loop until `done` holds (the radio sends on real timers) or a second has passed.
template <typename Done> bool settleUntil(Done done) {
    const QDeadlineTimer deadline(1000);
    do {
        QCoreApplication::processEvents();
        tessaly::telephony::EventQueue::instance().deliverAll();
        if (done())
            return true;
    } while (!deadline.hasExpired());
    return false;
}

tessaly::Dialog* windowOf(int templateId) {
    for (tessaly::Dialog* dialog : tessaly::Dialog::windows())
        if (dialog->templateId() == templateId && dialog->isWindow())
            return dialog;
    return nullptr;
}

GSM::Message* newestOutboxMessage() {
    GSM::MessageContainer* outbox =
        GSM::sms.getMessages(GSM::Sms::FolderOutbox, GSM::Sms::SortByDate);
    return outbox && outbox->size() > 0 ? outbox->get(outbox->size() - 1) : nullptr;
}

// Picks an entry by its text, as the person would in the list.
bool choose(tessaly::Dialog& dialog, int comboId, const QString& entry) {
    tessaly::ComboBox* box = dialog.comboBox(comboId);
    return box && testkit::select(dialog, comboId, box->findStringExact(-1, entry));
}

TEST(TemplatesEndToEnd, ATemplateMadeInTheEditorIsOfferedAndExpandedWhenSent) {
    QTemporaryDir dataDir;
    ASSERT_TRUE(dataDir.isValid());
    tessaly::setDataDirectory(dataDir.path());
    ASSERT_TRUE(tessaly::host::recordSystemLanguage(QStringLiteral("en_GB.UTF-8")));
    tessaly::telephony::Options options;
    options.segmentDelayMs = 0;
    ASSERT_TRUE(tessaly::telephony::open(options).isOk());

    testkit::ScriptedUser user;
    tessaly::host::PhoneWindow phone;
    phone.show();
    tessaly::host::HostSession session(&phone);
    QString error;
    ASSERT_TRUE(session.start(QStringLiteral(TESSALY_SMS_MODULE_PATH), &error))
        << error.toStdString();
    phone.homeScreen()->messagesButton()->click();
    ASSERT_TRUE(settleUntil([] { return windowOf(IDD_MAIN) != nullptr; }));
    tessaly::Dialog& mainWindow = *windowOf(IDD_MAIN);

    user.runModal([&](tessaly::Dialog& sheet) {
            // The fourth tab, after Signature, Sending and Receiving.
            ASSERT_TRUE(static_cast<tessaly::PropertySheet&>(sheet).setActivePage(3));
            tessaly::Dialog* page = windowOf(IDD_PAGE_TEMPLATES);
            ASSERT_NE(page, nullptr);
            ASSERT_TRUE(testkit::click(*page, IDC_TEMPLATES_INSERT_GREETING));
            ASSERT_TRUE(testkit::click(*page, IDC_TEMPLATES_INSERT_SIGNATURE));
            ASSERT_TRUE(testkit::click(*page, IDC_TEMPLATES_NEW));
            EXPECT_EQ(page->listView(IDC_TEMPLATES_LIST)->itemCount(), 10);
            const QString path =
                testkit::testOutputPath(QStringLiteral("phone_templates_page.png"));
            QDir().mkpath(QFileInfo(path).absolutePath());
            EXPECT_TRUE(tessaly::host::grabPhone(phone).save(path));
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
    ASSERT_TRUE(settleUntil([] { return windowOf(IDD_COMPOSER) != nullptr; }));
    tessaly::Dialog& composer = *windowOf(IDD_COMPOSER);
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
    EXPECT_EQ(user.boxes().size(), 1u) << "only the editor's question; SEND asked nothing";

    session.stop();
    tessaly::telephony::close();
    tessaly::setDataDirectory(QString());
}

} // namespace
