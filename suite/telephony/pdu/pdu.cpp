#include "suite/telephony/pdu/pdu.h"

#include <algorithm>

namespace tessaly::pdu {

namespace {

constexpr std::size_t kMaxUserDataOctets = 140;
constexpr std::size_t kMaxSeptets = 160;
constexpr std::size_t kMaxAddressSemiOctets = 20;
constexpr std::uint8_t kConcat8 = 0x00;
constexpr std::uint8_t kConcat16 = 0x08;

constexpr std::u16string_view kDigits = u"0123456789*#abc";

// Reads forward through the input; every read checks the length first.
class Reader {
public:
    explicit Reader(std::span<const std::uint8_t> bytes)
        : bytes_(bytes) {}

    bool octet(std::uint8_t& value) {
        if (position_ >= bytes_.size())
            return false;
        value = bytes_[position_++];
        return true;
    }
    bool take(std::size_t count, std::span<const std::uint8_t>& out) {
        if (count > bytes_.size() - position_)
            return false;
        out = bytes_.subspan(position_, count);
        position_ += count;
        return true;
    }
    std::span<const std::uint8_t> rest() const { return bytes_.subspan(position_); }
    void skip(std::size_t count) { position_ = std::min(bytes_.size(), position_ + count); }
    std::size_t position() const { return position_; }

private:
    std::span<const std::uint8_t> bytes_;
    std::size_t position_ = 0;
};

// ---- addresses

std::uint8_t typeOfAddress(const Address& address) {
    return std::uint8_t(0x80 | (std::uint8_t(address.type) & 7) << 4 |
                        (address.numberingPlan & 0x0f));
}

Result<Bytes> semiOctets(std::u16string_view digits) {
    Bytes out;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        std::uint8_t octet = 0;
        for (std::size_t half = 0; half < 2; ++half) {
            std::uint8_t nibble = 0x0f;
            if (i + half < digits.size()) {
                const std::size_t value = kDigits.find(digits[i + half]);
                if (value == std::u16string_view::npos)
                    return Result<Bytes>::failure("an address holds a character that is no digit");
                nibble = std::uint8_t(value);
            }
            octet |= std::uint8_t(nibble << (4 * half));
        }
        out.push_back(octet);
    }
    return {out, {}};
}

std::u16string digitsOf(std::span<const std::uint8_t> octets, std::size_t count) {
    std::u16string digits;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t nibble = (octets[i / 2] >> (4 * (i % 2))) & 0x0f;
        if (nibble == 0x0f)
            break;
        digits.push_back(kDigits[nibble]);
    }
    return digits;
}

// The address value and its length in semi-octets (digits, or the packed text's bits / 4).
Result<std::pair<Bytes, std::size_t>> addressValue(const Address& address) {
    using R = Result<std::pair<Bytes, std::size_t>>;
    if (address.type == NumberType::Alphanumeric) {
        const auto septets = toSeptets(address.value);
        if (!septets)
            return R::failure("an alphanumeric address holds a character outside the alphabet");
        Bytes packed;
        packSeptets(*septets, 0, packed);
        const std::size_t semi = (septets->size() * 7 + 3) / 4;
        if (semi > kMaxAddressSemiOctets)
            return R::failure("an alphanumeric address is longer than 11 characters");
        return {std::pair{packed, semi}, {}};
    }
    if (address.value.size() > kMaxAddressSemiOctets)
        return R::failure("an address is longer than 20 digits");
    auto packed = semiOctets(address.value);
    if (!packed)
        return R::failure(packed.error);
    return {std::pair{*packed, address.value.size()}, {}};
}

Result<Bytes> appendAddress(Bytes& out, const Address& address) {
    const auto value = addressValue(address);
    if (!value)
        return Result<Bytes>::failure(value.error);
    out.push_back(std::uint8_t(value->second));
    out.push_back(typeOfAddress(address));
    out.insert(out.end(), value->first.begin(), value->first.end());
    return {Bytes{}, {}};
}

