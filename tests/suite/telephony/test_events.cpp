#include "telephony_fixture.h"

#include "framework/ui/shell.h"
#include "gsm/gsm.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <functional>
#include <memory>

namespace {

using telephony_test::Progress;
using telephony_test::text;
namespace sim = tessaly::telephony::simulator;

struct CountingSmsHandler : GSM::SmsEventHandler {
    void eventMessagesChanged() override {
        ++calls;
        if (onEvent)
            onEvent();
    }
    int calls = 0;
    std::function<void()> onEvent;
};

class EventDelivery : public telephony_test::TelephonyTest {};

TEST_F(EventDelivery, ArrivesAfterTheCallOnceForABurstOfChanges) {
    CountingSmsHandler handler;
    ASSERT_TRUE(sim::receiveMessage(u"+4917011", u"a").isOk());
    ASSERT_TRUE(sim::receiveMessage(u"+4917011", u"b").isOk());
    EXPECT_EQ(handler.calls, 0) << "never inside the call that caused it";
    settle();
    EXPECT_EQ(handler.calls, 1);
    EXPECT_EQ(notified.size(), 2u);
}

TEST_F(EventDelivery, ReachesOnlyHandlersAliveAtDelivery) {
    auto early = std::make_unique<CountingSmsHandler>();
    auto victim = std::make_unique<CountingSmsHandler>();
    auto destroyedBeforeDelivery = std::make_unique<CountingSmsHandler>();
    std::unique_ptr<CountingSmsHandler> bornDuringDelivery;
    int victimCallsAtDeath = -1;
    // The first handler destroys a later one and creates a new one while the event is delivered.
    early->onEvent = [&] {
        if (victim) {
            victimCallsAtDeath = victim->calls;
            victim.reset();
        }
        if (!bornDuringDelivery)
            bornDuringDelivery = std::make_unique<CountingSmsHandler>();
    };
    ASSERT_TRUE(sim::receiveMessage(u"+4917011", u"a").isOk());
    destroyedBeforeDelivery.reset();
    settle();
    EXPECT_EQ(early->calls, 1);
    EXPECT_EQ(victimCallsAtDeath, 0) << "a handler destroyed by an earlier one is not called";
    ASSERT_NE(bornDuringDelivery, nullptr);
    EXPECT_EQ(bornDuringDelivery->calls, 0) << "not alive when the delivery began";
    ASSERT_TRUE(sim::receiveMessage(u"+4917011", u"b").isOk());
    settle();
    EXPECT_EQ(bornDuringDelivery->calls, 1);
}

struct Recorder : GSM::Preferences,
                  GSM::DeviceEventHandler,
                  GSM::CellBroadcast::EventHandler,
                  GSM::PhoneBook {
    void eventPreferencesChanged() override { log.push_back("preferences"); }
    void eventStatusChanged() override { log.push_back("status"); }
    void eventSmsServiceChanged() override { log.push_back("sms-service"); }
    void eventMessage(int channel) override { log.push_back("cb " + std::to_string(channel)); }
    void eventSubscription(int channelCount, const Utilities::Range* channels, int languageCount,
                           const Utilities::Range* languages) override {
        std::string line = "subscription";
        for (int i = 0; i < channelCount; ++i)
            line +=
                " " + std::to_string(channels[i].first) + "-" + std::to_string(channels[i].last);
        line += " /";
        for (int i = 0; i < languageCount; ++i)
            line +=
                " " + std::to_string(languages[i].first) + "-" + std::to_string(languages[i].last);
        log.push_back(line);
    }
    void eventCbFailure(const GSM::Result& result) override {
        log.push_back("cb-failure " + std::to_string(result.errorCode()));
    }
    void eventContactPicked(GSM::Contact* contact) override {
        log.push_back(contact ? "picked " + QString::fromUtf16(contact->getText(0, 1)).toStdString()
                              : std::string("picked none"));
    }
    void eventFolderChanged(GSM::Folder* folder) override {
        log.push_back("folder " + std::to_string(folder->getId()) + " size " +
                      std::to_string(folder->size()));
    }
    std::vector<std::string> log;
};

TEST_F(EventDelivery, PreferencesAnnounceChangesOnEndEdit) {
    Recorder recorder;
    const char record[] = "abc";
    ASSERT_TRUE(GSM::Preferences::setPreferences(GSM::ServiceSms, record, 3).isOk());
    GSM::Preferences::getMainPreferences()->setShowCbDialog(true);
    settle();
    EXPECT_TRUE(recorder.log.empty()) << "changes are announced by endEdit";
    ASSERT_TRUE(GSM::Preferences::endEdit().isOk());
    ASSERT_TRUE(GSM::Preferences::endEdit().isOk());
    settle();
    EXPECT_EQ(recorder.log, std::vector<std::string>{"preferences"});
    EXPECT_EQ(GSM::Preferences::getPreferences(GSM::ServiceVoice, nullptr).errorCode(),
              GSM::ErrorNotFound);
    EXPECT_EQ(GSM::Preferences::getSizeOfPreferences(GSM::ServiceVoice), 0u);
    EXPECT_EQ(GSM::Preferences::setPreferences(GSM::ServiceSms, nullptr, 4).errorCode(),
              GSM::ErrorInvalidArgument);
}

TEST_F(EventDelivery, CellBroadcastSubscriptionAndMessages) {
    Recorder recorder;
    const Utilities::Range channels[] = {{100, 101}, {50, 53}, {52, 54}};
    const Utilities::Range languages[] = {{1, 2}, {0, 1}};
    ASSERT_TRUE(GSM::CellBroadcast::setMessageTypes(3, channels, 2, languages).isOk());
    ASSERT_TRUE(GSM::CellBroadcast::getMessageTypes().isOk());
    const Utilities::Range bad{7, 7};
    EXPECT_EQ(GSM::CellBroadcast::setMessageTypes(1, &bad, 0, nullptr).errorCode(),
              GSM::ErrorInvalidArgument);
    EXPECT_TRUE(sim::receiveCellBroadcast(51, u"Storm warning", 1).isOk());
    EXPECT_TRUE(sim::receiveCellBroadcast(51, u"Storm over").isOk());
    EXPECT_EQ(sim::receiveCellBroadcast(60, u"not subscribed").errorCode(), GSM::ErrorNotFound);
    EXPECT_EQ(sim::receiveCellBroadcast(100, u"Greek", 11).errorCode(), GSM::ErrorNotFound);
    EXPECT_EQ(sim::receiveCellBroadcast(70000, u"x").errorCode(), GSM::ErrorInvalidArgument);
    EXPECT_TRUE(sim::receiveCellBroadcast(100, u"Traffic").isOk());
    settle();
    EXPECT_EQ(recorder.log, (std::vector<std::string>{"subscription 50-54 100-101 / 0-2",
                                                      "cb-failure 1", "cb 51", "cb 51", "cb 100"}));
    GSM::CbFolder folder;
    EXPECT_EQ(folder.size(), 2);
    EXPECT_EQ(folder.firstChannel(), 50 + 1);
    EXPECT_EQ(folder.lastChannel(), 100);
    EXPECT_EQ(folder.get(52), nullptr);
    std::unique_ptr<GSM::CbMessage> message(folder.get(51));
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(text(message->messageText()), u"Storm over");
    EXPECT_EQ(message->count(), 2);
}

TEST_F(EventDelivery, CellBroadcastStoreGivesUpItsOldestWhenFull) {
    const Utilities::Range all{0, 1000};
    ASSERT_TRUE(GSM::CellBroadcast::setMessageTypes(1, &all, 0, nullptr).isOk());
    GSM::CbFolder folder;
    for (int channel = 0; channel <= folder.capacity(); ++channel) {
        clock.nowTicks += 10000000;
        ASSERT_TRUE(sim::receiveCellBroadcast(channel * 10, u"m").isOk());
    }
    EXPECT_EQ(folder.size(), folder.capacity());
    EXPECT_EQ(folder.get(0), nullptr);
    EXPECT_EQ(folder.firstChannel(), 10);
}

TEST_F(EventDelivery, PickerAnswersTheAskingHandlerAfterTheCall) {
    ASSERT_TRUE(sim::addContact(u"Anna", u"Berg", {u"+4917011", u"+4930222"}).isOk());
    ASSERT_TRUE(sim::addContact(u"", u"", {}, u"Taxi").isOk()); // no number: not offered
    Recorder asking;
    Recorder bystander;
    picker.answer = {0, 1};
    ASSERT_TRUE(asking.pickContact(nullptr, u"Choose").isOk());
    EXPECT_TRUE(asking.log.empty());
    ASSERT_EQ(picker.entries.size(), 1u);
    EXPECT_EQ(picker.entries[0].name, QStringLiteral("Anna Berg"));
    EXPECT_EQ(picker.titles.value(0), QStringLiteral("Choose"));
    picker.answer = {};
    ASSERT_TRUE(asking.pickContact(nullptr, nullptr).isOk());
    settle();
    EXPECT_EQ(asking.log, (std::vector<std::string>{"picked +4930222", "picked none"}));
    EXPECT_TRUE(bystander.log.empty());

    auto doomed = std::make_unique<Recorder>();
    ASSERT_TRUE(doomed->pickContact(nullptr, u"").isOk());
    doomed.reset();
    settle(); // the answer to a destroyed handler goes nowhere

    picker.answer = {0, 0};
    GSM::Folder* picked = GSM::PhoneBook::getFolder(GSM::PhoneBook::FolderPicker);
    ASSERT_TRUE(picked->pick(nullptr).isOk());
    settle();
    EXPECT_EQ(bystander.log.back(), "folder 3 size 1");
    EXPECT_EQ(text(picked->get(0)->getText(0, 1)), u"+4917011");
    EXPECT_EQ(GSM::PhoneBook::getFolder(GSM::PhoneBook::FolderContacts)->pick(nullptr).errorCode(),
              GSM::ErrorNotSupported);
    EXPECT_EQ(GSM::PhoneBook::getFolder(GSM::PhoneBook::SpecialFolderId(2)), nullptr);
}

TEST_F(EventDelivery, DeviceStateAndSmsBearer) {
    Recorder recorder;
    EXPECT_EQ(GSM::device.getState(), GSM::Device::StateRegisteredHome);
    sim::setDeviceState(GSM::Device::StateSearching);
    EXPECT_EQ(GSM::device.getState(), 16);
    EXPECT_EQ(GSM::device.smsService(), GSM::Device::SmsServiceGprs);
    EXPECT_TRUE(GSM::device.setSmsService(GSM::Device::SmsServiceCircuit).isOk());
    EXPECT_EQ(GSM::device.smsService(), 3);
    EXPECT_EQ(GSM::device.setSmsService(7).errorCode(), GSM::ErrorInvalidArgument);
    sim::setSmsServiceKnown(false);
    EXPECT_EQ(GSM::device.smsService(), -1);
    EXPECT_EQ(GSM::device.setSmsService(2).errorCode(), GSM::ErrorNotSupported);
    settle();
    EXPECT_EQ(recorder.log, (std::vector<std::string>{"status", "sms-service"}));
}

class Radio : public telephony_test::TelephonyTest {
protected:
    long send(std::vector<std::u16string> recipients, std::u16string body) {
        GSM::Message* message = GSM::Message::make();
        for (const std::u16string& recipient : recipients)
            message->getContacts()->add(recipient.c_str(), 0);
        message->setText(body.c_str());
        EXPECT_TRUE(message->endEdit(false).isOk());
        return message->getId();
    }
};

TEST_F(Radio, SendsRecipientBySegmentBySegment) {
    const long id = send({u"+4917011", u"+4917022"}, std::u16string(200, u'x'));
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::SendNow);
    settle();
    EXPECT_EQ(progress,
              (std::vector<Progress>{{id, 0, 1, 2}, {id, 0, 2, 2}, {id, 1, 1, 2}, {id, 1, 2, 2}}));
    ASSERT_EQ(completions.size(), 1u);
    EXPECT_TRUE(completions[0].first.isOk());
    EXPECT_TRUE(completions[0].second) << "two recipients make two messages";
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::Sent);
}

