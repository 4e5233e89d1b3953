// The composer as a person uses it: what the status line says, what the To: field accepts, the
// favourites menu, the start texts, SEND with its questions, and closing.

#include "compose_fixture.h"

#include "compose/favourites.h"
#include "framework/ui/menu.h"
#include "tests/testkit/accessibility.h"

#include <QAccessible>
#include <QAccessibleInterface>

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalBlocker>

namespace {

using namespace compose_test;
namespace testkit = tessaly::testkit;

class ComposerTest : public ComposeTest {};

TEST_F(ComposerTest, CounterRecipientsAndSendFollowEveryChange) {
    const struct {
        QString text;
        QString to;
        QString counter;
        QString recipients;
        bool send;
    } cases[] = {
        {"", "0171", "0 characters, 0 messages", "", false},
        {"a", "", "1 character, 1 message", "", false},
        {"ab", "0171", "2 characters, 1 message", "", true},
        {QString(160, u'a'), "0171,0172", "160 characters, 1 message", "2 Recipients", true},
        {QString(161, u'a'), "0171, 0172,,0173", "161 characters, 2 messages", "3 Recipients",
         true},
        {QString(70, QChar(0xe1)), "0171", "70 characters, 1 message", "", true},
        {QString(71, QChar(0xe1)), "0171", "71 characters, 2 messages", "", true},
    };
    for (const auto& c : cases) {
        ComposerWindow* composer = newComposer();
        ASSERT_NE(composer, nullptr);
        ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TO, c.to));
        ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TEXT, c.text));
        EXPECT_EQ(text(*composer, IDC_COMPOSE_COUNTER), c.counter);
        EXPECT_EQ(text(*composer, IDC_COMPOSE_RECIPIENTS), c.recipients);
        EXPECT_EQ(composer->isItemEnabled(IDC_COMPOSE_SEND), c.send) << c.counter.toStdString();
        composer->destroyWindow();
        settle();
    }
    EXPECT_TRUE(user.boxes().empty());
}

// What a screen reader says for each control, picture buttons included.
TEST_F(ComposerTest, EveryControlAndCommandBarButtonHasASpokenName) {
    ComposerWindow* composer = newComposer();
    ASSERT_NE(composer, nullptr);
    const struct {
        int id;
        QAccessible::Role role;
        QString name;
    } cases[] = {
        {IDC_COMPOSE_SEND, QAccessible::PushButton, "SEND"},
        {IDC_COMPOSE_DOWN, QAccessible::PushButton, "Show details"},
        {IDC_COMPOSE_UP, QAccessible::PushButton, "Hide details"},
        {IDC_COMPOSE_RECP, QAccessible::PushButton, "Favourites"},
        // On Linux Qt names a combo box after its current entry.
        {IDC_COMPOSE_TEMPLATES, QAccessible::ComboBox, "Insert Template"},
    };
    for (const auto& c : cases) {
        QAccessibleInterface* node = QAccessible::queryAccessibleInterface(composer->item(c.id));
        ASSERT_NE(node, nullptr) << c.id;
        EXPECT_EQ(node->role(), c.role) << c.id;
        EXPECT_EQ(node->text(QAccessible::Name), c.name) << c.id;
    }
    // The To: field is reached through its line, where the focus goes.
    QWidget* toLine = composer->item(IDC_COMPOSE_TO)->focusProxy();
    ASSERT_NE(toLine, nullptr);
    QAccessibleInterface* to = QAccessible::queryAccessibleInterface(toLine);
    EXPECT_EQ(to->role(), QAccessible::EditableText);
    EXPECT_EQ(to->text(QAccessible::Name), QStringLiteral("To"));

    const QStringList unnamed = testkit::unnamedOperableControls(composer->window());
    EXPECT_TRUE(unnamed.isEmpty()) << unnamed.join(QStringLiteral("; ")).toStdString();
}

