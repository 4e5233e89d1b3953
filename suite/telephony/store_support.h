#pragma once

// What every record of the store shares: the store they belong to, and two small helpers.

#include "gsm/result.h"

#include "framework/win32types.h"

#include <string>
#include <string_view>

namespace tessaly::telephony {

class Store;
class MessageRecord;

std::u16string toU16(const WCHAR* text);
GSM::Result failure(long code, std::u16string_view text);

} // namespace tessaly::telephony
