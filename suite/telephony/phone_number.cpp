#include "suite/telephony/phone_number.h"

namespace tessaly::telephony {

namespace {

constexpr std::size_t kMinimumNationalDigits = 6;
constexpr std::size_t kMaximumCountryCodeDigits = 3;

bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

bool matchesAcrossForms(const std::u16string& international, const std::u16string& national) {
    if (national.size() < 2 || national[0] != u'0' || national[1] == u'0')
        return false;
    const std::u16string_view significant = std::u16string_view(national).substr(1);
    if (significant.size() < kMinimumNationalDigits)
        return false;
    if (international.size() <= significant.size() + 1)
        return false;
    const std::size_t countryDigits = international.size() - 1 - significant.size();
    if (countryDigits > kMaximumCountryCodeDigits)
        return false;
    return std::u16string_view(international).substr(1 + countryDigits) == significant;
}

} // namespace

std::u16string normalizeNumber(std::u16string_view number) {
    std::u16string result;
    result.reserve(number.size());
    bool international = false;
    for (std::size_t i = 0; i < number.size(); ++i) {
        const char16_t c = number[i];
        if (c == u'+' && result.empty()) {
            international = true;
            result.push_back(c);
        } else if (international && number.substr(i, 3) == u"(0)") {
            i += 2;
        } else if (isDigit(c) || c == u'*' || c == u'#') {
            result.push_back(c);
        }
    }
    if (result.size() > 2 && result[0] == u'0' && result[1] == u'0')
        result.replace(0, 2, u"+");
    return result;
}

bool numbersMatch(std::u16string_view a, std::u16string_view b) {
    const std::u16string left = normalizeNumber(a);
    const std::u16string right = normalizeNumber(b);
    if (left.empty() || right.empty() || left == u"+" || right == u"+")
        return false;
    if (left == right)
        return true;
    if (left[0] == u'+' && right[0] != u'+')
        return matchesAcrossForms(left, right);
    if (right[0] == u'+' && left[0] != u'+')
        return matchesAcrossForms(right, left);
    return false;
}

} // namespace tessaly::telephony
