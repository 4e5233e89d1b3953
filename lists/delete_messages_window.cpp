#include "lists/delete_messages_window.h"

#include "framework/resources/resources.h"
#include "framework/ui/modeless.h"
#include "gsm/gsm.h"
#include "lists/message_texts.h"
#include "resources/resource.h"

#include <algorithm>
#include <climits>

namespace tessaly::sms {

DeleteMessagesWindow::DeleteMessagesWindow(int folder)
    : Dialog(IDD_DELETE_MESSAGES)
    , folder_(folder) {}

DeleteMessagesWindow* DeleteMessagesWindow::open(int folder) {
    return showModeless(new DeleteMessagesWindow(folder));
}

bool DeleteMessagesWindow::onInitDialog() {
    if (UpDown* days = upDown(IDC_DELETE_DAYS_SPIN)) {
        days->setBuddy(edit(IDC_DELETE_DAYS));
        days->setRange(0, kLargestAgeDays);
        days->setPos(kDefaultAgeDays);
    }
    setItemText(IDC_DELETE_DAYS, QString::asprintf("%d", kDefaultAgeDays));
    checkRadioButton(IDC_DELETE_ALL, IDC_DELETE_OLDER, IDC_DELETE_ALL);
    enableAge(false);
    return true;
}

void DeleteMessagesWindow::enableAge(bool enable) {
    enableItem(IDC_DELETE_DAYS, enable);
    enableItem(IDC_DELETE_DAYS_SPIN, enable);
}

void DeleteMessagesWindow::onCommand(int id) {
    switch (id) {
    case IDC_DELETE_ALL:
        enableAge(false);
        break;
    case IDC_DELETE_OLDER:
        enableAge(true);
        break;
    default:
        Dialog::onCommand(id);
    }
}

void DeleteMessagesWindow::onOK() {
    int ageDays = 0;
    if (isItemChecked(IDC_DELETE_ALL) != BST_CHECKED &&
        isItemChecked(IDC_DELETE_OLDER) == BST_CHECKED) {
        ageDays = parseDays(itemText(IDC_DELETE_DAYS));
        if (ageDays > kLargestAgeDays) {
            UserAgent::current().messageBox(window(), loadString(IDS_TOO_MANY_DAYS), boxCaption(),
                                            MB_OK | MB_ICONEXCLAMATION);
            return;
        }
    }
    // The lists refresh through the store's change event; the outcome is not reported here.
    GSM::sms.deleteMessages(folder_, std::max(0, ageDays));
    destroyWindow();
}

void DeleteMessagesWindow::onCancel() {
    destroyWindow();
}

void DeleteMessagesWindow::onPostDestroy() {
    delete this;
}

int parseDays(const QString& text) {
    qsizetype at = 0;
    while (at < text.size() && text.at(at).isSpace())
        ++at;
    bool negative = false;
    if (at < text.size() && (text.at(at) == u'-' || text.at(at) == u'+'))
        negative = text.at(at++) == u'-';
    long long value = 0;
    for (; at < text.size() && text.at(at) >= u'0' && text.at(at) <= u'9'; ++at)
        value = std::min<long long>(value * 10 + (text.at(at).unicode() - u'0'), INT_MAX + 1LL);
    value = negative ? -value : value;
    return int(std::clamp<long long>(value, INT_MIN, INT_MAX));
}

} // namespace tessaly::sms
