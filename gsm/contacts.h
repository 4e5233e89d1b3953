#pragma once

// Contacts, contact folders, the phone book with its picker, and voice calls.

#include "gsm/lists.h"
#include "gsm/result.h"
#include "gsm/services.h"

namespace GSM {

class Contact;

// One phone number of a contact.
class PhoneNumber {
public:
    enum Kind { KindOther = 0, KindMobile = 1, KindHome = 2, KindWork = 3 };

    PhoneNumber() = default;
    PhoneNumber(const PhoneNumber&) = delete;
    PhoneNumber& operator=(const PhoneNumber&) = delete;

    virtual int getId() const = 0;
    virtual const WCHAR* getText() const = 0;
    virtual Kind getKind() const = 0;

protected:
    virtual ~PhoneNumber() = default;
};

using NumberList = List<PhoneNumber>;
using ContactList = List<Contact>;

// One phone-book entry, or a bare number standing in for one (id 0).
class Contact {
public:
    // Text fields read with getText.
    enum Field {
        FieldNumber = 0, // the selected number (any form)
        FieldCompany = 1,
        FieldFirstName = 2,
        FieldLastName = 3,
        FieldFullName = 4, // "First Last"
        FieldFileAs = 5,   // form 0: "Last, First"; form 3: "First Last"
        FieldEmail = 6,
        FieldDisplayName = 7, // full name, else company; empty for a bare number
    };

    Contact() = default;
    Contact(const Contact&) = delete;
    Contact& operator=(const Contact&) = delete;

    // 0 for a bare number that is not in the phone book.
    virtual long getId() const = 0;
    // Never null; empty for an unknown field. Valid until the contact is changed.
    virtual const WCHAR* getText(int field, int form = 0, int reserved1 = 0,
                                 int reserved2 = 0) const = 0;
    virtual Result setText(int field, const WCHAR* text) = 0;
    // The id of the selected number (see PhoneNumber::getId); 0 when the contact has none.
    virtual int getSelectedNumber() const = 0;
    virtual const NumberList* getNumbers() const = 0;
    virtual Result selectNumber(int numberId) = 0;
    virtual Result addNumber(const WCHAR* number, int kind) = 0;

protected:
    virtual ~Contact() = default;
};

// A list of contacts: a phone-book folder, the picker's folder, or a message's recipients.
class Folder : public virtual ContactList {
public:
    // The special folder id, or 0 for a message's recipients.
    virtual int getId() const = 0;
    virtual const WCHAR* getName() const = 0;
    // Shows the contact picker over `owner`; the choice fills the picker folder and arrives
    // afterwards as PhoneBook::eventFolderChanged. Only the picker folder offers it.
    virtual Result pick(WindowHandle owner) = 0;
    virtual int indexOf(const Contact* contact) const = 0;
    virtual Result add(Contact* contact) = 0;
    // Adds a number; in the phone book's contact folder that creates a new contact.
    virtual Result add(const WCHAR* number, int kind = 0) = 0;
    virtual bool containsNumber(const WCHAR* number) const = 0;
    virtual Result remove(int position) = 0;
    virtual Result removeAll() = 0;

protected:
    ~Folder() override = default;
};

// Access to the phone book and its picker, and the base of every phone-book event handler:
// an object receives phone-book events exactly while it exists.
class PhoneBook {
public:
    enum SpecialFolderId {
        FolderContacts = 1, // the phone book's contacts
        FolderPicker = 3,   // what the picker chose last
    };

    PhoneBook();
    PhoneBook(const PhoneBook&) = delete;
    PhoneBook& operator=(const PhoneBook&) = delete;
    virtual ~PhoneBook();

    // The chosen contact, or null when the person cancelled; answers pickContact.
    virtual void eventContactPicked(Contact* contact) = 0;
    virtual void eventSpecialFolderChanged(SpecialFolderId folder);
    virtual void eventFolderChanged(Folder* folder);
    virtual void eventSimCompletion(Result& result);
    virtual void eventSimEntryProcessed(int entry, int count);

    // Shows the picker over `owner`; the choice reaches this object's eventContactPicked after
    // the call has returned.
    Result pickContact(WindowHandle owner, const WCHAR* title);

    // The contact holding that number (matched as phones do), or null.
    static Contact* lookup(const WCHAR* number);
    static Folder* getFolder(SpecialFolderId folder);
};

class Phone {
public:
    static Result makeCall(const WCHAR* number);
    static Result makeCall(Contact* contact);
};

} // namespace GSM
