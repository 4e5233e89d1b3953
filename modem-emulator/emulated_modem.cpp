#include "modem-emulator/emulated_modem.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <utility>

namespace tessaly::modem {

namespace {

constexpr char kCtrlZ = 0x1a;
constexpr char kEscape = 0x1b;

// 27.005 error codes
constexpr int kOperationNotAllowed = 302;
constexpr int kOperationNotSupported = 303;
constexpr int kInvalidPduParameter = 304;
constexpr int kInvalidMemoryIndex = 321;
constexpr int kMemoryFull = 322;

std::string upper(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return char(std::toupper(c)); });
    return result;
}

std::string_view trim(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    return text;
}

// Comma-separated arguments; quotes are removed from quoted ones.
std::vector<std::string> splitArguments(std::string_view arguments) {
    std::vector<std::string> result;
    std::string current;
    bool quoted = false;
    for (char c : arguments) {
        if (c == '"') {
            quoted = !quoted;
        } else if (c == ',' && !quoted) {
            result.emplace_back(trim(current));
            current.clear();
        } else {
            current.push_back(c);
        }
    }
    if (!current.empty() || !result.empty())
        result.emplace_back(trim(current));
    return result;
}

std::optional<int> number(std::string_view text) {
    text = trim(text);
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::string quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

} // namespace

EmulatedModem::EmulatedModem(Output output, Identity identity)
    : output_(std::move(output))
    , identity_(std::move(identity))
    , serviceCentre_(identity_.serviceCentre) {
    storages_["SM"];
    storages_["ME"];
}

// ---- the line discipline

void EmulatedModem::receive(std::string_view bytes) {
    for (char c : bytes) {
        if (pending_) {
            if (c == kCtrlZ) {
                std::string hex = std::move(line_);
                line_.clear();
                final(finishPdu(hex));
            } else if (c == kEscape) {
                line_.clear();
                pending_.reset();
                final(Outcome::Ok);
            } else if (!std::isspace(static_cast<unsigned char>(c))) {
                line_.push_back(c);
            }
            continue;
        }
        if (c == '\r') {
            std::string line = std::move(line_);
            line_.clear();
            if (echo_)
                output_(line + "\r");
            runLine(std::move(line));
        } else if (c != '\n' && line_.size() < 4096) {
            line_.push_back(c);
        }
    }
}

void EmulatedModem::runLine(std::string line) {
    const std::string_view text = trim(line);
    if (text.empty())
        return;
    if (text.size() < 2 || upper(text.substr(0, 2)) != "AT") {
        unknown_.emplace_back(text);
        final(Outcome::Error);
        return;
    }
    std::string_view rest = text.substr(2);
    // Basic commands run together ("E0V1"); extended ones are separated by ';'.
    while (!rest.empty()) {
        std::size_t length = 1;
        const char first = rest.front();
        if (first == '+' || first == '*' || first == '^' || first == '$') {
            bool quotedText = false;
            while (length < rest.size() && (quotedText || rest[length] != ';')) {
                if (rest[length] == '"')
                    quotedText = !quotedText;
                ++length;
            }
        } else {
            if (first == '&' && length < rest.size())
                ++length;
            while (length < rest.size() && std::isdigit(static_cast<unsigned char>(rest[length])))
                ++length;
        }
        const Outcome outcome = runCommand(rest.substr(0, length));
        rest.remove_prefix(length);
        if (!rest.empty() && rest.front() == ';')
            rest.remove_prefix(1);
        if (outcome != Outcome::Ok) {
            if (outcome == Outcome::Error)
                unknown_.emplace_back(text);
            final(outcome);
            return;
        }
    }
    final(Outcome::Ok);
}

EmulatedModem::Outcome EmulatedModem::runCommand(std::string_view command) {
    const char first = command.front();
    if (first != '+' && first != '*' && first != '^' && first != '$') {
        const char letter = char(std::toupper(
            static_cast<unsigned char>(first == '&' && command.size() > 1 ? command[1] : first)));
        const std::size_t digits = first == '&' ? 2 : 1;
        const int value = command.size() > digits ? number(command.substr(digits)).value_or(0) : 0;
        return first == '&' ? Outcome::Ok : runBasic(letter, value);
    }
    std::size_t nameEnd = 1;
    while (nameEnd < command.size() && command[nameEnd] != '=' && command[nameEnd] != '?')
        ++nameEnd;
    const std::string name = upper(command.substr(1, nameEnd - 1));
    std::string_view tail = command.substr(nameEnd);
    char kind = 'E'; // execute
    if (tail.starts_with("=?")) {
        kind = 'T';
    } else if (tail.starts_with("?")) {
        kind = 'R';
    } else if (tail.starts_with("=")) {
        kind = 'S';
        tail.remove_prefix(1);
    }
    if (first != '+')
        return Outcome::Error;
    return runExtended(name, kind, kind == 'S' ? tail : std::string_view());
}

