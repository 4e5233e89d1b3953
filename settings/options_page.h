#pragma once

// The base of every page of the options sheet. It carries the page protocol so that a page only
// says what it stores and how:
// - dialog initialisation: fetch the main preferences, then dataLoad() (skipped when the
//   telephony library's preferences are not available);
// - activation: the page's menu goes into the sheet's command bar (or the bar stays empty) and
//   the input panel is raised or put down, as the page was constructed;
// - leaving the page (another tab, or the sheet's OK): dataSave();
// - the "Factory Settings" button (IDC_FACTORY_SETTINGS): dataSetDefault(), which puts the
//   controls back to their defaults and stores nothing until the page is left.

#include "framework/ui/property_sheet.h"

namespace GSM {
class MainPreferences;
}

namespace tessaly::sms {

class CPpOptions : public PropertyPage {
public:
    // menuId 0 leaves the command bar empty on activation. inputPanel is SIP_UP for pages with
    // text fields and SIP_FORCEDOWN for the others.
    CPpOptions(int templateId, int menuId, int inputPanel);

    // The suite-wide main preferences; null until the page's window is initialised, and null
    // afterwards when the telephony library has none to give.
    GSM::MainPreferences* mainPreferences() const { return mainPreferences_; }

    int menuId() const { return menuId_; }
    int inputPanel() const { return inputPanel_; }

    // The three data operations. The base versions only say their own name in a message box
    // (a page that forgot one shows it at once); every page overrides all three.
    virtual bool dataLoad();
    virtual bool dataSave();
    virtual bool dataSetDefault();

    bool onSetActive() override;
    bool onKillActive() override;

protected:
    bool onInitDialog() override;
    // IDC_FACTORY_SETTINGS calls dataSetDefault(); other commands go to the dialog.
    void onCommand(int id) override;

private:
    int menuId_;
    int inputPanel_;
    GSM::MainPreferences* mainPreferences_ = nullptr;
};

} // namespace tessaly::sms
