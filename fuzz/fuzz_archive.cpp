// Fuzz target for the archive readers (SMS Backup & Restore XML, CSV): the first byte picks the
// format, the rest is the file. Whatever the input, reading ends (a message, a skip, the end or
// a failure with a line), and every message read, written out again and read back, comes back
// equal. libFuzzer entry point; the test replay_archive replays it.

#include "suite/telephony/archive/archive_format.h"

#include <QBuffer>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

namespace archive = tessaly::telephony::archive;

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "fuzz_archive: %s\n", what);
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const archive::Format format = data[0] & 1 ? archive::Format::Csv : archive::Format::Xml;
    QBuffer input;
    input.setData(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));
    input.open(QIODevice::ReadOnly);
    const auto reader = archive::makeReader(format, input);
    std::vector<archive::ArchivedMessage> messages;
    archive::ArchivedMessage message;
    // Each step consumes input or ends: more steps than bytes would be a reader going round.
    for (std::size_t steps = 0;; ++steps) {
        if (steps > size + 2)
            fail("the reader does not come to an end");
        const archive::MessageReader::Step step = reader->next(message);
        if (step == archive::MessageReader::Step::Message)
            messages.push_back(message);
        else if (step == archive::MessageReader::Step::Failed) {
            if (reader->error().line < 1 || reader->error().reason.isEmpty())
                fail("a failure without its place or reason");
            break;
        } else if (step == archive::MessageReader::Step::Finished)
            break;
    }

    QBuffer output;
    output.open(QIODevice::WriteOnly);
    const auto writer = archive::makeWriter(format, output);
    writer->begin(qint64(messages.size()));
    for (const archive::ArchivedMessage& written : messages)
        writer->write(written);
    writer->finish();
    output.close();
    output.open(QIODevice::ReadOnly);
    const auto again = archive::makeReader(format, output);
    for (const archive::ArchivedMessage& expected : messages) {
        archive::ArchivedMessage read;
        if (again->next(read) != archive::MessageReader::Step::Message)
            fail("a message written out does not read back");
        if (!(read == expected))
            fail("a message written out reads back changed");
    }
    if (again->next(message) != archive::MessageReader::Step::Finished)
        fail("the written file does not end where it should");
    return 0;
}