TEST_F(ComposerTest, ALetterTypedInToIsTakenBackAgain) {
    ComposerWindow* composer = newComposer();
    user.answerBox(IDOK);
    ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TO, QStringLiteral("0171x")));
    EXPECT_EQ(text(*composer, IDC_COMPOSE_TO), QStringLiteral("0171"));
    EXPECT_EQ(composer->recipientCount(), 1);
    ASSERT_EQ(user.boxes().size(), 1u);
    EXPECT_EQ(user.boxes().back().text,
              QStringLiteral("Characters cannot be used in a phone number."));
    EXPECT_EQ(user.boxes().back().icon(), MB_ICONSTOP);
}

TEST_F(ComposerTest, PastedLettersEmptyTheField) {
    ComposerWindow* composer = newComposer();
    ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TO, QStringLiteral("0160,")));
    QGuiApplication::clipboard()->setText(QStringLiteral("01a71"));
    user.answerBox(IDOK);
    ASSERT_TRUE(testkit::chooseCommand(*composer, IDM_EDIT_PASTE));
    EXPECT_EQ(text(*composer, IDC_COMPOSE_TO), QString());
    EXPECT_EQ(composer->recipientCount(), 0);
    ASSERT_EQ(user.boxes().size(), 1u);
    EXPECT_EQ(user.boxes().back().text, QStringLiteral("Invalid Recipient"));

    // Digits paste as they are, after the caret.
    QGuiApplication::clipboard()->setText(QStringLiteral("0171 555"));
    ASSERT_TRUE(testkit::chooseCommand(*composer, IDM_EDIT_PASTE));
    EXPECT_EQ(text(*composer, IDC_COMPOSE_TO), QStringLiteral("0171 555"));
    EXPECT_EQ(composer->recipientCount(), 1);
}

TEST_F(ComposerTest, FavouritesMenuOffersTheLastRecipients) {
    ASSERT_TRUE(simulator::addContact(u"Anna", u"Berg", {u"0160 111"}).isOk());
    // Two messages sent make two favourites, the later one first.
    for (const QString& to : {QStringLiteral("0170"), QStringLiteral("0160 111, 0170")}) {
        ComposerWindow* composer = newComposer();
        ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TO, to));
        ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TEXT, QStringLiteral("Hi")));
        ASSERT_TRUE(testkit::click(*composer, IDC_COMPOSE_SEND));
        settle();
    }
    EXPECT_EQ(favourite(1), QStringLiteral("Anna Berg:0160 111"));
    EXPECT_EQ(favourite(2), QStringLiteral("0170"));

    ComposerWindow* composer = newComposer();
    ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TO, QStringLiteral("0999")));
    user.chooseMenu(2);
    ASSERT_TRUE(testkit::click(*composer, IDC_COMPOSE_RECP));
    const testkit::ShownMenu& menu = user.menus().back();
    std::vector<QString> labels;
    for (const testkit::ShownMenuItem& item : menu.items)
        labels.push_back(item.separator ? QStringLiteral("-") : item.text);
    EXPECT_EQ(labels, (std::vector<QString>{"PhoneBook", "-", "Anna Berg", "0170", "-",
                                            "Clear Favorites"}));
    // The name stands for its number, which replaces the whole field.
    EXPECT_EQ(text(*composer, IDC_COMPOSE_TO), QStringLiteral("0160 111"));
    EXPECT_EQ(composer->recipientCount(), 1);

    user.chooseMenu(5);
    ASSERT_TRUE(testkit::click(*composer, IDC_COMPOSE_RECP));
    EXPECT_TRUE(tessaly::sms::Favourites::entries().isEmpty());
    // Without favourites the button goes straight to the phone book.
    user.pickContact(0);
    ASSERT_TRUE(testkit::click(*composer, IDC_COMPOSE_RECP));
    settle();
    EXPECT_EQ(user.contactPickerRuns(), 1);
    EXPECT_EQ(text(*composer, IDC_COMPOSE_TO), QStringLiteral("0160 111,0160 111"));
}

