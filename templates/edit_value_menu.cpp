#include "templates/edit_value_menu.h"

#include "framework/resources/resources.h"
#include "gsm/services.h"
#include "resources/resource.h"
#include "util/date_time_picker.h"

namespace tessaly::sms {

namespace {

QString textOf(const WCHAR* text) {
    return text ? QString::fromUtf16(text) : QString();
}

} // namespace

RecipientInfo recipientInfoOf(const GSM::Contact& contact) {
    RecipientInfo info;
    info.firstName = textOf(contact.getText(GSM::Contact::FieldFirstName));
    info.lastName = textOf(contact.getText(GSM::Contact::FieldLastName));
    info.fullName = textOf(contact.getText(GSM::Contact::FieldFullName));
    if (!info.firstName.isEmpty())
        info.initials += info.firstName.front();
    if (!info.lastName.isEmpty())
        info.initials += info.lastName.front();
    info.phone = textOf(contact.getText(GSM::Contact::FieldNumber));
    return info;
}

EditValueMenu::EditValueMenu(Dialog& dialog, int editId, ValueMenuContext context)
    : dialog_(dialog)
    , editId_(editId)
    , context_(context)
    , pickDateTime_(
          [this](const QString& variable) { return pickDateTimeValue(variable, &dialog_); }) {}

EditValueMenu::~EditValueMenu() {
    QObject::disconnect(tapAndHold_);
}

bool EditValueMenu::attach() {
    Edit* edit = dialog_.edit(editId_);
    if (!edit)
        return false;
    QObject::disconnect(tapAndHold_);
    tapAndHold_ = QObject::connect(edit, &Edit::tapAndHold, edit,
                                   [this](QPoint screenPos) { showMenu(screenPos); });
    return true;
}

Edit* EditValueMenu::liveEdit() const {
    return dialog_.isWindow() ? dialog_.edit(editId_) : nullptr;
}

void EditValueMenu::setEditText(const EditText& edited) {
    Edit* edit = liveEdit();
    if (!edit)
        return;
    edit->setText(edited.text);
    edit->setCaretPos(edited.caret);
    edit->scrollCaret();
}

void EditValueMenu::showMenu(QPoint screenPos) {
    Edit* edit = liveEdit();
    if (!edit)
        return;
    const QString text = edit->text();
    const ValueMenuOutcome outcome =
        runValueMenu(dialog_.window(), screenPos, text, edit->caretPos(), context_, pickDateTime_,
                     pickedContact_);
    if (outcome.edit) {
        // A modal picker may have outlived the window or seen the text change under it.
        if (Edit* after = liveEdit(); after && after->text() == text)
            setEditText(*outcome.edit);
        return;
    }
    if (!outcome.awaitingContact || !GSM::isServiceAvailable(GSM::ServicePhoneBook))
        return;
    waiting_ = WaitingPlaceholder{*outcome.awaitingContact, text};
    const QString title = loadString(IDS_CHOOSE_FROM_PHONEBOOK);
    const GSM::Result result =
        pickContact(dialog_.window(), reinterpret_cast<const WCHAR*>(title.utf16()));
    if (!result.isOk()) {
        waiting_.reset();
        GSM::Io::showErrorMessage(result);
    }
}

void EditValueMenu::eventContactPicked(GSM::Contact* contact) {
    if (!waiting_)
        return;
    const WaitingPlaceholder waiting = std::move(*waiting_);
    waiting_.reset();
    if (!contact)
        return;
    pickedContact_ = recipientInfoOf(*contact);
    // Typing between the pick and its answer moved the placeholder: the text is left alone.
    Edit* edit = liveEdit();
    if (!edit || edit->text() != waiting.text)
        return;
    setEditText(fillPickedContact(waiting.text, waiting.menu, context_, *pickedContact_));
}

} // namespace tessaly::sms
