#include "lists/message_view.h"
#include "lists_fixture.h"
#include "resources/resource.h"
#include "suite/telephony/radio_backend.h"

#include "framework/ui/menu.h"

namespace {

using namespace lists_test;
using tessaly::Dialog;
using tessaly::sms::MessageView;
namespace testkit = tessaly::testkit;

class MessageViewTest : public ListsWindowTest {
protected:
    // Runs a view of the message modally; the script looks at it and acts in it.
    void runView(long id, int folder, std::function<void(MessageView&)> script,
                 bool* deleted = nullptr) {
        user.runModal([&](Dialog& dialog) { script(static_cast<MessageView&>(dialog)); });
        MessageView view(id, folder);
        view.doModal();
        if (deleted)
            *deleted = view.wasDeleted();
    }
};

TEST_F(MessageViewTest, InboxMessageShowsSenderDateAndDetailsOnRequest) {
    ASSERT_TRUE(simulator::addContact(u"Anne", u"Ames", {u"+4917011111"}).isOk());
    ASSERT_TRUE(simulator::receiveMessage(u"+4917011111", u"line one\r\nline two",
                                          fileTime(at(2024, 5, 16, 14, 5)), u"+43664050")
                    .isOk());
    settle();
    const long id = idsByDate(0).front();
    runView(id, 0, [](MessageView& view) {
        EXPECT_EQ(view.itemText(IDC_VIEW_TITLE), QStringLiteral("Anne Ames"));
        EXPECT_TRUE(view.item(IDC_VIEW_TITLE)->font().bold());
        EXPECT_EQ(view.itemText(IDC_VIEW_FROM_LABEL), QStringLiteral("From:"));
        EXPECT_EQ(view.itemText(IDC_VIEW_NAME), QStringLiteral("Anne Ames"));
        EXPECT_EQ(view.itemText(IDC_VIEW_NUMBER), QStringLiteral("+4917011111"));
        EXPECT_EQ(view.itemText(IDC_VIEW_DATE), QStringLiteral("2024-05-16 14:05"));
        EXPECT_EQ(view.itemText(IDC_VIEW_TEXT), QStringLiteral("line one\r\nline two"));
        EXPECT_FALSE(view.isItemVisible(IDC_VIEW_RECIPIENTS));

        const int details[] = {IDC_VIEW_STATUS, IDC_VIEW_SCA, IDC_VIEW_REPLY};
        for (int id : details)
            EXPECT_FALSE(view.isItemVisible(id)) << id;
        ASSERT_TRUE(testkit::click(view, IDC_VIEW_DOWN));
        EXPECT_TRUE(view.detailsShown());
        EXPECT_FALSE(view.isItemVisible(IDC_VIEW_DOWN));
        for (int id : details)
            EXPECT_TRUE(view.isItemVisible(id)) << id;
        EXPECT_FALSE(view.isItemVisible(IDC_VIEW_VALIDITY)); // not carried by a received one
        EXPECT_EQ(view.itemText(IDC_VIEW_STATUS_LABEL), QStringLiteral("Status:"));
        EXPECT_EQ(view.itemText(IDC_VIEW_STATUS), QStringLiteral("Unread"));
        EXPECT_EQ(view.itemText(IDC_VIEW_SCA), QStringLiteral("+43664050"));
        EXPECT_EQ(view.itemText(IDC_VIEW_REPLY), QStringLiteral("Reply not prepaid"));
        ASSERT_TRUE(testkit::click(view, IDC_VIEW_UP));
        EXPECT_FALSE(view.detailsShown());
        EXPECT_FALSE(view.isItemVisible(IDC_VIEW_STATUS));
    });
}

TEST_F(MessageViewTest, OutboxMessageListsEveryRecipientAndItsValidity) {
    ASSERT_TRUE(simulator::addContact(u"Anne", u"", {u"+4917011111"}).isOk());
    ASSERT_TRUE(simulator::addContact(u"Carl", u"", {u"+4917033333"}).isOk());
    simulator::StoredMessage sent =
        message(1, GSM::Message::Sent, u"+4917011111", u"to three", at(2024, 5, 17, 9, 0));
    sent.addresses = {u"+4917011111", u"0172222", u"+4917033333"};
    store({sent});
    const long id = idsByDate(1).front();
    GSM::sms.getMessage(id)->setValidityPeriod(GSM::Message::OneWeek);
    runView(id, 1, [](MessageView& view) {
        EXPECT_EQ(view.itemText(IDC_VIEW_FROM_LABEL), QStringLiteral("To:"));
        EXPECT_TRUE(view.isItemVisible(IDC_VIEW_RECIPIENTS));
        EXPECT_EQ(view.itemText(IDC_VIEW_RECIPIENTS),
                  QStringLiteral("Anne (+4917011111), 0172222,\r\nCarl (+4917033333)"));
        EXPECT_EQ(view.recipientCount(), 3);
        EXPECT_FALSE(view.isItemVisible(IDC_VIEW_NOT_SENT)) << "a sent message reached all";
        ASSERT_TRUE(testkit::click(view, IDC_VIEW_DOWN));
        EXPECT_EQ(view.itemText(IDC_VIEW_VALIDITY), QStringLiteral("1 Week"));
        EXPECT_EQ(view.itemText(IDC_VIEW_STATUS), QStringLiteral("Sent"));
    });
}

TEST_F(MessageViewTest, AFailedMessageToSeveralSaysWhomItDidNotReach) {
    ASSERT_TRUE(simulator::addContact(u"Anne", u"Ames", {u"+4917011111"}).isOk());
    GSM::Message* message = GSM::Message::make();
    for (const char16_t* number : {u"+4917011111", u"0172222", u"+4917033333"})
        message->getContacts()->add(number, 0);
    message->setText(u"Dinner at eight?");
    ASSERT_TRUE(message->endEdit(false).isOk());
    simulator::failNextSend(GSM::ErrorNetworkRejected, u"Unknown number.");
    for (int turn = 0; turn < 10 && message->getStatus() != GSM::Message::Failed; ++turn) {
        clock.advance(100);
        settle();
    }
    ASSERT_EQ(message->getStatus(), GSM::Message::Failed);
    runView(message->getId(), 1, [](MessageView& view) {
        EXPECT_TRUE(view.isItemVisible(IDC_VIEW_NOT_SENT));
        EXPECT_EQ(view.itemText(IDC_VIEW_NOT_SENT_LABEL), QStringLiteral("Not sent:"));
        EXPECT_EQ(view.itemText(IDC_VIEW_NOT_SENT),
                  QStringLiteral("Anne Ames, 0172222, +4917033333"));
        const QRect line = view.item(IDC_VIEW_NOT_SENT)->geometry();
        EXPECT_LE(line.bottom(), view.item(IDC_VIEW_TEXT)->geometry().top())
            << "the text starts below the line";
        ASSERT_TRUE(testkit::click(view, IDC_VIEW_DOWN));
        EXPECT_TRUE(view.isItemVisible(IDC_VIEW_NOT_SENT)) << "details shown or not";
        EXPECT_TRUE(testkit::saveScreenshot(
            view, testkit::testOutputPath(QStringLiteral("lists_message_view_not_sent.png"))));
    });
}

TEST_F(MessageViewTest, ASentMessageShowsWhenItWasDelivered) {
    GSM::Message* message = GSM::Message::make();
    for (const char16_t* number : {u"+4917011111", u"0172222"})
        message->getContacts()->add(number, 0);
    message->setText(u"Dinner at eight?");
    ASSERT_TRUE(message->endEdit(false).isOk());
    for (int turn = 0; turn < 10 && message->getStatus() != GSM::Message::Sent; ++turn) {
        clock.advance(100);
        settle();
    }
    ASSERT_EQ(message->getStatus(), GSM::Message::Sent);
    const long id = message->getId();
    runView(id, 1, [](MessageView& view) {
        EXPECT_FALSE(view.isItemVisible(IDC_VIEW_DELIVERED)) << "no report yet";
    });
    SYSTEMTIME time{2026, 11, 2, 24, 18, 5, 0, 0};
    FILETIME when{};
    SystemTimeToFileTime(&time, &when);
    ASSERT_TRUE(tessaly::telephony::reportDelivery(id, 1, {true, when, {}}).isOk());
    settle();
    runView(id, 1, [](MessageView& view) {
        EXPECT_TRUE(view.isItemVisible(IDC_VIEW_DELIVERED));
        EXPECT_EQ(view.itemText(IDC_VIEW_DELIVERED_LABEL), QStringLiteral("Delivered:"));
        EXPECT_TRUE(view.itemText(IDC_VIEW_DELIVERED).startsWith(QStringLiteral("1/2, ")))
            << view.itemText(IDC_VIEW_DELIVERED).toStdString();
    });
    ASSERT_TRUE(tessaly::telephony::reportDelivery(id, 0, {true, when, {}}).isOk());
    settle();
    runView(id, 1, [](MessageView& view) {
        EXPECT_FALSE(view.itemText(IDC_VIEW_DELIVERED).contains(u'/')) << "everyone has it";
        EXPECT_LE(view.item(IDC_VIEW_DELIVERED)->geometry().bottom(),
                  view.item(IDC_VIEW_TEXT)->geometry().top());
        EXPECT_EQ(view.itemText(IDC_VIEW_STATUS), QStringLiteral("Sent"));
        EXPECT_TRUE(testkit::saveScreenshot(
            view, testkit::testOutputPath(QStringLiteral("lists_message_view_delivered.png"))));
    });
}

TEST_F(MessageViewTest, UnknownIdKeepsTheTemplateTextsAndCommandsDoNothing) {
    runView(4711, 0, [](MessageView& view) {
        EXPECT_EQ(view.itemText(IDC_VIEW_NAME), QStringLiteral("Name"));
        EXPECT_EQ(view.itemText(IDC_VIEW_DATE), QStringLiteral("Date"));
        EXPECT_TRUE(testkit::chooseCommand(view, IDM_VIEW_DELETE));
        EXPECT_TRUE(testkit::chooseCommand(view, IDM_VIEW_COPY_TO_PHONEBOOK));
    });
    EXPECT_TRUE(user.boxes().empty());
}

TEST_F(MessageViewTest, Commands) {
    ASSERT_TRUE(simulator::receiveMessage(u"0172222", u"call me").isOk());
    store({message(1, GSM::Message::NotSent, u"0175555", u"later", at(2024, 5, 17, 9, 0))});
    settle();
    const long inbox = idsByDate(0).front();
    const long outbox = idsByDate(1).front();

    // Commands that hand over to another window end the view, so that window takes the
    // person's clicks and keys; the others leave it open.
    const struct {
        int command;
        bool ends;
    } commands[] = {{IDM_VIEW_INBOX_CALL, true},
                    {IDM_VIEW_REPLY, true},
                    {IDM_VIEW_FORWARD, true},
                    {IDM_VIEW_DELETE, false}};
    for (const auto& c : commands) {
        bool deleted = true;
        runView(
            inbox, 0,
            [&](MessageView& view) {
                if (c.command == IDM_VIEW_DELETE)
                    user.answerBox(IDNO);
                ASSERT_TRUE(testkit::chooseCommand(view, c.command));
                EXPECT_EQ(view.hasEnded(), c.ends) << c.command;
            },
            &deleted);
        settle();
        EXPECT_FALSE(deleted);
    }
    EXPECT_EQ(calls, std::vector<QString>{QStringLiteral("0172222")});
    EXPECT_EQ(edited.size(), 2u);

    runView(outbox, 1, [](MessageView& view) {
        EXPECT_FALSE(view.commandBar()->items().empty());
        ASSERT_TRUE(testkit::chooseCommand(view, IDM_VIEW_SEND_NOW));
        ASSERT_TRUE(testkit::chooseCommand(view, IDM_VIEW_OUTBOX_NEW));
        EXPECT_TRUE(view.hasEnded());
    });
    settle();
    EXPECT_EQ(GSM::sms.getMessage(outbox)->getStatus(), GSM::Message::SendNow);
    EXPECT_EQ(edited.size(), 3u);
    EXPECT_TRUE(errors.empty());
}

} // namespace
