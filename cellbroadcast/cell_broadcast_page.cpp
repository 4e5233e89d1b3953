#include "cellbroadcast/cell_broadcast_page.h"

#include "cellbroadcast/add_channel_dialog.h"
#include "cellbroadcast/subscription.h"
#include "framework/resources/resources.h"
#include "framework/ui/menu.h"
#include "framework/ui/shell.h"
#include "resources/resource.h"
#include "settings/options_sheet.h"
#include "util/wide_text.h"

#include <QSet>

namespace tessaly::sms {

namespace {

QString errorText(const GSM::Result& result) {
    return fromWide(result.getErrorMessage());
}

} // namespace

CellBroadcastPage::CellBroadcastPage()
    : CPpOptions(IDD_PAGE_CELL_BROADCAST, IDR_MENU_CHANNEL, SIP_FORCEDOWN) {}

std::unique_ptr<PropertyPage> CellBroadcastPage::make(OptionsEnvironment&) {
    return std::make_unique<CellBroadcastPage>();
}

CellBroadcastPage::~CellBroadcastPage() {
    if (Dialog::exists(addDialog_))
        addDialog_->destroyWindow();
}

AddChannelDialog* CellBroadcastPage::addChannelDialog() const {
    return Dialog::exists(addDialog_) ? addDialog_ : nullptr;
}

bool CellBroadcastPage::onInitDialog() {
    const GSM::Result asked = GSM::CellBroadcast::getMessageTypes();
    showStatus(asked.isOk() ? loadString(IDS_CB_QUERYING) : errorText(asked));
    if (ListBox* languages = listBox(IDC_CB_LANGUAGES)) {
        languages->setMultipleSelection(true);
        for (const CbLanguage& language : offeredLanguages()) {
            const int index = languages->addString(loadString(language.nameId));
            languages->setItemData(index, LPARAM(language.code));
        }
    }
    enableRadioPairs();
    return CPpOptions::onInitDialog();
}

bool CellBroadcastPage::dataLoad() {
    const GSM::MainPreferences* preferences = mainPreferences();
    checkItem(IDC_CB_TICKER_SCROLLS, preferences->tickerScrolls() ? BST_CHECKED : BST_UNCHECKED);
    checkItem(IDC_CB_SHOW_DIALOG, preferences->showCbDialog() ? BST_CHECKED : BST_UNCHECKED);
    checkRadioButton(IDC_CB_HORIZONTALLY, IDC_CB_VERTICALLY,
                     preferences->tickerHorizontal() ? IDC_CB_HORIZONTALLY : IDC_CB_VERTICALLY);
    checkRadioButton(IDC_CB_CHANGED_MESSAGES, IDC_CB_EVERY_MESSAGE,
                     preferences->showEveryCbMessage() ? IDC_CB_EVERY_MESSAGE
                                                       : IDC_CB_CHANGED_MESSAGES);
    enableRadioPairs();
    return true;
}

bool CellBroadcastPage::dataSetDefault() {
    checkItem(IDC_CB_TICKER_SCROLLS, BST_CHECKED);
    checkRadioButton(IDC_CB_HORIZONTALLY, IDC_CB_VERTICALLY, IDC_CB_HORIZONTALLY);
    checkItem(IDC_CB_SHOW_DIALOG, BST_UNCHECKED);
    checkRadioButton(IDC_CB_CHANGED_MESSAGES, IDC_CB_EVERY_MESSAGE, IDC_CB_CHANGED_MESSAGES);
    enableRadioPairs();
    return true;
}

void CellBroadcastPage::showLists(bool show) {
    for (int id :
         {IDC_CB_CHANNELS_LABEL, IDC_CB_CHANNELS, IDC_CB_LANGUAGES_LABEL, IDC_CB_LANGUAGES})
        showItem(id, show);
    showItem(IDC_CB_STATUS, !show);
}

void CellBroadcastPage::showStatus(const QString& text) {
    setItemText(IDC_CB_STATUS, text);
    showLists(false);
}

void CellBroadcastPage::enableRadioPairs() {
    const bool ticker = isItemChecked(IDC_CB_TICKER_SCROLLS) == BST_CHECKED;
    enableItem(IDC_CB_HORIZONTALLY, ticker);
    enableItem(IDC_CB_VERTICALLY, ticker);
    const bool dialog = isItemChecked(IDC_CB_SHOW_DIALOG) == BST_CHECKED;
    enableItem(IDC_CB_CHANGED_MESSAGES, dialog);
    enableItem(IDC_CB_EVERY_MESSAGE, dialog);
}

void CellBroadcastPage::eventSubscription(int channelCount, const Utilities::Range* channels,
                                          int languageCount, const Utilities::Range* languages) {
    const ModuleStateGuard guard(moduleState());
    ListBox* channelList = listBox(IDC_CB_CHANNELS);
    ListBox* languageList = listBox(IDC_CB_LANGUAGES);
    if (!channelList || !languageList)
        return;
    // Channels the person added before the answer came stay; none is listed twice.
    QSet<QString> listed;
    for (int i = 0; i < channelList->count(); ++i)
        listed.insert(channelList->text(i));
    for (int i = 0; channels && i < channelCount; ++i) {
        for (int channel = channels[i].first; channel < channels[i].last; ++channel) {
            const QString text = QString::number(channel);
            if (!listed.contains(text))
                channelList->addString(text);
        }
    }
    const std::span<const Utilities::Range> languageRanges(
        languages, languages ? std::size_t(std::max(0, languageCount)) : 0);
    languageList->setSelAll(false);
    const int offered = std::min(languageList->count(), int(offeredLanguages().size()));
    for (int i = 0; i < offered; ++i)
        if (inRanges(int(languageList->getItemData(i)), languageRanges))
            languageList->setSel(i, true);
    showLists(true);
}

void CellBroadcastPage::eventCbFailure(const GSM::Result& result) {
    const ModuleStateGuard guard(moduleState());
    setItemText(IDC_CB_STATUS, errorText(result));
}

void CellBroadcastPage::onCommand(int id) {
    switch (id) {
    case IDC_CB_TICKER_SCROLLS:
    case IDC_CB_SHOW_DIALOG:
        enableRadioPairs();
        break;
    case IDM_CHANNEL_ADD:
        addChannel();
        break;
    case IDM_CHANNEL_DELETE:
        deleteChannel();
        break;
    default:
        CPpOptions::onCommand(id);
    }
}

void CellBroadcastPage::onListBoxSelChange(int id) {
    if (id == IDC_CB_LANGUAGES)
        modified_ = true;
}

void CellBroadcastPage::addChannel() {
    const ListBox* channels = listBox(IDC_CB_CHANNELS);
    if (!channels || channels->count() >= GSM::CbFolder().capacity())
        return;
    // Only the latest dialog is remembered; an earlier one still open is left to itself.
    addDialog_ = AddChannelDialog::open(this);
}

void CellBroadcastPage::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == kChannelEnteredMessage)
        channelEntered();
}

