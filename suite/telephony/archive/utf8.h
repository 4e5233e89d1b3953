#pragma once

// UTF-8 in and out of archive files. Texts are any UTF-16, lone surrogates included; CSV keeps
// them as WTF-8 (a lone surrogate encoded like any other code point), which reads back exactly.

#include <QByteArray>
#include <QByteArrayView>

#include <string>

namespace tessaly::telephony::archive {

void appendUtf8(QByteArray& out, char32_t value);
// A surrogate pair as its character, a lone surrogate as itself.
void appendWtf8(QByteArray& out, std::u16string_view text);
// Malformed bytes each become U+FFFD.
std::u16string fromWtf8(QByteArrayView bytes);

} // namespace tessaly::telephony::archive
