#include "suite/telephony/database.h"

#include "suite/telephony/schema_sql.h" // generated

#include <QElapsedTimer>
#include <QFile>

#include <sqlite3.h>

#include <cstdio>
#include <cstring>
#include <iterator>

namespace tessaly::telephony {

namespace {

constexpr int kSchemaVersion = int(std::size(kSchemaMigrations));

std::u16string fromQString(const QString& text) {
    return std::u16string(reinterpret_cast<const char16_t*>(text.utf16()), text.size());
}

std::u16string fromUtf8(const char* text) {
    return fromQString(QString::fromUtf8(text ? text : ""));
}

void restrictToOwner(const QString& path) {
    if (path == QLatin1String(":memory:") || path.isEmpty())
        return;
    for (const char* suffix : {"", "-wal", "-shm"}) {
        const QString file = path + QLatin1String(suffix);
        if (QFile::exists(file))
            QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
    }
}

} // namespace

Statement::Statement(Statement&& other) noexcept
    : db_(other.db_)
    , statement_(other.statement_)
    , ok_(other.ok_) {
    other.statement_ = nullptr;
}

Statement& Statement::operator=(Statement&& other) noexcept {
    if (this != &other) {
        sqlite3_finalize(statement_);
        db_ = other.db_;
        statement_ = other.statement_;
        ok_ = other.ok_;
        other.statement_ = nullptr;
    }
    return *this;
}

Statement::~Statement() {
    sqlite3_finalize(statement_);
}

Statement& Statement::bind(int index, std::int64_t value) {
    if (statement_ && sqlite3_bind_int64(statement_, index, value) != SQLITE_OK)
        ok_ = false;
    return *this;
}

// SQLite keeps text as UTF-8 in the file and changes what it cannot carry: it takes a leading
// U+FEFF for a byte-order mark and drops it, pairs a lone surrogate with whatever follows it,
// and reads U+FFFE and U+FFFF back as U+FFFD.
bool storedAsUtf16Bytes(std::u16string_view text) {
    if (!text.empty() && text.front() == 0xfeff)
        return true;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (c >= 0xd800 && c <= 0xdbff && i + 1 < text.size() && text[i + 1] >= 0xdc00 &&
            text[i + 1] <= 0xdfff)
            ++i;
        else if ((c >= 0xd800 && c <= 0xdfff) || c >= 0xfffe)
            return true;
    }
    return false;
}

std::u16string searchableText(std::u16string_view text) {
    std::u16string searchable(text);
    if (!searchable.empty() && searchable.front() == 0xfeff)
        searchable.front() = u' ';
    for (size_t i = 0; i < searchable.size(); ++i) {
        const char16_t c = searchable[i];
        if (c == 0xfffe || c == 0xffff) {
            searchable[i] = u'\uFFFD';
            continue;
        }
        const bool high = c >= 0xD800 && c <= 0xDBFF;
        if (high && i + 1 < searchable.size() && searchable[i + 1] >= 0xDC00 &&
            searchable[i + 1] <= 0xDFFF)
            ++i;
        else if (c >= 0xD800 && c <= 0xDFFF)
            searchable[i] = u'\uFFFD';
    }
    return searchable;
}

// Such a text is stored as its UTF-16 bytes (a BLOB in the text column), which text() reads
// back unchanged; every other text stays TEXT, as queries expect.
Statement& Statement::bind(int index, std::u16string_view text) {
    if (!statement_)
        return *this;
    const int bytes = int(text.size() * sizeof(char16_t));
    const int rc =
        storedAsUtf16Bytes(text)
            ? sqlite3_bind_blob(statement_, index, text.data(), bytes, SQLITE_TRANSIENT)
            : sqlite3_bind_text16(statement_, index, text.data(), bytes, SQLITE_TRANSIENT);
    if (rc != SQLITE_OK)
        ok_ = false;
    return *this;
}

Statement& Statement::bind(int index, const std::vector<std::uint8_t>& blob) {
    // An empty vector has no data pointer, and a null pointer would bind NULL.
    static const std::uint8_t kEmpty = 0;
    if (statement_ && sqlite3_bind_blob(statement_, index, blob.empty() ? &kEmpty : blob.data(),
                                        int(blob.size()), SQLITE_TRANSIENT) != SQLITE_OK)
        ok_ = false;
    return *this;
}

