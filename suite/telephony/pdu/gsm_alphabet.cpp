#include "suite/telephony/pdu/gsm_alphabet.h"

#include <array>

namespace tessaly::pdu {

using alphabet::codeOf;
using alphabet::Extension;
using alphabet::kAbsent;
using alphabet::kDefault;
using alphabet::kExtended;
using alphabet::kExtension;

namespace {

char16_t extensionCharacter(std::uint8_t code) {
    for (const Extension& extension : kExtension) {
        if (extension.code == code)
            return extension.character;
    }
    return kDefault[code & 0x7f];
}

} // namespace

std::optional<std::vector<std::uint8_t>> toSeptets(std::u16string_view text) {
    std::vector<std::uint8_t> septets;
    septets.reserve(text.size());
    for (char16_t c : text) {
        const std::uint8_t code = codeOf(c);
        if (code == kAbsent)
            return std::nullopt;
        if (code & kExtended)
            septets.push_back(kEscape);
        septets.push_back(code & 0x7f);
    }
    return septets;
}

std::u16string fromSeptets(std::span<const std::uint8_t> septets) {
    std::u16string text;
    text.reserve(septets.size());
    for (std::size_t i = 0; i < septets.size(); ++i) {
        const std::uint8_t code = septets[i] & 0x7f;
        if (code != kEscape) {
            text.push_back(kDefault[code]);
        } else if (i + 1 < septets.size()) {
            text.push_back(extensionCharacter(septets[++i] & 0x7f));
        } else {
            text.push_back(u' ');
        }
    }
    return text;
}

void packSeptets(std::span<const std::uint8_t> septets, int fillBits,
                 std::vector<std::uint8_t>& out) {
    std::uint32_t buffer = 0;
    int bits = fillBits;
    for (std::uint8_t septet : septets) {
        buffer |= std::uint32_t(septet & 0x7f) << bits;
        bits += 7;
        while (bits >= 8) {
            out.push_back(std::uint8_t(buffer));
            buffer >>= 8;
            bits -= 8;
        }
    }
    if (bits > 0)
        out.push_back(std::uint8_t(buffer));
}

std::vector<std::uint8_t> unpackSeptets(std::span<const std::uint8_t> octets, std::size_t count,
                                        std::size_t bitOffset) {
    std::vector<std::uint8_t> septets(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t bit = bitOffset + 7 * i;
        const std::size_t index = bit / 8;
        std::uint32_t window = index < octets.size() ? octets[index] : 0;
        if (index + 1 < octets.size())
            window |= std::uint32_t(octets[index + 1]) << 8;
        septets[i] = std::uint8_t((window >> (bit % 8)) & 0x7f);
    }
    return septets;
}

} // namespace tessaly::pdu