TEST_F(Radio, FailuresMarkTheMessageAndReachTheCompletion) {
    const struct {
        const char* name;
        std::function<void()> arrange;
        std::vector<std::u16string> recipients;
        long code;
        std::u16string message;
    } cases[] = {
        {"network rejection",
         [] { sim::failNextSend(520, u"Barred by your operator."); },
         {u"+4917011"},
         520,
         u"Barred by your operator."},
        {"other code",
         [] { sim::failNextSend(GSM::ErrorInvalidArgument, u"Invalid message."); },
         {u"+4917011"},
         GSM::ErrorInvalidArgument,
         u"Invalid message."},
        {"roaming with sending while roaming off",
         [] {
             sim::setDeviceState(GSM::Device::StateRegisteredRoaming);
             GSM::Preferences::getMainPreferences()->setSendWhileRoaming(false);
         },
         {u"+4917011"},
         GSM::ErrorNotAvailable,
         u"Sending while roaming is switched off."},
        {"no recipient", [] {}, {}, GSM::ErrorNoRecipient, u"The message has no recipient."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        completions.clear();
        sim::setDeviceState(GSM::Device::StateRegisteredHome);
        c.arrange();
        const long id = send(c.recipients, u"hello");
        settle();
        EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::Failed);
        ASSERT_EQ(completions.size(), 1u);
        EXPECT_EQ(completions[0].first.errorCode(), c.code);
        EXPECT_EQ(text(completions[0].first.getErrorMessage()), c.message);
        EXPECT_FALSE(completions[0].second);
    }
}

