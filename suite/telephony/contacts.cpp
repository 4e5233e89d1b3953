#include "suite/telephony/store.h"

#include "suite/telephony/phone_number.h"

#include "framework/ui/useragent.h"

#include <QString>

#include <algorithm>

namespace tessaly::telephony {

namespace {

const std::u16string kEmpty;

std::u16string joined(const std::u16string& a, std::u16string_view separator,
                      const std::u16string& b) {
    if (a.empty())
        return b;
    if (b.empty())
        return a;
    std::u16string result = a;
    result += separator;
    result += b;
    return result;
}

std::u16string trimmed(const std::u16string& text) {
    const auto first = text.find_first_not_of(u" \t\r\n");
    if (first == std::u16string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(u" \t\r\n") - first + 1);
}

QString toQString(const std::u16string& text) {
    return QString::fromUtf16(text.data(), qsizetype(text.size()));
}

} // namespace

GSM::PhoneNumber* NumberListImpl::get(int position) const {
    return position >= 0 && position < int(items.size()) ? items[position].get() : nullptr;
}

// ---- phone-book entries

std::u16string ContactRecord::plainText(int field) const {
    switch (field) {
    case FieldNumber:
        return selectedNumber() ? selectedNumber()->text() : std::u16string();
    case FieldCompany:
        return company;
    case FieldFirstName:
        return firstName;
    case FieldLastName:
        return lastName;
    case FieldFullName:
        return joined(firstName, u" ", lastName);
    case FieldEmail:
        return email;
    case FieldDisplayName: {
        const std::u16string name = joined(firstName, u" ", lastName);
        return name.empty() ? company : name;
    }
    default:
        return {};
    }
}

const WCHAR* ContactRecord::getText(int field, int form, int, int) const {
    std::u16string value;
    if (field == FieldFileAs) {
        value = form == 0 ? joined(lastName, u", ", firstName) : joined(firstName, u" ", lastName);
        if (value.empty())
            value = company;
    } else {
        value = plainText(field);
    }
    std::u16string& slot = rendered_[field * 16 + (form & 15)];
    slot = std::move(value);
    return slot.c_str();
}

GSM::Result ContactRecord::setText(int field, const WCHAR* text) {
    std::u16string* target = nullptr;
    switch (field) {
    case FieldCompany:
        target = &company;
        break;
    case FieldFirstName:
        target = &firstName;
        break;
    case FieldLastName:
        target = &lastName;
        break;
    case FieldEmail:
        target = &email;
        break;
    default:
        return failure(GSM::ErrorNotSupported, u"This field cannot be set.");
    }
    const std::u16string previous = *target;
    *target = toU16(text);
    if (!inPhoneBook)
        return {};
    GSM::Result result = store_.saveContact(*this);
    if (!result.isOk())
        *target = previous;
    else
        store_.phoneBookChanged();
    return result;
}

const NumberRecord* ContactRecord::selectedNumber() const {
    for (const auto& number : numbers_.items) {
        if (number->getId() == selected_)
            return number.get();
    }
    return numbers_.items.empty() ? nullptr : numbers_.items.front().get();
}

const NumberRecord* ContactRecord::numberMatching(std::u16string_view number) const {
    for (const auto& candidate : numbers_.items) {
        if (numbersMatch(candidate->text(), number))
            return candidate.get();
    }
    return nullptr;
}

std::u16string ContactRecord::sortKey() const {
    std::u16string key = getText(FieldFileAs, 0, 0, 0);
    if (key.empty() && selectedNumber())
        key = selectedNumber()->text();
    const QString folded = toQString(key).toCaseFolded();
    return std::u16string(reinterpret_cast<const char16_t*>(folded.utf16()), folded.size());
}

GSM::Result ContactRecord::selectNumber(int numberId) {
    const bool known = std::any_of(numbers_.items.begin(), numbers_.items.end(),
                                   [&](const auto& number) { return number->getId() == numberId; });
    if (!known)
        return failure(GSM::ErrorNotFound, u"The contact has no such number.");
    selected_ = numberId;
    return inPhoneBook ? store_.saveContact(*this) : GSM::Result();
}

GSM::Result ContactRecord::addNumber(const WCHAR* number, int kind) {
    const std::u16string text = trimmed(toU16(number));
    if (text.empty())
        return failure(GSM::ErrorInvalidArgument, u"The number is empty.");
    const int id = int(numbers_.items.size()) + 1;
    numbers_.items.push_back(
        std::make_unique<NumberRecord>(id, GSM::PhoneNumber::Kind(std::clamp(kind, 0, 3)), text));
    if (selected_ == 0)
        selected_ = id;
    if (!inPhoneBook)
        return {};
    GSM::Result result = store_.saveContact(*this);
    if (result.isOk())
        store_.phoneBookChanged();
    return result;
}

// ---- addresses

AddressRecord::AddressRecord(Store& store, std::u16string number)
    : store_(store) {
    numbers_.items.push_back(
        std::make_unique<NumberRecord>(1, GSM::PhoneNumber::KindOther, std::move(number)));
}

ContactRecord* AddressRecord::person() const {
    if (resolvedAt_ != store_.phoneBookGeneration()) {
        person_ = store_.findPerson(number());
        resolvedAt_ = store_.phoneBookGeneration();
    }
    return person_;
}

long AddressRecord::getId() const {
    const ContactRecord* entry = person();
    return entry ? entry->getId() : 0;
}

const WCHAR* AddressRecord::getText(int field, int form, int, int) const {
    if (field == FieldNumber)
        return number().c_str();
    if (const ContactRecord* entry = person())
        return entry->getText(field, form, 0, 0);
    return kEmpty.c_str();
}

GSM::Result AddressRecord::setText(int, const WCHAR*) {
    return failure(GSM::ErrorNotSupported, u"An address cannot be changed.");
}

GSM::Result AddressRecord::selectNumber(int numberId) {
    return numberId == 1 ? GSM::Result()
                         : failure(GSM::ErrorNotFound, u"The contact has no such number.");
}

GSM::Result AddressRecord::addNumber(const WCHAR*, int) {
    return failure(GSM::ErrorNotSupported, u"An address holds one number.");
}

// ---- folders

GSM::Contact* FolderImpl::get(int position) const {
    return position >= 0 && position < int(entries.size()) ? entries[position] : nullptr;
}

int FolderImpl::getId() const {
    switch (kind_) {
    case Kind::Contacts:
        return GSM::PhoneBook::FolderContacts;
    case Kind::Picker:
        return GSM::PhoneBook::FolderPicker;
    default:
        return 0;
    }
}

const WCHAR* FolderImpl::getName() const {
    switch (kind_) {
    case Kind::Contacts:
        return u"Contacts";
    case Kind::Picker:
        return u"Picked";
    default:
        return message_ && message_->folder == GSM::Sms::FolderInbox ? u"From" : u"To";
    }
}

GSM::Result FolderImpl::pick(GSM::WindowHandle owner) {
    if (kind_ != Kind::Picker)
        return failure(GSM::ErrorNotSupported, u"Only the picker folder offers the picker.");
    ContactRecord* chosen = nullptr;
    GSM::Result result = store_.runPicker(owner, u"Choose a Contact", &chosen);
    if (!result.isOk() || !chosen)
        return result;
    entries.assign(1, chosen);
    EventQueue::instance().broadcast<GSM::PhoneBook>(
        HandlerKind::PhoneBook,
        [this](GSM::PhoneBook* handler) { handler->eventFolderChanged(this); });
    return {};
}

int FolderImpl::indexOf(const GSM::Contact* contact) const {
    const auto found = std::find(entries.begin(), entries.end(), contact);
    return found == entries.end() ? -1 : int(found - entries.begin());
}

GSM::Result FolderImpl::checkEditable() {
    return message_ ? message_->beginChange() : GSM::Result();
}

GSM::Result FolderImpl::add(GSM::Contact* contact) {
    if (!contact)
        return failure(GSM::ErrorInvalidArgument, u"No contact was given.");
    if (kind_ == Kind::Contacts) {
        std::vector<std::u16string> numbers;
        if (const GSM::NumberList* list = contact->getNumbers()) {
            for (int i = 0; i < list->size(); ++i) {
                if (const GSM::PhoneNumber* number = list->get(i))
                    numbers.push_back(toU16(number->getText()));
            }
        }
        return store_.addContact(toU16(contact->getText(GSM::Contact::FieldFirstName)),
                                 toU16(contact->getText(GSM::Contact::FieldLastName)), numbers,
                                 toU16(contact->getText(GSM::Contact::FieldCompany)), nullptr);
    }
    GSM::Result result = checkEditable();
    if (!result.isOk())
        return result;
    GSM::Contact* entry = contact;
    if (kind_ == Kind::Addresses) {
        entry = store_.addressFor(contact);
        if (!entry)
            return failure(GSM::ErrorInvalidArgument, u"The contact has no number.");
    }
    entries.push_back(entry);
    return {};
}

GSM::Result FolderImpl::add(const WCHAR* number, int kind) {
    const std::u16string text = trimmed(toU16(number));
    if (text.empty())
        return failure(GSM::ErrorInvalidArgument, u"The number is empty.");
    if (kind_ == Kind::Contacts)
        return store_.addContact(u"", u"", {text}, u"", nullptr);
    GSM::Result result = checkEditable();
    if (!result.isOk())
        return result;
    entries.push_back(store_.bareAddress(text));
    return {};
}

bool FolderImpl::containsNumber(const WCHAR* number) const {
    const std::u16string wanted = toU16(number);
    return std::any_of(entries.begin(), entries.end(), [&](const GSM::Contact* contact) {
        const GSM::NumberList* numbers = contact->getNumbers();
        for (int i = 0; numbers && i < numbers->size(); ++i) {
            if (numbersMatch(toU16(numbers->get(i)->getText()), wanted))
                return true;
        }
        return false;
    });
}

GSM::Result FolderImpl::remove(int position) {
    if (position < 0 || position >= int(entries.size()))
        return failure(GSM::ErrorInvalidArgument, u"There is no entry at that position.");
    if (kind_ == Kind::Contacts)
        return store_.removeContact(static_cast<ContactRecord*>(entries[position]));
    GSM::Result result = checkEditable();
    if (result.isOk())
        entries.erase(entries.begin() + position);
    return result;
}

GSM::Result FolderImpl::removeAll() {
    if (kind_ == Kind::Contacts)
        return store_.removeAllContacts();
    GSM::Result result = checkEditable();
    if (result.isOk())
        entries.clear();
    return result;
}

// ---- the phone book in the store

void Store::loadContacts() {
    Statement rows = db_->prepare(
        "SELECT id, first_name, last_name, company, email, selected_number FROM contacts");
    std::unordered_map<long, ContactRecord*> byId;
    while (rows.step()) {
        auto contact = std::make_unique<ContactRecord>(*this, long(rows.integer(0)));
        contact->firstName = rows.text(1);
        contact->lastName = rows.text(2);
        contact->company = rows.text(3);
        contact->email = rows.text(4);
        contact->selected_ = int(rows.integer(5));
        byId[contact->getId()] = contact.get();
        contactsFolder_.entries.push_back(contact.get());
        contacts_.push_back(std::move(contact));
    }
    Statement numbers = db_->prepare(
        "SELECT contact_id, kind, number FROM contact_numbers ORDER BY contact_id, id");
    while (numbers.step()) {
        const auto found = byId.find(long(numbers.integer(0)));
        if (found == byId.end())
            continue;
        auto& items = found->second->numbers_.items;
        items.push_back(std::make_unique<NumberRecord>(
            int(items.size()) + 1,
            GSM::PhoneNumber::Kind(std::clamp<std::int64_t>(numbers.integer(1), 0, 3)),
            numbers.text(2)));
    }
    sortPhoneBook();
}

void Store::sortPhoneBook() {
    std::stable_sort(contactsFolder_.entries.begin(), contactsFolder_.entries.end(),
                     [](const GSM::Contact* a, const GSM::Contact* b) {
                         return static_cast<const ContactRecord*>(a)->sortKey() <
                                static_cast<const ContactRecord*>(b)->sortKey();
                     });
}

GSM::Result Store::saveContact(ContactRecord& contact) {
    Database::Transaction transaction(*db_);
    bool ok = true;
    if (contact.getId() == 0) {
        Statement insert = db_->prepare(
            "INSERT INTO contacts(first_name, last_name, company, email, selected_number) "
            "VALUES(?, ?, ?, ?, ?) RETURNING id");
        insert.bind(1, contact.firstName)
            .bind(2, contact.lastName)
            .bind(3, contact.company)
            .bind(4, contact.email)
            .bind(5, std::int64_t(contact.selected_));
        ok = insert.step();
        if (ok)
            contact.id_ = long(insert.integer(0));
        insert.step();
        ok = ok && insert.ok();
    } else {
        Statement update = db_->prepare(
            "UPDATE contacts SET first_name = ?, last_name = ?, company = ?, email = ?, "
            "selected_number = ? WHERE id = ?");
        update.bind(1, contact.firstName)
            .bind(2, contact.lastName)
            .bind(3, contact.company)
            .bind(4, contact.email)
            .bind(5, std::int64_t(contact.selected_))
            .bind(6, std::int64_t(contact.getId()));
        update.step();
        ok = update.ok();
    }
    Statement clear = db_->prepare("DELETE FROM contact_numbers WHERE contact_id = ?");
    clear.bind(1, std::int64_t(contact.getId()));
    clear.step();
    ok = ok && clear.ok();
    Statement insert =
        db_->prepare("INSERT INTO contact_numbers(contact_id, kind, number) VALUES(?, ?, ?)");
    for (std::size_t i = 0; ok && i < contact.numbers_.items.size(); ++i) {
        const NumberRecord& number = *contact.numbers_.items[i];
        insert.reset();
        insert.bind(1, std::int64_t(contact.getId()))
            .bind(2, std::int64_t(number.getKind()))
            .bind(3, number.text());
        insert.step();
        ok = insert.ok();
    }
    if (!ok || !transaction.commit())
        return db_->failure(u"The contact cannot be stored");
    return {};
}

GSM::Result Store::addContact(const std::u16string& first, const std::u16string& last,
                              const std::vector<std::u16string>& numbers,
                              const std::u16string& company, long* id) {
    auto contact = std::make_unique<ContactRecord>(*this, 0);
    contact->inPhoneBook = false; // written once, below
    contact->firstName = first;
    contact->lastName = last;
    contact->company = company;
    for (const std::u16string& number : numbers)
        contact->addNumber(number.c_str(), GSM::PhoneNumber::KindMobile);
    if (first.empty() && last.empty() && company.empty() && contact->numbers_.items.empty())
        return failure(GSM::ErrorInvalidArgument, u"A contact needs a name or a number.");
    GSM::Result result = saveContact(*contact);
    if (!result.isOk())
        return result;
    contact->inPhoneBook = true;
    if (id)
        *id = contact->getId();
    contactsFolder_.entries.push_back(contact.get());
    contacts_.push_back(std::move(contact));
    sortPhoneBook();
    phoneBookChanged();
    return {};
}

GSM::Result Store::removeContact(ContactRecord* contact) {
    Statement remove = db_->prepare("DELETE FROM contacts WHERE id = ?");
    remove.bind(1, std::int64_t(contact->getId()));
    remove.step();
    if (!remove.ok())
        return db_->failure(u"The contact cannot be deleted");
    contact->inPhoneBook = false;
    std::erase(contactsFolder_.entries, contact);
    std::erase(pickerFolder_.entries, contact);
    phoneBookChanged();
    return {};
}

GSM::Result Store::removeAllContacts() {
    if (!db_->exec("DELETE FROM contacts"))
        return db_->failure(u"The contacts cannot be deleted");
    for (GSM::Contact* contact : contactsFolder_.entries) {
        static_cast<ContactRecord*>(contact)->inPhoneBook = false;
        std::erase(pickerFolder_.entries, contact);
    }
    contactsFolder_.entries.clear();
    phoneBookChanged();
    return {};
}

void Store::phoneBookChanged() {
    ++phoneBookGeneration_;
    EventQueue::instance().broadcast<GSM::PhoneBook>(
        HandlerKind::PhoneBook, [](GSM::PhoneBook* handler) {
            handler->eventSpecialFolderChanged(GSM::PhoneBook::FolderContacts);
        });
    // Names in the message lists (and the order by contact) follow the phone book; the sort
    // names are brought up to date when a list sorted by contact is next asked for.
    sortNames_.clear();
    sortNamesStale_ = true;
    touchMessages();
}

ContactRecord* Store::findPerson(std::u16string_view number) const {
    for (GSM::Contact* entry : contactsFolder_.entries) {
        auto* contact = static_cast<ContactRecord*>(entry);
        if (contact->numberMatching(number))
            return contact;
    }
    return nullptr;
}

AddressRecord* Store::lookup(std::u16string_view number) {
    const ContactRecord* person = findPerson(number);
    if (!person)
        return nullptr;
    return bareAddress(person->numberMatching(number)->text());
}

AddressRecord* Store::bareAddress(const std::u16string& number) {
    const auto found = bareAddresses_.find(number);
    if (found != bareAddresses_.end())
        return found->second;
    addresses_.push_back(std::make_unique<AddressRecord>(*this, number));
    AddressRecord* address = addresses_.back().get();
    bareAddresses_.emplace(number, address);
    return address;
}

AddressRecord* Store::addressFor(GSM::Contact* contact) {
    if (auto* address = dynamic_cast<AddressRecord*>(contact))
        return address;
    std::u16string number;
    if (auto* record = dynamic_cast<ContactRecord*>(contact))
        number = record->plainText(GSM::Contact::FieldNumber);
    else if (contact)
        number = toU16(contact->getText(GSM::Contact::FieldNumber, 1, 0, 0));
    number = trimmed(number);
    return number.empty() ? nullptr : bareAddress(number);
}

std::unique_ptr<FolderImpl>
Store::materializeAddresses(MessageRecord& message, const std::vector<std::u16string>& numbers) {
    auto folder = std::make_unique<FolderImpl>(*this, FolderImpl::Kind::Addresses, &message);
    for (const std::u16string& number : numbers)
        folder->entries.push_back(bareAddress(number));
    return folder;
}

FolderImpl* Store::folder(int specialFolder) {
    switch (specialFolder) {
    case GSM::PhoneBook::FolderContacts:
        return &contactsFolder_;
    case GSM::PhoneBook::FolderPicker:
        return &pickerFolder_;
    default:
        return nullptr;
    }
}

GSM::Result Store::runPicker(GSM::WindowHandle owner, const std::u16string& title,
                             ContactRecord** chosen) {
    *chosen = nullptr;
    std::vector<ContactPickerEntry> entries;
    std::vector<ContactRecord*> shown;
    for (GSM::Contact* entry : contactsFolder_.entries) {
        auto* contact = static_cast<ContactRecord*>(entry);
        const GSM::NumberList* numbers = contact->getNumbers();
        if (numbers->isEmpty())
            continue;
        ContactPickerEntry pickerEntry;
        std::u16string name = contact->plainText(GSM::Contact::FieldDisplayName);
        if (name.empty())
            name = contact->plainText(GSM::Contact::FieldNumber);
        pickerEntry.name = toQString(name);
        for (int i = 0; i < numbers->size(); ++i)
            pickerEntry.numbers.append(toQString(toU16(numbers->get(i)->getText())));
        entries.push_back(std::move(pickerEntry));
        shown.push_back(contact);
    }
    const ContactPickerChoice choice =
        UserAgent::current().pickContact(static_cast<QWidget*>(owner), toQString(title), entries);
    if (choice.entry < 0 || choice.entry >= int(shown.size()))
        return {};
    ContactRecord* contact = shown[choice.entry];
    if (const GSM::PhoneNumber* number = contact->getNumbers()->get(choice.number))
        contact->selectNumber(number->getId());
    *chosen = contact;
    return {};
}

} // namespace tessaly::telephony
