#pragma once

// The texts shown for cell-broadcast messages: one line of message text, the ticker's items
// and the message view's fields. Pure functions over the telephony library's data.

#include "framework/win32types.h"
#include "gsm/cellbroadcast.h"

#include <QString>

#include <memory>
#include <vector>

namespace tessaly::sms {

// A message from GSM::CbFolder::get, which the caller owns.
using CbMessagePtr = std::unique_ptr<GSM::CbMessage>;

// Every line feed and carriage return becomes a blank; leading and trailing blanks go. A null
// text gives an empty one.
QString cbOneLineText(const WCHAR* text);

// "50 (14:05) Halvern Centre": channel, receive time as the message lists show dates, and the
// text on one line. A message without text gives an empty item.
QString tickerItemText(const GSM::CbMessage& message);

struct TickerItem {
    QString text;
    // The channel of the latest message event is drawn in the emphasis font.
    bool emphasis = false;
};

// One item per channel that holds a message, lowest channel first.
std::vector<TickerItem> tickerItems(const GSM::CbFolder& folder, int emphasisChannel);

} // namespace tessaly::sms