TEST_F(Radio, TemporaryFailuresAreTriedAgainWhileTheQueueGoesOn) {
    sim::failNextSend(GSM::ErrorBusy, u"The modem is busy.");
    const long first = send({u"+4917011"}, u"one");
    const long second = send({u"+4917022"}, u"two");
    settle();
    EXPECT_EQ(GSM::sms.getMessage(first)->getStatus(), GSM::Message::SendNow);
    EXPECT_EQ(GSM::sms.getMessage(second)->getStatus(), GSM::Message::Sent);
    ASSERT_EQ(completions.size(), 1u) << "the waiting message has not ended";
    EXPECT_TRUE(completions[0].first.isOk());
    EXPECT_FALSE(completions[0].second);
    clock.nowMs += 30'000;
    settle();
    EXPECT_EQ(GSM::sms.getMessage(first)->getStatus(), GSM::Message::Sent);
    ASSERT_EQ(completions.size(), 2u);
    EXPECT_TRUE(completions[1].first.isOk());
}

TEST_F(Radio, WithoutNetworkAMessageIsTriedFourTimesThenFails) {
    sim::setDeviceState(GSM::Device::StateSearching);
    const long id = send({u"+4917011"}, u"hello");
    settle();
    // Waits of 30 s, 2 min and 8 min; the last attempt ends it.
    for (const int waitMs : {30'000, 120'000, 480'000}) {
        EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::SendNow);
        EXPECT_TRUE(completions.empty());
        clock.nowMs += waitMs - 1;
        settle();
        EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::SendNow);
        clock.nowMs += 1;
        settle();
    }
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::Failed);
    ASSERT_EQ(completions.size(), 1u);
    EXPECT_EQ(completions[0].first.errorCode(), GSM::ErrorNoNetwork);
    EXPECT_EQ(text(completions[0].first.getErrorMessage()), u"There is no network service.");
}

