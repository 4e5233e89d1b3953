#include "suite/telephony/archive/message_archive.h"

#include "suite/telephony/database.h"
#include "suite/telephony/store.h"

#include "gsm/sms.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryFile>

#include <sqlite3.h>

#include <cstring>

namespace tessaly::telephony::archive {
namespace {

// How often a long run reports its progress, and every how many messages it looks at its
// cancel flag.
constexpr qint64 kProgressIntervalMs = 200;
constexpr qint64 kCancelCheckInterval = 1024;

std::vector<std::uint8_t> joinNumbers(const std::vector<std::u16string>& numbers) {
    std::vector<std::uint8_t> bytes;
    for (size_t i = 0; i < numbers.size(); ++i) {
        if (i)
            bytes.insert(bytes.end(), 2, 0);
        const auto* data = reinterpret_cast<const std::uint8_t*>(numbers[i].data());
        bytes.insert(bytes.end(), data, data + numbers[i].size() * sizeof(char16_t));
    }
    return bytes;
}

std::vector<std::u16string> splitNumbers(const std::vector<std::uint8_t>& bytes) {
    std::u16string joined(bytes.size() / 2, u'\0');
    if (!joined.empty())
        std::memcpy(joined.data(), bytes.data(), joined.size() * sizeof(char16_t));
    std::vector<std::u16string> numbers;
    if (joined.empty())
        return numbers;
    size_t start = 0;
    for (;;) {
        const size_t end = joined.find(u'\0', start);
        numbers.push_back(joined.substr(start, end - start));
        if (end == std::u16string::npos)
            return numbers;
        start = end + 1;
    }
}

bool cancelled(const std::atomic<bool>* cancel) {
    return cancel && cancel->load(std::memory_order_relaxed);
}

} // namespace

// The messages read from a file, each once, in a database of their own: a file of a million
// messages is read without holding them in memory or the store's lock.
class StagingDatabase {
public:
    ~StagingDatabase() {
        if (db_)
            sqlite3_close_v2(db_);
        if (!path_.isEmpty())
            QFile::remove(path_);
    }

    bool open(const QString& folder, QString* error) {
        QTemporaryFile file(QDir(folder).filePath(QStringLiteral("import-XXXXXX.staging")));
        file.setAutoRemove(false);
        if (!file.open()) {
            *error = QStringLiteral("cannot make a staging file in %1: %2")
                         .arg(QDir::toNativeSeparators(folder), file.errorString());
            return false;
        }
        path_ = file.fileName();
        file.close();
        if (sqlite3_open_v2(path_.toUtf8().constData(), &db_, SQLITE_OPEN_READWRITE, nullptr) !=
                SQLITE_OK ||
            !exec("PRAGMA journal_mode=OFF") || !exec("PRAGMA synchronous=OFF") ||
            !exec("PRAGMA cache_size=-8192") ||
            !exec("CREATE TABLE staged(folder INTEGER NOT NULL, status INTEGER NOT NULL, "
                  "date INTEGER NOT NULL, numbers BLOB NOT NULL, service_centre NOT NULL, "
                  "text NOT NULL, UNIQUE(folder, date, numbers, text))") ||
            !exec("BEGIN")) {
            *error =
                QStringLiteral("cannot write the staging file %1: %2")
                    .arg(QDir::toNativeSeparators(path_), QString::fromUtf8(sqlite3_errmsg(db_)));
            return false;
        }
        insert_ = prepare("INSERT OR IGNORE INTO staged VALUES(?, ?, ?, ?, ?, ?)");
        return insert_.valid();
    }

    // False when the file held the same message before.
    bool add(const ArchivedMessage& message, bool* failed) {
        insert_.reset();
        insert_.bind(1, std::int64_t(message.folder))
            .bind(2, std::int64_t(message.status))
            .bind(3, std::int64_t(message.dateTicks))
            .bind(4, joinNumbers(message.numbers))
            .bind(5, message.serviceCentre)
            .bind(6, message.text);
        insert_.step();
        *failed = !insert_.ok();
        return sqlite3_changes(db_) > 0;
    }

    bool finish() { return exec("COMMIT"); }

