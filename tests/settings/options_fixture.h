#pragma once

// Window tests of the options sheet and its pages against a real telephony store in memory:
// the module's resources, a scripted user, a virtual clock, and an environment that records
// when the settings record is written.

#include "framework/resources/resources.h"
#include "framework/ui/property_sheet.h"
#include "gsm/preferences.h"
#include "resources/sms_resources.h"
#include "settings/options_sheet.h"
#include "settings/sms_settings.h"
#include "suite/telephony/events.h"
#include "suite/telephony/host_hooks.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"
#include "tests/suite/telephony/store_test_support.h"
#include "tests/testkit/window_test.h"

#include <functional>
#include <vector>

namespace options_test {

class RecordingEnvironment final : public tessaly::sms::OptionsEnvironment {
public:
    SmsSettings& settings() override { return record; }
    void saveSettings() override { saved.push_back(record); }

    SmsSettings record;
    std::vector<SmsSettings> saved;
};

// Counts the library's "preferences changed" announcements.
class PreferenceEvents final : public GSM::Preferences {
public:
    void eventPreferencesChanged() override { ++count; }
    int count = 0;
};

class OptionsTest : public tessaly::testkit::WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        tessaly::setCurrentResources(&tessaly::sms::resources());
        tessaly::telephony::HostHooks hooks;
        hooks.isServiceAvailable = [this](GSM::ServiceId id) {
            return id != GSM::ServicePhoneBook || phoneBookAvailable;
        };
        tessaly::telephony::installHostHooks(hooks);
        tessaly::telephony::Options options;
        options.databasePath = QStringLiteral(":memory:");
        ASSERT_TRUE(tessaly::telephony::open(options).isOk());
        settle();
    }

    void TearDown() override {
        WindowTest::TearDown();
        telephony_test::closeStore();
    }

    static void settle() { telephony_test::settle(); }

    static GSM::MainPreferences& preferences() { return *GSM::Preferences::getMainPreferences(); }

    // Opens the sheet modally with the given pages and runs `script` in it; the script's last
    // step closes the sheet (OK) unless it did so itself.
    void runSheet(std::span<const tessaly::sms::OptionsPageFactory> pages,
                  const std::function<void(tessaly::sms::OptionsSheet&)>& script) {
        user.runModal([&](tessaly::Dialog& dialog) {
            auto& sheet = static_cast<tessaly::sms::OptionsSheet&>(dialog);
            settle();
            script(sheet);
            if (sheet.isWindow() && !sheet.hasEnded())
                sheet.sendCommand(IDOK);
        });
        tessaly::sms::OptionsSheet sheet(nullptr, environment, pages);
        sheet.doModal();
        settle();
    }

    RecordingEnvironment environment;
    bool phoneBookAvailable = true;
};

} // namespace options_test