TEST_F(Radio, SendNowOnAWaitingMessageTriesItNow) {
    sim::failNextSend(GSM::ErrorBusy, u"The modem is busy.");
    const long id = send({u"+4917011"}, u"one");
    settle();
    ASSERT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::SendNow);
    ASSERT_TRUE(GSM::sms.setMessageStatus(id, GSM::Message::SendNow).isOk());
    settle();
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::Sent);
}

TEST_F(Radio, TheSimulatedNetworkReportsDeliveryWhenAskedTo) {
    const long plain = send({u"+4917011"}, u"no report asked");
    settle();
    ASSERT_TRUE(GSM::Preferences::getMainPreferences()->setStatusReport(true).isOk());
    const long asked = send({u"+4917011", u"+4917022"}, u"report asked");
    settle();
    ASSERT_EQ(GSM::sms.getMessage(asked)->getStatus(), GSM::Message::Sent);
    EXPECT_EQ(fileTimeToUInt64(GSM::sms.getMessage(asked)->deliveredTo(0)), 0u) << "not yet";
    clock.nowMs += 2000;
    clock.nowTicks += 2000 * 10000;
    settle();
    for (int recipient : {0, 1})
        EXPECT_NE(fileTimeToUInt64(GSM::sms.getMessage(asked)->deliveredTo(recipient)), 0u)
            << recipient;
    EXPECT_EQ(fileTimeToUInt64(GSM::sms.getMessage(plain)->deliveredTo(0)), 0u);
}

