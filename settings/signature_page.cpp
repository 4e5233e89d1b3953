#include "settings/signature_page.h"

#include "framework/resources/resources.h"
#include "framework/ui/shell.h"
#include "resources/resource.h"
#include "settings/sms_settings.h"
#include "util/wide_text.h"

namespace tessaly::sms {

SignaturePage::SignaturePage(OptionsEnvironment& environment)
    : CPpOptions(IDD_PAGE_SIGNATURE, IDR_MENU_EDIT, SIP_UP)
    , environment_(environment) {}

std::unique_ptr<PropertyPage> SignaturePage::make(OptionsEnvironment& environment) {
    return std::make_unique<SignaturePage>(environment);
}

bool SignaturePage::onInitDialog() {
    const QString colon = loadString(IDS_COLON);
    setItemText(IDC_SIGNATURE_FIRST_NAME_LABEL, loadString(IDS_FIELD_FIRST_NAME) + colon);
    setItemText(IDC_SIGNATURE_LAST_NAME_LABEL, loadString(IDS_FIELD_LAST_NAME) + colon);
    setItemText(IDC_SIGNATURE_PHONE_LABEL, loadString(IDS_FIELD_PHONE) + colon);
    return CPpOptions::onInitDialog();
}

bool SignaturePage::dataLoad() {
    const SmsSettings& settings = environment_.settings();
    setItemText(IDC_SIGNATURE_FIRST_NAME, settings.firstName);
    setItemText(IDC_SIGNATURE_LAST_NAME, settings.lastName);
    setItemText(IDC_SIGNATURE_PHONE, settings.phone);
    return true;
}

bool SignaturePage::dataSave() {
    SmsSettings& settings = environment_.settings();
    settings.firstName = itemText(IDC_SIGNATURE_FIRST_NAME);
    settings.lastName = itemText(IDC_SIGNATURE_LAST_NAME);
    settings.phone = itemText(IDC_SIGNATURE_PHONE);
    return true;
}

void SignaturePage::onCommand(int id) {
    switch (id) {
    case IDC_SIGNATURE_FIRST_NAME_LABEL:
    case IDC_SIGNATURE_LAST_NAME_LABEL:
    case IDC_SIGNATURE_PHONE_LABEL:
        pickSender();
        return;
    default:
        if (!editCommands_.run(*this, id))
            CPpOptions::onCommand(id);
    }
}

void SignaturePage::pickSender() {
    if (!GSM::isServiceAvailable(GSM::ServicePhoneBook))
        return;
    pickContact(window(), u"");
}

void SignaturePage::eventContactPicked(GSM::Contact* contact) {
    if (!contact)
        return;
    const ModuleStateGuard guard(moduleState());
    SmsSettings& settings = environment_.settings();
    settings.firstName = fromWide(contact->getText(GSM::Contact::FieldFirstName));
    settings.lastName = fromWide(contact->getText(GSM::Contact::FieldLastName));
    settings.phone = fromWide(contact->getText(GSM::Contact::FieldNumber, 1));
    if (isWindow())
        dataLoad();
}

} // namespace tessaly::sms
