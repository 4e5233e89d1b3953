#pragma once

// Finding messages by what they say and whom they are with: the suite's telephony library on
// Linux adds this to the calls the module makes.

#include "framework/win32types.h"

#include <memory>
#include <string>
#include <vector>

namespace GSM {

struct SearchHit {
    long messageId = 0;
    int folder = 0; // 0 Inbox, 1 Outbox
    // The text around the first match, on one line; the match from matchStart for
    // matchLength characters (matchStart -1: the message matched by its sender or recipient).
    std::u16string excerpt;
    int matchStart = -1;
    int matchLength = 0;
};

class MessageSearch {
public:
    MessageSearch() = default;
    MessageSearch(const MessageSearch&) = delete;
    MessageSearch& operator=(const MessageSearch&) = delete;
    virtual ~MessageSearch() = default;

    // How many messages of the Inbox and the Outbox match.
    virtual int count() = 0;
    // The next matches, newest first, at most `limit`; none once all were given.
    virtual std::vector<SearchHit> next(int limit) = 0;
};

// Every word must match, case and diacritics aside; the last word matches as the beginning of
// a word (the person is still typing it); "words in quotes" match as a phrase. A message
// matches by its text, or by the name (in the phone book) or number of its sender or
// recipients. Null when the query holds nothing to look for, or the store is not available.
std::unique_ptr<MessageSearch> searchMessages(const WCHAR* query);

} // namespace GSM
