#include "settings/sending_page.h"

#include "framework/resources/resources.h"
#include "framework/ui/shell.h"
#include "resources/resource.h"
#include "settings/service_centre_dialogs.h"
#include "settings/service_centres.h"
#include "settings/sms_settings.h"

namespace tessaly::sms {

SendingPage::SendingPage(OptionsEnvironment& environment)
    : CPpOptions(IDD_PAGE_SENDING, IDR_MENU_SENDING_PAGE, SIP_FORCEDOWN)
    , environment_(environment) {}

std::unique_ptr<PropertyPage> SendingPage::make(OptionsEnvironment& environment) {
    return std::make_unique<SendingPage>(environment);
}

bool SendingPage::dataLoad() {
    GSM::MainPreferences& preferences = *mainPreferences();
    const auto check = [this](int id, bool on) { checkItem(id, on ? BST_CHECKED : BST_UNCHECKED); };
    check(IDC_SENDING_SHOW_PROGRESS, environment_.settings().showProgress);
    check(IDC_SENDING_ROAMING, preferences.sendWhileRoaming());
    check(IDC_SENDING_SAME_SC, preferences.useSameServiceCentre());
    check(IDC_SENDING_STATUS_REPORT, preferences.statusReport());
    loadPreferGprs();
    loadValidity();
    if (ComboBox* combo = comboBox(IDC_SENDING_SC))
        fillServiceCentreCombo(*combo, serviceCentreList());
    return true;
}

void SendingPage::loadPreferGprs() {
    const int service = GSM::device.smsService();
    // The device cannot tell: the choice is not offered, and saving leaves the device alone.
    if (service == GSM::Device::SmsServiceUnknown) {
        enableItem(IDC_SENDING_PREFER_GPRS, false);
        return;
    }
    enableItem(IDC_SENDING_PREFER_GPRS, true);
    checkItem(IDC_SENDING_PREFER_GPRS,
              service == GSM::Device::SmsServiceGprs ? BST_CHECKED : BST_UNCHECKED);
}

void SendingPage::loadValidity() {
    ComboBox* combo = comboBox(IDC_SENDING_VALIDITY);
    if (!combo)
        return;
    fillValidityChoices(*combo);
    combo->setCurSel(validityIndexForCode(mainPreferences()->validityPeriod()));
}

bool SendingPage::dataSave() {
    GSM::MainPreferences& preferences = *mainPreferences();
    environment_.settings().showProgress = isItemChecked(IDC_SENDING_SHOW_PROGRESS) == BST_CHECKED;
    preferences.setSendWhileRoaming(isItemChecked(IDC_SENDING_ROAMING) == BST_CHECKED);
    preferences.setUseSameServiceCentre(isItemChecked(IDC_SENDING_SAME_SC) == BST_CHECKED);
    preferences.setStatusReport(isItemChecked(IDC_SENDING_STATUS_REPORT) == BST_CHECKED);
    if (QWidget* preferGprs = item(IDC_SENDING_PREFER_GPRS); preferGprs && preferGprs->isEnabled())
        GSM::device.setSmsService(isItemChecked(IDC_SENDING_PREFER_GPRS) == BST_CHECKED
                                      ? GSM::Device::SmsServiceGprs
                                      : GSM::Device::SmsServiceCircuit);
    if (ComboBox* validity = comboBox(IDC_SENDING_VALIDITY);
        validity && validity->curSel() >= 0 && validity->curSel() < int(kValidityChoices.size()))
        preferences.setValidityPeriod(kValidityChoices[size_t(validity->curSel())].code);
    if (ComboBox* centres = comboBox(IDC_SENDING_SC); centres && centres->curSel() >= 0)
        if (GSM::ServiceCentreList* list = serviceCentreList())
            list->setPreferred(centres->curSel());
    return true;
}

bool SendingPage::dataSetDefault() {
    checkItem(IDC_SENDING_ROAMING, BST_CHECKED);
    checkItem(IDC_SENDING_SHOW_PROGRESS, BST_CHECKED);
    checkItem(IDC_SENDING_PREFER_GPRS, BST_UNCHECKED);
    checkItem(IDC_SENDING_SAME_SC, BST_UNCHECKED);
    checkItem(IDC_SENDING_STATUS_REPORT, BST_UNCHECKED);
    if (ComboBox* validity = comboBox(IDC_SENDING_VALIDITY))
        validity->setCurSel(validityIndexForCode(GSM::Message::Maximum));
    return true;
}

void SendingPage::onCommand(int id) {
    if (id != IDM_SERVICE_CENTERS) {
        CPpOptions::onCommand(id);
        return;
    }
    ServiceCentreDirectoryDialog(this).doModal();
    if (ComboBox* combo = comboBox(IDC_SENDING_SC))
        fillServiceCentreCombo(*combo, serviceCentreList());
}

void SendingPage::eventSmsServiceChanged() {
    if (!isWindow())
        return;
    const ModuleStateGuard guard(moduleState());
    loadPreferGprs();
}

void SendingPage::eventPreferencesChanged() {
    if (!isWindow() || !mainPreferences())
        return;
    const ModuleStateGuard guard(moduleState());
    dataLoad();
}

} // namespace tessaly::sms