TEST_F(ComposerTest, PhoneBookPickGoesFirstAndKeepsWhatWasTyped) {
    ASSERT_TRUE(simulator::addContact(u"Carl", u"Dahl", {u"0151 1", u"0151 2"}).isOk());
    ComposerWindow* composer = newComposer();
    ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TO, QStringLiteral("0170")));
    user.pickContact(0, 1);
    composer->sendCommand(IDM_COMPOSE_PHONEBOOK);
    settle();
    EXPECT_EQ(text(*composer, IDC_COMPOSE_TO), QStringLiteral("0151 2,0170"));
    EXPECT_EQ(text(*composer, IDC_COMPOSE_RECIPIENTS), QStringLiteral("2 Recipients"));

    // A cancelled picker changes nothing, and another composer never takes a pick it did not
    // ask for.
    ComposerWindow* other = newComposer();
    user.pickContact(-1);
    other->pickFromPhoneBook();
    user.pickContact(0, 0);
    composer->pickFromPhoneBook();
    settle();
    EXPECT_EQ(text(*other, IDC_COMPOSE_TO), QString());
    EXPECT_EQ(text(*composer, IDC_COMPOSE_TO), QStringLiteral("0151 1,0151 2,0170"));
}

TEST_F(ComposerTest, GreetingAndSignatureLayouts) {
    environment.record.firstName = QStringLiteral("Eva");
    const struct {
        bool greeting;
        bool signature;
        QString text;
        int caret;
    } cases[] = {
        {true, true, "<Hello> [Recipient:First Name],\r\n\r\n<Regards>, [Sender:Full Name]", 33},
        {false, true, "\r\n\r\n<Regards>, [Sender:Full Name]", 0},
        {true, false, "<Hello> [Recipient:First Name],", 31},
        {false, false, "", 0},
    };
    for (const auto& c : cases) {
        environment.record.insertGreeting = c.greeting;
        environment.record.insertSignature = c.signature;
        ComposerWindow* composer = newComposer();
        ASSERT_NE(composer, nullptr);
        tessaly::Edit* edit = composer->edit(IDC_COMPOSE_TEXT);
        EXPECT_EQ(edit->text(), c.text);
        EXPECT_EQ(edit->caretPos(), c.caret);
        EXPECT_FALSE(edit->isModified());
        EXPECT_EQ(composer->focusItemId(), IDC_COMPOSE_TEXT);
        composer->destroyWindow();
        settle();
    }
}

TEST_F(ComposerTest, ForwardBringsTheTextWithNormalisedBreaksAndNoRecipients) {
    environment.record.insertGreeting = true;
    environment.record.insertSignature = true;
    const long id = receive(u"0170", u"one\rtwo\nthree\r\nfour \u2022 five");
    ComposerWindow* composer = forwardComposer(id);
    ASSERT_NE(composer, nullptr);
    EXPECT_EQ(text(*composer, IDC_COMPOSE_TEXT),
              QStringLiteral("\r\none\r\ntwo\r\nthree\r\nfour \r\n five"));
    EXPECT_EQ(text(*composer, IDC_COMPOSE_TO), QString());
    EXPECT_EQ(composer->focusItemId(), IDC_COMPOSE_TO);
    EXPECT_FALSE(composer->isItemEnabled(IDC_COMPOSE_SEND));
}

TEST_F(ComposerTest, ReplyTakesTheSenderOver) {
    const long id = receive(u"+49 170 5550", u"Call me");
    ASSERT_TRUE(GSM::sms.replyMessage(id).isOk());
    settle();
    ASSERT_EQ(opened.size(), 1u);
    ComposerWindow& composer = *opened.back();
    EXPECT_EQ(text(composer, IDC_COMPOSE_TO), QStringLiteral("+49 170 5550"));
    EXPECT_EQ(composer.recipientCount(), 1);
    EXPECT_EQ(composer.focusItemId(), IDC_COMPOSE_TEXT);
}