EmulatedModem::Outcome EmulatedModem::runBasic(char letter, int value) {
    switch (letter) {
    case 'E':
        echo_ = value != 0;
        return Outcome::Ok;
    case 'I':
        info(identity_.manufacturer + " " + identity_.model);
        return Outcome::Ok;
    case 'Z':
        echo_ = true;
        errorMode_ = 0;
        return Outcome::Ok;
    case 'V':
    case 'Q':
    case 'X':
    case 'S':
        return Outcome::Ok;
    default:
        return Outcome::Error;
    }
}

EmulatedModem::Outcome EmulatedModem::runExtended(const std::string& name, char kind,
                                                  std::string_view arguments) {
    const std::vector<std::string> args = splitArguments(arguments);
    const auto firstNumber = [&args]() -> std::optional<int> {
        return args.empty() ? std::nullopt : number(args[0]);
    };
    const auto identification = [&](const std::string& value) {
        if (kind != 'E')
            return Outcome::Error;
        info(value);
        return Outcome::Ok;
    };
    if (name == "CGMI" || name == "GMI")
        return identification(identity_.manufacturer);
    if (name == "CGMM" || name == "GMM")
        return identification(identity_.model);
    if (name == "CGMR" || name == "GMR")
        return identification(identity_.revision);
    if (name == "CGSN" || name == "GSN")
        return identification(identity_.imei);
    if (name == "CIMI")
        return identification(identity_.imsi);
    if (name == "CCID" || name == "ICCID")
        return identification("+" + name + ": " + identity_.iccid);
    if (name == "GCAP")
        return identification("+GCAP: +CGSM");
    if (name == "CSQ")
        return identification("+CSQ: 20,99");
    if (name == "CPIN") {
        if (kind != 'R')
            return kind == 'S' ? cmeError(3) : Outcome::Error;
        info("+CPIN: READY");
        return Outcome::Ok;
    }
    if (name == "CMEE" || name == "CREG" || name == "CGREG" || name == "CEREG") {
        int& mode = name == "CMEE" ? errorMode_ : registrationMode_;
        if (kind == 'S') {
            const auto value = firstNumber();
            if (!value || *value < 0 || *value > 2)
                return Outcome::Error;
            mode = *value;
        } else if (kind == 'R') {
            info("+" + name + ": " + std::to_string(mode) + (name == "CMEE" ? "" : ",1"));
        } else if (kind == 'T') {
            info("+" + name + ": (0-2)");
        }
        return Outcome::Ok;
    }
    if (name == "CFUN") {
        if (kind == 'S') {
            const auto value = firstNumber();
            if (!value)
                return Outcome::Error;
            functionality_ = *value;
        } else if (kind == 'R') {
            info("+CFUN: " + std::to_string(functionality_));
        } else if (kind == 'T') {
            info("+CFUN: (0,1,4),(0,1)");
        }
        return Outcome::Ok;
    }
    if (name == "COPS") {
        if (kind == 'R')
            info("+COPS: 0,0," + quoted(identity_.operatorName) + ",0");
        else if (kind == 'T')
            info("+COPS: (2," + quoted(identity_.operatorName) +
                 ",\"Tessaly\",\"00101\",0),,(0-4),"
                 "(0-2)");
        return Outcome::Ok;
    }
    if (name == "CSCS") {
        if (kind == 'R')
            info("+CSCS: \"IRA\"");
        else if (kind == 'T')
            info("+CSCS: (\"IRA\",\"GSM\",\"UCS2\")");
        return Outcome::Ok;
    }
    return smsCommand(name, kind, arguments);
}

// ---- SMS

