#include "framework/registry/hive.h"

#include <QDateTime>
#include <QFile>

#include <sqlite3.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tessaly::registry {

namespace {

constexpr int schemaVersion = 1;

// FILETIME counts 100 ns steps from 1601-01-01; the Unix epoch is 11644473600 s later.
std::uint64_t fileTimeNow() {
    constexpr std::int64_t epochOffsetMs = 11644473600000LL;
    return std::uint64_t(QDateTime::currentMSecsSinceEpoch() + epochOffsetMs) * 10000u;
}

LONG errorCodeFor(int sqliteCode, bool writing) {
    switch (sqliteCode & 0xff) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_FORMAT:
        return ERROR_BADDB;
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return ERROR_CANTOPEN;
    case SQLITE_NOMEM:
        return ERROR_OUTOFMEMORY;
    default:
        return writing ? ERROR_CANTWRITE : ERROR_CANTREAD;
    }
}

void appendUnit(QByteArray& out, char16_t unit) {
    out.append(char(unit >> 8));
    out.append(char(unit & 0xff));
}

} // namespace

QByteArray foldName(const QString& name) {
    QByteArray folded;
    folded.reserve(name.size() * 2);
    for (qsizetype i = 0; i < name.size();) {
        char32_t codePoint = name.at(i).unicode();
        qsizetype units = 1;
        if (name.at(i).isHighSurrogate() && i + 1 < name.size() &&
            name.at(i + 1).isLowSurrogate()) {
            codePoint = QChar::surrogateToUcs4(name.at(i), name.at(i + 1));
            units = 2;
        }
        char32_t upper = QChar::toUpper(codePoint);
        // Lengths reported in UTF-16 units are read off the folded form, so it keeps them.
        if (QChar::requiresSurrogates(upper) != (units == 2))
            upper = codePoint;
        if (units == 2) {
            appendUnit(folded, QChar::highSurrogate(upper));
            appendUnit(folded, QChar::lowSurrogate(upper));
        } else {
            appendUnit(folded, char16_t(upper));
        }
        i += units;
    }
    return folded;
}

HiveError::HiveError(LONG errorCode, const QString& message)
    : std::runtime_error(message.toStdString())
    , code(errorCode)
    , text(message) {}

// A prepared statement, reset whenever a Cursor over it ends so that no read stays open.
class Hive::Statement {
public:
    Statement(Hive& owner, const char* sql)
        : hive(owner) {
        const int rc =
            sqlite3_prepare_v3(hive.db, sql, -1, SQLITE_PREPARE_PERSISTENT, &stmt, nullptr);
        if (rc != SQLITE_OK)
            hive.fail(rc, "prepare");
    }
    ~Statement() { sqlite3_finalize(stmt); }

    Hive& hive;
    sqlite3_stmt* stmt = nullptr;
};

// One run of a statement: binds, steps and reads; resets the statement when it ends.
class Hive::Cursor {
public:
    explicit Cursor(Statement& statement)
        : hive(statement.hive)
        , stmt(statement.stmt) {}
    ~Cursor() {
        sqlite3_reset(stmt);
        sqlite3_clear_bindings(stmt);
    }
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;

    Cursor& bind(std::int64_t number) {
        check(sqlite3_bind_int64(stmt, ++parameter, number));
        return *this;
    }
    Cursor& bind(const QString& text) {
        check(sqlite3_bind_text16(stmt, ++parameter, text.utf16(), int(text.size() * 2),
                                  SQLITE_TRANSIENT));
        return *this;
    }
    // A zero-length blob is still a blob (a null pointer would bind NULL).
    Cursor& bind(const QByteArray& bytes) {
        check(sqlite3_bind_blob(stmt, ++parameter, bytes.isEmpty() ? "" : bytes.constData(),
                                int(bytes.size()), SQLITE_TRANSIENT));
        return *this;
    }

    bool next() {
        const int rc = sqlite3_step(stmt);
        if (rc == SQLITE_ROW)
            return true;
        if (rc != SQLITE_DONE)
            fail(rc);
        return false;
    }
    void run() {
        while (next()) {
        }
    }