Address addressFrom(std::uint8_t type, std::span<const std::uint8_t> value,
                    std::size_t semiOctetCount) {
    Address address;
    address.type = NumberType((type >> 4) & 7);
    address.numberingPlan = type & 0x0f;
    if (address.type == NumberType::Alphanumeric) {
        address.value = fromSeptets(unpackSeptets(value, semiOctetCount * 4 / 7));
    } else {
        address.value = digitsOf(value, std::min(semiOctetCount, value.size() * 2));
    }
    return address;
}

bool readAddress(Reader& reader, Address& address) {
    std::uint8_t length = 0;
    std::uint8_t type = 0;
    std::span<const std::uint8_t> value;
    if (!reader.octet(length) || length > kMaxAddressSemiOctets || !reader.octet(type) ||
        !reader.take((length + 1) / 2, value))
        return false;
    address = addressFrom(type, value, length);
    return true;
}

// ---- time

std::uint8_t swappedBcd(int value) {
    value = std::clamp(value, 0, 99);
    return std::uint8_t((value % 10) << 4 | value / 10);
}

void appendTimestamp(Bytes& out, const Timestamp& time) {
    out.push_back(swappedBcd(time.year % 100));
    for (int field : {time.month, time.day, time.hour, time.minute, time.second})
        out.push_back(swappedBcd(field));
    const int zone = std::clamp(time.zoneQuarterHours, -79, 79);
    std::uint8_t octet = swappedBcd(zone < 0 ? -zone : zone);
    if (zone < 0)
        octet |= 0x08;
    out.push_back(octet);
}

bool readTimestamp(Reader& reader, Timestamp& time, std::string& error) {
    std::span<const std::uint8_t> octets;
    if (!reader.take(7, octets)) {
        error = "the PDU ends inside a timestamp";
        return false;
    }
    int fields[7] = {};
    for (std::size_t i = 0; i < 6; ++i) {
        const int high = octets[i] & 0x0f;
        const int low = octets[i] >> 4;
        if (high > 9 || low > 9) {
            error = "a timestamp holds a semi-octet that is no decimal digit";
            return false;
        }
        fields[i] = high * 10 + low;
    }
    // TS 23.040 9.2.3.11: real service centres put non-decimal digits in the time zone (…A0);
    // its digits are read by value, as oFono does, so a report is never lost over its zone.
    fields[6] = std::min((octets[6] & 0x07) * 10 + (octets[6] >> 4), 79);
    time = {2000 + fields[0],
            fields[1],
            fields[2],
            fields[3],
            fields[4],
            fields[5],
            (octets[6] & 0x08) ? -fields[6] : fields[6]};
    return true;
}

// ---- user data

Bytes userDataHeader(const UserData& userData) {
    Bytes elements;
    if (const auto& concat = userData.concatenation) {
        if (concat->sixteenBitReference) {
            elements.insert(elements.end(), {kConcat16, 4, std::uint8_t(concat->reference >> 8),
                                             std::uint8_t(concat->reference)});
        } else {
            elements.insert(elements.end(), {kConcat8, 3, std::uint8_t(concat->reference)});
        }
        elements.push_back(std::uint8_t(concat->total));
        elements.push_back(std::uint8_t(concat->sequence));
    }
    for (const InformationElement& element : userData.otherElements) {
        elements.push_back(element.id);
        elements.push_back(std::uint8_t(element.data.size()));
        elements.insert(elements.end(), element.data.begin(), element.data.end());
    }
    if (elements.empty())
        return {};
    Bytes header{std::uint8_t(elements.size())};
    header.insert(header.end(), elements.begin(), elements.end());
    return header;
}

std::size_t headerSeptets(std::size_t headerOctets) {
    return (headerOctets * 8 + 6) / 7;
}