EmulatedModem::Outcome EmulatedModem::smsCommand(const std::string& name, char kind,
                                                 std::string_view arguments) {
    const std::vector<std::string> args = splitArguments(arguments);
    // The first argument as a number; -1 when absent or not a number.
    const int first = args.empty() ? -1 : number(args[0]).value_or(-1);
    if (name == "CMGF") {
        if (kind == 'S')
            return first == 0 ? Outcome::Ok : cmsError(kOperationNotSupported);
        info(kind == 'T' ? "+CMGF: (0)" : "+CMGF: " + std::to_string(messageFormat_));
        return Outcome::Ok;
    }
    if (name == "CSMS") {
        if (kind == 'S')
            info("+CSMS: 1,1,1");
        else
            info(kind == 'T' ? "+CSMS: (0,1)" : "+CSMS: 0,1,1,1");
        return Outcome::Ok;
    }
    if (name == "CNMI") {
        if (kind == 'S') {
            if (args.size() > 1) {
                const auto mt = number(args[1]);
                if (!mt || *mt < 0 || *mt > 3)
                    return cmsError(kOperationNotSupported);
                newMessageMode_ = *mt;
            }
            if (args.size() > 3) {
                const auto ds = number(args[3]);
                if (!ds || *ds < 0 || *ds > 2)
                    return cmsError(kOperationNotSupported);
                statusReportMode_ = *ds;
            }
        } else if (kind == 'R') {
            info("+CNMI: 2," + std::to_string(newMessageMode_) + ",0," +
                 std::to_string(statusReportMode_) + ",0");
        } else {
            info("+CNMI: (0-2),(0-3),(0,2),(0-2),(0,1)");
        }
        return Outcome::Ok;
    }
    if (name == "CPMS") {
        if (kind == 'T') {
            info("+CPMS: (\"SM\",\"ME\"),(\"SM\",\"ME\"),(\"SM\",\"ME\")");
        } else if (kind == 'R') {
            info("+CPMS: " + storageReport(true));
        } else {
            if (args.empty() || args.size() > 3)
                return cmsError(kOperationNotAllowed);
            for (const std::string& storageName : args) {
                if (!storages_.count(upper(storageName)))
                    return cmsError(kOperationNotAllowed);
            }
            readStorage_ = upper(args[0]);
            if (args.size() > 1)
                writeStorage_ = upper(args[1]);
            if (args.size() > 2)
                receiveStorage_ = upper(args[2]);
            info("+CPMS: " + storageReport(false));
        }
        return Outcome::Ok;
    }
    if (name == "CSCA") {
        if (kind == 'S') {
            if (args.empty() || args[0].empty())
                return cmsError(kOperationNotAllowed);
            serviceCentre_ = args[0];
        } else if (kind == 'R') {
            info("+CSCA: " + quoted(serviceCentre_) + "," +
                 (serviceCentre_.starts_with('+') ? "145" : "129"));
        }
        return Outcome::Ok;
    }
    if (name == "CMGS" || name == "CMGW") {
        if (kind == 'T')
            return Outcome::Ok;
        if (kind != 'S' || first <= 0 || first > 164)
            return cmsError(kInvalidPduParameter);
        PendingPdu pending;
        pending.write = name == "CMGW";
        pending.length = std::size_t(first);
        if (args.size() > 1)
            pending.status = number(args[1]).value_or(2);
        pending_ = pending;
        output_("\r\n> ");
        return Outcome::Silent;
    }
    if (name == "CMGL") {
        if (kind == 'T') {
            info("+CMGL: (0-4)");
            return Outcome::Ok;
        }
        const int status = kind == 'E' ? 0 : first;
        if (status < 0 || status > 4)
            return cmsError(kOperationNotSupported);
        return listMessages(status);
    }
    if (name == "CMGR" || name == "CMSS") {
        if (kind != 'S' || first < 0)
            return cmsError(kInvalidMemoryIndex);
        return name == "CMGR" ? readMessage(first) : sendStored(first);
    }
    if (name == "CMGD") {
        if (kind == 'T') {
            info("+CMGD: (1-" + std::to_string(identity_.storageCapacity) + "),(0-4)");
            return Outcome::Ok;
        }
        const int flag = args.size() > 1 ? number(args[1]).value_or(0) : 0;
        if (kind != 'S' || flag < 0 || flag > 4 ||
            (flag == 0 && (first < 1 || first > identity_.storageCapacity)))
            return cmsError(kInvalidMemoryIndex);
        Storage& messages = storage(readStorage_);
        if (flag == 0) {
            // Deleting an empty slot succeeds, as on most modems.
            messages.erase(first);
            return Outcome::Ok;
        }
        // 1 read, 2 read and sent, 3 read, sent and unsent, 4 everything.
        std::erase_if(messages, [flag](const auto& entry) {
            const int status = int(entry.second.status);
            return flag == 4 || status == 1 || (flag >= 2 && status == 3) ||
                   (flag >= 3 && status == 2);
        });
        return Outcome::Ok;
    }
    return Outcome::Error;
}