    // The staged messages in the order of the file (sorting a million would hold up the
    // progress reports for most of a second).
    Statement rows() {
        return prepare("SELECT folder, status, date, numbers, service_centre, text FROM staged "
                       "ORDER BY rowid");
    }

    static ArchivedMessage message(const Statement& row) {
        ArchivedMessage message;
        message.folder = int(row.integer(0));
        message.status = GSM::Message::Status(row.integer(1));
        message.dateTicks = std::uint64_t(row.integer(2));
        message.numbers = splitNumbers(row.blob(3));
        message.serviceCentre = row.text(4);
        message.text = row.text(5);
        return message;
    }

    QString lastError() const { return QString::fromUtf8(sqlite3_errmsg(db_)); }

private:
    bool exec(const char* sql) {
        return sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
    }

    Statement prepare(const char* sql) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(db_, sql, -1, &statement, nullptr) != SQLITE_OK)
            return Statement();
        return Statement(db_, statement);
    }

    QString path_;
    sqlite3* db_ = nullptr;
    Statement insert_;
};

MessageImport::MessageImport(QString file, QString stagingFolder)
    : file_(std::move(file))
    , stagingFolder_(std::move(stagingFolder)) {}

MessageImport::~MessageImport() = default;

bool MessageImport::read(const ArchiveProgress& progress, const std::atomic<bool>* cancel) {
    counts_ = ImportCounts();
    staged_ = 0;
    staging_.reset();
    Format format;
    if (!formatFromFileName(file_, &format)) {
        error_ = QStringLiteral("%1: the file name must end in .xml or .csv").arg(file_);
        return false;
    }
    QFile input(file_);
    if (!input.open(QIODevice::ReadOnly)) {
        error_ = QStringLiteral("%1: %2").arg(file_, input.errorString());
        return false;
    }
    QString folder = stagingFolder_;
    if (folder.isEmpty()) {
        const QString store = storeDatabasePath();
        folder = store.isEmpty() ? QDir::tempPath() : QFileInfo(store).absolutePath();
    }
    auto staging = std::make_unique<StagingDatabase>();
    if (!staging->open(folder, &error_))
        return false;

    const std::unique_ptr<MessageReader> reader = makeReader(format, input);
    const qint64 total = input.size();
    QElapsedTimer sinceReport;
    sinceReport.start();
    if (progress)
        progress(0, total);
    ArchivedMessage message;
    for (qint64 records = 1;; ++records) {
        const MessageReader::Step step = reader->next(message);
        if (step == MessageReader::Step::Failed) {
            error_ = QStringLiteral("%1: %2").arg(file_, reader->error().describe());
            return false;
        }
        if (step == MessageReader::Step::Finished)
            break;
        if (step == MessageReader::Step::Skipped) {
            ++counts_.skipped;
        } else {
            bool failed = false;
            if (staging->add(message, &failed))
                ++staged_;
            else
                ++counts_.alreadyPresent;
            if (failed) {
                error_ = QStringLiteral("%1: the staging file cannot be written: %2")
                             .arg(file_, staging->lastError());
                return false;
            }
        }
        if (records % kCancelCheckInterval == 0 && cancelled(cancel)) {
            error_ = QStringLiteral("%1: the import was cancelled; nothing was added").arg(file_);
            return false;
        }
        if (progress && sinceReport.elapsed() >= kProgressIntervalMs) {
            sinceReport.restart();
            progress(input.pos(), total);
        }
    }
    counts_.skippedMms = reader->skippedMms();
    if (!staging->finish()) {
        error_ = QStringLiteral("%1: the staging file cannot be written: %2")
                     .arg(file_, staging->lastError());
        return false;
    }
    if (progress)
        progress(total, total);
    staging_ = std::move(staging);
    return true;
}

