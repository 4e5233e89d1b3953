#include "telephony_fixture.h"

#include "suite/telephony/radio_backend.h"

#include <gtest/gtest.h>

namespace {

using namespace telephony_test;
namespace telephony = tessaly::telephony;

// Records what the store hands it; the test answers.
class FakeBackend final : public telephony::RadioBackend {
public:
    std::u16string description() const override { return u"fake modem"; }
    void send(const telephony::OutgoingSms& message, Progress progress,
              Finished finished) override {
        sent.push_back(message);
        pending.emplace_back(std::move(progress), std::move(finished));
    }
    void simMessageStored(const telephony::IncomingSms& message) override {
        simStored.push_back(message.text);
    }
    void answer(const GSM::Result& result) {
        auto [progress, finished] = std::move(pending.front());
        pending.erase(pending.begin());
        progress(1, 1);
        finished(result);
    }

    std::vector<telephony::OutgoingSms> sent;
    std::vector<std::pair<Progress, Finished>> pending;
    std::vector<std::u16string> simStored;
};

class RadioBackendTest : public TelephonyTest {
protected:
    void SetUp() override {
        TelephonyTest::SetUp();
        telephony::setRadioBackend(backend);
    }
    void TearDown() override {
        telephony::setRadioBackend(nullptr);
        TelephonyTest::TearDown();
    }
    long queue(std::vector<std::u16string> recipients, std::u16string text) {
        GSM::Message* message = GSM::Message::make();
        for (const std::u16string& number : recipients)
            message->getContacts()->add(number.c_str(), 0);
        message->setText(text.c_str());
        message->setValidityPeriod(GSM::Message::OneDay);
        EXPECT_TRUE(message->endEdit(false).isOk());
        return message->getId();
    }

    std::shared_ptr<FakeBackend> backend = std::make_shared<FakeBackend>();
};

TEST_F(RadioBackendTest, SendsRecipientByRecipientAndWaitsForEachAnswer) {
    EXPECT_EQ(telephony::radioDescription(), u"fake modem");
    const long id = queue({u"+4917011", u"+4917022"}, u"hello");
    settle();
    ASSERT_EQ(backend->sent.size(), 1u) << "one recipient at a time";
    EXPECT_EQ(backend->sent[0].number, u"+4917011");
    EXPECT_EQ(backend->sent[0].text, u"hello");
    EXPECT_EQ(backend->sent[0].validityCode, 167);
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::SendNow);
    backend->answer({});
    settle();
    ASSERT_EQ(backend->sent.size(), 2u);
    EXPECT_EQ(backend->sent[1].recipient, 1);
    backend->answer({});
    settle();
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::Sent);
    EXPECT_EQ(progress, (std::vector<Progress>{{id, 0, 1, 1}, {id, 1, 1, 1}}));
    ASSERT_EQ(completions.size(), 1u);
    EXPECT_TRUE(completions[0].first.isOk());
    EXPECT_TRUE(completions[0].second) << "two recipients";
}

TEST_F(RadioBackendTest, AModemFailureEndsTheMessageWithTheModemsWordsAndWhomItDidNotReach) {
    const long id = queue({u"+4917011", u"+4917022", u"+4917033"}, u"hello");
    settle();
    backend->answer({});
    settle();
    backend->answer(GSM::Result(GSM::ErrorNetworkRejected, u"Message rejected by the network"));
    settle();
    EXPECT_EQ(backend->sent.size(), 2u) << "the third recipient is not tried";
    GSM::Message* message = GSM::sms.getMessage(id);
    EXPECT_EQ(message->getStatus(), GSM::Message::Failed);
    EXPECT_TRUE(message->wasSentTo(0));
    EXPECT_FALSE(message->wasSentTo(1));
    EXPECT_FALSE(message->wasSentTo(2));
    ASSERT_EQ(completions.size(), 1u);
    EXPECT_EQ(completions[0].first.errorCode(), GSM::ErrorNetworkRejected);
    EXPECT_EQ(text(completions[0].first.getErrorMessage()),
              u"Message rejected by the network. Not sent to +4917022, +4917033.");

    ASSERT_TRUE(GSM::sms.setMessageStatus(id, GSM::Message::SendNow).isOk());
    settle();
    backend->answer({});
    settle();
    backend->answer({});
    settle();
    ASSERT_EQ(backend->sent.size(), 4u);
    EXPECT_EQ(backend->sent[2].number, u"+4917022") << "only those not reached";
    EXPECT_EQ(backend->sent[3].number, u"+4917033");
    EXPECT_EQ(message->getStatus(), GSM::Message::Sent);
    EXPECT_TRUE(message->wasSentTo(1));

    ASSERT_TRUE(GSM::sms.setMessageStatus(id, GSM::Message::SendNow).isOk());
    settle();
    EXPECT_EQ(backend->sent.back().number, u"+4917011") << "a sent message goes to all again";
}

