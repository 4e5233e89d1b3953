#pragma once

// The module in-process with its real windows, on a telephony store in memory, with the
// library's host hooks wired to the exports as the host wires them (and recording what reaches
// the suite: moduleIdle, services, calls, composers asked for). The virtual clock drives the
// radio, the SIM transfer and every window timer.

#include "lists/message_texts.h"
#include "module/exports.h"
#include "module/module_context.h"

#include "resources/resource.h"
#include "resources/sms_resources.h"
#include "suite/telephony/events.h"
#include "suite/telephony/host_hooks.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"
#include "tests/suite/telephony/store_test_support.h"
#include "tests/testkit/window_test.h"

#include <QByteArray>

#include <vector>

namespace module_test {

namespace simulator = tessaly::telephony::simulator;
namespace testkit = tessaly::testkit;
using tessaly::sms::moduleContext;

// Posted window messages and the library's queued events, until nothing moves.
inline void settleModule() {
    for (int round = 0; round < 20; ++round) {
        testkit::pumpMessages();
        tessaly::telephony::EventQueue::instance().deliverAll();
    }
}

// The end of a test of the module in-process, after exitModule and WindowTest::TearDown: what
// is left is delivered, then the module's state, the host hooks and the library go.
inline void closeModuleStore() {
    settleModule();
    moduleContext() = tessaly::sms::ModuleContext();
    tessaly::telephony::installHostHooks({});
    tessaly::telephony::close();
}

class ModuleWindowTest : public testkit::WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        ASSERT_TRUE(telephony_test::openInstantStore());
        tessaly::telephony::HostHooks hooks;
        hooks.editMessage = [this](GSM::Message* message) { edited.push_back(message); };
        hooks.openMessageNotification = openMessageNotification;
        hooks.openSendingNotification = openSendingNotification;
        hooks.openSendingCompletion = openSendingCompletion;
        hooks.openSimNotification = openSimNotification;
        hooks.moduleIdle = [this](void* hostIdle) { idleCalls.push_back(hostIdle); };
        hooks.setActiveService = [](GSM::ServiceId) {};
        hooks.isServiceAvailable = [this](GSM::ServiceId service) {
            return service != GSM::ServiceVoice || voiceAvailable;
        };
        hooks.executeService = [this](GSM::ServiceId service) { services.push_back(service); };
        hooks.makeCall = [this](const WCHAR* number) {
            calls.push_back(QString::fromUtf16(number));
            return callResult;
        };
        tessaly::telephony::installHostHooks(hooks);
        moduleContext() = tessaly::sms::ModuleContext();
        moduleContext().resources = &tessaly::sms::resources();
        initModule(&hostObject);
        storeSettings(true);
    }
    void TearDown() override {
        exitModule();
        WindowTest::TearDown();
        closeModuleStore();
    }

    static void settle() { settleModule(); }
    // Lets the radio or the SIM move take one step (each step is a timer turn), then settles.
    void step(int turns = 1) {
        for (int i = 0; i < turns; ++i) {
            clock.advance(1);
            settle();
        }
    }

    static void storeSettings(bool showProgress) {
        SmsSettings settings;
        settings.showProgress = showProgress;
        const QByteArray blob = settings.encode();
        ASSERT_TRUE(GSM::Preferences::setPreferences(GSM::ServiceSms, blob.constData(),
                                                     static_cast<unsigned long>(blob.size()))
                        .isOk());
    }

    long receive(const std::u16string& from, const std::u16string& text) {
        long id = 0;
        EXPECT_TRUE(simulator::receiveMessage(from, text, std::nullopt, u"", &id).isOk());
        settle();
        return id;
    }
    // An Outbox message as the composer hands it over: stored and queued at once.
    static long queueMessage(const std::vector<std::u16string>& recipients,
                             const std::u16string& text) {
        GSM::Message* message = GSM::Message::make();
        if (!message)
            return 0;
        message->setText(text.c_str());
        for (const std::u16string& number : recipients)
            message->getContacts()->add(number.c_str());
        EXPECT_TRUE(message->endEdit(false).isOk());
        return message->getId();
    }
    static GSM::Message::Status statusOf(long id) {
        const GSM::Message* message = GSM::sms.getMessage(id);
        return message ? GSM::Message::Status(message->getStatus()) : GSM::Message::Deleted;
    }

    int hostObject = 0;
    bool voiceAvailable = true;
    GSM::Result callResult;
    std::vector<void*> idleCalls;
    std::vector<GSM::ServiceId> services;
    std::vector<QString> calls;
    std::vector<GSM::Message*> edited;
};

} // namespace module_test