// Appends UDL and UD.
Result<Bytes> appendUserData(Bytes& out, const UserData& userData) {
    using R = Result<Bytes>;
    for (const InformationElement& element : userData.otherElements) {
        if (element.data.size() > 255)
            return R::failure("a header element is longer than 255 octets");
    }
    const Bytes header = userDataHeader(userData);
    if (header.size() > kMaxUserDataOctets)
        return R::failure("the user data header is longer than 140 octets");
    Bytes body;
    std::size_t length = 0;
    switch (userData.alphabet) {
    case Alphabet::Gsm7: {
        const auto septets = toSeptets(userData.text);
        if (!septets)
            return R::failure("the text holds a character outside the GSM 7-bit alphabet");
        const std::size_t skip = headerSeptets(header.size());
        length = skip + septets->size();
        if (length > kMaxSeptets)
            return R::failure("the text does not fit one message");
        body = header;
        packSeptets(*septets, int(skip * 7 - header.size() * 8), body);
        break;
    }
    case Alphabet::Ucs2:
        body = header;
        for (char16_t unit : userData.text) {
            body.push_back(std::uint8_t(unit >> 8));
            body.push_back(std::uint8_t(unit));
        }
        length = body.size();
        break;
    case Alphabet::Data8:
        body = header;
        body.insert(body.end(), userData.data.begin(), userData.data.end());
        length = body.size();
        break;
    }
    if (body.size() > kMaxUserDataOctets)
        return R::failure("the text does not fit one message");
    out.push_back(std::uint8_t(length));
    out.insert(out.end(), body.begin(), body.end());
    return {Bytes{}, {}};
}

std::optional<Concatenation> concatenationOf(const InformationElement& element) {
    const Bytes& d = element.data;
    std::optional<Concatenation> concat;
    if (element.id == kConcat8 && d.size() == 3)
        concat = Concatenation{d[0], d[1], d[2], false};
    else if (element.id == kConcat16 && d.size() == 4)
        concat = Concatenation{d[0] << 8 | d[1], d[2], d[3], true};
    // TS 23.040 9.2.3.24.1: a sequence number of 0 or above the total voids the element.
    if (concat && (concat->total == 0 || concat->sequence == 0 || concat->sequence > concat->total))
        return std::nullopt;
    return concat;
}

// An element running past the header ends the header there (the header length still bounds the
// text). Exactly one valid concatenation element is followed; with two or more the message is
// read as a single one and every element kept as it came.
void readHeader(std::span<const std::uint8_t> elements, UserData& userData) {
    std::size_t i = 0;
    int validConcatenations = 0;
    while (i < elements.size()) {
        if (elements.size() - i < 2 || elements[i + 1] > elements.size() - i - 2)
            break;
        InformationElement element{
            elements[i], Bytes(elements.begin() + std::ptrdiff_t(i + 2),
                               elements.begin() + std::ptrdiff_t(i + 2 + elements[i + 1]))};
        i += 2 + elements[i + 1];
        validConcatenations += concatenationOf(element).has_value();
        userData.otherElements.push_back(std::move(element));
    }
    if (validConcatenations != 1)
        return;
    const auto concat = std::find_if(userData.otherElements.begin(), userData.otherElements.end(),
                                     [](const auto& e) { return concatenationOf(e).has_value(); });
    userData.concatenation = concatenationOf(*concat);
    userData.otherElements.erase(concat);
}

bool readUserData(Reader& reader, bool headerPresent, std::uint8_t coding, UserData& userData,
                  std::string& error) {
    const auto alphabet = alphabetOf(coding);
    if (!alphabet) {
        error = "compressed text is not supported";
        return false;
    }
    userData.alphabet = *alphabet;
    std::uint8_t length = 0;
    if (!reader.octet(length)) {
        error = "the PDU ends before the user data length";
        return false;
    }
    const bool septets = *alphabet == Alphabet::Gsm7;
    if (length > (septets ? kMaxSeptets : kMaxUserDataOctets)) {
        error = "the user data length exceeds one message";
        return false;
    }
    const std::size_t octetCount = septets ? (length * 7 + 7) / 8 : length;
    std::span<const std::uint8_t> body;
    if (!reader.take(octetCount, body)) {
        error = "the user data is shorter than its length says";
        return false;
    }
    std::size_t headerOctets = 0;
    if (headerPresent && !body.empty()) {
        headerOctets = std::size_t(body[0]) + 1;
        const std::size_t headerUnits = septets ? headerSeptets(headerOctets) : headerOctets;
        if (headerOctets > body.size() || headerUnits > length) {
            error = "the user data header is longer than the user data";
            return false;
        }
        readHeader(body.subspan(1, headerOctets - 1), userData);
    }
    switch (*alphabet) {
    case Alphabet::Gsm7: {
        const std::size_t skip = headerOctets ? headerSeptets(headerOctets) : 0;
        userData.text = fromSeptets(unpackSeptets(body, length - skip, skip * 7));
        break;
    }
    case Alphabet::Ucs2:
        for (std::size_t i = headerOctets; i + 1 < body.size(); i += 2)
            userData.text.push_back(char16_t(body[i] << 8 | body[i + 1]));
        break;
    case Alphabet::Data8:
        userData.data.assign(body.begin() + std::ptrdiff_t(headerOctets), body.end());
        break;
    }
    return true;
}

