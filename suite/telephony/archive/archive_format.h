#pragma once

// Readers and writers of archive files. Both formats are streamed: a reader holds one message
// at a time however large the file, a writer appends one at a time.

#include "suite/telephony/archive/archived_message.h"

#include <QString>

#include <memory>

class QIODevice;

namespace tessaly::telephony::archive {

enum class Format { Xml, Csv };

// From the file name's extension (.xml or .csv, any case); false for anything else.
bool formatFromFileName(const QString& fileName, Format* format);

class MessageReader {
public:
    enum class Step {
        Message,  // `message` holds the next message
        Skipped,  // a record that is not an SMS this store can keep (an MMS, an unknown type)
        Finished, // the file ended where it should
        Failed,   // damaged, truncated or foreign: see error()
    };

    virtual ~MessageReader() = default;
    virtual Step next(ArchivedMessage& message) = 0;
    // Of the records skipped so far, how many were MMS.
    virtual qint64 skippedMms() const { return 0; }
    const ReadError& error() const { return error_; }

protected:
    ReadError error_;
};

class MessageWriter {
public:
    virtual ~MessageWriter() = default;
    // `count`: how many messages will follow (the XML root element states it).
    virtual void begin(qint64 count) = 0;
    virtual void write(const ArchivedMessage& message) = 0;
    virtual void finish() = 0;
};

// The device must stay open while the reader or writer is used.
std::unique_ptr<MessageReader> makeReader(Format format, QIODevice& device);
std::unique_ptr<MessageWriter> makeWriter(Format format, QIODevice& device);

} // namespace tessaly::telephony::archive