EmulatedModem::Outcome EmulatedModem::finishPdu(std::string_view hex) {
    const PendingPdu pending = *pending_;
    pending_.reset();
    const auto bytes = pdu::fromHex(hex);
    const auto prefix = bytes ? pdu::serviceCentreLength(*bytes) : std::nullopt;
    if (!bytes || !prefix || bytes->size() - *prefix != pending.length)
        return cmsError(kInvalidPduParameter);
    const auto decoded = pdu::decodeWithServiceCentre(*bytes);
    if (!decoded || !std::holds_alternative<pdu::Submit>(decoded->tpdu))
        return cmsError(kInvalidPduParameter);
    if (pending.write) {
        const auto index = put(writeStorage_, {Status(std::clamp(pending.status, 0, 3)), *bytes});
        if (!index)
            return cmsError(kMemoryFull);
        info("+CMGW: " + std::to_string(*index));
        return Outcome::Ok;
    }
    if (failNextSend_) {
        const int cause = *failNextSend_;
        failNextSend_.reset();
        return cmsError(cause);
    }
    recordSent(*bytes, *decoded, "+CMGS: ");
    return Outcome::Ok;
}

EmulatedModem::Outcome EmulatedModem::listMessages(int status) {
    for (auto& [index, slot] : storage(readStorage_)) {
        if (status != 4 && int(slot.status) != status)
            continue;
        show("+CMGL: " + std::to_string(index) + ",", index, slot);
    }
    return Outcome::Ok;
}

EmulatedModem::Outcome EmulatedModem::readMessage(int index) {
    Storage& messages = storage(readStorage_);
    const auto found = messages.find(index);
    if (found == messages.end())
        return cmsError(kInvalidMemoryIndex);
    show("+CMGR: ", index, found->second);
    return Outcome::Ok;
}

// A stored message as +CMGL and +CMGR show it; reading marks it read.
void EmulatedModem::show(const std::string& header, int index, Slot& slot) {
    // The length counts the TPDU alone, as +CMGS and +CMGW take it.
    const std::size_t tpduLength =
        slot.bytes.size() - pdu::serviceCentreLength(slot.bytes).value_or(0);
    info(header + std::to_string(int(slot.status)) + ",," + std::to_string(tpduLength) + "\r\n" +
         pdu::toHex(slot.bytes));
    if (slot.status == Status::ReceivedUnread)
        slot.status = Status::ReceivedRead;
    if (announced_ == index)
        announced_.reset();
}

EmulatedModem::Outcome EmulatedModem::sendStored(int index) {
    Storage& messages = storage(writeStorage_);
    const auto found = messages.find(index);
    if (found == messages.end())
        return cmsError(kInvalidMemoryIndex);
    const auto decoded = pdu::decodeWithServiceCentre(found->second.bytes);
    if (!decoded || !std::holds_alternative<pdu::Submit>(decoded->tpdu))
        return cmsError(kOperationNotAllowed);
    found->second.status = Status::StoredSent;
    recordSent(found->second.bytes, *decoded, "+CMSS: ");
    return Outcome::Ok;
}

void EmulatedModem::recordSent(const pdu::Bytes& bytes, const pdu::SmsPdu& decoded,
                               const char* answer) {
    SentMessage message{pdu::toHex(bytes), std::get<pdu::Submit>(decoded.tpdu),
                        decoded.serviceCentre, nextReference_++ & 0xff};
    sent_.push_back(message);
    info(answer + std::to_string(message.reference));
    // The network delivers at once and says so (TS 23.040 9.2.2.3), when asked.
    if (message.submit.statusReportRequest && statusReportMode_ == 1) {
        pdu::StatusReport report;
        report.messageReference = std::uint8_t(message.reference);
        report.recipient = message.submit.destination;
        report.serviceCentreTime = {2026, 11, 24, 12, 0, 0, 0};
        report.dischargeTime = report.serviceCentreTime;
        report.status = 0;
        pendingReports_.push_back(report);
    }
    if (onSent)
        onSent(message);
}

