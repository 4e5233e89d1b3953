// The main SMS window opened on a filled Inbox (1,000 / 10,000 / 100,000 messages) up to its
// first paint (rendered offscreen, as the person would see it), a re-sort of the shown list, and
// the bare store query the list stands on: the container for the same folder and order with every
// field a row shows read through the telephony interface. Goal: 10,000 messages shown in under 150
// ms and within 3x of that query.

#include "bench/answering_user.h"
#include "bench/offscreen_benchmarks.h"
#include "framework/resources/resources.h"
#include "framework/ui/useragent.h"
#include "lists/list_sort_table.h"
#include "lists/lists_environment.h"
#include "lists/main_window.h"
#include "lists/message_texts.h"
#include "resources/resource.h"
#include "resources/sms_resources.h"
#include "settings/sms_settings.h"
#include "suite/telephony/events.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/store.h"
#include "suite/telephony/telephony.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <random>

namespace {

namespace telephony = tessaly::telephony;

class QuietEnvironment final : public tessaly::sms::ListsEnvironment {
public:
    SmsSettings& settings() override { return settings_; }
    void saveSettings() override {}
    void handBackControl() override {}
    void allowSendingNotification() override {}
    void mainWindowDestroyed(tessaly::Dialog*) override {}

private:
    SmsSettings settings_;
};

int seededCount = -1;

void seedInbox(int count) {
    if (seededCount == count)
        return;
    telephony::Options options;
    options.databasePath = QStringLiteral(":memory:");
    telephony::open(options);
    std::mt19937 random(7);
    for (int i = 0; i < 40; ++i)
        telephony::simulator::addContact(
            u"First" + QString::number(i).toStdU16String(),
            u"Last" + QString::number(i).toStdU16String(),
            {u"+49170" + QString::number(1000000 + i).toStdU16String()});
    std::vector<telephony::simulator::StoredMessage> messages;
    messages.reserve(std::size_t(count));
    const std::uint64_t newest = 133545744000000000ULL;
    for (int i = 0; i < count; ++i) {
        telephony::simulator::StoredMessage message;
        message.status = random() % 4 == 0 ? GSM::Message::Unread : GSM::Message::Read;
        message.addresses = {u"+49170" + QString::number(1000000 + random() % 80).toStdU16String()};
        message.text = u"See you at eight, bring the tickets\r\nmessage " +
                       QString::number(i).toStdU16String();
        message.date = fileTimeFromUInt64(newest - std::uint64_t(random() % 100000000) * 10000000);
        messages.push_back(std::move(message));
    }
    telephony::simulator::addStoredMessages(messages);
    telephony::EventQueue::instance().clear();
    seededCount = count;
}

void storeQuery(benchmark::State& state) {
    seedInbox(int(state.range(0)));
    telephony::Store* store = telephony::Store::current();
    for (auto _ : state) {
        auto container = store->makeWindow(0, GSM::Sms::SortByDate);
        std::size_t fields = 0;
        for (int i = 0; i < container->size(); ++i) {
            GSM::Message* message = container->get(i);
            GSM::Contact* contact = tessaly::sms::firstContact(*message);
            fields += std::size_t(message->getId()) + std::size_t(message->getStatus());
            fields += contact ? std::char_traits<char16_t>::length(contact->getText(5, 3)) : 0;
            fields += std::char_traits<char16_t>::length(message->getText());
            fields += message->date().dwLowDateTime;
        }
        benchmark::DoNotOptimize(fields);
    }
}
BENCHMARK(storeQuery)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void openSmsInbox(benchmark::State& state) {
    seedInbox(int(state.range(0)));
    QuietEnvironment environment;
    for (auto _ : state) {
        tessaly::sms::MainSmsWindow* window = tessaly::sms::MainSmsWindow::open(environment);
        benchmark::DoNotOptimize(window->window()->grab().cacheKey());
        state.PauseTiming();
        window->destroyWindow();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        state.ResumeTiming();
    }
}
BENCHMARK(openSmsInbox)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void resortInbox(benchmark::State& state) {
    seedInbox(int(state.range(0)));
    QuietEnvironment environment;
    tessaly::sms::MainSmsWindow* window = tessaly::sms::MainSmsWindow::open(environment);
    bool byStatus = false;
    for (auto _ : state) {
        byStatus = !byStatus;
        window->sendCommand(byStatus ? IDM_SORT_STATUS : IDM_SORT_DATE);
        benchmark::DoNotOptimize(window->listView(IDC_MAIN_LIST)->itemCount());
    }
    window->destroyWindow();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
BENCHMARK(resortInbox)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    OffscreenBenchmarks benchmarks(argc, argv);
    tessaly::setCurrentResources(&tessaly::sms::resources());
    AnsweringUser user;
    tessaly::UserAgent::install(&user);
    benchmarks.run();
    tessaly::UserAgent::install(nullptr);
    telephony::close();
    tessaly::setCurrentResources(nullptr);
    return 0;
}