bool Statement::step() {
    if (!statement_ || !ok_)
        return false;
    const int rc = sqlite3_step(statement_);
    if (rc == SQLITE_ROW)
        return true;
    if (rc != SQLITE_DONE)
        ok_ = false;
    return false;
}

void Statement::reset() {
    if (statement_) {
        sqlite3_reset(statement_);
        sqlite3_clear_bindings(statement_);
    }
    ok_ = statement_ != nullptr;
}

std::int64_t Statement::integer(int column) const {
    return sqlite3_column_int64(statement_, column);
}

std::u16string Statement::text(int column) const {
    if (sqlite3_column_type(statement_, column) == SQLITE_BLOB) {
        const auto* data = static_cast<const char*>(sqlite3_column_blob(statement_, column));
        const std::size_t units = std::size_t(sqlite3_column_bytes(statement_, column)) / 2;
        std::u16string text(units, u'\0');
        if (units > 0)
            std::memcpy(text.data(), data, units * sizeof(char16_t));
        return text;
    }
    const auto* data = static_cast<const char16_t*>(sqlite3_column_text16(statement_, column));
    const int bytes = sqlite3_column_bytes16(statement_, column);
    return data ? std::u16string(data, std::size_t(bytes) / sizeof(char16_t)) : std::u16string();
}

std::vector<std::uint8_t> Statement::blob(int column) const {
    const auto* data = static_cast<const std::uint8_t*>(sqlite3_column_blob(statement_, column));
    const int bytes = sqlite3_column_bytes(statement_, column);
    return data ? std::vector<std::uint8_t>(data, data + bytes) : std::vector<std::uint8_t>();
}

std::unique_ptr<Database> Database::open(const QString& path, GSM::Result* error) {
    sqlite3* handle = nullptr;
    const int rc = sqlite3_open_v2(path.toUtf8().constData(), &handle,
                                   SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    std::unique_ptr<Database> db(new Database(handle, path));
    if (rc != SQLITE_OK) {
        if (error)
            *error = db->failure(u"The telephony database cannot be opened");
        return nullptr;
    }
    sqlite3_busy_timeout(handle, 2000);
    sqlite3_extended_result_codes(handle, 1);
    // Reading the header first tells a damaged or foreign file apart before anything is written.
    if (!db->exec("PRAGMA user_version") || !db->exec("PRAGMA journal_mode=WAL") ||
        !db->exec("PRAGMA synchronous=FULL")) {
        if (error)
            *error = db->failure(u"The telephony database cannot be read");
        return nullptr;
    }
    if (!db->migrate(error))
        return nullptr;
    restrictToOwner(path);
    return db;
}

std::unique_ptr<Database> Database::openReader() const {
    if (path_.isEmpty() || path_ == QStringLiteral(":memory:"))
        return nullptr;
    sqlite3* handle = nullptr;
    const int rc =
        sqlite3_open_v2(path_.toUtf8().constData(), &handle, SQLITE_OPEN_READONLY, nullptr);
    std::unique_ptr<Database> reader(new Database(handle, path_));
    if (rc != SQLITE_OK)
        return nullptr;
    sqlite3_busy_timeout(handle, 2000);
    // A window reads a few pages of one index: a small cache of its own is enough.
    if (!reader->exec("PRAGMA cache_size=-256"))
        return nullptr;
    return reader;
}

Database::~Database() {
    statements_.clear();
    sqlite3_close_v2(db_);
}

int Database::changes() const {
    return sqlite3_changes(db_);
}

bool Database::exec(const char* sql) {
    return sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

Statement Database::prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db_, sql, -1, &statement, nullptr) != SQLITE_OK)
        return Statement();
    return Statement(db_, statement);
}

Statement& Database::cached(const char* sql) {
    auto found = statements_.find(sql);
    if (found == statements_.end())
        found = statements_.emplace(sql, prepare(sql)).first;
    found->second.reset();
    return found->second;
}

