#pragma once

// One registry hive kept in one SQLite file: a tree of keys, each with named, typed values.
// Names are matched through their folded form (see foldName); the stored name keeps the case it
// was created with. Every method throws HiveError when the file cannot be read or written.

#include "framework/win32types.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <unordered_map>

struct sqlite3;
struct sqlite3_stmt;

namespace tessaly::registry {

using KeyId = std::int64_t;

// The form in which names are compared and ordered: each code point upper-cased by the Unicode
// simple mapping (one code point to one, so "ß" stays itself), as UTF-16 big-endian bytes so that
// a byte comparison orders names by UTF-16 code unit like the platform does.
QByteArray foldName(const QString& name);

class HiveError : public std::runtime_error {
public:
    HiveError(LONG errorCode, const QString& message);
    LONG errorCode() const { return code; }
    QString message() const { return text; }

private:
    LONG code;
    QString text;
};

struct StoredValue {
    QString name;
    DWORD type = 0;
    QByteArray data;
};

struct SubKey {
    QString name;
    std::uint64_t lastWriteTime = 0;
};

struct KeyStatistics {
    DWORD subKeyCount = 0;
    DWORD maxSubKeyLength = 0;
    DWORD valueCount = 0;
    DWORD maxValueNameLength = 0;
    DWORD maxValueLength = 0;
    std::uint64_t lastWriteTime = 0;
};

class Hive {
public:
    // Opens an existing hive file or initialises a new or empty one (created 0600). A file that
    // is not a hive of this format, or that fails SQLite's integrity check, is left untouched and
    // reported as ERROR_BADDB.
    static std::shared_ptr<Hive> open(const QString& path);
    ~Hive();
    Hive(const Hive&) = delete;
    Hive& operator=(const Hive&) = delete;

    const QString& path() const { return filePath; }
    static constexpr KeyId rootKey = 1;

    bool keyExists(KeyId key);
    std::optional<KeyId> findSubKey(KeyId parent, const QString& name);
    // Returns the key and whether it was created.
    std::pair<KeyId, bool> createSubKey(KeyId parent, const QString& name);
    std::optional<SubKey> subKeyAt(KeyId parent, DWORD index);
    bool hasSubKeys(KeyId key);
    // Removes the key with its values; the caller made sure it has no subkeys.
    void deleteKey(KeyId key);

    std::optional<StoredValue> value(KeyId key, const QString& name);
    std::optional<StoredValue> valueAt(KeyId key, DWORD index);
    // An existing value keeps its place in the creation order and its stored name.
    void setValue(KeyId key, const QString& name, DWORD type, const QByteArray& data);
    bool deleteValue(KeyId key, const QString& name);
    // Marks the key as written now; false when the key no longer exists.
    bool touch(KeyId key);

    KeyStatistics statistics(KeyId key);

    // From beginBatch() to endBatch() the write transactions are savepoints inside one
    // transaction, committed (and synced) once by endBatch(); a failed commit rolls all back.
    void beginBatch();
    void endBatch();

    // A write transaction: committed (and synced) by commit(), rolled back otherwise.
    class Transaction {
    public:
        explicit Transaction(Hive& hive);
        ~Transaction();
        Transaction(const Transaction&) = delete;
        Transaction& operator=(const Transaction&) = delete;
        void commit();

    private:
        Hive& hive;
        bool open = true;
        bool nested;
    };

    // Several reads seen as one snapshot, and the file locked once for them rather than per
    // statement. Does nothing inside a write transaction.
    class ReadTransaction {
    public:
        explicit ReadTransaction(Hive& hive);
        ~ReadTransaction();
        ReadTransaction(const ReadTransaction&) = delete;
        ReadTransaction& operator=(const ReadTransaction&) = delete;

    private:
        Hive& hive;
        bool owned;
    };

private:
    class Statement;
    class Cursor;
    explicit Hive(const QString& path);
    void initialise();
    void createSchema();
    void execute(const char* sql);
    // One statement that writes, outside a Transaction: its failure is reported as a write's.
    void executeWrite(const char* sql);
    Statement& statement(const char* sql);
    [[noreturn]] void fail(int sqliteCode, const char* what);

    QString filePath;
    sqlite3* db = nullptr;
    bool writing = false;
    bool batching = false;
    std::unordered_map<std::string_view, std::unique_ptr<Statement>> statements;
};

} // namespace tessaly::registry