std::uint8_t codingFor(std::uint8_t requested, Alphabet alphabet) {
    return alphabetOf(requested) == alphabet ? requested : dataCodingScheme(alphabet);
}

bool hasHeader(const UserData& userData) {
    return userData.concatenation || !userData.otherElements.empty();
}

// ---- the three message types

Result<Bytes> encodeSubmit(const Submit& submit) {
    Bytes out;
    const auto format = std::uint8_t(submit.validity.format);
    out.push_back(std::uint8_t(0x01 | submit.rejectDuplicates << 2 | format << 3 |
                               submit.statusReportRequest << 5 | hasHeader(submit.userData) << 6 |
                               submit.replyPath << 7));
    out.push_back(submit.messageReference);
    if (auto added = appendAddress(out, submit.destination); !added)
        return added;
    out.push_back(submit.protocolId);
    out.push_back(codingFor(submit.dataCoding, submit.userData.alphabet));
    switch (submit.validity.format) {
    case Validity::Format::None:
        break;
    case Validity::Format::Relative:
        out.push_back(submit.validity.relative);
        break;
    case Validity::Format::Absolute:
        appendTimestamp(out, submit.validity.absolute);
        break;
    case Validity::Format::Enhanced:
        out.insert(out.end(), submit.validity.enhanced.begin(), submit.validity.enhanced.end());
        break;
    }
    if (auto added = appendUserData(out, submit.userData); !added)
        return added;
    return {out, {}};
}

Result<Bytes> encodeDeliver(const Deliver& deliver) {
    Bytes out;
    out.push_back(std::uint8_t(!deliver.moreMessagesToSend << 2 |
                               deliver.statusReportIndication << 5 |
                               hasHeader(deliver.userData) << 6 | deliver.replyPath << 7));
    if (auto added = appendAddress(out, deliver.originator); !added)
        return added;
    out.push_back(deliver.protocolId);
    out.push_back(codingFor(deliver.dataCoding, deliver.userData.alphabet));
    appendTimestamp(out, deliver.serviceCentreTime);
    if (auto added = appendUserData(out, deliver.userData); !added)
        return added;
    return {out, {}};
}

Result<Bytes> encodeStatusReport(const StatusReport& report) {
    Bytes out;
    out.push_back(
        std::uint8_t(0x02 | !report.moreMessagesToSend << 2 | report.statusReportQualifier << 5));
    out.push_back(report.messageReference);
    if (auto added = appendAddress(out, report.recipient); !added)
        return added;
    appendTimestamp(out, report.serviceCentreTime);
    appendTimestamp(out, report.dischargeTime);
    out.push_back(report.status);
    // TS 23.040 9.2.2.3 / 9.2.3.27: the parameter indicator names the optional fields present.
    const std::uint8_t indicator =
        std::uint8_t(report.protocolId.has_value() | report.dataCoding.has_value() << 1 |
                     report.userData.has_value() << 2);
    if (!indicator)
        return {out, {}};
    out.push_back(indicator);
    if (report.protocolId)
        out.push_back(*report.protocolId);
    if (report.dataCoding)
        out.push_back(*report.dataCoding);
    if (report.userData) {
        out[0] |= std::uint8_t(hasHeader(*report.userData) << 6);
        if (auto added = appendUserData(out, *report.userData); !added)
            return added;
    }
    return {out, {}};
}

Result<Tpdu> failed(std::string why) {
    return Result<Tpdu>::failure(std::move(why));
}

