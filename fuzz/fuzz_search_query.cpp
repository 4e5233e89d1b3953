// Fuzz target for what a person types into Find: any UTF-16 becomes a query whose text-index
// part SQLite's FTS5 accepts (nothing typed is taken for its syntax), and the first match it
// marks lies inside the text. libFuzzer entry point; the test replay_search_query replays it.

#include "suite/telephony/search_query.h"

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

[[noreturn]] void fail(const char* what, const char* detail = "") {
    std::fprintf(stderr, "fuzz_search_query: %s %s\n", what, detail);
    std::abort();
}

sqlite3* index() {
    static sqlite3* db = [] {
        sqlite3* opened = nullptr;
        sqlite3_open(":memory:", &opened);
        sqlite3_exec(opened,
                     "CREATE VIRTUAL TABLE t USING fts5(body, tokenize = 'unicode61 "
                     "remove_diacritics 2'); INSERT INTO t VALUES ('Lunch at the café, Straße 5')",
                     nullptr, nullptr, nullptr);
        return opened;
    }();
    return db;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::u16string typed(size / 2, u'\0');
    if (!typed.empty())
        std::memcpy(typed.data(), data, typed.size() * sizeof(char16_t));
    const tessaly::telephony::SearchQuery query = tessaly::telephony::parseSearchQuery(typed);
    if (query.empty() != query.textIndexQuery.empty())
        fail("a query with terms but nothing for the index, or the other way round");
    if (!query.empty()) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare16_v2(index(), u"SELECT count(*) FROM t WHERE t MATCH ?", -1, &statement,
                                 nullptr) != SQLITE_OK)
            fail("prepare");
        sqlite3_bind_text16(statement, 1, query.textIndexQuery.data(),
                            int(query.textIndexQuery.size() * sizeof(char16_t)), SQLITE_TRANSIENT);
        const int rc = sqlite3_step(statement);
        if (rc != SQLITE_ROW) {
            std::string shown;
            for (const char16_t c : query.textIndexQuery)
                shown += c < 0x80 ? char(c) : '?';
            std::fprintf(stderr, "query: %s\n", shown.c_str());
            fail("the text index refused the query:", sqlite3_errmsg(index()));
        }
        sqlite3_finalize(statement);
    }
    const auto [start, length] = tessaly::telephony::firstMatch(typed, query);
    if (start < -1 || (start >= 0 && (length <= 0 || size_t(start + length) > typed.size())))
        fail("a match outside the text");
    return 0;
}
