#pragma once

// A GSM modem as its AT port shows it: enough of the 27.007 / 27.005 command sets, in PDU mode,
// for ModemManager to probe it and to send, list, read, delete and announce SMS. No transport:
// bytes from the host go into receive(), the answers leave through the output function. The
// network side is the other half of the interface: messages the host sent are recorded, and
// deliver() lets a message arrive (stored, and announced with +CMTI when the host asked).

#include "suite/telephony/pdu/pdu.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly::modem {

struct Identity {
    std::string manufacturer = "Tessaly";
    std::string model = "Emulated GSM modem";
    std::string revision = "1.0";
    std::string imei = "350000000000006";
    std::string imsi = "001010123456789";
    std::string iccid = "89000000000000000001";
    std::string operatorName = "Tessaly Net";
    std::string serviceCentre = "+4917100000";
    int storageCapacity = 25; // per storage
};

// A message the host handed to the network (+CMGS, or +CMSS of a written one).
struct SentMessage {
    std::string hex; // the PDU as the host wrote it, service-centre address included
    pdu::Submit submit;
    std::optional<pdu::Address> serviceCentre;
    int reference = 0; // the message reference answered
};

class EmulatedModem {
public:
    using Output = std::function<void(std::string_view)>;

    explicit EmulatedModem(Output output, Identity identity = {});

    // Bytes from the host: command lines ended by CR, or a PDU ended by Ctrl-Z after +CMGS.
    void receive(std::string_view bytes);

    // The network delivers a message: stored where the host asked (+CPMS's third storage) as
    // received-unread and announced with +CMTI when +CNMI asked for it. Answers the index, or
    // nothing when the storage is full or the PDU cannot be encoded.
    std::optional<int> deliver(const pdu::Deliver& message);
    // The text from `from`, in as many parts as it needs; answers the indices.
    std::vector<int> deliverText(std::u16string_view from, std::u16string_view text,
                                 const pdu::Timestamp& time);
    // Messages sitting on the SIM before the host looks (stored as received-read or -unread).
    std::optional<int> store(const pdu::Deliver& message, bool read);

    // Announces the next delivered message once the host has read the last one announced (a
    // host that is still reading one drops a +CMTI that arrives meanwhile, as ModemManager
    // does), and announces again one left unread for ten ticks. Call it every few hundred ms.
    void tick();

    // The network refuses the next message the host sends (+CMS ERROR with this cause).
    void failNextSend(int cause) { failNextSend_ = cause; }
    bool failsNextSend() const { return failNextSend_.has_value(); }

    const std::vector<SentMessage>& sent() const { return sent_; }
    // Called for every message sent, after it was recorded.
    std::function<void(const SentMessage&)> onSent;
    // Command lines the modem did not know (answered ERROR), for diagnostics.
    const std::vector<std::string>& unknownCommands() const { return unknown_; }
    // Messages in a storage ("SM" or "ME").
    int storedCount(const std::string& storage) const;

private:
    enum class Status { ReceivedUnread = 0, ReceivedRead = 1, StoredUnsent = 2, StoredSent = 3 };
    struct Slot {
        Status status;
        pdu::Bytes bytes; // service-centre address and TPDU
    };
    using Storage = std::map<int, Slot>;
    enum class Outcome { Ok, Error, Silent };

    void runLine(std::string line);
    Outcome runCommand(std::string_view command);
    Outcome runBasic(char letter, int value);
    Outcome runExtended(const std::string& name, char kind, std::string_view arguments);
    Outcome finishPdu(std::string_view hex);

    Outcome smsCommand(const std::string& name, char kind, std::string_view arguments);
    Outcome listMessages(int status);
    Outcome readMessage(int index);
    Outcome sendStored(int index);
    void show(const std::string& header, int index, Slot& slot);
    void recordSent(const pdu::Bytes& bytes, const pdu::SmsPdu& decoded, const char* answer);
    std::optional<int> put(const std::string& storage, Slot slot);
    Storage& storage(const std::string& name);
    void announce();
    std::string storageReport(bool withNames);

    void info(std::string_view line);
    void final(Outcome outcome);
    Outcome cmsError(int code);
    Outcome cmeError(int code);

    Output output_;
    Identity identity_;
    std::string line_;
    bool echo_ = true;
    int errorMode_ = 0;
    int registrationMode_ = 0;
    int messageFormat_ = 0;
    int newMessageMode_ = 0;   // +CNMI <mt>
    int statusReportMode_ = 0; // +CNMI <ds>: 1 routes status reports as +CDS
    // Status reports for SUBMITs that asked for one, given on the next tick (after the OK).
    std::vector<pdu::StatusReport> pendingReports_;
    int functionality_ = 1;
    std::string serviceCentre_;
    // +CMGS / +CMGW waiting for their PDU.
    struct PendingPdu {
        bool write = false;
        std::size_t length = 0;
        int status = 2;
    };
    std::optional<PendingPdu> pending_;
    std::map<std::string, Storage> storages_;
    std::string readStorage_ = "SM";
    std::string writeStorage_ = "SM";
    std::string receiveStorage_ = "SM";
    int nextReference_ = 0;
    std::optional<int> failNextSend_;
    std::vector<int> waiting_; // delivered, not yet announced
    std::optional<int> announced_;
    int ticksSinceAnnounced_ = 0;
    std::vector<SentMessage> sent_;
    std::vector<std::string> unknown_;
};

} // namespace tessaly::modem