Result<Tpdu> decodeSubmit(Reader& reader, std::uint8_t first) {
    Submit submit;
    submit.rejectDuplicates = first & 0x04;
    submit.statusReportRequest = first & 0x20;
    submit.replyPath = first & 0x80;
    if (!reader.octet(submit.messageReference) || !readAddress(reader, submit.destination) ||
        !reader.octet(submit.protocolId) || !reader.octet(submit.dataCoding))
        return failed("the PDU ends inside its header");
    std::string error;
    submit.validity.format = Validity::Format((first >> 3) & 3);
    switch (submit.validity.format) {
    case Validity::Format::None:
        break;
    case Validity::Format::Relative:
        if (!reader.octet(submit.validity.relative))
            return failed("the PDU ends inside its validity period");
        break;
    case Validity::Format::Absolute:
        if (!readTimestamp(reader, submit.validity.absolute, error))
            return failed(error);
        break;
    case Validity::Format::Enhanced: {
        std::span<const std::uint8_t> octets;
        if (!reader.take(7, octets))
            return failed("the PDU ends inside its validity period");
        std::copy(octets.begin(), octets.end(), submit.validity.enhanced.begin());
        break;
    }
    }
    if (!readUserData(reader, first & 0x40, submit.dataCoding, submit.userData, error))
        return failed(error);
    return {Tpdu{std::move(submit)}, {}};
}

Result<Tpdu> decodeDeliver(Reader& reader, std::uint8_t first) {
    Deliver deliver;
    deliver.moreMessagesToSend = !(first & 0x04);
    deliver.statusReportIndication = first & 0x20;
    deliver.replyPath = first & 0x80;
    if (!readAddress(reader, deliver.originator) || !reader.octet(deliver.protocolId) ||
        !reader.octet(deliver.dataCoding))
        return failed("the PDU ends inside its header");
    std::string error;
    if (!readTimestamp(reader, deliver.serviceCentreTime, error) ||
        !readUserData(reader, first & 0x40, deliver.dataCoding, deliver.userData, error))
        return failed(error);
    return {Tpdu{std::move(deliver)}, {}};
}

Result<Tpdu> decodeStatusReport(Reader& reader, std::uint8_t first) {
    StatusReport report;
    report.moreMessagesToSend = !(first & 0x04);
    report.statusReportQualifier = first & 0x20;
    if (!reader.octet(report.messageReference) || !readAddress(reader, report.recipient))
        return failed("the PDU ends inside its header");
    std::string error;
    if (!readTimestamp(reader, report.serviceCentreTime, error) ||
        !readTimestamp(reader, report.dischargeTime, error))
        return failed(error);
    if (!reader.octet(report.status))
        return failed("the PDU ends before the status");
    // TS 23.040 9.2.2.3: optional fields follow a parameter indicator; extension octets (bit 7)
    // name nothing this reader uses. An unreadable optional part is dropped, never the report.
    std::uint8_t indicator = 0;
    if (!reader.octet(indicator))
        return {Tpdu{std::move(report)}, {}};
    for (std::uint8_t more = indicator; more & 0x80;)
        if (!reader.octet(more))
            return {Tpdu{std::move(report)}, {}};
    std::uint8_t octet = 0;
    if ((indicator & 0x01) && reader.octet(octet))
        report.protocolId = octet;
    if ((indicator & 0x02) && reader.octet(octet))
        report.dataCoding = octet;
    if (indicator & 0x04) {
        UserData userData;
        const std::uint8_t coding = report.dataCoding.value_or(0);
        if (alphabetOf(coding) && readUserData(reader, first & 0x40, coding, userData, error))
            report.userData = std::move(userData);
    }
    return {Tpdu{std::move(report)}, {}};
}

} // namespace

// ---- public

std::u16string Address::text() const {
    return type == NumberType::International ? u"+" + value : value;
}

Address Address::fromText(std::u16string_view text) {
    constexpr std::u16string_view kSeparators = u" -./()";
    std::u16string digits;
    bool international = false;
    bool number = !text.empty();
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (c == u'+' && i == 0)
            international = true;
        else if (kDigits.find(c) < 12)
            digits.push_back(c);
        else if (kSeparators.find(c) == std::u16string_view::npos)
            number = false;
    }
    if (number && !digits.empty())
        return {international ? NumberType::International : NumberType::Unknown, 1, digits};
    return {NumberType::Alphanumeric, 0, std::u16string(text)};
}