GSM::Result MessageImport::commit(const ArchiveProgress& progress) {
    if (!staging_)
        return GSM::Result(GSM::ErrorInvalidArgument, u"Nothing has been read to import.");
    Store* store = Store::current();
    if (!store)
        return Store::unavailable();
    Statement rows = staging_->rows();
    qint64 imported = 0;
    qint64 present = 0;
    qint64 done = 0;
    QElapsedTimer sinceReport;
    sinceReport.start();
    const GSM::Result result = store->importMessages(
        [&](ArchivedMessage& message) {
            if (progress && sinceReport.elapsed() >= kProgressIntervalMs) {
                sinceReport.restart();
                progress(done, staged_);
            }
            if (!rows.step())
                return false;
            ++done;
            message = StagingDatabase::message(rows);
            return true;
        },
        &imported, &present);
    if (!result.isOk())
        return result;
    if (!rows.ok())
        return GSM::Result(GSM::ErrorStorage, u"The staged messages cannot be read back.");
    counts_.imported = imported;
    counts_.alreadyPresent += present;
    // The commit, the checkpoint and removing the staging file each take a moment with a
    // million messages: the progress is reported between them.
    if (progress)
        progress(staged_, staged_);
    store->checkpointMessages();
    if (progress)
        progress(staged_, staged_);
    staging_.reset();
    if (progress)
        progress(staged_, staged_);
    return {};
}

QString storeDatabasePath() {
    Store* store = Store::current();
    if (!store)
        return {};
    const QString path = store->db().path();
    return path == u":memory:" ? QString() : path;
}

GSM::Result exportMessages(const QString& databasePath, const QString& file, qint64* exported,
                           const ArchiveProgress& progress, const std::atomic<bool>* cancel) {
    if (exported)
        *exported = 0;
    Format format;
    if (!formatFromFileName(file, &format))
        return GSM::Result(GSM::ErrorInvalidArgument, u"The file name must end in .xml or .csv.");
    GSM::Result opened;
    const std::unique_ptr<Database> db = Database::open(databasePath, &opened);
    if (!db)
        return opened;
    QSaveFile output(file);
    if (!output.open(QIODevice::WriteOnly))
        return GSM::Result(GSM::ErrorStorage,
                           (file + QStringLiteral(": ") + output.errorString()).toStdU16String());

    // One read transaction: the file shows the store as it was at one instant.
    Database::Transaction snapshot(*db);
    Statement count = db->prepare("SELECT count(*) FROM messages WHERE folder IN (0, 1)");
    const qint64 total = count.step() ? count.integer(0) : 0;
    Statement rows = db->prepare("SELECT id, folder, status, date, service_centre, text "
                                 "FROM messages WHERE folder IN (0, 1) ORDER BY folder, date, id");
    Statement addresses =
        db->prepare("SELECT number FROM addresses WHERE message_id = ? ORDER BY position");
    const std::unique_ptr<MessageWriter> writer = makeWriter(format, output);
    writer->begin(total);
    QElapsedTimer sinceReport;
    sinceReport.start();
    qint64 written = 0;
    ArchivedMessage message;
    while (rows.step()) {
        message.folder = int(rows.integer(1));
        message.status = GSM::Message::Status(rows.integer(2));
        message.dateTicks = std::uint64_t(rows.integer(3));
        message.serviceCentre = rows.text(4);
        message.text = rows.text(5);
        message.numbers.clear();
        addresses.reset();
        addresses.bind(1, rows.integer(0));
        while (addresses.step())
            message.numbers.push_back(addresses.text(0));
        writer->write(message);
        ++written;
        if (written % kCancelCheckInterval == 0 && cancelled(cancel))
            break;
        if (progress && sinceReport.elapsed() >= kProgressIntervalMs) {
            sinceReport.restart();
            progress(written, total);
        }
    }
    if (cancelled(cancel)) {
        output.cancelWriting();
        return GSM::Result(GSM::ErrorCancelled, u"The export was cancelled.");
    }
    if (!rows.ok() || !addresses.ok()) {
        output.cancelWriting();
        return db->failure(u"The messages cannot be read");
    }
    writer->finish();
    if (!output.commit())
        return GSM::Result(GSM::ErrorStorage,
                           (file + QStringLiteral(": ") + output.errorString()).toStdU16String());
    if (progress)
        progress(written, total);
    if (exported)
        *exported = written;
    return {};
}

} // namespace tessaly::telephony::archive
