#pragma once

// Window tests of the cell-broadcast parts against a telephony store in memory, with the
// module's resources, a scripted user and a virtual clock.

#include "framework/resources/resources.h"
#include "resources/sms_resources.h"
#include "suite/telephony/events.h"
#include "suite/telephony/host_hooks.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"
#include "tests/testkit/window_test.h"

#include <string>

namespace cb_test {

namespace simulator = tessaly::telephony::simulator;

inline SYSTEMTIME at(int year, int month, int day, int hour = 0, int minute = 0) {
    SYSTEMTIME time{};
    time.wYear = WORD(year);
    time.wMonth = WORD(month);
    time.wDay = WORD(day);
    time.wHour = WORD(hour);
    time.wMinute = WORD(minute);
    return time;
}

inline FILETIME fileTime(const SYSTEMTIME& time) {
    FILETIME result{};
    SystemTimeToFileTime(&time, &result);
    return result;
}

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
        settle();
        tessaly::telephony::close();
        tessaly::setCurrentResources(nullptr);
    }

    // Delivers the library's queued events and the windows' posted messages.
    static void settle() {
        auto& queue = tessaly::telephony::EventQueue::instance();
        for (int round = 0; round < 100; ++round) {
            tessaly::testkit::pumpMessages();
            queue.deliverAll();
            if (!queue.hasPending())
                return;
        }
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