int relativeValidityMinutes(std::uint8_t code) {
    if (code <= 143)
        return (code + 1) * 5;
    if (code <= 167)
        return 12 * 60 + (code - 143) * 30;
    if (code <= 196)
        return (code - 166) * 24 * 60;
    return (code - 192) * 7 * 24 * 60;
}

std::uint8_t relativeValidityCode(int minutes) {
    for (int code = 0; code < 255; ++code) {
        if (relativeValidityMinutes(std::uint8_t(code)) >= minutes)
            return std::uint8_t(code);
    }
    return 255;
}

std::uint8_t dataCodingScheme(Alphabet alphabet) {
    return std::uint8_t(std::uint8_t(alphabet) << 2);
}

std::optional<Alphabet> alphabetOf(std::uint8_t coding) {
    switch (coding >> 4) {
    case 0x0:
    case 0x1:
    case 0x2:
    case 0x3:
    case 0x4:
    case 0x5:
    case 0x6:
    case 0x7: // general and automatic-deletion groups
        if (coding & 0x20)
            return std::nullopt;
        return ((coding >> 2) & 3) == 3 ? Alphabet::Gsm7 : Alphabet((coding >> 2) & 3);
    case 0xe: // message waiting, UCS-2
        return Alphabet::Ucs2;
    case 0xf:
        return (coding & 0x04) ? Alphabet::Data8 : Alphabet::Gsm7;
    default: // message waiting in 7-bit, and the reserved groups
        return Alphabet::Gsm7;
    }
}

Result<Bytes> encode(const Tpdu& tpdu) {
    if (const auto* submit = std::get_if<Submit>(&tpdu))
        return encodeSubmit(*submit);
    if (const auto* deliver = std::get_if<Deliver>(&tpdu))
        return encodeDeliver(*deliver);
    return encodeStatusReport(std::get<StatusReport>(tpdu));
}

Result<Tpdu> decode(std::span<const std::uint8_t> bytes) {
    Reader reader(bytes);
    std::uint8_t first = 0;
    if (!reader.octet(first))
        return failed("the PDU is empty");
    switch (first & 0x03) {
    case 0:
        return decodeDeliver(reader, first);
    case 1:
        return decodeSubmit(reader, first);
    case 2:
        return decodeStatusReport(reader, first);
    default:
        return failed("the PDU has the reserved message type 3");
    }
}

Result<Bytes> encodeWithServiceCentre(const SmsPdu& pdu) {
    Bytes out;
    if (!pdu.serviceCentre || pdu.serviceCentre->value.empty()) {
        out.push_back(0);
    } else {
        if (pdu.serviceCentre->type == NumberType::Alphanumeric)
            return Result<Bytes>::failure("a service centre address is a number");
        const auto value = addressValue(*pdu.serviceCentre);
        if (!value)
            return Result<Bytes>::failure(value.error);
        out.push_back(std::uint8_t(1 + value->first.size()));
        out.push_back(typeOfAddress(*pdu.serviceCentre));
        out.insert(out.end(), value->first.begin(), value->first.end());
    }
    auto tpdu = encode(pdu.tpdu);
    if (!tpdu)
        return tpdu;
    out.insert(out.end(), tpdu->begin(), tpdu->end());
    return {out, {}};
}

std::optional<std::size_t> serviceCentreLength(std::span<const std::uint8_t> bytes) {
    if (bytes.empty() || std::size_t(bytes[0]) + 1 > bytes.size())
        return std::nullopt;
    return std::size_t(bytes[0]) + 1;
}

Result<SmsPdu> decodeWithServiceCentre(std::span<const std::uint8_t> bytes) {
    const auto skip = serviceCentreLength(bytes);
    if (!skip)
        return Result<SmsPdu>::failure("the PDU ends inside the service centre address");
    SmsPdu pdu;
    if (*skip > 1) {
        // Octets, not digits; the type octet is part of the length.
        pdu.serviceCentre = addressFrom(bytes[1], bytes.subspan(2, *skip - 2), (*skip - 2) * 2);
    }
    auto tpdu = decode(bytes.subspan(*skip));
    if (!tpdu)
        return Result<SmsPdu>::failure(tpdu.error);
    pdu.tpdu = std::move(*tpdu.value);
    return {std::move(pdu), {}};
}

