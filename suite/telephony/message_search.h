#pragma once

// GSM::searchMessages over the store: the text index (FTS5) for what messages say, the phone
// book and the numbers for whom they are with; pages newest first.

#include "gsm/search.h"
#include "suite/telephony/search_query.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace tessaly::telephony {

class Store;

class StoreSearch final : public GSM::MessageSearch {
public:
    StoreSearch(Store& store, SearchQuery query);

    int count() override;
    std::vector<GSM::SearchHit> next(int limit) override;

    // Beyond this many matches the pages are read by walking the messages newest first and
    // asking the index about each; up to it, every match is looked up at once and sorted.
    static constexpr int kLookedUpAtOnce = 4000;

private:
    void findParties();
    std::vector<std::pair<std::int64_t, std::int64_t>> lookUpAll();
    std::vector<std::int64_t> walkNewestFirst(int limit);
    GSM::SearchHit hit(std::int64_t id);

    Store& store_;
    SearchQuery query_;
    // A JSON array of the numbers whose messages match by their party.
    std::u16string partyNumbers_ = u"[]";
    bool hasParties_ = false;
    std::optional<int> count_;
    // Looked up at once: (date, id), newest first, and how many were given.
    std::optional<std::vector<std::pair<std::int64_t, std::int64_t>>> matches_;
    size_t given_ = 0;
    // Walking: the (date, id) of the last message given.
    std::int64_t lastDate_ = INT64_MAX;
    std::int64_t lastId_ = INT64_MAX;
    bool walkedToEnd_ = false;
};

} // namespace tessaly::telephony