GSM::Result Database::failure(std::u16string_view what) const {
    std::u16string text(what);
    text += u" (";
    text += fromQString(path_);
    text += u"): ";
    text += fromUtf8(db_ ? sqlite3_errmsg(db_) : "out of memory");
    return GSM::Result(GSM::ErrorStorage, text);
}

bool Database::migrate(GSM::Result* error) {
    Statement version = prepare("PRAGMA user_version");
    if (!version.step()) {
        if (error)
            *error = failure(u"The telephony database cannot be read");
        return false;
    }
    const int current = int(version.integer(0));
    version = Statement();
    if (current > kSchemaVersion) {
        if (error)
            *error = GSM::Result(GSM::ErrorStorage,
                                 u"The telephony database (" + fromQString(path_) +
                                     u") was written by a newer version of the suite.");
        return false;
    }
    for (int next = current; next < kSchemaVersion; ++next) {
        Transaction transaction(*this);
        const std::string setVersion = "PRAGMA user_version=" + std::to_string(next + 1);
        if (!exec(kSchemaMigrations[next]) || !exec(setVersion.c_str()) || !transaction.commit()) {
            if (error)
                *error = failure(u"The telephony database cannot be updated");
            return false;
        }
    }
    if (!fillSearchIndex()) {
        if (error)
            *error = failure(u"The search index cannot be built");
        return false;
    }
    return true;
}

bool Database::fillSearchIndex() {
    Statement pending = prepare("SELECT 1 FROM settings WHERE name = 'search_index_pending'");
    if (!pending.step())
        return pending.ok();
    pending = Statement();
    Statement count = prepare("SELECT count(*), coalesce(max(id), 0) FROM messages");
    if (!count.step())
        return false;
    const std::int64_t total = count.integer(0);
    count = Statement();
    // Big stores say how far they are, about once a second.
    constexpr std::int64_t kReportAbove = 50000;
    constexpr std::int64_t kBatch = 20000;
    Transaction transaction(*this);
    Statement batch = prepare(
        "INSERT INTO message_search(rowid, body) SELECT id, body FROM message_search_source "
        "WHERE id > ? ORDER BY id LIMIT ?");
    Statement last = prepare("SELECT coalesce(max(rowid), 0) FROM message_search");
    QElapsedTimer sinceReport;
    sinceReport.start();
    std::int64_t done = 0;
    std::int64_t after = 0;
    for (;;) {
        batch.reset();
        batch.bind(1, after).bind(2, kBatch);
        batch.step();
        if (!batch.ok())
            return false;
        const int added = sqlite3_changes(db_);
        if (added == 0)
            break;
        done += added;
        last.reset();
        if (!last.step())
            return false;
        after = last.integer(0);
        if (total > kReportAbove && sinceReport.elapsed() >= 1000) {
            sinceReport.restart();
            std::fprintf(stderr, "tessaly: building the search index: %d %%\n",
                         int(done * 100 / total));
        }
    }
    batch = Statement();
    last = Statement();
    if (!exec("DELETE FROM settings WHERE name = 'search_index_pending'"))
        return false;
    if (total > kReportAbove)
        std::fprintf(stderr, "tessaly: building the search index: done\n");
    return transaction.commit();
}

// Savepoints nest, so a write that groups its statements can run inside a larger group.
// A savepoint as the outermost transaction would make SQLite copy every page it changes
// into a statement journal for the whole transaction (a temporary file as large as the
// writes); BEGIN needs none, and a savepoint inside it keeps only its own changes.
Database::Transaction::Transaction(Database& db)
    : db_(db)
    , nested_(sqlite3_get_autocommit(db.db_) == 0) {
    db_.cached(nested_ ? "SAVEPOINT tessaly" : "BEGIN IMMEDIATE").step();
}

Database::Transaction::~Transaction() {
    if (!done_)
        rollBack();
}

bool Database::Transaction::commit() {
    done_ = true;
    Statement& end = db_.cached(nested_ ? "RELEASE tessaly" : "COMMIT");
    end.step();
    if (end.ok())
        return true;
    rollBack();
    return false;
}

void Database::Transaction::rollBack() {
    db_.exec(nested_ ? "ROLLBACK TO tessaly; RELEASE tessaly" : "ROLLBACK");
}

} // namespace tessaly::telephony
