#pragma once

// A message and the containers (snapshots of a folder in one order) that list messages.

#include "gsm/gsm.h"
#include "suite/telephony/contact_records.h"
#include "suite/telephony/store_support.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessaly::telephony {

class MessageRecord final : public GSM::Message {
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
    GSM::Result setText(const WCHAR* text) override;
    GSM::Result setServiceCentre(const WCHAR* number) override;
    GSM::Result setUseSameServiceCentre(bool replyPath) override;
    GSM::Result setValidityPeriod(ValidityPeriod period) override;
    GSM::Result endEdit(bool discard) override;

    // Takes a snapshot for endEdit(true) before the first change of a stored message.
    GSM::Result beginChange();
    std::vector<std::u16string> addressNumbers() const;
    // The name (or number) of the first address, for sorting by contact.
    std::u16string contactKey() const;

    int folder = GSM::Sms::FolderOutbox;
    Status status = NotSent;
    std::u16string text;
    std::uint64_t dateTicks = 0;
    std::u16string serviceCentre;
    ValidityPeriod validity = Maximum;
    bool replyPath = false;
    long replyTo = 0;
    std::vector<std::u16string> storedAddresses; // until the folder is first asked for
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

class ContainerImpl final : public GSM::MessageContainer {
public:
    explicit ContainerImpl(int sortKey)
        : sortKey_(sortKey) {}
    int size() const override { return int(items.size()); }
    bool isEmpty() const override { return items.empty(); }
    GSM::Message* get(int position) const override;
    int getFirst(GSM::Message::Status status) const override;

    std::vector<MessageRecord*> items;

private:
    int sortKey_;
};

} // namespace tessaly::telephony
