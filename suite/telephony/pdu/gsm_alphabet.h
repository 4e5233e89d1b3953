#pragma once

// The GSM 7-bit default alphabet with its extension table, and septet packing.
// A character of the extension table is written as the escape septet 0x1B and its code.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly::pdu {

constexpr std::uint8_t kEscape = 0x1b;

// The septets of `text`, or nothing when a character lies outside both tables.
std::optional<std::vector<std::uint8_t>> toSeptets(std::u16string_view text);
// Septets one character takes: 1, 2 (extension table) or 0 (absent).
int septetWidth(char16_t character);
// The text of septets (values above 0x7f are masked). An escape to a code the extension table
// does not hold reads as the default table's character; a trailing escape reads as a space.
std::u16string fromSeptets(std::span<const std::uint8_t> septets);

// Packs septets into octets starting `fillBits` (0..6) bits into the first octet.
void packSeptets(std::span<const std::uint8_t> septets, int fillBits,
                 std::vector<std::uint8_t>& out);
// Unpacks `count` septets that start at bit `bitOffset` of `octets`; bits past the end read 0.
std::vector<std::uint8_t> unpackSeptets(std::span<const std::uint8_t> octets, std::size_t count,
                                        std::size_t bitOffset = 0);

} // namespace tessaly::pdu