std::optional<int> EmulatedModem::put(const std::string& name, Slot slot) {
    Storage& messages = storage(name);
    for (int index = 1; index <= identity_.storageCapacity; ++index) {
        if (!messages.count(index)) {
            messages.emplace(index, std::move(slot));
            return index;
        }
    }
    return std::nullopt;
}

EmulatedModem::Storage& EmulatedModem::storage(const std::string& name) {
    return storages_[name];
}

std::string EmulatedModem::storageReport(bool withNames) {
    std::string report;
    for (const std::string* name : {&readStorage_, &writeStorage_, &receiveStorage_}) {
        if (!report.empty())
            report += ",";
        if (withNames)
            report += quoted(*name) + ",";
        report +=
            std::to_string(storage(*name).size()) + "," + std::to_string(identity_.storageCapacity);
    }
    return report;
}

int EmulatedModem::storedCount(const std::string& name) const {
    const auto found = storages_.find(name);
    return found == storages_.end() ? 0 : int(found->second.size());
}

// ---- the network side

std::optional<int> EmulatedModem::store(const pdu::Deliver& message, bool read) {
    pdu::SmsPdu full{
        pdu::Address::fromText(std::u16string(serviceCentre_.begin(), serviceCentre_.end())),
        message};
    const auto bytes = pdu::encodeWithServiceCentre(full);
    if (!bytes)
        return std::nullopt;
    return put(receiveStorage_, {read ? Status::ReceivedRead : Status::ReceivedUnread, *bytes});
}

std::optional<int> EmulatedModem::deliver(const pdu::Deliver& message) {
    const auto index = store(message, false);
    if (index && newMessageMode_ >= 1) {
        waiting_.push_back(*index);
        announce();
    }
    return index;
}

std::vector<int> EmulatedModem::deliverText(std::u16string_view from, std::u16string_view text,
                                            const pdu::Timestamp& time) {
    std::vector<int> indices;
    const auto parts = pdu::splitText(text, int(sent_.size() + storedCount(receiveStorage_)));
    if (!parts)
        return indices;
    for (const pdu::UserData& part : *parts) {
        pdu::Deliver message;
        message.originator = pdu::Address::fromText(from);
        message.serviceCentreTime = time;
        message.userData = part;
        if (const auto index = deliver(message))
            indices.push_back(*index);
    }
    return indices;
}

void EmulatedModem::announce() {
    if (announced_ || pending_ || waiting_.empty())
        return;
    announced_ = waiting_.front();
    waiting_.erase(waiting_.begin());
    ticksSinceAnnounced_ = 0;
    output_("\r\n+CMTI: " + quoted(receiveStorage_) + "," + std::to_string(*announced_) + "\r\n");
}

void EmulatedModem::tick() {
    for (const pdu::StatusReport& report : std::exchange(pendingReports_, {})) {
        const auto tpdu = pdu::encode(report);
        const auto sca = pdu::encodeWithServiceCentre(
            {pdu::Address::fromText(
                 std::u16string(identity_.serviceCentre.begin(), identity_.serviceCentre.end())),
             report});
        if (tpdu && sca)
            output_("\r\n+CDS: " + std::to_string(tpdu->size()) + "\r\n" + pdu::toHex(*sca) +
                    "\r\n");
    }
    if (announced_ && ++ticksSinceAnnounced_ >= 10) {
        waiting_.insert(waiting_.begin(), *announced_);
        announced_.reset();
    }
    announce();
}

// ---- answers

void EmulatedModem::info(std::string_view line) {
    output_("\r\n" + std::string(line) + "\r\n");
}

void EmulatedModem::final(Outcome outcome) {
    if (outcome == Outcome::Ok)
        output_("\r\nOK\r\n");
    else if (outcome == Outcome::Error)
        output_("\r\nERROR\r\n");
}

EmulatedModem::Outcome EmulatedModem::cmsError(int code) {
    output_(errorMode_ == 0 ? std::string("\r\nERROR\r\n")
                            : "\r\n+CMS ERROR: " + std::to_string(code) + "\r\n");
    return Outcome::Silent;
}

EmulatedModem::Outcome EmulatedModem::cmeError(int code) {
    output_(errorMode_ == 0 ? std::string("\r\nERROR\r\n")
                            : "\r\n+CME ERROR: " + std::to_string(code) + "\r\n");
    return Outcome::Silent;
}

} // namespace tessaly::modem