TEST_F(RadioBackendTest, ALateAnswerAfterTheStoreClosedIsIgnored) {
    queue({u"+4917011"}, u"hello");
    settle();
    tessaly::telephony::close();
    openStore(QStringLiteral(":memory:"));
    backend->answer({});
    settle();
    EXPECT_TRUE(completions.empty());
}

TEST_F(RadioBackendTest, ImportingTheSameMessageTwiceStoresItOnce) {
    const telephony::IncomingSms message{u"+4915112345", u"Hi", daysAgo(clock, 1), u"+49171"};
    ASSERT_TRUE(telephony::importReceived(message).isOk());
    ASSERT_TRUE(telephony::importReceived(message).isOk());
    telephony::IncomingSms other = message;
    other.text = u"Hi!";
    ASSERT_TRUE(telephony::importReceived(other).isOk());
    settle();
    EXPECT_EQ(GSM::sms.messageCount(GSM::Sms::FolderInbox), 2);
    EXPECT_EQ(notified.size(), 2u);
}

TEST_F(RadioBackendTest, SimMessagesAlreadyStoredAreNotOfferedAgain) {
    const telephony::IncomingSms stored{u"+4915112345", u"old", daysAgo(clock, 3), u""};
    const telephony::IncomingSms fresh{u"+4915112345", u"new", daysAgo(clock, 2), u""};
    ASSERT_TRUE(telephony::importReceived(stored).isOk());
    ASSERT_TRUE(telephony::offerSimMessages({stored, fresh}, 10).isOk());
    settle();
    EXPECT_EQ(backend->simStored, std::vector<std::u16string>{u"old"}) << "the copy may go";
    EXPECT_EQ(simCalls, (std::vector<std::pair<int, int>>{{1, 10}}));
    ASSERT_TRUE(GSM::sms.moveSimMessages().isOk());
    settle();
    EXPECT_EQ(backend->simStored, (std::vector<std::u16string>{u"old", u"new"}));
    EXPECT_EQ(GSM::sms.messageCount(GSM::Sms::FolderInbox), 2);
}

TEST_F(RadioBackendTest, AMessageMovedOffTheSimKeepsItsServiceCentre) {
    const telephony::IncomingSms carried{u"+4915112345", u"one", daysAgo(clock, 2), u"+4917100"};
    const telephony::IncomingSms without{u"+4915112345", u"two", daysAgo(clock, 1), u""};
    ASSERT_TRUE(telephony::offerSimMessages({carried, without}, 10).isOk());
    settle();
    ASSERT_TRUE(GSM::sms.moveSimMessages().isOk());
    settle();
    GSM::MessageContainer* inbox =
        GSM::sms.getMessages(GSM::Sms::FolderInbox, GSM::Sms::SortByDate);
    ASSERT_EQ(inbox->size(), 2);
    std::vector<std::u16string> centres;
    for (int i = 0; i < inbox->size(); ++i)
        centres.push_back(inbox->get(i)->getServiceCentre());
    EXPECT_NE(std::find(centres.begin(), centres.end(), u"+4917100"), centres.end())
        << "the centre the PDU carried";
}

