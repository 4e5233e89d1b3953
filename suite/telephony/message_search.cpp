#include "suite/telephony/message_search.h"

#include "suite/telephony/database.h"
#include "suite/telephony/store.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QString>

#include <algorithm>
#include <set>

namespace tessaly::telephony {
namespace {

// Characters of the excerpt before and after the first match.
constexpr size_t kBefore = 16;
constexpr size_t kExcerptLength = 60;

// One line around the match: line breaks and tabs as spaces, "…" where it is cut.
GSM::SearchHit excerptOf(const std::u16string& text, std::pair<int, int> match) {
    GSM::SearchHit hit;
    size_t start =
        match.first < 0 || size_t(match.first) < kBefore ? 0 : size_t(match.first) - kBefore;
    if (start > 0 && QChar::isLowSurrogate(text[start]))
        --start;
    size_t end = std::min(text.size(), start + kExcerptLength);
    if (match.first >= 0)
        end = std::max(end, std::min(text.size(), size_t(match.first + match.second)));
    if (end < text.size() && end > 0 && QChar::isHighSurrogate(text[end - 1]))
        ++end;
    std::u16string line = start > 0 ? u"…" : u"";
    if (match.first >= 0) {
        hit.matchStart = int(line.size() + size_t(match.first) - start);
        hit.matchLength = match.second;
    }
    for (size_t i = start; i < end; ++i) {
        const char16_t c = text[i];
        line.push_back(c == u'\r' || c == u'\n' || c == u'\t' ? u' ' : c);
    }
    if (end < text.size())
        line += u"…";
    hit.excerpt = std::move(line);
    return hit;
}

} // namespace

StoreSearch::StoreSearch(Store& store, SearchQuery query)
    : store_(store)
    , query_(std::move(query)) {
    findParties();
}

// The numbers whose messages match by their party: those of phone-book entries whose name
// matches, and, for a query of digits, every number of a message that holds them.
void StoreSearch::findParties() {
    std::set<std::u16string> numbers;
    std::set<const GSM::Contact*> people;
    for (GSM::Contact* entry : store_.phoneBook()) {
        const auto* person = static_cast<const ContactRecord*>(entry);
        if (nameMatches(foldForSearch(person->plainText(GSM::Contact::FieldDisplayName)), query_))
            people.insert(entry);
    }
    if (people.empty() && query_.numberDigits.empty())
        return;
    Statement distinct = store_.db().prepare("SELECT DISTINCT number FROM addresses");
    while (distinct.step()) {
        std::u16string number = distinct.text(0);
        if (numberContainsDigits(number, query_.numberDigits) ||
            (!people.empty() && people.count(store_.findPerson(number))))
            numbers.insert(std::move(number));
    }
    QJsonArray array;
    for (const std::u16string& number : numbers)
        array.append(QString::fromStdU16String(number));
    partyNumbers_ =
        QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact)).toStdU16String();
    hasParties_ = !numbers.empty();
}

// The text index gives its matches in id order, and fast: a word in a tenth of a million
// messages takes a few milliseconds.
void StoreSearch::findMatches() {
    Database& db = store_.db();
    std::vector<std::int64_t> ids;
    Statement text = db.prepare("SELECT rowid FROM message_search WHERE message_search MATCH ?");
    text.bind(1, query_.textIndexQuery);
    while (text.step())
        ids.push_back(text.integer(0));
    if (hasParties_) {
        const size_t fromText = ids.size();
        Statement parties = db.prepare("SELECT message_id FROM addresses WHERE number IN "
                                       "(SELECT value FROM json_each(?))");
        parties.bind(1, partyNumbers_);
        while (parties.step())
            ids.push_back(parties.integer(0));
        std::sort(ids.begin() + std::ptrdiff_t(fromText), ids.end());
        std::inplace_merge(ids.begin(), ids.begin() + std::ptrdiff_t(fromText), ids.end());
        ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    }
    matches_ = std::move(ids);
}

int StoreSearch::count() {
    if (!matches_)
        findMatches();
    return int(matches_->size());
}

std::vector<std::int64_t> StoreSearch::walkNewestFirst(int limit) {
    Statement& rows = store_.db().cached(
        "SELECT date, id FROM messages INDEXED BY messages_by_date WHERE (date, id) < (?1, ?2) "
        "ORDER BY date DESC, id DESC");
    rows.bind(1, lastDate_).bind(2, lastId_);
    std::vector<std::int64_t> ids;
    while (int(ids.size()) < limit && rows.step()) {
        lastDate_ = rows.integer(0);
        lastId_ = rows.integer(1);
        if (std::binary_search(matches_->begin(), matches_->end(), lastId_))
            ids.push_back(lastId_);
    }
    walkedToEnd_ = int(ids.size()) < limit;
    rows.reset();
    return ids;
}

GSM::SearchHit StoreSearch::hit(std::int64_t id) {
    Statement& row =
        store_.db().cached("SELECT folder, coalesce(search_text, text) FROM messages WHERE id = ?");
    row.bind(1, id);
    const bool found = row.step();
    const std::u16string text = found ? row.text(1) : std::u16string();
    GSM::SearchHit hit = excerptOf(text, firstMatch(text, query_));
    hit.messageId = long(id);
    hit.folder = found ? int(row.integer(0)) : 0;
    return hit;
}

std::vector<GSM::SearchHit> StoreSearch::next(int limit) {
    std::vector<GSM::SearchHit> hits;
    if (limit <= 0)
        return hits;
    if (!byDate_ && count() <= kLookedUpAtOnce) {
        std::vector<std::pair<std::int64_t, std::int64_t>> found;
        Statement& date = store_.db().cached("SELECT date FROM messages WHERE id = ?");
        for (const std::int64_t id : *matches_) {
            date.reset();
            date.bind(1, id);
            if (date.step())
                found.emplace_back(date.integer(0), id);
        }
        std::sort(found.begin(), found.end(), std::greater<>());
        byDate_ = std::move(found);
    }
    std::vector<std::int64_t> ids;
    if (byDate_) {
        for (; given_ < byDate_->size() && int(ids.size()) < limit; ++given_)
            ids.push_back((*byDate_)[given_].second);
    } else if (!walkedToEnd_) {
        ids = walkNewestFirst(limit);
    }
    for (const std::int64_t id : ids)
        hits.push_back(hit(id));
    return hits;
}

} // namespace tessaly::telephony

namespace GSM {

std::unique_ptr<MessageSearch> searchMessages(const WCHAR* query) {
    using namespace tessaly::telephony;
    Store* store = Store::current();
    if (!store || !query)
        return nullptr;
    SearchQuery parsed = parseSearchQuery(query);
    if (parsed.empty())
        return nullptr;
    return std::make_unique<StoreSearch>(*store, std::move(parsed));
}

} // namespace GSM