TEST_F(Radio, ARetryGoesOnAfterTheRecipientsAlreadyReached) {
    std::vector<int> sent;
    sim::watchTransmissions([&sent](long, int recipient, int, int) {
        sent.push_back(recipient);
        if (recipient == 1 && sent.size() == 2)
            sim::setDeviceState(GSM::Device::StateSearching);
    });
    const long id = send({u"+4917011", u"+4917022", u"+4917033"}, u"hello");
    settle();
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::SendNow);
    sim::setDeviceState(GSM::Device::StateRegisteredHome);
    clock.nowMs += 30'000;
    settle();
    sim::watchTransmissions(nullptr);
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::Sent);
    EXPECT_EQ(sent, (std::vector<int>{0, 1, 2})) << "nobody gets it twice";
}

TEST_F(Radio, OneFailureInABatchDoesNotStopTheRest) {
    sim::failNextSend(520, u"Rejected");
    const long first = send({u"+4917011"}, u"one");
    const long second = send({u"+4917022"}, u"two");
    settle();
    EXPECT_EQ(GSM::sms.getMessage(first)->getStatus(), GSM::Message::Failed);
    EXPECT_EQ(GSM::sms.getMessage(second)->getStatus(), GSM::Message::Sent);
    ASSERT_EQ(completions.size(), 1u);
    EXPECT_EQ(completions[0].first.errorCode(), 520);
    EXPECT_TRUE(completions[0].second);
    // Send Now on the failed message queues it again.
    ASSERT_TRUE(GSM::sms.setMessageStatus(first, GSM::Message::SendNow).isOk());
    settle();
    EXPECT_EQ(GSM::sms.getMessage(first)->getStatus(), GSM::Message::Sent);
}

TEST_F(Radio, MessageBeingSentCannotBeChangedOrDeleted) {
    sim::setDelays(100, 0);
    const long id = send({u"+4917011"}, u"x");
    GSM::Message* message = GSM::sms.getMessage(id);
    EXPECT_EQ(message->setText(u"y").errorCode(), GSM::ErrorBusy);
    clock.nowMs += 100;
    clock.fireDue();
    EXPECT_EQ(GSM::sms.setMessageStatus(id, GSM::Message::Deleted).errorCode(), GSM::ErrorBusy);
    clock.nowMs += 1000;
    settle();
    clock.nowMs += 1000;
    settle();
    EXPECT_EQ(message->getStatus(), GSM::Message::Sent);
    EXPECT_TRUE(GSM::sms.setMessageStatus(id, GSM::Message::Deleted).isOk());
}

TEST_F(Radio, SimMessagesMoveIntoTheInbox) {
    EXPECT_EQ(GSM::sms.moveSimMessages().errorCode(), GSM::ErrorSimEmpty);
    EXPECT_EQ(sim::setSimContents({{}, {}, {}}, 2).errorCode(), GSM::ErrorInvalidArgument);
    ASSERT_TRUE(sim::setSimContents({{u"+4917011", u"one", {}, true, {}},
                                     {u"+4917022", u"two", {}, false, {}},
                                     {u"+4917033", u"three", {}, false, {}}},
                                    3)
                    .isOk());
    settle();
    int used = 0;
    int capacity = 0;
    ASSERT_TRUE(GSM::sms.simStorage(&used, &capacity).isOk());
    EXPECT_EQ(used, 3);
    EXPECT_EQ(capacity, 3);
    ASSERT_TRUE(GSM::sms.moveSimMessages().isOk());
    EXPECT_EQ(GSM::sms.moveSimMessages().errorCode(), GSM::ErrorBusy);
    settle();
    EXPECT_EQ(simCalls,
              (std::vector<std::pair<int, int>>{{3, 3}, {0, 0}, {0, 0}, {0, 0}, {-1, -1}}));
    EXPECT_EQ(GSM::sms.messageCount(0), 3);
    EXPECT_EQ(GSM::sms.unreadCount(), 2);
    ASSERT_TRUE(GSM::sms.simStorage(&used, nullptr).isOk());
    EXPECT_EQ(used, 0);
    // Once the person declined, the host is no longer asked.
    GSM::Preferences::getMainPreferences()->setAskToMoveSimMessages(false);
    simCalls.clear();
    ASSERT_TRUE(sim::setSimContents({{u"+4917011", u"again", {}, false, {}}}, 5).isOk());
    settle();
    EXPECT_TRUE(simCalls.empty());
}

