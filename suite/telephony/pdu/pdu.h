#pragma once

// SMS transfer-layer PDUs as a modem exchanges them in PDU mode: SMS-SUBMIT (phone to
// network), SMS-DELIVER and SMS-STATUS-REPORT (network to phone). Pure: no I/O, no Qt.
//
// Decoding takes any bytes and either yields a message or says why not; it never reads outside
// its input. Encoding refuses what does not fit one PDU (user data over 140 octets, an address
// over 20 digits, a character outside the chosen alphabet). The message type is read from the
// first octet alone: 0 DELIVER, 1 SUBMIT, 2 STATUS-REPORT (the directions a phone sees).

#include "suite/telephony/pdu/gsm_alphabet.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tessaly::pdu {

using Bytes = std::vector<std::uint8_t>;

// A value or the reason there is none.
template <class T> struct Result {
    std::optional<T> value;
    std::string error;

    static Result failure(std::string why) { return {std::nullopt, std::move(why)}; }
    bool ok() const { return value.has_value(); }
    explicit operator bool() const { return ok(); }
    const T& operator*() const { return *value; }
    const T* operator->() const { return &*value; }
};

// ---- addresses

enum class NumberType : std::uint8_t {
    Unknown = 0,
    International = 1,
    National = 2,
    NetworkSpecific = 3,
    Subscriber = 4,
    Alphanumeric = 5,
    Abbreviated = 6,
};

struct Address {
    NumberType type = NumberType::Unknown;
    std::uint8_t numberingPlan = 1; // 1: ISDN / telephone
    // Digits and * # a b c (without '+'), or the text of an alphanumeric address.
    std::u16string value;

    // "+" and digits for an international number, the value otherwise.
    std::u16string text() const;
    // "+49 171 …" is international, other digits unknown (separators dropped); anything else
    // that is not a number becomes an alphanumeric address.
    static Address fromText(std::u16string_view text);
    bool operator==(const Address&) const = default;
};

// ---- time

struct Timestamp {
    int year = 2000; // 2000..2099
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int zoneQuarterHours = 0; // offset from UTC in quarters of an hour, -79..79
    bool operator==(const Timestamp&) const = default;
};

// How long the network keeps trying to deliver.
struct Validity {
    enum class Format : std::uint8_t { None = 0, Enhanced = 1, Relative = 2, Absolute = 3 };
    Format format = Format::None;
    std::uint8_t relative = 0; // the relative code (0..255)
    Timestamp absolute;
    std::array<std::uint8_t, 7> enhanced{};
    bool operator==(const Validity&) const = default;

    static Validity relativeCode(std::uint8_t code) { return {Format::Relative, code, {}, {}}; }
};
// Minutes a relative validity code stands for (5 minutes to 63 weeks).
int relativeValidityMinutes(std::uint8_t code);
// The shortest relative code that lasts at least `minutes` (saturating at 63 weeks).
std::uint8_t relativeValidityCode(int minutes);

// ---- user data

enum class Alphabet : std::uint8_t { Gsm7 = 0, Data8 = 1, Ucs2 = 2 };

struct Concatenation {
    int reference = 0; // 0..255, or 0..65535 with a 16-bit reference
    int total = 1;
    int sequence = 1; // from 1
    bool sixteenBitReference = false;
    bool operator==(const Concatenation&) const = default;
};

struct InformationElement {
    std::uint8_t id = 0;
    Bytes data;
    bool operator==(const InformationElement&) const = default;
};

struct UserData {
    Alphabet alphabet = Alphabet::Gsm7;
    std::u16string text; // GSM 7-bit and UCS-2 (UTF-16 units as sent)
    Bytes data;          // 8-bit data
    std::optional<Concatenation> concatenation;
    std::vector<InformationElement> otherElements; // kept as they came, in order
    bool operator==(const UserData&) const = default;
};

// The data coding scheme for plain (uncompressed, classless) user data of this alphabet.
std::uint8_t dataCodingScheme(Alphabet alphabet);
// The alphabet a data coding scheme names; nothing for compressed text.
std::optional<Alphabet> alphabetOf(std::uint8_t dataCodingScheme);

// ---- messages

struct Submit {
    bool rejectDuplicates = false;
    bool statusReportRequest = false;
    bool replyPath = false;
    std::uint8_t messageReference = 0;
    Address destination;
    std::uint8_t protocolId = 0;
    std::uint8_t dataCoding = 0; // derived from userData.alphabet when encoding
    Validity validity;
    UserData userData;
    bool operator==(const Submit&) const = default;
};

struct Deliver {
    bool moreMessagesToSend = false;
    bool statusReportIndication = false;
    bool replyPath = false;
    Address originator;
    std::uint8_t protocolId = 0;
    std::uint8_t dataCoding = 0;
    Timestamp serviceCentreTime;
    UserData userData;
    bool operator==(const Deliver&) const = default;
};

struct StatusReport {
    bool moreMessagesToSend = false;
    bool statusReportQualifier = false;
    std::uint8_t messageReference = 0;
    Address recipient;
    Timestamp serviceCentreTime;
    Timestamp dischargeTime;
    std::uint8_t status = 0; // 0: delivered
    // Optional fields, present when the parameter indicator names them.
    std::optional<std::uint8_t> protocolId;
    std::optional<std::uint8_t> dataCoding;
    std::optional<UserData> userData;
    bool operator==(const StatusReport&) const = default;
};

using Tpdu = std::variant<Deliver, Submit, StatusReport>;

// A PDU as a modem shows it in PDU mode: the service centre's address (absent: the default
// one, written as 00) before the transfer-layer PDU.
struct SmsPdu {
    std::optional<Address> serviceCentre;
    Tpdu tpdu;
};

Result<Bytes> encode(const Tpdu& tpdu);
Result<Tpdu> decode(std::span<const std::uint8_t> tpdu);

Result<Bytes> encodeWithServiceCentre(const SmsPdu& pdu);
Result<SmsPdu> decodeWithServiceCentre(std::span<const std::uint8_t> bytes);
// Octets the service-centre part takes at the start of `bytes` (1 + its length octet), for
// AT+CMGS, whose length counts the transfer-layer PDU only.
std::optional<std::size_t> serviceCentreLength(std::span<const std::uint8_t> bytes);

// ---- long texts

// The text as the user data of one message or of concatenated parts: GSM 7-bit when every
// character has a code there, else UCS-2. Parts never split an escape pair or a surrogate
// pair. At most 255 parts; an empty text gives one empty part.
Result<std::vector<UserData>> splitText(std::u16string_view text, int reference,
                                        bool sixteenBitReference = false);
// SUBMITs for `text` to `destination`; message references count up from `firstReference`.
Result<std::vector<Submit>> makeSubmits(std::u16string_view text, const Address& destination,
                                        int concatenationReference, std::uint8_t firstReference = 0,
                                        Validity validity = {});

// ---- hex, as AT commands carry PDUs

std::string toHex(std::span<const std::uint8_t> bytes);
// Upper or lower case; nothing on an odd length or another character.
std::optional<Bytes> fromHex(std::string_view hex);

} // namespace tessaly::pdu
