#include "lists/list_sort_table.h"

namespace tessaly::sms {

int ListSortTable::sortKey(int folder) const {
    return inTable(folder) ? rows_[folder].sortKey : 0;
}

void ListSortTable::setSortKey(int folder, int key) {
    if (inTable(folder) && key >= 0 && key <= kLargestKey)
        rows_[folder].sortKey = key;
}

bool ListSortTable::ascending(int folder) const {
    return inTable(folder) && rows_[folder].ascending != 0;
}

void ListSortTable::setAscending(int folder, bool ascending) {
    if (inTable(folder))
        rows_[folder].ascending = ascending ? 1 : 0;
}

ListSortTable& listSortTable() {
    static ListSortTable table;
    return table;
}

} // namespace tessaly::sms
