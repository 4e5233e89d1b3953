#pragma once

// Phone numbers compared as phones compare them.
//
// Normalising keeps the digits, '*' and '#', and a '+' that stands before the first digit;
// every separator (blank, '-', '/', '.', parentheses) goes. An international prefix "00" becomes
// '+', and in an international number a trunk zero written "(0)" is dropped.
// Two numbers match when their normal forms are equal, or when one is international
// (+CC NSN) and the other national (0 NSN) with the same national significant number of at least
// six digits behind a country code of one to three digits. Empty numbers never match.

#include <string>
#include <string_view>

namespace tessaly::telephony {

std::u16string normalizeNumber(std::u16string_view number);
bool numbersMatch(std::u16string_view a, std::u16string_view b);

} // namespace tessaly::telephony
