#include "suite/telephony/message_window.h"

#include "gsm/sms.h"
#include "suite/telephony/message_records.h"
#include "suite/telephony/store.h"

#include <algorithm>
#include <string>

namespace tessaly::telephony {

namespace {

// What each order selects (index-only: the id, the date and the column it sorts by first), how
// it orders, and the row value a keyset condition compares.
struct OrderSql {
    const char* columns;
    const char* ascending;
    const char* descending;
    const char* rowValue;
};

const OrderSql& orderSql(int sortKey) {
    static const OrderSql byDate{"id, date, 0", "date, id", "date DESC, id DESC", "(date, id)"};
    static const OrderSql byContact{"id, date, sort_name", "sort_name, date, id",
                                    "sort_name DESC, date DESC, id DESC", "(sort_name, date, id)"};
    static const OrderSql byStatus{"id, date, status", "status, date, id",
                                   "status DESC, date DESC, id DESC", "(status, date, id)"};
    switch (sortKey) {
    case GSM::Sms::SortByContact:
        return byContact;
    case GSM::Sms::SortByStatus:
        return byStatus;
    default:
        return byDate;
    }
}

} // namespace

std::unique_ptr<MessageWindow> MessageWindow::readWhole(Store& store, Database& db, int folder,
                                                        int sortKey) {
    std::unique_ptr<MessageWindow> window(new MessageWindow(store, folder, sortKey));
    window->whole_ = true;
    window->held_ = store.loadFolder(folder, orderSql(sortKey).ascending);
    window->count_ = int(window->held_.size());
    for (const std::shared_ptr<MessageRecord>& message : window->held_)
        ++window->statusCounts_[std::clamp<int>(message->status, 0, kStatuses - 1)];
    return window;
}

std::unique_ptr<MessageWindow>
MessageWindow::readByPage(Store& store, std::unique_ptr<Database> reader, int folder, int sortKey) {
    std::unique_ptr<MessageWindow> window(new MessageWindow(store, folder, sortKey));
    // The first read after BEGIN fixes what the window sees until it lets go.
    if (!reader || !reader->exec("BEGIN") || !window->readCounts(*reader))
        return nullptr;
    window->reader_ = std::move(reader);
    return window;
}

MessageWindow::~MessageWindow() {
    releaseReader();
}

void MessageWindow::releaseReader() {
    if (reader_)
        reader_->exec("COMMIT");
    reader_.reset();
}

bool MessageWindow::readCounts(Database& db) {
    Statement counts = db.prepare("SELECT status, count FROM message_counts WHERE folder = ?");
    counts.bind(1, std::int64_t(folder_));
    while (counts.step()) {
        const int count = int(std::max<std::int64_t>(0, counts.integer(1)));
        statusCounts_[std::size_t(std::clamp<std::int64_t>(counts.integer(0), 0, kStatuses - 1))] +=
            count;
        count_ += count;
    }
    return counts.ok();
}

GSM::Message* MessageWindow::get(int position) const {
    if (position < 0 || position >= count_)
        return nullptr;
    if (whole_)
        return held_[std::size_t(position)].get();
    const long id = idAt(position);
    return id == 0 ? nullptr : store_.messageForWindow(id);
}

long MessageWindow::idAt(int position) const {
    const int page = position / kPageSize;
    if (!readPage(page))
        return 0;
    const std::vector<long>& ids = pages_.at(page).ids;
    const std::size_t index = std::size_t(position % kPageSize);
    return index < ids.size() ? ids[index] : 0;
}

bool MessageWindow::readPage(int page) const {
    if (pages_.count(page))
        return true;
    if (!reader_)
        return false;
    const auto above = pages_.upper_bound(page);
    const auto below = above == pages_.begin() ? pages_.end() : std::prev(above);
    const int start = page * kPageSize;
    const int end = std::min(start + kPageSize, count_);
    // The walk from the nearer page read (or the nearer end of the folder) reads the fewest.
    const int forwardFrom = below == pages_.end() ? 0 : (below->first + 1) * kPageSize;
    const int backwardFrom = above == pages_.end() ? count_ : above->first * kPageSize;
    if (end - forwardFrom <= backwardFrom - start) {
        const Key from = below == pages_.end() ? Key() : below->second.last;
        walk(below == pages_.end() ? nullptr : &from, forwardFrom, end - forwardFrom, true);
    } else {
        const Key from = above == pages_.end() ? Key() : above->second.first;
        walk(above == pages_.end() ? nullptr : &from, backwardFrom - 1, backwardFrom - start,
             false);
    }
    return pages_.count(page) != 0;
}

Statement MessageWindow::prepare(const Key* from, bool forward, bool counting, int status) const {
    const OrderSql& order = orderSql(sortKey_);
    std::string sql =
        counting ? std::string("SELECT count(*)") : std::string("SELECT ") + order.columns;
    sql += " FROM messages WHERE folder = ?";
    if (status >= 0)
        sql += " AND status = ?";
    if (from) {
        sql += std::string(" AND ") + order.rowValue + (forward ? " > " : " < ") +
               (sortKey_ == GSM::Sms::SortByDate ? "(?, ?)" : "(?, ?, ?)");
    }
    if (!counting) {
        sql += std::string(" ORDER BY ") + (forward ? order.ascending : order.descending);
        sql += " LIMIT ?";
    }
    Statement statement = reader_->prepare(sql.c_str());
    int index = 1;
    statement.bind(index++, std::int64_t(folder_));
    if (status >= 0)
        statement.bind(index++, std::int64_t(status));
    if (from) {
        if (sortKey_ == GSM::Sms::SortByContact)
            statement.bind(index++, from->name);
        else if (sortKey_ == GSM::Sms::SortByStatus)
            statement.bind(index++, from->status);
        statement.bind(index++, from->date);
        statement.bind(index++, from->id);
    }
    return statement;
}

MessageWindow::Key MessageWindow::keyOf(const Statement& row) const {
    Key key;
    key.id = row.integer(0);
    key.date = row.integer(1);
    if (sortKey_ == GSM::Sms::SortByContact)
        key.name = row.text(2);
    else if (sortKey_ == GSM::Sms::SortByStatus)
        key.status = row.integer(2);
    return key;
}

void MessageWindow::walk(const Key* from, int position, int rows, bool forward) const {
    if (rows <= 0)
        return;
    Statement statement = prepare(from, forward, false, -1);
    // The limit is the last parameter.
    statement.bind(from ? (sortKey_ == GSM::Sms::SortByDate ? 4 : 5) : 2, std::int64_t(rows));
    std::map<int, Page> read;
    for (int at = position; statement.step(); at += forward ? 1 : -1) {
        if (at < 0 || at >= count_)
            break;
        Page& page = read[at / kPageSize];
        page.ids.push_back(long(statement.integer(0)));
        const bool firstOfPage = at % kPageSize == 0;
        const bool lastOfPage = at % kPageSize == kPageSize - 1 || at == count_ - 1;
        if (firstOfPage)
            page.first = keyOf(statement);
        if (lastOfPage)
            page.last = keyOf(statement);
    }
    for (auto& [index, page] : read) {
        const std::size_t whole = std::size_t(std::min(kPageSize, count_ - index * kPageSize));
        if (page.ids.size() != whole)
            continue;
        if (!forward)
            std::reverse(page.ids.begin(), page.ids.end());
        pages_.emplace(index, std::move(page));
    }
}

int MessageWindow::getFirst(GSM::Message::Status status) const {
    if (sortKey_ == GSM::Sms::SortByStatus) {
        int position = 0;
        for (int before = 0; before < std::clamp<int>(status, 0, kStatuses); ++before)
            position += statusCounts_[std::size_t(before)];
        return position;
    }
    if (whole_) {
        const auto found = std::find_if(held_.begin(), held_.end(),
                                        [status](const std::shared_ptr<MessageRecord>& message) {
                                            return message->status == status;
                                        });
        return int(found - held_.begin());
    }
    if (!reader_)
        return count_;
    Statement first = prepare(nullptr, true, false, int(status));
    first.bind(3, std::int64_t(1));
    if (!first.step())
        return count_;
    const Key key = keyOf(first);
    first = Statement();
    Statement before = prepare(&key, false, true, -1);
    return before.step() ? int(before.integer(0)) : count_;
}

} // namespace tessaly::telephony
