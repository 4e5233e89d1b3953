#include "cellbroadcast/add_channel_dialog.h"

#include "framework/ui/menu.h"
#include "framework/ui/modeless.h"
#include "framework/ui/shell.h"
#include "resources/resource.h"

namespace tessaly::sms {

AddChannelDialog::AddChannelDialog(Dialog* page)
    : Dialog(IDD_ADD_CHANNEL, page)
    , page_(page) {}

AddChannelDialog* AddChannelDialog::open(Dialog* page) {
    return showModeless(new AddChannelDialog(page));
}

QString AddChannelDialog::channelText() const {
    return itemText(IDC_ADD_CHANNEL_NUMBER);
}

bool AddChannelDialog::onInitDialog() {
    createCommandBar(IDR_MENU_CHANNEL_EDIT);
    if (QWidget* caption = item(IDC_ADD_CHANNEL_CAPTION)) {
        QFont bold = caption->font();
        bold.setBold(true);
        caption->setFont(bold);
    }
    Shell::current().sipPreference(window(), SIP_UP);
    setFocusItem(IDC_ADD_CHANNEL_NUMBER);
    return false;
}

void AddChannelDialog::onCommand(int id) {
    Edit* number = edit(IDC_ADD_CHANNEL_NUMBER);
    switch (id) {
    case IDM_EDIT_COPY:
        number->copy();
        break;
    case IDM_EDIT_CUT:
        number->cut();
        break;
    case IDM_EDIT_PASTE:
        number->paste();
        break;
    case IDM_EDIT_DELETE:
        number->setText(QString());
        break;
    case IDM_EDIT_SELECT_ALL:
        number->selectAll();
        break;
    default:
        Dialog::onCommand(id);
    }
}

void AddChannelDialog::onOK() {
    endDialog(IDOK);
    if (Dialog::exists(page_))
        page_->postMessage(kChannelEnteredMessage);
}

void AddChannelDialog::onCancel() {
    destroyWindow();
}

void AddChannelDialog::onPostDestroy() {
    delete this;
}

} // namespace tessaly::sms
