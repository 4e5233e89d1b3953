#pragma once

// The phone book's records: numbers, entries, the contact a message's number reaches, and the
// folders that list them.

#include "gsm/gsm.h"
#include "suite/telephony/store_support.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessaly::telephony {

class NumberRecord final : public GSM::PhoneNumber {
public:
    NumberRecord(int id, Kind kind, std::u16string text)
        : id_(id)
        , kind_(kind)
        , text_(std::move(text)) {}
    int getId() const override { return id_; }
    const WCHAR* getText() const override { return text_.c_str(); }
    Kind getKind() const override { return kind_; }
    const std::u16string& text() const { return text_; }

private:
    int id_;
    Kind kind_;
    std::u16string text_;
};

class NumberListImpl final : public GSM::NumberList {
public:
    int size() const override { return int(items.size()); }
    bool isEmpty() const override { return items.empty(); }
    GSM::PhoneNumber* get(int position) const override;

    std::vector<std::unique_ptr<NumberRecord>> items;
};

// A phone-book entry.
class ContactRecord final : public GSM::Contact {
public:
    ContactRecord(Store& store, long id)
        : store_(store)
        , id_(id) {}

    long getId() const override { return id_; }
    const WCHAR* getText(int field, int form, int, int) const override;
    GSM::Result setText(int field, const WCHAR* text) override;
    int getSelectedNumber() const override { return selected_; }
    const GSM::NumberList* getNumbers() const override { return &numbers_; }
    GSM::Result selectNumber(int numberId) override;
    GSM::Result addNumber(const WCHAR* number, int kind) override;

    // The stored value of a name field (FieldCompany .. FieldEmail), or the computed one.
    std::u16string plainText(int field) const;
    const NumberRecord* selectedNumber() const;
    const NumberRecord* numberMatching(std::u16string_view number) const;
    // Case-insensitive order of the phone book.
    std::u16string sortKey() const;

    bool inPhoneBook = true;
    std::u16string firstName, lastName, company, email;

private:
    friend class Store;
    Store& store_;
    long id_;
    NumberListImpl numbers_;
    int selected_ = 0;
    mutable std::map<int, std::u16string> rendered_;
};

// A contact as reached at one number: a message's sender or recipient, or what lookup finds.
// Names come from the phone-book entry while it exists; a bare number has none.
class AddressRecord final : public GSM::Contact {
public:
    AddressRecord(Store& store, std::u16string number);

    long getId() const override;
    const WCHAR* getText(int field, int form, int, int) const override;
    GSM::Result setText(int field, const WCHAR* text) override;
    int getSelectedNumber() const override { return 1; }
    const GSM::NumberList* getNumbers() const override { return &numbers_; }
    GSM::Result selectNumber(int numberId) override;
    GSM::Result addNumber(const WCHAR*, int) override;

    const std::u16string& number() const { return numbers_.items.front()->text(); }
    // The phone-book entry holding this number now, or null.
    ContactRecord* person() const;

private:
    Store& store_;
    mutable ContactRecord* person_ = nullptr;
    mutable std::uint64_t resolvedAt_ = 0;
    NumberListImpl numbers_;
};

class FolderImpl final : public GSM::Folder {
public:
    enum class Kind { Contacts, Picker, Addresses };
    FolderImpl(Store& store, Kind kind, MessageRecord* message = nullptr)
        : store_(store)
        , kind_(kind)
        , message_(message) {}

    int size() const override { return int(entries.size()); }
    bool isEmpty() const override { return entries.empty(); }
    GSM::Contact* get(int position) const override;
    int getId() const override;
    const WCHAR* getName() const override;
    GSM::Result pick(GSM::WindowHandle owner) override;
    int indexOf(const GSM::Contact* contact) const override;
    GSM::Result add(GSM::Contact* contact) override;
    GSM::Result add(const WCHAR* number, int kind) override;
    bool containsNumber(const WCHAR* number) const override;
    GSM::Result remove(int position) override;
    GSM::Result removeAll() override;

    std::vector<GSM::Contact*> entries;

private:
    GSM::Result checkEditable();

    Store& store_;
    Kind kind_;
    MessageRecord* message_;
};

} // namespace tessaly::telephony
