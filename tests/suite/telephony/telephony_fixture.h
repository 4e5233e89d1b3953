#pragma once

// A telephony store on ":memory:" (or a temporary file) with a hand-driven clock, a scripted
// contact picker and host hooks that record every call.

#include "suite/telephony/events.h"
#include "suite/telephony/host_hooks.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"

#include "framework/time/clock.h"
#include "framework/ui/useragent.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace telephony_test {

// Timers fire only when the test says so.
class ManualClock final : public tessaly::Clock {
public:
    SYSTEMTIME localNow() const override {
        FILETIME fileTime = fileTimeFromUInt64(nowTicks);
        SYSTEMTIME time;
        FileTimeToSystemTime(&fileTime, &time);
        return time;
    }
    tessaly::TimerHandle startTimer(int intervalMs, std::function<void()> callback) override {
        const tessaly::TimerHandle handle = ++lastHandle;
        timers[handle] = {nowMs + intervalMs, intervalMs, std::move(callback)};
        return handle;
    }
    void stopTimer(tessaly::TimerHandle handle) override { timers.erase(handle); }

    // Fires the earliest due timer; false when none is due.
    bool fireDue() {
        auto due = timers.end();
        for (auto it = timers.begin(); it != timers.end(); ++it) {
            if (it->second.dueMs <= nowMs &&
                (due == timers.end() || it->second.dueMs < due->second.dueMs))
                due = it;
        }
        if (due == timers.end())
            return false;
        due->second.dueMs = nowMs + std::max(1, due->second.intervalMs);
        std::function<void()> callback = due->second.callback;
        callback();
        return true;
    }

    struct Timer {
        long long dueMs;
        int intervalMs;
        std::function<void()> callback;
    };
    // 2024-03-10 12:00 local time.
    std::uint64_t nowTicks = 133545744000000000ULL;
    long long nowMs = 0;
    tessaly::TimerHandle lastHandle = 0;
    std::map<tessaly::TimerHandle, Timer> timers;
};

class ScriptedPicker final : public tessaly::UserAgent {
public:
    int messageBox(QWidget*, const QString& text, const QString&, UINT) override {
        boxes.push_back(text);
        return IDOK;
    }
    int trackPopupMenu(QWidget*, const tessaly::MenuItem&, QPoint) override { return 0; }
    int runModal(tessaly::Dialog&) override { return IDCANCEL; }
    tessaly::ContactPickerChoice
    pickContact(QWidget*, const QString& title,
                const std::vector<tessaly::ContactPickerEntry>& shown) override {
        titles.push_back(title);
        entries = shown;
        return answer;
    }

    tessaly::ContactPickerChoice answer;
    std::vector<tessaly::ContactPickerEntry> entries;
    QStringList titles;
    QStringList boxes;
};

struct Progress {
    long id;
    int recipient;
    int segment;
    int segments;
    bool operator==(const Progress&) const = default;
};

class TelephonyTest : public ::testing::Test {
protected:
    void SetUp() override {
        tessaly::Clock::install(&clock);
        tessaly::UserAgent::install(&picker);
        tessaly::telephony::HostHooks hooks;
        hooks.editMessage = [this](GSM::Message* message) { edited.push_back(message); };
        hooks.openMessageNotification = [this](long id) { notified.push_back(id); };
        hooks.openSendingNotification = [this](long id, int recipient, int segment, int count, int,
                                               int) {
            progress.push_back({id, recipient, segment, count});
        };
        hooks.openSendingCompletion = [this](GSM::Result result, bool plural) {
            completions.emplace_back(result, plural);
        };
        hooks.openSimNotification = [this](int a, int b) { simCalls.emplace_back(a, b); };
        hooks.openDeliveryReport = [this](long id, int recipient, bool delivered) {
            deliveries.push_back({id, recipient, delivered});
        };
        tessaly::telephony::installHostHooks(hooks);
        openStore(QStringLiteral(":memory:"));
    }

    void TearDown() override {
        tessaly::telephony::close();
        tessaly::telephony::installHostHooks({});
        tessaly::UserAgent::install(nullptr);
        tessaly::Clock::install(nullptr);
    }

    void openStore(const QString& path) {
        tessaly::telephony::Options options;
        options.databasePath = path;
        options.segmentDelayMs = 0;
        options.simTransferDelayMs = 0;
        const GSM::Result result = tessaly::telephony::open(options);
        ASSERT_TRUE(result.isOk()) << QString::fromUtf16(result.getErrorMessage()).toStdString();
    }

    // Delivers queued events and fires due timers until nothing is left to do.
    void settle() {
        auto& queue = tessaly::telephony::EventQueue::instance();
        for (int round = 0; round < 10000; ++round) {
            QCoreApplication::processEvents();
            queue.deliverAll();
            if (!clock.fireDue() && !queue.hasPending())
                return;
        }
        FAIL() << "the telephony library never settled";
    }

    static FILETIME daysAgo(const ManualClock& clock, double days) {
        return fileTimeFromUInt64(clock.nowTicks - std::uint64_t(days * 864000000000.0));
    }

    ManualClock clock;
    ScriptedPicker picker;
    std::vector<GSM::Message*> edited;
    std::vector<long> notified;
    std::vector<Progress> progress;
    std::vector<std::pair<GSM::Result, bool>> completions;
    std::vector<std::pair<int, int>> simCalls;
    struct Delivery {
        long id;
        int recipient;
        bool delivered;
        bool operator==(const Delivery&) const = default;
    };
    std::vector<Delivery> deliveries;
};

inline std::u16string text(const WCHAR* value) {
    return value ? std::u16string(value) : std::u16string(u"<null>");
}

} // namespace telephony_test