void CellBroadcastPage::channelEntered() {
    AddChannelDialog* dialog = addChannelDialog();
    ListBox* channels = listBox(IDC_CB_CHANNELS);
    if (!dialog || !channels)
        return;
    const QString text = dialog->channelText();
    if (!text.isEmpty()) {
        int index = channels->findStringExact(-1, text);
        if (index == LB_ERR) {
            index = channels->addString(text);
            modified_ = true;
        }
        channels->setCurSel(index);
    }
    addDialog_ = nullptr;
    dialog->destroyWindow();
    showLists(true);
}

void CellBroadcastPage::deleteChannel() {
    ListBox* channels = listBox(IDC_CB_CHANNELS);
    const int selected = channels ? channels->curSel() : LB_ERR;
    if (selected == LB_ERR)
        return;
    const int left = channels->deleteString(selected);
    if (left > 0)
        channels->setCurSel(std::min(selected, left - 1));
    modified_ = true;
}

std::vector<int> CellBroadcastPage::channelNumbers() const {
    std::vector<int> numbers;
    if (const ListBox* channels = listBox(IDC_CB_CHANNELS))
        for (int i = 0; i < channels->count(); ++i)
            numbers.push_back(channelNumber(channels->text(i)));
    return numbers;
}

std::vector<int> CellBroadcastPage::selectedLanguageCodes() const {
    std::vector<int> codes;
    if (const ListBox* languages = listBox(IDC_CB_LANGUAGES))
        for (int i = 0; i < languages->count(); ++i)
            codes.push_back(languages->isSel(i) ? int(languages->getItemData(i)) : -1);
    return codes;
}

bool CellBroadcastPage::dataSave() {
    GSM::MainPreferences* preferences = mainPreferences();
    // The setters take effect at once; their results are not examined.
    preferences->setTickerScrolls(isItemChecked(IDC_CB_TICKER_SCROLLS) == BST_CHECKED);
    preferences->setTickerHorizontal(isItemChecked(IDC_CB_HORIZONTALLY) == BST_CHECKED);
    preferences->setShowCbDialog(isItemChecked(IDC_CB_SHOW_DIALOG) == BST_CHECKED);
    preferences->setShowEveryCbMessage(isItemChecked(IDC_CB_EVERY_MESSAGE) == BST_CHECKED);
    if (!modified_)
        return true;
    const std::vector<Utilities::Range> channels = buildRanges(channelNumbers());
    const std::vector<Utilities::Range> languages = buildRanges(selectedLanguageCodes());
    const GSM::Result result = GSM::CellBroadcast::setMessageTypes(
        int(channels.size()), channels.data(), int(languages.size()), languages.data());
    if (!result.isOk())
        showStatus(errorText(result));
    return true;
}

void CellBroadcastPage::onDestroy() {
    if (Dialog::exists(addDialog_))
        addDialog_->destroyWindow();
    addDialog_ = nullptr;
}

} // namespace tessaly::sms