TEST_F(ComposerTest, AMessageFilledInByTheHostBringsItsRecipientsAndText) {
    environment.record.insertGreeting = true;
    const struct {
        std::vector<std::u16string> numbers;
        std::u16string text;
        QString to;
        QString shown;
        int focus;
    } cases[] = {
        {{u"+4917012345"}, u"See you\nat 8", "+4917012345", "See you\r\nat 8", IDC_COMPOSE_TEXT},
        {{u"0160", u"0170"},
         u"Hi \u2022 all\r",
         "0160,0170",
         "Hi \u2022 all\r\n",
         IDC_COMPOSE_TEXT},
        {{}, u"No one yet", "", "No one yet", IDC_COMPOSE_TO},
    };
    for (const auto& c : cases) {
        GSM::Message* message = GSM::Message::make();
        ASSERT_NE(message, nullptr);
        ASSERT_TRUE(message->setText(c.text.c_str()).isOk());
        for (const std::u16string& number : c.numbers)
            ASSERT_TRUE(message->getContacts()->add(number.c_str()).isOk());
        ComposerWindow* composer = ComposerWindow::open(message, environment);
        ASSERT_NE(composer, nullptr);
        EXPECT_EQ(text(*composer, IDC_COMPOSE_TO), c.to);
        EXPECT_EQ(text(*composer, IDC_COMPOSE_TEXT), c.shown) << "no greeting in a given text";
        EXPECT_EQ(composer->recipientCount(), int(c.numbers.size()));
        EXPECT_EQ(composer->isItemEnabled(IDC_COMPOSE_SEND), !c.numbers.empty());
        EXPECT_EQ(composer->focusItemId(), c.focus);
        composer->destroyWindow();
        settle();
    }
}

TEST_F(ComposerTest, TwoRecipientsAndARecipientPlaceholderMakeOneMessageEach) {
    ASSERT_TRUE(simulator::addContact(u"Anna", u"Berg", {u"0160"}).isOk());
    ASSERT_TRUE(simulator::addContact(u"Ben", u"Cole", {u"0170"}).isOk());
    ComposerWindow* composer = newComposer();
    ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TO, QStringLiteral("0160, 0170")));
    composer->edit(IDC_COMPOSE_TEXT)->setText(QStringLiteral("Hi [Recipient:First Name]!"));
    ASSERT_TRUE(testkit::click(*composer, IDC_COMPOSE_SEND));
    settle();
    const std::vector<OutboxMessage> sent = outbox();
    ASSERT_EQ(sent.size(), 2u);
    // The second recipient's message is handed over first, the first recipient's last.
    EXPECT_EQ(sent[0].recipients, QStringList{"0170"});
    EXPECT_EQ(sent[0].text, QStringLiteral("Hi Ben!"));
    EXPECT_EQ(sent[1].recipients, QStringList{"0160"});
    EXPECT_EQ(sent[1].text, QStringLiteral("Hi Anna!"));
    for (const OutboxMessage& message : sent)
        EXPECT_EQ(message.status, GSM::Message::Sent);
    EXPECT_EQ(favourite(1), QStringLiteral("Anna Berg:0160"));
    EXPECT_EQ(environment.destroyed.size(), 1u);
}

TEST_F(ComposerTest, TwoRecipientsWithoutAPlaceholderShareOneMessage) {
    ComposerWindow* composer = newComposer();
    ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TO, QStringLiteral("0160,0170")));
    ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TEXT, QStringLiteral("See you")));
    ASSERT_TRUE(testkit::click(*composer, IDC_COMPOSE_SEND));
    settle();
    const std::vector<OutboxMessage> sent = outbox();
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].recipients, (QStringList{"0170", "0160"}));
    EXPECT_EQ(sent[0].text, QStringLiteral("See you"));
    EXPECT_EQ(sent[0].status, GSM::Message::Sent);
    EXPECT_EQ(favourite(1), QStringLiteral("0160"));
}