TEST(HostServices, DefaultsWithoutAHost) {
    tessaly::telephony::installHostHooks({});
    EXPECT_TRUE(GSM::isServiceAvailable(GSM::ServiceSms));
    EXPECT_TRUE(GSM::isServiceAvailable(GSM::ServicePhoneBook));
    EXPECT_FALSE(GSM::isServiceAvailable(GSM::ServiceVoice));
    EXPECT_EQ(GSM::executeService(GSM::ServiceSms).errorCode(), GSM::ErrorNotAvailable);
    EXPECT_EQ(GSM::Phone::makeCall(u"112").errorCode(), GSM::ErrorNotAvailable);
    EXPECT_EQ(GSM::Phone::makeCall(static_cast<GSM::Contact*>(nullptr)).errorCode(),
              GSM::ErrorInvalidArgument);
}

TEST(HostServices, CallsReachTheHostAfterwards) {
    std::vector<std::string> calls;
    int marker = 0;
    tessaly::telephony::HostHooks hooks;
    hooks.setActiveService = [&](GSM::ServiceId id) {
        calls.push_back("active " + std::to_string(id));
    };
    hooks.moduleIdle = [&](void* idle) { calls.push_back(idle == &marker ? "idle" : "idle?"); };
    hooks.executeService = [&](GSM::ServiceId id) {
        calls.push_back("execute " + std::to_string(id));
    };
    hooks.isServiceAvailable = [](GSM::ServiceId) { return true; };
    hooks.makeCall = [&](const WCHAR* number) {
        calls.push_back("call " + QString::fromUtf16(number).toStdString());
        return GSM::Result();
    };
    tessaly::telephony::installHostHooks(hooks);
    GSM::setActiveService(GSM::ServiceSms);
    GSM::moduleIdle(&marker);
    EXPECT_TRUE(GSM::executeService(GSM::ServiceSms).isOk());
    EXPECT_TRUE(GSM::Phone::makeCall(u"112").isOk());
    EXPECT_EQ(calls, std::vector<std::string>{"call 112"});
    tessaly::telephony::EventQueue::instance().deliverAll();
    EXPECT_EQ(calls, (std::vector<std::string>{"call 112", "active 2", "idle", "execute 2"}));
    tessaly::telephony::installHostHooks({});
}

TEST_F(EventDelivery, AnArrivingMessagePlaysTheChosenSoundWhenSoundsAreOn) {
    QTemporaryDir sounds;
    tessaly::Shell& shell = tessaly::Shell::current();
    shell.setSoundsFolder(sounds.path());
    shell.clearRecord();
    for (const char* name : {"Notify.wav", "ring.WAV"})
        QFile(QDir(sounds.path()).filePath(QString::fromLatin1(name))).open(QIODevice::WriteOnly);
    GSM::MainPreferences& preferences = *GSM::Preferences::getMainPreferences();
    const struct {
        bool on;
        const char16_t* sound;
        const char* played; // nullptr: nothing
    } cases[] = {
        {true, u"Notify", "Notify.wav"},
        {true, u"ring", "ring.WAV"},
        {false, u"Notify", nullptr},
        {true, u"Gone", nullptr}, // a missing file plays nothing; the message still arrives
    };
    for (const auto& arrival : cases) {
        SCOPED_TRACE(QString::fromUtf16(arrival.sound).toStdString());
        preferences.setPlaySound(arrival.on);
        preferences.setSoundName(arrival.sound);
        const size_t notifiedBefore = notified.size();
        ASSERT_TRUE(sim::receiveMessage(u"+4917011", u"a").isOk());
        EXPECT_TRUE(shell.soundsPlayed().isEmpty()) << "not inside the call";
        settle();
        EXPECT_EQ(notified.size(), notifiedBefore + 1);
        if (arrival.played)
            EXPECT_EQ(
                shell.soundsPlayed(),
                QStringList{QDir(sounds.path()).filePath(QString::fromLatin1(arrival.played))});
        else
            EXPECT_TRUE(shell.soundsPlayed().isEmpty());
        shell.clearRecord();
    }
    shell.setSoundsFolder(QString());
}

} // namespace
