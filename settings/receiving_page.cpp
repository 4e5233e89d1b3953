#include "settings/receiving_page.h"

#include "framework/ui/shell.h"
#include "gsm/preferences.h"
#include "resources/resource.h"
#include "util/wide_text.h"

namespace tessaly::sms {

namespace {

constexpr qsizetype kExtensionLength = 4; // ".wav"

} // namespace

QStringList soundNames(const QStringList& fileNames) {
    QStringList names;
    for (const QString& file : fileNames) {
        const QString name = file.chopped(std::min(kExtensionLength, file.size()));
        if (!name.isEmpty())
            names.append(name);
    }
    return names;
}

ReceivingPage::ReceivingPage()
    : CPpOptions(IDD_PAGE_RECEIVING, 0, SIP_FORCEDOWN) {}

std::unique_ptr<PropertyPage> ReceivingPage::make(OptionsEnvironment&) {
    return std::make_unique<ReceivingPage>();
}

bool ReceivingPage::dataLoad() {
    GSM::MainPreferences& preferences = *mainPreferences();
    if (ComboBox* sounds = comboBox(IDC_RECEIVING_SOUND)) {
        sounds->resetContent();
        for (const QString& name : soundNames(Shell::current().findFiles(QStringLiteral("*.wav"))))
            sounds->addString(name);
        // Exactly the stored name; one that is gone selects nothing (and stays stored).
        sounds->setCurSel(sounds->findText(fromWide(preferences.soundName()),
                                           Qt::MatchExactly | Qt::MatchCaseSensitive));
    }
    checkItem(IDC_RECEIVING_PLAY_SOUND, preferences.playSound() == 1 ? BST_CHECKED : BST_UNCHECKED);
    enableSoundList();
    return true;
}

bool ReceivingPage::dataSave() {
    GSM::MainPreferences& preferences = *mainPreferences();
    if (ComboBox* sounds = comboBox(IDC_RECEIVING_SOUND); sounds && sounds->curSel() >= 0) {
        const QString name = sounds->currentText();
        preferences.setSoundName(toWide(name));
    }
    preferences.setPlaySound(isItemChecked(IDC_RECEIVING_PLAY_SOUND) == BST_CHECKED);
    return true;
}

bool ReceivingPage::dataSetDefault() {
    checkItem(IDC_RECEIVING_PLAY_SOUND, BST_CHECKED);
    enableSoundList();
    if (ComboBox* sounds = comboBox(IDC_RECEIVING_SOUND))
        sounds->setCurSel(0);
    return true;
}

void ReceivingPage::enableSoundList() {
    enableItem(IDC_RECEIVING_SOUND, isItemChecked(IDC_RECEIVING_PLAY_SOUND) == BST_CHECKED);
}

void ReceivingPage::onCommand(int id) {
    if (id == IDC_RECEIVING_PLAY_SOUND) {
        enableSoundList();
        return;
    }
    CPpOptions::onCommand(id);
}

void ReceivingPage::onComboSelChange(int id) {
    ComboBox* sounds = comboBox(IDC_RECEIVING_SOUND);
    if (id != IDC_RECEIVING_SOUND || !sounds || sounds->curSel() < 0)
        return;
    Shell::current().playSound(sounds->currentText() + QStringLiteral(".wav"));
}

} // namespace tessaly::sms