Result<std::vector<UserData>> splitText(std::u16string_view text, int reference,
                                        bool sixteenBitReference) {
    using R = Result<std::vector<UserData>>;
    const bool gsm =
        std::all_of(text.begin(), text.end(), [](char16_t c) { return septetWidth(c) > 0; });
    const auto widthOf = [gsm, text](std::size_t i) -> std::size_t {
        if (gsm)
            return std::size_t(septetWidth(text[i]));
        const bool pair = text[i] >= 0xd800 && text[i] <= 0xdbff && i + 1 < text.size() &&
                          text[i + 1] >= 0xdc00 && text[i + 1] <= 0xdfff;
        return pair ? 2 : 1;
    };
    std::size_t total = 0;
    for (std::size_t i = 0; i < text.size(); i += gsm ? 1 : widthOf(i))
        total += widthOf(i);
    const Alphabet alphabet = gsm ? Alphabet::Gsm7 : Alphabet::Ucs2;
    if (total <= (gsm ? kMaxSeptets : kMaxUserDataOctets / 2))
        return {std::vector<UserData>{UserData{alphabet, std::u16string(text), {}, {}, {}}}, {}};

    const std::size_t headerOctets = sixteenBitReference ? 7 : 6;
    const std::size_t capacity =
        gsm ? kMaxSeptets - headerSeptets(headerOctets) : (kMaxUserDataOctets - headerOctets) / 2;
    std::vector<UserData> parts;
    std::size_t start = 0;
    std::size_t fill = 0;
    for (std::size_t i = 0; i < text.size();) {
        // A UCS-2 width counts units and advances as far; a GSM width counts septets of one unit.
        const std::size_t width = widthOf(i);
        const std::size_t units = gsm ? 1 : width;
        if (fill + width > capacity) {
            parts.push_back({alphabet, std::u16string(text.substr(start, i - start)), {}, {}, {}});
            start = i;
            fill = 0;
        }
        fill += width;
        i += units;
    }
    parts.push_back({alphabet, std::u16string(text.substr(start)), {}, {}, {}});
    if (parts.size() > 255)
        return R::failure("the text needs more than 255 messages");
    const int mask = sixteenBitReference ? 0xffff : 0xff;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        parts[i].concatenation =
            Concatenation{reference & mask, int(parts.size()), int(i + 1), sixteenBitReference};
    }
    return {std::move(parts), {}};
}

Result<std::vector<Submit>> makeSubmits(std::u16string_view text, const Address& destination,
                                        int concatenationReference, std::uint8_t firstReference,
                                        Validity validity) {
    auto parts = splitText(text, concatenationReference);
    if (!parts)
        return Result<std::vector<Submit>>::failure(parts.error);
    std::vector<Submit> submits;
    submits.reserve(parts->size());
    for (const UserData& part : *parts) {
        Submit submit;
        submit.messageReference = std::uint8_t(firstReference + submits.size());
        submit.destination = destination;
        submit.dataCoding = dataCodingScheme(part.alphabet);
        submit.validity = validity;
        submit.userData = part;
        submits.push_back(std::move(submit));
    }
    return {std::move(submits), {}};
}

std::string toHex(std::span<const std::uint8_t> bytes) {
    constexpr char kHex[] = "0123456789ABCDEF";
    std::string hex;
    hex.reserve(bytes.size() * 2);
    for (std::uint8_t byte : bytes) {
        hex.push_back(kHex[byte >> 4]);
        hex.push_back(kHex[byte & 0x0f]);
    }
    return hex;
}

std::optional<Bytes> fromHex(std::string_view hex) {
    if (hex.size() % 2 != 0)
        return std::nullopt;
    const auto nibble = [](char c) -> int {
        if (c >= '0' && c <= '9')
            return c - '0';
        if (c >= 'A' && c <= 'F')
            return c - 'A' + 10;
        if (c >= 'a' && c <= 'f')
            return c - 'a' + 10;
        return -1;
    };
    Bytes bytes;
    bytes.reserve(hex.size() / 2);
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        const int high = nibble(hex[i]);
        const int low = nibble(hex[i + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes.push_back(std::uint8_t(high << 4 | low));
    }
    return bytes;
}

} // namespace tessaly::pdu