TEST_F(ComposerTest, CancelledQuestionsLeaveTheComposerAsTyped) {
    ComposerWindow* composer = newComposer();
    ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TO, QStringLiteral("0160,0170")));
    const QString typed = QStringLiteral("Meet [Contact:Full Name]. [Recipient:First Name], "
                                         "[Sender:Phone]");
    composer->edit(IDC_COMPOSE_TEXT)->setText(typed);
    composer->edit(IDC_COMPOSE_TEXT)->setModified(true);

    user.answerBox(IDNO);
    ASSERT_TRUE(testkit::click(*composer, IDC_COMPOSE_SEND));
    EXPECT_EQ(user.boxes().back().text,
              QStringLiteral("Some of the variables are not replaced in the message. Do you "
                             "want to continue?"));
    user.answerBox(IDYES).answerBox(IDNO);
    ASSERT_TRUE(testkit::click(*composer, IDC_COMPOSE_SEND));
    EXPECT_EQ(user.boxes().back().text,
              QStringLiteral("The sender information is empty. Do you want to continue?"));
    settle();
    ASSERT_TRUE(tessaly::Dialog::exists(composer));
    EXPECT_EQ(text(*composer, IDC_COMPOSE_TO), QStringLiteral("0160,0170"));
    EXPECT_EQ(text(*composer, IDC_COMPOSE_TEXT), typed);
    EXPECT_TRUE(composer->isItemEnabled(IDC_COMPOSE_SEND));
    EXPECT_TRUE(outbox().empty());
    EXPECT_TRUE(tessaly::sms::Favourites::entries().isEmpty());

    // Said yes to both, the same SEND goes through: two messages, the sender asked once.
    user.answerBox(IDYES).answerBox(IDYES);
    ASSERT_TRUE(testkit::click(*composer, IDC_COMPOSE_SEND));
    settle();
    EXPECT_EQ(outbox().size(), 2u);
    EXPECT_EQ(user.boxes().size(), 5u);
}

TEST_F(ComposerTest, InvalidRecipientAtSendKeepsEverything) {
    ComposerWindow* composer = newComposer();
    ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TEXT, QStringLiteral("Hello")));
    // Text the field's own filters never see (a program or a paste that slipped through).
    tessaly::Edit* to = composer->edit(IDC_COMPOSE_TO);
    QSignalBlocker quiet(to);
    to->setText(QStringLiteral("0171;2"));
    user.answerBox(IDOK);
    composer->onSend();
    EXPECT_EQ(user.boxes().back().text, QStringLiteral("Invalid Recipient"));
    EXPECT_EQ(user.boxes().back().buttons(), MB_OK);
    EXPECT_TRUE(tessaly::Dialog::exists(composer));
    EXPECT_EQ(text(*composer, IDC_COMPOSE_TEXT), QStringLiteral("Hello"));
}

TEST_F(ComposerTest, ClosingAsksOnlyWhenTheTextWasModified) {
    environment.record.insertSignature = true;
    ComposerWindow* untouched = newComposer();
    untouched->sendCommand(IDOK);
    settle();
    EXPECT_EQ(environment.destroyed.size(), 1u);
    EXPECT_TRUE(user.boxes().empty());

    ComposerWindow* typedIn = newComposer();
    ASSERT_TRUE(testkit::type(*typedIn, IDC_COMPOSE_TEXT, QStringLiteral("x")));
    user.answerBox(IDCANCEL);
    typedIn->sendCommand(IDCANCEL);
    EXPECT_EQ(user.boxes().back().text, QStringLiteral("Current message will be lost."));
    EXPECT_EQ(user.boxes().back().buttons(), MB_OKCANCEL);
    EXPECT_TRUE(tessaly::Dialog::exists(typedIn));
    user.answerBox(IDOK);
    typedIn->sendCommand(IDCANCEL);
    settle();
    EXPECT_EQ(environment.destroyed.size(), 2u);
    EXPECT_TRUE(outbox().empty());
    EXPECT_TRUE(tessaly::Shell::current().inputPanelRequests().size() >= 2);
}

