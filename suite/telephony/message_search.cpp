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

constexpr char16_t kMatchStart = 0x01;
constexpr char16_t kMatchEnd = 0x02;
// Characters of the excerpt before and after the first match.
constexpr size_t kBefore = 16;
constexpr size_t kExcerptLength = 60;

// One line around the first marked match: line breaks and tabs as spaces, "…" where cut.
GSM::SearchHit excerptOf(std::u16string text) {
    GSM::SearchHit hit;
    const size_t marked = text.find(kMatchStart);
    size_t start = marked == std::u16string::npos || marked < kBefore ? 0 : marked - kBefore;
    if (start > 0 && QChar::isLowSurrogate(text[start]))
        --start;
    std::u16string line = start > 0 ? u"…" : u"";
    size_t visible = 0;
    size_t i = start;
    for (; i < text.size() && visible < kExcerptLength; ++i) {
        const char16_t c = text[i];
        if (c == kMatchStart) {
            if (hit.matchStart < 0)
                hit.matchStart = int(line.size());
            continue;
        }
        if (c == kMatchEnd) {
            if (hit.matchStart >= 0 && hit.matchLength == 0)
                hit.matchLength = int(line.size()) - hit.matchStart;
            continue;
        }
        line.push_back(c == u'\r' || c == u'\n' || c == u'\t' ? u' ' : c);
        ++visible;
    }
    if (i < text.size() && !line.empty() && QChar::isHighSurrogate(line.back()) && i < text.size())
        line.push_back(text[i++]);
    if (hit.matchStart >= 0 && hit.matchLength == 0)
        hit.matchLength = int(line.size()) - hit.matchStart;
    if (i < text.size())
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
    partyNumbers_ = QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact)).toStdU16String();
    hasParties_ = !numbers.empty();
}

int StoreSearch::count() {
    if (count_)
        return *count_;
    Database& db = store_.db();
    Statement counted = db.prepare(
        hasParties_
            ? "SELECT count(*) FROM (SELECT rowid FROM message_search WHERE message_search "
              "MATCH ?1 UNION SELECT message_id FROM addresses WHERE number IN "
              "(SELECT value FROM json_each(?2)))"
            : "SELECT count(*) FROM message_search WHERE message_search MATCH ?1");
    counted.bind(1, query_.textIndexQuery);
    if (hasParties_)
        counted.bind(2, partyNumbers_);
    count_ = counted.step() ? int(counted.integer(0)) : 0;
    return *count_;
}

std::vector<std::pair<std::int64_t, std::int64_t>> StoreSearch::lookUpAll() {
    Statement rows = store_.db().prepare(
        "SELECT date, id FROM messages WHERE id IN (SELECT rowid FROM message_search WHERE "
        "message_search MATCH ?1 UNION SELECT message_id FROM addresses WHERE number IN "
        "(SELECT value FROM json_each(?2)))");
    rows.bind(1, query_.textIndexQuery)
        .bind(2, partyNumbers_);
    std::vector<std::pair<std::int64_t, std::int64_t>> found;
    while (rows.step())
        found.emplace_back(rows.integer(0), rows.integer(1));
    std::sort(found.begin(), found.end(), std::greater<>());
    return found;
}

std::vector<std::int64_t> StoreSearch::walkNewestFirst(int limit) {
    Statement& rows = store_.db().cached(
        "SELECT date, id FROM messages INDEXED BY messages_by_date WHERE (date, id) < (?1, ?2) "
        "AND (EXISTS (SELECT 1 FROM message_search WHERE message_search MATCH ?3 AND rowid = "
        "messages.id) OR EXISTS (SELECT 1 FROM addresses WHERE message_id = messages.id AND "
        "number IN (SELECT value FROM json_each(?4)))) ORDER BY date DESC, id DESC LIMIT ?5");
    rows.bind(1, lastDate_)
        .bind(2, lastId_)
        .bind(3, query_.textIndexQuery)
        .bind(4, partyNumbers_)
        .bind(5, std::int64_t(limit));
    std::vector<std::int64_t> ids;
    while (rows.step()) {
        lastDate_ = rows.integer(0);
        lastId_ = rows.integer(1);
        ids.push_back(lastId_);
    }
    walkedToEnd_ = int(ids.size()) < limit;
    return ids;
}

GSM::SearchHit StoreSearch::hit(std::int64_t id) {
    Statement& marked = store_.db().cached(
        "SELECT highlight(message_search, 0, char(1), char(2)) FROM message_search "
        "WHERE message_search MATCH ?1 AND rowid = ?2");
    marked.bind(1, query_.textIndexQuery).bind(2, id);
    GSM::SearchHit hit;
    if (marked.step()) {
        hit = excerptOf(marked.text(0));
    } else {
        Statement& plain = store_.db().cached("SELECT body FROM message_search_source WHERE id = ?");
        plain.bind(1, id);
        hit = excerptOf(plain.step() ? plain.text(0) : std::u16string());
        hit.matchStart = -1;
        hit.matchLength = 0;
    }
    hit.messageId = long(id);
    Statement& folder = store_.db().cached("SELECT folder FROM messages WHERE id = ?");
    folder.bind(1, id);
    hit.folder = folder.step() ? int(folder.integer(0)) : 0;
    return hit;
}

std::vector<GSM::SearchHit> StoreSearch::next(int limit) {
    std::vector<GSM::SearchHit> hits;
    if (limit <= 0)
        return hits;
    if (!matches_ && count() <= kLookedUpAtOnce)
        matches_ = lookUpAll();
    std::vector<std::int64_t> ids;
    if (matches_) {
        for (; given_ < matches_->size() && int(ids.size()) < limit; ++given_)
            ids.push_back((*matches_)[given_].second);
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
