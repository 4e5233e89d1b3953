#pragma once

// Bringing messages in from an archive file and taking them out again (the XML of Android's
// "SMS Backup & Restore" app, or CSV; the format from the file name's extension).
//
// An import is all or nothing and never sends anything. It runs in two steps so that the long
// part does not hold the store: read() parses and checks the whole file into a staging database
// (any thread; cancellable; the store is untouched), then commit() adds the staged messages to
// the open store in one transaction (the store's thread). A message that the store already
// holds (same folder, date, numbers and text), or that the file holds twice, is counted as
// already present and not added again, so importing a file twice adds nothing.

#include "suite/telephony/archive/archive_format.h"

#include "gsm/result.h"

#include <QString>

#include <atomic>
#include <functional>
#include <memory>

namespace tessaly::telephony::archive {

struct ImportCounts {
    qint64 imported = 0;
    qint64 alreadyPresent = 0;
    qint64 skipped = 0; // records that are no SMS this store keeps, MMS among them
    qint64 skippedMms = 0;
};

// Called at least every half second or so of work: bytes of the file read (import) or messages
// written (export), of the total.
using ArchiveProgress = std::function<void(qint64 done, qint64 total)>;

class StagingDatabase;

class MessageImport {
public:
    // `stagingFolder`: where the staging database lives while the import runs (empty: beside
    // the store's file, else the system's temporary folder).
    explicit MessageImport(QString file, QString stagingFolder = {});
    ~MessageImport();

    // Reads and checks the whole file. False when it cannot be opened, is not a known format,
    // is damaged, truncated or foreign (error() says where it stopped and why), or was
    // cancelled.
    bool read(const ArchiveProgress& progress = {}, const std::atomic<bool>* cancel = nullptr);
    // Adds what read() staged to the open store in one transaction; the lists hear of it
    // through the usual change event. `progress` counts staged messages.
    GSM::Result commit(const ArchiveProgress& progress = {});

    const ImportCounts& counts() const { return counts_; }
    const QString& error() const { return error_; }

private:
    QString file_;
    QString stagingFolder_;
    std::unique_ptr<StagingDatabase> staging_;
    ImportCounts counts_;
    qint64 staged_ = 0;
    QString error_;
};

// The open store's database file (empty for a store in memory): exports read it through a
// connection of their own, so they may run on another thread.
QString storeDatabasePath();

// Writes every message of the store at `databasePath`, oldest first, into `file` (written under
// a temporary name and renamed once complete: a failed or cancelled export leaves no file).
GSM::Result exportMessages(const QString& databasePath, const QString& file,
                           qint64* exported = nullptr, const ArchiveProgress& progress = {},
                           const std::atomic<bool>* cancel = nullptr);

} // namespace tessaly::telephony::archive