TEST_F(RadioBackendTest, TheDeviceAnswersFromTheModemAndSaysWhatChanged) {
    struct Listener : GSM::DeviceEventHandler {
        void eventStatusChanged() override { log.push_back("status"); }
        void eventNetStatusChanged(GSM::Device::Net net) override {
            log.push_back("net " + std::to_string(net));
        }
        void eventSignalStrengthChanged() override { log.push_back("signal"); }
        void eventInformationUpdated(GSM::Device::Information which) override {
            log.push_back("information " + std::to_string(which));
        }
        std::vector<std::string> log;
    } listener;
    telephony::reportRadioState({GSM::Device::StateRegisteredRoaming, 64, u"Tessaly Net"});
    settle();
    EXPECT_EQ(GSM::device.getState(), GSM::Device::StateRegisteredRoaming);
    EXPECT_EQ(GSM::device.netStatus(), GSM::Device::NetRoaming);
    EXPECT_EQ(GSM::device.signalStrength(), 64);
    EXPECT_EQ(std::u16string(GSM::device.operatorName()), u"Tessaly Net");
    EXPECT_EQ(listener.log,
              (std::vector<std::string>{
                  "status", "net " + std::to_string(GSM::Device::NetRoaming), "signal",
                  "information " + std::to_string(GSM::Device::InformationOperator)}));
    listener.log.clear();
    telephony::reportRadioState({GSM::Device::StateRegisteredRoaming, 20, u"Tessaly Net"});
    settle();
    EXPECT_EQ(listener.log, std::vector<std::string>{"signal"}) << "only what changed";
    telephony::reportRadioState({GSM::Device::StateSearching, 0, u""});
    settle();
    EXPECT_EQ(GSM::device.signalStrength(), 0);
    EXPECT_EQ(std::u16string(GSM::device.operatorName()), u"");
}

TEST_F(RadioBackendTest, AModemGoneDuringASendLeavesTheMessageQueued) {
    const long id = queue({u"+4917011", u"+4917022"}, u"hello");
    settle();
    ASSERT_EQ(backend->sent.size(), 1u);
    backend->answer({}); // the first recipient is reached
    settle();
    ASSERT_EQ(backend->sent.size(), 2u);
    // The modem goes while the second is on its way; another takes over.
    auto next = std::make_shared<FakeBackend>();
    telephony::setRadioBackend(next);
    settle();
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::SendNow);
    ASSERT_EQ(next->sent.size(), 1u) << "the queue goes on with the new modem";
    EXPECT_EQ(next->sent[0].number, u"+4917022") << "the recipient reached is not sent again";
    backend->answer(GSM::Result(520, u"gone")); // the old modem's late answer
    settle();
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::SendNow);
    next->answer({});
    settle();
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::Sent);
}

TEST_F(RadioBackendTest, DeliveryReportsAreKeptAndAFailedOneEndsTheMessageFailed) {
    const long id = queue({u"+4917011", u"+4917022"}, u"hello");
    settle();
    backend->answer({});
    settle();
    EXPECT_EQ(telephony::reportDelivery(id, 1, {}).errorCode(), GSM::ErrorInvalidArgument)
        << "not sent to the second recipient yet";
    backend->answer({});
    settle();
    ASSERT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::Sent);

    const FILETIME when = daysAgo(clock, 0.5);
    ASSERT_TRUE(telephony::reportDelivery(id, 0, {true, when, {}}).isOk());
    settle();
    GSM::Message* message = GSM::sms.getMessage(id);
    EXPECT_EQ(fileTimeToUInt64(message->deliveredTo(0)), fileTimeToUInt64(when));
    EXPECT_EQ(fileTimeToUInt64(message->deliveredTo(1)), 0u) << "no report yet";
    EXPECT_EQ(message->getStatus(), GSM::Message::Sent);

    ASSERT_TRUE(telephony::reportDelivery(id, 1, {false, {}, u"Unknown subscriber"}).isOk());
    settle();
    EXPECT_EQ(message->getStatus(), GSM::Message::Failed);
    EXPECT_TRUE(message->wasSentTo(0));
    EXPECT_FALSE(message->wasSentTo(1)) << "the network did not reach it";
    EXPECT_EQ(deliveries, (std::vector<Delivery>{{id, 0, true}, {id, 1, false}}));
    EXPECT_EQ(telephony::reportDelivery(id + 100, 0, {}).errorCode(), GSM::ErrorNotFound);
}

TEST_F(RadioBackendTest, ASimOfUnknownSizeIsNotSaidToBeFull) {
    const telephony::IncomingSms one{u"+4915112345", u"one", daysAgo(clock, 2), u""};
    ASSERT_TRUE(telephony::offerSimMessages({one}, telephony::kSimCapacityUnknown).isOk());
    settle();
    EXPECT_EQ(simCalls, (std::vector<std::pair<int, int>>{{1, 0}}));
    int used = -1;
    int capacity = -1;
    ASSERT_TRUE(GSM::sms.simStorage(&used, &capacity).isOk());
    EXPECT_EQ(used, 1);
    EXPECT_EQ(capacity, 0);
}

} // namespace
