#pragma once

// How each list is sorted: a key and a direction per folder (0 Inbox, 1 Outbox, 2 cell
// broadcast). One table for the module's lifetime, beside the settings record but not stored
// with it, so a new main window keeps the order the person chose before.

#include <array>
#include <cstdint>

namespace tessaly::sms {

class ListSortTable {
public:
    static constexpr int kFolderCount = 3;
    // Keys the setter accepts; 0 date, 1 contact and 2 status are the ones with a meaning.
    static constexpr int kLargestKey = 7;

    // 0 for a folder outside the table.
    int sortKey(int folder) const;
    // Ignores a folder outside the table and a key outside 0..7.
    void setSortKey(int folder, int key);
    // false (descending, newest first) for a folder outside the table.
    bool ascending(int folder) const;
    void setAscending(int folder, bool ascending);

private:
    struct Row {
        std::int32_t sortKey = 0;
        std::uint8_t ascending = 0;
    };
    static bool inTable(int folder) { return folder >= 0 && folder < kFolderCount; }
    std::array<Row, kFolderCount> rows_{};
};

// The module's table.
ListSortTable& listSortTable();

} // namespace tessaly::sms
