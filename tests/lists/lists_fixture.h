#pragma once

// Window tests of the lists against a real telephony store in memory: the module's resources,
// a scripted user, a virtual clock, host hooks that record what reached the host, and an
// environment that records what the windows asked of the module.

#include "framework/resources/resources.h"
#include "lists/lists_environment.h"
#include "lists/main_window.h"
#include "resources/sms_resources.h"
#include "settings/sms_settings.h"
#include "suite/telephony/events.h"
#include "suite/telephony/host_hooks.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"
#include "tests/suite/telephony/store_test_support.h"
#include "tests/testkit/window_test.h"

#include <QCoreApplication>

#include <vector>

namespace lists_test {

namespace simulator = tessaly::telephony::simulator;

class RecordingEnvironment final : public tessaly::sms::ListsEnvironment {
public:
    SmsSettings& settings() override { return settings_; }
    void saveSettings() override { saved.push_back(settings_); }
    void handBackControl() override { ++handBacks; }
    void allowSendingNotification() override { ++sendingAllowed; }
    void mainWindowDestroyed(tessaly::Dialog* window) override { destroyed.push_back(window); }

    SmsSettings settings_;
    std::vector<SmsSettings> saved;
    int handBacks = 0;
    int sendingAllowed = 0;
    std::vector<tessaly::Dialog*> destroyed;
};

using telephony_test::at;
using telephony_test::fileTime;

class ListsWindowTest : public tessaly::testkit::WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        tessaly::setCurrentResources(&tessaly::sms::resources());
        tessaly::telephony::HostHooks hooks;
        hooks.editMessage = [this](GSM::Message* message) { edited.push_back(message); };
        hooks.isServiceAvailable = [](GSM::ServiceId) { return true; };
        hooks.makeCall = [this](const WCHAR* number) {
            calls.push_back(QString::fromUtf16(number));
            return GSM::Result();
        };
        hooks.showErrorMessage = [this](const GSM::Result& result) {
            errors.push_back(result.errorCode());
        };
        hooks.setActiveService = [this](GSM::ServiceId id) { activeServices.push_back(id); };
        tessaly::telephony::installHostHooks(hooks);
        ASSERT_TRUE(telephony_test::openInstantStore());
        clock.setLocalNow(at(2024, 5, 17, 10, 0));
    }

    void TearDown() override {
        WindowTest::TearDown();
        telephony_test::closeStore();
    }

    static void settle() { telephony_test::settle(); }

    tessaly::sms::MainSmsWindow* openMain() {
        tessaly::sms::MainSmsWindow* window = tessaly::sms::MainSmsWindow::open(environment);
        settle();
        return window;
    }

    // Stores messages as they are (no events): folder, status, address, text, date.
    void store(std::vector<simulator::StoredMessage> messages) {
        ASSERT_TRUE(simulator::addStoredMessages(messages).isOk());
    }

    static simulator::StoredMessage message(int folder, GSM::Message::Status status,
                                            std::u16string address, std::u16string text,
                                            const SYSTEMTIME& date) {
        simulator::StoredMessage result;
        result.folder = folder;
        result.status = status;
        result.addresses = {std::move(address)};
        result.text = std::move(text);
        result.date = fileTime(date);
        return result;
    }

    // The ids of a folder's messages by date, oldest first.
    static std::vector<long> idsByDate(int folder) {
        std::vector<long> ids;
        if (GSM::MessageContainer* container = GSM::sms.getMessages(folder, GSM::Sms::SortByDate))
            for (int i = 0; i < container->size(); ++i)
                ids.push_back(container->get(i)->getId());
        return ids;
    }

    RecordingEnvironment environment;
    std::vector<GSM::Message*> edited;
    std::vector<QString> calls;
    std::vector<long> errors;
    std::vector<GSM::ServiceId> activeServices;
};

} // namespace lists_test