TEST_F(ComposerTest, DetailsRowsTemplatesAndValidity) {
    ComposerWindow* composer = newComposer();
    const int clientHeight = composer->clientSize().height();
    EXPECT_FALSE(composer->isItemVisible(IDC_COMPOSE_VALIDITY));
    EXPECT_EQ(composer->itemRect(IDC_COMPOSE_TEXT).top(), 47);
    EXPECT_EQ(composer->itemRect(IDC_COMPOSE_TEXT).height(), clientHeight - 59);
    ASSERT_TRUE(testkit::click(*composer, IDC_COMPOSE_DOWN));
    EXPECT_TRUE(composer->detailsShown());
    EXPECT_TRUE(composer->isItemVisible(IDC_COMPOSE_VALIDITY));
    EXPECT_FALSE(composer->isItemVisible(IDC_COMPOSE_DOWN));
    EXPECT_EQ(composer->itemRect(IDC_COMPOSE_TEXT).top(), 100);
    EXPECT_EQ(composer->itemRect(IDC_COMPOSE_TEXT).height(), clientHeight - 112);
    EXPECT_EQ(composer->itemRect(IDC_COMPOSE_COUNTER).top(), clientHeight - 12);
    EXPECT_EQ(composer->itemRect(IDC_COMPOSE_COUNTER).width(), 160);

    // Factory validity is "Maximum"; "1 Week" is set on the message at once as 175.
    EXPECT_EQ(composer->comboBox(IDC_COMPOSE_VALIDITY)->curSel(), 4);
    ASSERT_TRUE(testkit::select(*composer, IDC_COMPOSE_VALIDITY, 3));
    EXPECT_EQ(composer->message()->getValidityPeriod(), 175);
    ASSERT_TRUE(testkit::click(*composer, IDC_COMPOSE_UP));
    EXPECT_EQ(composer->itemRect(IDC_COMPOSE_TEXT).top(), 47);

    tessaly::ComboBox* templates = composer->comboBox(IDC_COMPOSE_TEMPLATES);
    ASSERT_EQ(templates->itemText(0), QStringLiteral("Insert Template"));
    const int count = templates->count();
    // Opened and closed without a choice, the list shows its label again.
    ASSERT_TRUE(testkit::dropDown(*composer, IDC_COMPOSE_TEMPLATES));
    EXPECT_EQ(templates->count(), count - 1);
    EXPECT_NE(templates->itemText(0), QStringLiteral("Insert Template"));
    ASSERT_TRUE(testkit::closeUp(*composer, IDC_COMPOSE_TEMPLATES));
    testkit::pumpMessages();
    EXPECT_EQ(templates->count(), count);
    EXPECT_EQ(templates->curSel(), 0);
    EXPECT_EQ(text(*composer, IDC_COMPOSE_TEXT), QString());

    // A choice in the open list, in the order the list reports it: the entry becomes current,
    // the list closes, then the choice is announced.
    ASSERT_TRUE(testkit::dropDown(*composer, IDC_COMPOSE_TEMPLATES));
    templates->setCurrentIndex(templates->findStringExact(-1, QStringLiteral("Thanks for")));
    ASSERT_TRUE(testkit::closeUp(*composer, IDC_COMPOSE_TEMPLATES));
    emit templates->activated(templates->currentIndex());
    testkit::pumpMessages();
    EXPECT_EQ(templates->itemText(0), QStringLiteral("Insert Template"));
    EXPECT_EQ(templates->curSel(), 0);
    EXPECT_EQ(text(*composer, IDC_COMPOSE_TEXT), QStringLiteral("Thanks for <the meeting>."));
    EXPECT_EQ(text(*composer, IDC_COMPOSE_COUNTER), QStringLiteral("25 characters, 1 message"));
    EXPECT_TRUE(composer->edit(IDC_COMPOSE_TEXT)->isModified());
}

} // namespace
