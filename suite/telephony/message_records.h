#pragma once

// A message as an object: made from its row when asked for (the store's cache keeps it), or by
// Message::make for a new one.

#include "gsm/gsm.h"
#include "suite/telephony/contact_records.h"
#include "suite/telephony/store_support.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessaly::telephony {

class MessageRecord final : public GSM::Message,
                            public std::enable_shared_from_this<MessageRecord> {
public:
    MessageRecord(Store& store, long id)
        : store_(store)
        , id_(id) {}

    long getId() const override { return id_; }
    Status getStatus() const override { return status; }
    const WCHAR* getText() const override { return text.c_str(); }
    FILETIME date() const override { return fileTimeFromUInt64(dateTicks); }
    const WCHAR* getDate() const override;
    const WCHAR* getServiceCentre() const override { return serviceCentre.c_str(); }
    ValidityPeriod getValidityPeriod() const override { return validity; }
    bool useSameServiceCentre() const override { return replyPath; }
    GSM::Folder* getContacts() override;
    bool wasSentTo(int position) const override;
    FILETIME deliveredTo(int position) const override;
    GSM::Result setText(const WCHAR* text) override;
    GSM::Result setServiceCentre(const WCHAR* number) override;
    GSM::Result setUseSameServiceCentre(bool replyPath) override;
    GSM::Result setValidityPeriod(ValidityPeriod period) override;
    GSM::Result endEdit(bool discard) override;

    // Takes a snapshot for endEdit(true) before the first change of a stored message.
    GSM::Result beginChange();
    std::vector<std::u16string> addressNumbers() const;

    int folder = GSM::Sms::FolderOutbox;
    Status status = NotSent;
    std::u16string text;
    std::uint64_t dateTicks = 0;
    std::u16string serviceCentre;
    ValidityPeriod validity = Maximum;
    bool replyPath = false;
    long replyTo = 0;
    // Until the folder is first asked for; read from the store on first use when
    // addressesUnread (a message made from its row).
    mutable std::vector<std::u16string> storedAddresses;
    mutable bool addressesUnread = false;
    bool stored = false;
    bool removed = false;
    bool discarded = false;

private:
    friend class Store;
    struct Snapshot {
        std::u16string text;
        std::u16string serviceCentre;
        ValidityPeriod validity;
        bool replyPath;
        std::vector<std::u16string> addresses;
    };
    Store& store_;
    long id_;
    std::unique_ptr<FolderImpl> addresses_;
    std::optional<Snapshot> snapshot_;
    mutable std::u16string dateText_;
};

} // namespace tessaly::telephony
