#pragma once

// Cell broadcast: the subscription (channels and languages as ranges), the message store and
// the base of cell-broadcast event handlers.

#include "gsm/result.h"

#include <cstdint>
#include <string>

namespace Utilities {

// A half-open interval of channel or language numbers: first is included, last is not.
struct Range {
    std::int32_t first = 0;
    std::int32_t last = 0;
};

} // namespace Utilities

namespace GSM {

class CellBroadcast {
public:
    // Replaces the subscription. Ranges may overlap or repeat; they are stored merged.
    static Result setMessageTypes(int channelCount, const Utilities::Range* channels,
                                  int languageCount, const Utilities::Range* languages);
    // The answer arrives afterwards as EventHandler::eventSubscription.
    static Result getMessageTypes();

    // Receives cell-broadcast events exactly while it exists.
    class EventHandler {
    public:
        EventHandler();
        EventHandler(const EventHandler&) = delete;
        EventHandler& operator=(const EventHandler&) = delete;
        virtual ~EventHandler();

        // A message arrived on `channel`.
        virtual void eventMessage(int channel);
        virtual void eventSubscription(int channelCount, const Utilities::Range* channels,
                                       int languageCount, const Utilities::Range* languages);
        virtual void eventCbFailure(const Result& result);
    };
};

// One cell-broadcast message: a copy that the caller owns.
class CbMessage {
public:
    CbMessage(int channel, int language, std::u16string text, FILETIME time, int count);

    int channel() const { return channel_; }
    int language() const { return language_; }
    const WCHAR* messageText() const { return text_.c_str(); }
    FILETIME time() const { return time_; }
    // How many times this channel's message has been received.
    int count() const { return count_; }

private:
    int channel_;
    int language_;
    std::u16string text_;
    FILETIME time_;
    int count_;
};

// The phone's cell-broadcast store: the latest message of each channel. A plain local object
// that reads the library's store.
class CbFolder {
public:
    int size() const;
    int capacity() const;
    // The lowest and highest channel holding a message; 0 and -1 when there is none.
    int firstChannel() const;
    int lastChannel() const;
    // A new message the caller deletes, or null when the channel holds none.
    CbMessage* get(int channel) const;
};

} // namespace GSM
