#pragma once

// How long a text is as SMS: the GSM 7-bit default alphabet with its extension table (two
// septets per extension character), or UCS-2 as soon as one character lies outside it.
// 160 septets / 70 units fit one message; concatenated parts carry 153 / 67, and an escape pair
// or a surrogate pair never straddles two parts (that part then holds one unit less).

namespace tessaly::telephony {

struct LengthInfo {
    int characters = 0; // septets for 7-bit text, UTF-16 units for UCS-2
    int messages = 0;
    bool ucs2 = false;
};

constexpr int kSingleSeptets = 160;
constexpr int kPartSeptets = 153;
constexpr int kSingleUnits = 70;
constexpr int kPartUnits = 67;

// Septets a character takes in the default alphabet: 1, 2 (extension table) or 0 (absent).
int gsmSeptets(char16_t character);

// `text` is NUL-terminated; null counts as empty. No allocation.
LengthInfo measureText(const char16_t* text);

} // namespace tessaly::telephony
