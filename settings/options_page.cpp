#include "settings/options_page.h"
#include "util/box_caption.h"

#include "framework/resources/resources.h"
#include "framework/ui/menu.h"
#include "framework/ui/shell.h"
#include "framework/ui/useragent.h"
#include "gsm/preferences.h"
#include "resources/resource.h"

namespace tessaly::sms {

namespace {

bool sayName(QWidget* owner, const char* operation) {
    UserAgent::current().messageBox(owner, QString::fromLatin1(operation), boxCaption(), MB_OK);
    return true;
}

} // namespace

CPpOptions::CPpOptions(int templateId, int menuId, int inputPanel)
    : PropertyPage(templateId)
    , menuId_(menuId)
    , inputPanel_(inputPanel) {}

bool CPpOptions::dataLoad() {
    return sayName(window(), "DataLoad");
}

bool CPpOptions::dataSave() {
    return sayName(window(), "DataSave");
}

bool CPpOptions::dataSetDefault() {
    return sayName(window(), "DataSetDefault");
}

bool CPpOptions::onInitDialog() {
    mainPreferences_ = GSM::Preferences::getMainPreferences();
    // Without the library's preferences the controls keep their template state, and leaving
    // the page stores nothing (it would store what was never loaded).
    if (mainPreferences_)
        dataLoad();
    return true;
}

bool CPpOptions::onSetActive() {
    if (PropertySheet* owner = sheet(); owner && menuId_ != 0)
        if (CommandBar* bar = owner->commandBar())
            bar->setMenu(menuId_, this);
    Shell::current().sipPreference(window(), inputPanel_);
    return true;
}

bool CPpOptions::onKillActive() {
    if (mainPreferences_)
        dataSave();
    return PropertyPage::onKillActive();
}

void CPpOptions::onCommand(int id) {
    if (id == IDC_FACTORY_SETTINGS) {
        dataSetDefault();
        return;
    }
    PropertyPage::onCommand(id);
}

} // namespace tessaly::sms
