#pragma once

// Window tests of the cell-broadcast parts against a telephony store in memory, with the
// module's resources, a scripted user and a virtual clock.

#include "framework/resources/resources.h"
#include "resources/sms_resources.h"
#include "suite/telephony/host_hooks.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"
#include "tests/suite/telephony/store_test_support.h"
#include "tests/testkit/window_test.h"

#include <string>

namespace cb_test {

namespace simulator = tessaly::telephony::simulator;

using telephony_test::at;
using telephony_test::fileTime;
using telephony_test::settle;

class CbWindowTest : public tessaly::testkit::WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        tessaly::setCurrentResources(&tessaly::sms::resources());
        tessaly::telephony::Options options;
        options.databasePath = QStringLiteral(":memory:");
        ASSERT_TRUE(tessaly::telephony::open(options).isOk());
        clock.setLocalNow(at(2024, 5, 17, 10, 0));
    }

    void TearDown() override {
        WindowTest::TearDown();
        telephony_test::closeStore();
    }

    static void subscribe(std::vector<Utilities::Range> channels,
                          std::vector<Utilities::Range> languages = {}) {
        ASSERT_TRUE(GSM::CellBroadcast::setMessageTypes(int(channels.size()), channels.data(),
                                                        int(languages.size()), languages.data())
                        .isOk());
    }

    // A broadcast arrives on a subscribed channel; handlers hear of it.
    static void broadcast(int channel, const std::u16string& text,
                          const SYSTEMTIME& time = at(2024, 5, 17, 9, 30)) {
        ASSERT_TRUE(simulator::receiveCellBroadcast(channel, text, -1, fileTime(time)).isOk());
        settle();
    }

    // Main preferences changed and announced.
    static void setTicker(bool scrolls, bool horizontal) {
        GSM::MainPreferences* preferences = GSM::Preferences::getMainPreferences();
        ASSERT_NE(preferences, nullptr);
        preferences->setTickerScrolls(scrolls);
        preferences->setTickerHorizontal(horizontal);
        GSM::Preferences::endEdit();
        settle();
    }
};

} // namespace cb_test
