// Fuzz target for message texts through the telephony store: any UTF-16 (unpaired surrogates,
// NUL, up to 1 MB) arrives as an SMS, is stored, and is read back after the store is closed and
// opened again. The message must come back with the text that arrived (up to its first NUL:
// texts cross the interface NUL-terminated), and the length counter must give what the plain
// per-character count below gives. libFuzzer entry point; the test replay_telephony_texts
// replays it.

#include "fuzz/plain_length.h"
#include "gsm/gsm.h"
#include "suite/telephony/events.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"

#include <QDir>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

namespace telephony = tessaly::telephony;

// In memory-backed /dev/shm where there is one: every input is stored with a synced write.
telephony::Options storeOptions() {
    static QTemporaryDir dir(QDir(QStringLiteral("/dev/shm")).exists()
                                 ? QStringLiteral("/dev/shm/tessaly-fuzz-XXXXXX")
                                 : QDir::tempPath() + QStringLiteral("/tessaly-fuzz-XXXXXX"));
    telephony::Options options;
    options.databasePath = QDir(dir.path()).filePath(QStringLiteral("telephony.db"));
    return options;
}

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "fuzz_telephony_texts: %s\n", what);
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::u16string text(size / 2, u'\0');
    if (!text.empty())
        std::memcpy(text.data(), data, text.size() * sizeof(char16_t));
    const std::u16string shown = text.substr(0, text.find(u'\0'));

    const auto [characters, messages] = tessaly::fuzz::plainLength(shown);
    int counted = -1, parts = -1;
    GSM::sms.getLengthInfo(shown.c_str(), &counted, &parts);
    if (counted != characters || parts != messages)
        fail("the length counter differs from the plain count");

    const telephony::Options options = storeOptions();
    if (!telephony::open(options).isOk())
        fail("the store does not open");
    long id = 0;
    if (!telephony::simulator::receiveMessage(u"+447700900123", text, std::nullopt, u"", &id)
             .isOk())
        fail("the message was refused");
    const GSM::Message* arrived = GSM::sms.getMessage(id, 0);
    if (!arrived || arrived->getText() != shown)
        fail("the arrived message holds another text");
    telephony::close();

    if (!telephony::open(options).isOk())
        fail("the store does not open again");
    const GSM::Message* stored = GSM::sms.getMessage(id, 0);
    if (!stored || stored->getText() != shown)
        fail("the stored message came back with another text");
    GSM::sms.setMessageStatus(id, GSM::Message::Deleted);
    telephony::EventQueue::instance().clear();
    telephony::close();
    return 0;
}
