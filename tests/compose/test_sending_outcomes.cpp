// What becomes of a handed-over message that cannot be sent: a text of hundreds of parts and a
// recipient without a number end Failed, with a clear text in the completion, never a crash.

#include "compose_fixture.h"

namespace {

using namespace compose_test;
namespace testkit = tessaly::testkit;

class SendingOutcomes : public ComposeTest {
protected:
    void SetUp() override {
        ComposeTest::SetUp();
        tessaly::telephony::HostHooks hooks = tessaly::telephony::hostHooks();
        hooks.openSendingCompletion = [this](GSM::Result result, bool) {
            completions.push_back(QString::fromUtf16(result.getErrorMessage()));
        };
        tessaly::telephony::installHostHooks(hooks);
    }

    QStringList completions;
};

TEST_F(SendingOutcomes, AHugeTextFailsWithItsNumberOfParts) {
    ComposerWindow* composer = newComposer();
    ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TO, QStringLiteral("0170")));
    composer->edit(IDC_COMPOSE_TEXT)->setText(QString(153 * 300, u'x'));
    EXPECT_EQ(text(*composer, IDC_COMPOSE_COUNTER),
              QStringLiteral("45900 characters, 300 messages"));
    ASSERT_TRUE(testkit::click(*composer, IDC_COMPOSE_SEND));
    settle();
    const std::vector<OutboxMessage> sent = outbox();
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].status, GSM::Message::Failed);
    EXPECT_EQ(sent[0].text.size(), 153 * 300) << "the text is kept whole";
    EXPECT_EQ(completions, QStringList{"The message is too long to be sent: it needs 300 parts, "
                                       "and at most 255 fit into one message."});
}

TEST_F(SendingOutcomes, ARecipientWithoutANumberFails) {
    simulator::StoredMessage stored;
    stored.folder = GSM::Sms::FolderOutbox;
    stored.status = GSM::Message::NotSent;
    stored.addresses = {u"0170", u"  "};
    stored.text = u"Hello";
    ASSERT_TRUE(simulator::addStoredMessages({stored}).isOk());
    const long id =
        GSM::sms.getMessages(GSM::Sms::FolderOutbox, GSM::Sms::SortByDate)->get(0)->getId();
    ASSERT_TRUE(GSM::sms.setMessageStatus(id, GSM::Message::SendNow).isOk());
    settle();
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::Failed);
    EXPECT_EQ(completions, QStringList{"A recipient of the message has no number."});
}

} // namespace