    std::int64_t integer(int column) const { return sqlite3_column_int64(stmt, column); }
    QString text(int column) const {
        const void* data = sqlite3_column_text16(stmt, column);
        const int bytes = sqlite3_column_bytes16(stmt, column);
        return QString(static_cast<const QChar*>(data), bytes / 2);
    }
    QByteArray blob(int column) const {
        const void* data = sqlite3_column_blob(stmt, column);
        const int bytes = sqlite3_column_bytes(stmt, column);
        return QByteArray(static_cast<const char*>(data), bytes);
    }

private:
    void check(int rc) {
        if (rc != SQLITE_OK)
            fail(rc);
    }
    void fail(int rc) { hive.fail(rc, sqlite3_sql(stmt)); }

    Hive& hive;
    sqlite3_stmt* stmt;
    int parameter = 0;
};

Hive::Hive(const QString& path)
    : filePath(path) {}

Hive::~Hive() {
    statements.clear();
    sqlite3_close_v2(db);
}

std::shared_ptr<Hive> Hive::open(const QString& path) {
    std::shared_ptr<Hive> hive(new Hive(path));
    hive->initialise();
    return hive;
}

void Hive::initialise() {
    const QByteArray nativePath = QFile::encodeName(filePath);
    // Created here rather than by SQLite so that the file (and its journal, which SQLite
    // creates with the same mode) is private from the first byte.
    const int fd = ::open(nativePath.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd >= 0)
        ::close(fd);
    else if (errno != EEXIST)
        throw HiveError(ERROR_CANTOPEN,
                        QStringLiteral("registry file %1: cannot create: %2")
                            .arg(filePath, QString::fromLocal8Bit(std::strerror(errno))));

    // No SQLITE_OPEN_CREATE: a file that vanished in between is an error, not a fresh start.
    const int rc = sqlite3_open_v2(nativePath.constData(), &db,
                                   SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (rc != SQLITE_OK)
        fail(rc, "open");
    sqlite3_busy_timeout(db, 5000);
    // Only reads until the file is known to be a hive: even switching the journal mode would
    // write to someone else's database.
    {
        Cursor check(statement("PRAGMA quick_check"));
        if (check.next() && check.text(0) != QLatin1String("ok"))
            throw HiveError(
                ERROR_BADDB,
                QStringLiteral("registry file %1 is damaged: %2").arg(filePath, check.text(0)));
    }

    std::int64_t version = 0;
    {
        Cursor query(statement("PRAGMA user_version"));
        if (query.next())
            version = query.integer(0);
    }
    std::int64_t objects = 0;
    std::int64_t hiveTables = 0;
    {
        Cursor query(statement("SELECT count(*), count(CASE WHEN type = 'table' AND"
                               " name IN ('keys', 'vals') THEN 1 END) FROM sqlite_master"));
        if (query.next()) {
            objects = query.integer(0);
            hiveTables = query.integer(1);
        }
    }
    const bool fresh = version == 0 && objects == 0;
    if (!fresh && (version != schemaVersion || hiveTables != 2))
        throw HiveError(ERROR_BADDB,
                        QStringLiteral("registry file %1 is not a registry hive of format %2 "
                                       "(found format %3)")
                            .arg(filePath)
                            .arg(schemaVersion)
                            .arg(version));

    execute("PRAGMA journal_mode=WAL");
    // A commit returns only once the journal is on disk.
    execute("PRAGMA synchronous=FULL");
    if (fresh)
        createSchema();
}

void Hive::createSchema() {
    Transaction transaction(*this);
    // AUTOINCREMENT: a handle to a deleted key must never find a newer key under the same id.
    execute("CREATE TABLE keys ("
            " id INTEGER PRIMARY KEY AUTOINCREMENT,"
            " parent INTEGER REFERENCES keys(id),"
            " name TEXT NOT NULL,"
            " folded BLOB NOT NULL,"
            " last_write INTEGER NOT NULL)");
    execute("CREATE UNIQUE INDEX keys_by_name ON keys(parent, folded)");
    execute("CREATE TABLE vals ("
            " id INTEGER PRIMARY KEY,"
            " key INTEGER NOT NULL REFERENCES keys(id),"
            " name TEXT NOT NULL,"
            " folded BLOB NOT NULL,"
            " type INTEGER NOT NULL,"
            " data BLOB NOT NULL)");
    execute("CREATE UNIQUE INDEX vals_by_name ON vals(key, folded)");
    execute("CREATE INDEX vals_in_order ON vals(key, id)");
    {
        Cursor root(statement("INSERT INTO keys(id, parent, name, folded, last_write)"
                              " VALUES (?, NULL, '', x'', ?)"));
        root.bind(rootKey).bind(std::int64_t(fileTimeNow())).run();
    }
    execute("PRAGMA user_version = 1");
    static_assert(schemaVersion == 1, "the statement above writes the schema version");
    transaction.commit();
}

void Hive::execute(const char* sql) {
    char* message = nullptr;
    const int rc = sqlite3_exec(db, sql, nullptr, nullptr, &message);
    sqlite3_free(message);
    if (rc != SQLITE_OK)
        fail(rc, sql);
}

Hive::Statement& Hive::statement(const char* sql) {
    auto& slot = statements[std::string_view(sql)];
    if (!slot)
        slot = std::make_unique<Statement>(*this, sql);
    return *slot;
}

void Hive::fail(int sqliteCode, const char* what) {
    const char* detail = db ? sqlite3_errmsg(db) : sqlite3_errstr(sqliteCode);
    throw HiveError(errorCodeFor(sqliteCode, writing),
                    QStringLiteral("registry file %1: %2 failed: %3")
                        .arg(filePath, QString::fromUtf8(what), QString::fromUtf8(detail)));
}

void Hive::executeWrite(const char* sql) {
    writing = true;
    try {
        execute(sql);
    } catch (...) {
        writing = false;
        throw;
    }
    writing = false;
}

void Hive::beginBatch() {
    if (batching)
        return;
    executeWrite("BEGIN IMMEDIATE");
    batching = true;
}

void Hive::endBatch() {
    if (!batching)
        return;
    batching = false;
    try {
        executeWrite("COMMIT");
    } catch (...) {
        sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
}

Hive::Transaction::Transaction(Hive& owner)
    : hive(owner)
    , nested(owner.batching) {
    hive.executeWrite(nested ? "SAVEPOINT write" : "BEGIN IMMEDIATE");
    hive.writing = true; // until the transaction ends
}

Hive::Transaction::~Transaction() {
    if (open)
        sqlite3_exec(hive.db, nested ? "ROLLBACK TO write; RELEASE write" : "ROLLBACK", nullptr,
                     nullptr, nullptr);
    hive.writing = false;
}

void Hive::Transaction::commit() {
    hive.execute(nested ? "RELEASE write" : "COMMIT");
    open = false;
}

Hive::ReadTransaction::ReadTransaction(Hive& owner)
    : hive(owner)
    , owned(sqlite3_get_autocommit(owner.db) != 0) {
    if (owned)
        Cursor(hive.statement("BEGIN")).run();
}

Hive::ReadTransaction::~ReadTransaction() {
    if (!owned)
        return;
    // Ending a transaction that wrote nothing only releases its lock; no error to report.
    sqlite3_stmt* commit = hive.statement("COMMIT").stmt;
    if (sqlite3_step(commit) != SQLITE_DONE)
        sqlite3_exec(hive.db, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_reset(commit);
}

bool Hive::keyExists(KeyId key) {
    Cursor query(statement("SELECT 1 FROM keys WHERE id = ?"));
    return query.bind(key).next();
}

std::optional<KeyId> Hive::findSubKey(KeyId parent, const QString& name) {
    Cursor query(statement("SELECT id FROM keys WHERE parent = ? AND folded = ?"));
    if (!query.bind(parent).bind(foldName(name)).next())
        return std::nullopt;
    return query.integer(0);
}

std::pair<KeyId, bool> Hive::createSubKey(KeyId parent, const QString& name) {
    if (const auto existing = findSubKey(parent, name))
        return {*existing, false};
    const auto now = std::int64_t(fileTimeNow());
    {
        Cursor insert(
            statement("INSERT INTO keys(parent, name, folded, last_write) VALUES (?, ?, ?, ?)"));
        insert.bind(parent).bind(name).bind(foldName(name)).bind(now).run();
    }
    const KeyId created = sqlite3_last_insert_rowid(db);
    touch(parent);
    return {created, true};
}

std::optional<SubKey> Hive::subKeyAt(KeyId parent, DWORD index) {
    Cursor query(statement(
        "SELECT name, last_write FROM keys WHERE parent = ? ORDER BY folded LIMIT 1 OFFSET ?"));
    if (!query.bind(parent).bind(std::int64_t(index)).next())
        return std::nullopt;
    return SubKey{query.text(0), std::uint64_t(query.integer(1))};
}

bool Hive::hasSubKeys(KeyId key) {
    Cursor query(statement("SELECT 1 FROM keys WHERE parent = ? LIMIT 1"));
    return query.bind(key).next();
}

void Hive::deleteKey(KeyId key) {
    {
        Cursor values(statement("DELETE FROM vals WHERE key = ?"));
        values.bind(key).run();
    }
    Cursor keys(statement("DELETE FROM keys WHERE id = ?"));
    keys.bind(key).run();
}

std::optional<StoredValue> Hive::value(KeyId key, const QString& name) {
    Cursor query(statement("SELECT name, type, data FROM vals WHERE key = ? AND folded = ?"));
    if (!query.bind(key).bind(foldName(name)).next())
        return std::nullopt;
    return StoredValue{query.text(0), DWORD(query.integer(1)), query.blob(2)};
}

std::optional<StoredValue> Hive::valueAt(KeyId key, DWORD index) {
    Cursor query(
        statement("SELECT name, type, data FROM vals WHERE key = ? ORDER BY id LIMIT 1 OFFSET ?"));
    if (!query.bind(key).bind(std::int64_t(index)).next())
        return std::nullopt;
    return StoredValue{query.text(0), DWORD(query.integer(1)), query.blob(2)};
}

void Hive::setValue(KeyId key, const QString& name, DWORD type, const QByteArray& data) {
    Cursor upsert(statement("INSERT INTO vals(key, name, folded, type, data) VALUES (?, ?, ?, ?, ?)"
                            " ON CONFLICT(key, folded) DO UPDATE SET type = excluded.type,"
                            " data = excluded.data"));
    upsert.bind(key).bind(name).bind(foldName(name)).bind(std::int64_t(type)).bind(data).run();
}

bool Hive::deleteValue(KeyId key, const QString& name) {
    Cursor remove(statement("DELETE FROM vals WHERE key = ? AND folded = ?"));
    remove.bind(key).bind(foldName(name)).run();
    return sqlite3_changes(db) > 0;
}

bool Hive::touch(KeyId key) {
    Cursor update(statement("UPDATE keys SET last_write = ? WHERE id = ?"));
    update.bind(std::int64_t(fileTimeNow())).bind(key).run();
    return sqlite3_changes(db) > 0;
}

KeyStatistics Hive::statistics(KeyId key) {
    KeyStatistics result;
    {
        // Folding keeps the UTF-16 length, so half the folded bytes is the name's length.
        Cursor query(statement("SELECT count(*), coalesce(max(length(folded)), 0) / 2"
                               " FROM keys WHERE parent = ?"));
        if (query.bind(key).next()) {
            result.subKeyCount = DWORD(query.integer(0));
            result.maxSubKeyLength = DWORD(query.integer(1));
        }
    }
    {
        Cursor query(statement("SELECT count(*), coalesce(max(length(folded)), 0) / 2,"
                               " coalesce(max(length(data)), 0) FROM vals WHERE key = ?"));
        if (query.bind(key).next()) {
            result.valueCount = DWORD(query.integer(0));
            result.maxValueNameLength = DWORD(query.integer(1));
            result.maxValueLength = DWORD(query.integer(2));
        }
    }
    Cursor query(statement("SELECT last_write FROM keys WHERE id = ?"));
    if (query.bind(key).next())
        result.lastWriteTime = std::uint64_t(query.integer(0));
    return result;
}

} // namespace tessaly::registry
