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

    // Up to this many matches, their dates are looked up at once and sorted; beyond it, the
    // messages are walked newest first through the date index, each kept when it matched.
    static constexpr int kLookedUpAtOnce = 4000;

private:
    void findParties();
    void findMatches();
    std::vector<std::int64_t> walkNewestFirst(int limit);
    GSM::SearchHit hit(std::int64_t id);

    Store& store_;
    SearchQuery query_;
    // A JSON array of the numbers whose messages match by their party.
    std::u16string partyNumbers_ = u"[]";
    bool hasParties_ = false;
    // The ids of every matching message, ascending.
    std::optional<std::vector<std::int64_t>> matches_;
    // Looked up at once: (date, id) newest first, and how many were given.
    std::optional<std::vector<std::pair<std::int64_t, std::int64_t>>> byDate_;
    size_t given_ = 0;
    // Walking: the (date, id) of the last message looked at.
    std::int64_t lastDate_ = INT64_MAX;
    std::int64_t lastId_ = INT64_MAX;
    bool walkedToEnd_ = false;
};

} // namespace tessaly::telephony
