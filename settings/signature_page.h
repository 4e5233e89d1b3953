#pragma once

// The Signature page: the sender's first name, last name and phone, which the composer inserts
// as the signature. A tap on a field's label fills all three from a contact of the phone book.

#include "gsm/contacts.h"
#include "util/edit_commands.h"
#include "settings/options_page.h"
#include "settings/options_sheet.h"

namespace tessaly::sms {

class SignaturePage final : public CPpOptions, public GSM::PhoneBook {
public:
    explicit SignaturePage(OptionsEnvironment& environment);

    static std::unique_ptr<PropertyPage> make(OptionsEnvironment& environment);

    bool dataLoad() override;
    bool dataSave() override;
    // The page has no factory values.
    bool dataSetDefault() override { return true; }

    void eventContactPicked(GSM::Contact* contact) override;

protected:
    bool onInitDialog() override;
    void onCommand(int id) override;
    void onEditSetFocus(int id) override { editCommands_.focused(id); }

private:
    void pickSender();

    OptionsEnvironment& environment_;
    EditCommands editCommands_;
};

} // namespace tessaly::sms
