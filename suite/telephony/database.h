#pragma once

// A thin layer over SQLite's C API: opening with the schema migrated and WAL on, statements
// with UTF-16 text, and errors that name the file and SQLite's own words.

#include "gsm/result.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace tessaly::telephony {

// Whether SQLite would not give this text back unchanged as TEXT, so that it is stored as its
// UTF-16 bytes (a BLOB) instead.
bool storedAsUtf16Bytes(std::u16string_view text);
// What the search index reads of such a text: a text SQLite keeps as it is (lone surrogates,
// U+FFFE and U+FFFF as U+FFFD, a leading U+FEFF as a space).
std::u16string searchableText(std::u16string_view text);

class Statement {
public:
    Statement() = default;
    Statement(sqlite3* db, sqlite3_stmt* statement)
        : db_(db)
        , statement_(statement) {}
    Statement(Statement&& other) noexcept;
    Statement& operator=(Statement&& other) noexcept;
    ~Statement();

    bool valid() const { return statement_ != nullptr; }
    Statement& bind(int index, std::int64_t value);
    Statement& bind(int index, std::u16string_view text);
    Statement& bind(int index, const std::vector<std::uint8_t>& blob);
    // True while a row is available; check done() / ok() afterwards.
    bool step();
    bool ok() const { return ok_; }
    void reset();

    std::int64_t integer(int column) const;
    std::u16string text(int column) const;
    std::vector<std::uint8_t> blob(int column) const;

private:
    sqlite3* db_ = nullptr;
    sqlite3_stmt* statement_ = nullptr;
    bool ok_ = true;
};

class Database {
public:
    // Opens (creating when absent) and migrates; on failure fills `error` with the path and
    // SQLite's message and returns null. A damaged or foreign file is never replaced.
    static std::unique_ptr<Database> open(const QString& path, GSM::Result* error);
    ~Database();
    // A second, read-only connection to the same file, for reads that must see the store as
    // it was at one instant (a read transaction of their own); null for a store in memory.
    std::unique_ptr<Database> openReader() const;

    const QString& path() const { return path_; }
    bool exec(const char* sql);
    // Rows the last INSERT, UPDATE or DELETE changed.
    int changes() const;
    Statement prepare(const char* sql);
    // A statement prepared once and kept (by the address of its text: pass a literal), reset
    // and ready for binding. For statements run many times and stepped to their end at once.
    Statement& cached(const char* sql);
    // A failed result naming what was attempted, the file and SQLite's last message.
    GSM::Result failure(std::u16string_view what) const;

    // Groups writes; commits when committed, rolls back otherwise. The outermost one is a
    // plain transaction; one opened inside another is a savepoint of it.
    class Transaction {
    public:
        explicit Transaction(Database& db);
        ~Transaction();
        bool commit();

    private:
        void rollBack();

        Database& db_;
        bool nested_;
        bool done_ = false;
    };

private:
    Database(sqlite3* db, QString path)
        : db_(db)
        , path_(std::move(path)) {}
    bool migrate(GSM::Result* error);
    // Fills the search index of the messages a store held before it had one.
    bool fillSearchIndex();

    sqlite3* db_;
    QString path_;
    std::unordered_map<const char*, Statement> statements_;
};

} // namespace tessaly::telephony
