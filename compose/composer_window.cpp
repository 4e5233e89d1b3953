#include "compose/composer_window.h"
#include "util/box_caption.h"

#include "compose/composer_environment.h"
#include "compose/composer_text.h"
#include "compose/favourites.h"
#include "compose/recipients.h"
#include "compose/status_line.h"
#include "compose/submit.h"
#include "framework/resources/resources.h"
#include "framework/ui/accessible_names.h"
#include "framework/ui/menu.h"
#include "framework/ui/modeless.h"
#include "framework/ui/shell.h"
#include "gsm/gsm.h"
#include "resources/command_bar_images.h"
#include "resources/resource.h"
#include "settings/sms_settings.h"
#include "settings/validity_choices.h"
#include "templates/placeholder_expander.h"
#include "templates/template_store.h"
#include "util/wide_text.h"

#include <QPainter>
#include <QPainterPath>

namespace tessaly::sms {

namespace {

// Pixel layout of the message edit and the status line below it.
constexpr int kTextTopCollapsed = 47;
constexpr int kTextTopWithDetails = 100;
constexpr int kBelowTextCollapsed = 59;
constexpr int kBelowTextWithDetails = 112;
constexpr int kStatusHeight = 12;
constexpr int kCounterWidth = 160;

// A colour reference with red in the low byte: 0xff0000 is blue.
constexpr QColor kCaptionColour(0, 0, 255);
constexpr QColor kStatusBackground(0xc0, 0xc0, 0xc0);

// Posted to put "Insert Template" back in view after the templates list has closed.
constexpr UINT kShowInsertTemplate = WM_APP + 1;

constexpr int kDetailControls[] = {IDC_COMPOSE_SCA_LABEL, IDC_COMPOSE_SCA,
                                   IDC_COMPOSE_VALIDITY_LABEL, IDC_COMPOSE_VALIDITY,
                                   IDC_COMPOSE_SAME_SCA};

// The number a person reaches a contact at: its selected number (field 0, asked in form 1).
QString numberOf(const GSM::Contact& contact) {
    return fromWide(contact.getText(GSM::Contact::FieldNumber, 1));
}

void drawTriangle(QPainter& painter, const QRectF& box, bool down) {
    const QPointF centre = box.center();
    const qreal half = std::min(box.width(), box.height()) / 4;
    QPainterPath path;
    if (down) {
        path.moveTo(centre.x() - half, centre.y() - half / 2);
        path.lineTo(centre.x() + half, centre.y() - half / 2);
        path.lineTo(centre.x(), centre.y() + half / 2 + 1);
    } else {
        path.moveTo(centre.x() - half, centre.y() + half / 2);
        path.lineTo(centre.x() + half, centre.y() + half / 2);
        path.lineTo(centre.x(), centre.y() - half / 2 - 1);
    }
    path.closeSubpath();
    painter.fillPath(path, Qt::black);
}

// A head and shoulders: the people behind the RECP button.
void drawPerson(QPainter& painter, const QRectF& box) {
    const QPointF centre = box.center();
    const qreal unit = std::min(box.width(), box.height()) / 8;
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawEllipse(QPointF(centre.x(), centre.y() - unit * 1.3), unit * 1.4, unit * 1.4);
    painter.drawChord(
        QRectF(centre.x() - unit * 2.6, centre.y() + unit * 0.4, unit * 5.2, unit * 5.2), 0,
        180 * 16);
}

} // namespace

ComposerWindow* ComposerWindow::open(GSM::Message* message, ComposerEnvironment& environment) {
    return showModeless(new ComposerWindow(message, environment));
}

ComposerWindow::ComposerWindow(GSM::Message* message, ComposerEnvironment& environment)
    : Dialog(IDD_COMPOSER)
    , message_(message)
    , environment_(environment)
    , valueMenu_(*this, IDC_COMPOSE_TEXT, ValueMenuContext::Composer) {
    if (!message_)
        return;
    if (message_->getStatus() != GSM::Message::Forwarded) {
        // A reply brings its recipients; a message the host filled in (an sms: link) its
        // recipients and its text.
        startMessageText_ = withCrLfBreaks(fromWide(message_->getText()));
        if (GSM::Folder* contacts = message_->getContacts()) {
            for (int i = 0; i < contacts->size(); ++i) {
                if (const GSM::Contact* contact = contacts->get(i)) {
                    if (!startToText_.isEmpty())
                        startToText_ += u',';
                    startToText_ += numberOf(*contact);
                }
            }
        }
    } else {
        startMessageText_ = forwardedText(fromWide(message_->getText()));
    }
}

ComposerWindow::~ComposerWindow() = default;

bool ComposerWindow::onInitDialog() {
    detailsShown_ = false;
    recipientCount_ = 0;
    for (int id : {IDC_COMPOSE_TO_LABEL, IDC_COMPOSE_TEMPLATE_LABEL, IDC_COMPOSE_SCA_LABEL,
                   IDC_COMPOSE_VALIDITY_LABEL})
        if (StaticLabel* caption = staticLabel(id))
            caption->setTextColor(kCaptionColour);
    for (int id : {IDC_COMPOSE_RECIPIENTS, IDC_COMPOSE_COUNTER})
        if (StaticLabel* label = staticLabel(id))
            label->setBackgroundColor(kStatusBackground);
    // The arrows and the favourites button show pictures; a screen reader says these instead.
    for (const auto& [id, name] : {std::pair{IDC_COMPOSE_DOWN, IDS_A11Y_SHOW_DETAILS},
                                  std::pair{IDC_COMPOSE_UP, IDS_A11Y_HIDE_DETAILS},
                                  std::pair{IDC_COMPOSE_RECP, IDS_A11Y_FAVOURITES}})
        if (QWidget* button = item(id))
            setControlAccessibleName(button, loadString(name));
    if (CommandBar* bar = createCommandBar(IDR_MENU_EDIT))
        bar->addButtons(IDB_COMMAND_BAR, {{IDM_EDIT_CUT, kImageCut},
                                          {IDM_EDIT_COPY, kImageCopy},
                                          {IDM_EDIT_PASTE, kImagePaste}});
    else
        postMessage(WM_CLOSE);

    filteringTo_ = true;
    setItemText(IDC_COMPOSE_TO, startToText_);
    filteringTo_ = false;
    fillTemplateList();
    fillStartText();
    fillDetails();
    showDetails(false);
    valueMenu_.attach();
    enableItem(IDC_COMPOSE_SEND, false);
    if (!toText().isEmpty()) {
        enableItem(IDC_COMPOSE_TO, true);
        onToFieldChange();
    }
    if (GSM::Folder* picker = GSM::PhoneBook::getFolder(GSM::PhoneBook::FolderPicker))
        picker->removeAll();
    // A forwarded text still needs its recipient; everything else goes on in the text.
    setFocusItem(startMessageText_.isEmpty() || !startToText_.isEmpty() ? IDC_COMPOSE_TEXT
                                                                        : IDC_COMPOSE_TO);
    return false;
}

void ComposerWindow::fillTemplateList() {
    ComboBox* templates = comboBox(IDC_COMPOSE_TEMPLATES);
    if (!templates)
        return;
    templates->resetContent();
    for (const QString& name : TemplateStore::templateNames())
        templates->addString(name);
    templates->insertString(0, loadString(IDS_INSERT_TEMPLATE));
    templates->setCurSel(0);
}

void ComposerWindow::fillStartText() {
    Edit* text = edit(IDC_COMPOSE_TEXT);
    if (!text)
        return;
    StartText start{startMessageText_, 0};
    if (startMessageText_.isEmpty()) {
        const SmsSettings& settings = environment_.settings();
        const QString greeting =
            settings.insertGreeting
                ? PlaceholderExpander::insertTemplate(loadString(IDS_TEMPLATE_GREETING), {}, 0)
                : QString();
        if (settings.insertSignature)
            start = greetingAndSignature(greeting, PlaceholderExpander::insertTemplate(
                                                       loadString(IDS_TEMPLATE_SIGNATURE), {}, 0));
        else
            start = greetingAndSignature(greeting, QString());
    }
    text->setText(start.text);
    updateStatusLine();
    text->setCaretPos(start.caret);
    text->scrollCaret();
}

void ComposerWindow::fillDetails() {
    ComboBox* validity = comboBox(IDC_COMPOSE_VALIDITY);
    if (validity)
        fillValidityChoices(*validity);
    GSM::MainPreferences* preferences = GSM::Preferences::getMainPreferences();
    if (!preferences)
        return;
    if (validity)
        validity->setCurSel(validityIndexForCode(preferences->validityPeriod()));
    checkItem(IDC_COMPOSE_SAME_SCA,
              preferences->useSameServiceCentre() ? BST_CHECKED : BST_UNCHECKED);
    if (GSM::ServiceCentreList* centres = preferences->serviceCentres())
        if (const GSM::ServiceCentreEntry* entry = centres->get(centres->preferred()))
            setItemText(IDC_COMPOSE_SCA, fromWide(entry->number()));
}

void ComposerWindow::showDetails(bool show) {
    detailsShown_ = show;
    for (int id : kDetailControls)
        showItem(id, show);
    showItem(IDC_COMPOSE_UP, show);
    showItem(IDC_COMPOSE_DOWN, !show);
    if (show)
        if (QWidget* up = item(IDC_COMPOSE_UP))
            up->raise();
    layoutControls();
}

void ComposerWindow::onSize(int clientWidth, int clientHeight) {
    layoutControls();
}

void ComposerWindow::layoutControls() {
    const QSize client = clientSize();
    if (client.isEmpty())
        return;
    const QRect text = itemRect(IDC_COMPOSE_TEXT);
    const int top = detailsShown_ ? kTextTopWithDetails : kTextTopCollapsed;
    const int below = detailsShown_ ? kBelowTextWithDetails : kBelowTextCollapsed;
    moveItem(IDC_COMPOSE_TEXT, QRect(text.left(), top, text.width(), client.height() - below));
    const int statusTop = top + client.height() - below;
    moveItem(IDC_COMPOSE_RECIPIENTS,
             QRect(0, statusTop, client.width() - kCounterWidth, kStatusHeight));
    moveItem(IDC_COMPOSE_COUNTER,
             QRect(client.width() - kCounterWidth, statusTop, kCounterWidth, kStatusHeight));
}

QString ComposerWindow::toText() const {
    return itemText(IDC_COMPOSE_TO);
}

QString ComposerWindow::messageText() const {
    return itemText(IDC_COMPOSE_TEXT);
}

void ComposerWindow::setToText(const QString& text) {
    if (Edit* to = edit(IDC_COMPOSE_TO)) {
        to->setText(text);
        to->setCaretPos(int(text.size()));
        to->scrollCaret();
    }
}

void ComposerWindow::updateStatusLine() {
    const QString text = messageText();
    setItemText(IDC_COMPOSE_RECIPIENTS, recipientText(recipientCount_));
    setItemText(IDC_COMPOSE_COUNTER, counterTextFor(text));
    enableItem(IDC_COMPOSE_SEND, sendAllowed(text, recipientCount_));
}

// ---- the To: field

void ComposerWindow::onEditUpdate(int id) {
    if (id == IDC_COMPOSE_TO && !filteringTo_)
        onToFieldUpdate();
}

void ComposerWindow::onEditChange(int id) {
    if (id == IDC_COMPOSE_TEXT)
        updateStatusLine();
    else if (id == IDC_COMPOSE_TO && !filteringTo_)
        onToFieldChange();
}

void ComposerWindow::onToFieldUpdate() {
    QString text = toText();
    if (text.isEmpty() || isRecipientCharacter(text.back()))
        return;
    text.chop(1);
    filteringTo_ = true;
    setToText(text);
    filteringTo_ = false;
    onToFieldChange();
    UserAgent::current().messageBox(window(), loadString(IDS_INVALID_PHONE_CHARACTER), boxCaption(),
                                    MB_OK | MB_ICONSTOP);
}

void ComposerWindow::onToFieldChange() {
    const QString text = toText();
    if (!isValidRecipientText(text)) {
        filteringTo_ = true;
        setToText(QString());
        filteringTo_ = false;
        recipientCount_ = 0;
        updateStatusLine();
        UserAgent::current().messageBox(window(), loadString(IDS_INVALID_RECIPIENT), boxCaption(),
                                        MB_OK | MB_ICONSTOP);
        return;
    }
    if (message_)
        if (GSM::Folder* recipients = message_->getContacts())
            recipients->removeAll();
    recipientCount_ = countRecipients(text);
    updateStatusLine();
}

void ComposerWindow::onToFieldLeave() {
    const QString text = toText();
    if (!text.isEmpty() && message_) {
        if (GSM::Folder* recipients = message_->getContacts()) {
            recipients->removeAll();
            for (const QString& number : provisionalRecipients(text))
                recipients->add(toWide(number), 0);
        }
    }
    if (recipientCount_ != 0 && !text.isEmpty() && !messageText().isEmpty())
        enableItem(IDC_COMPOSE_SEND, true);
}

void ComposerWindow::appendPickedNumbers() {
    if (pickedNumbers_.isEmpty())
        return;
    QString text = toText();
    if (!text.isEmpty())
        text += u',';
    text += pickedNumbers_.join(u',');
    pickedNumbers_.clear();
    setToText(text);
}

void ComposerWindow::onRecipientButton() {
    std::optional<Menu> resource = Menu::load(IDR_MENU_FAVORITES);
    if (!resource)
        return;
    MenuItem popup = resource->subMenu(0).root();
    const QStringList favourites = Favourites::entries();
    // Commands count from 1 in the order appended; each separator takes a number too.
    int command = 1;
    for (const QString& favourite : favourites) {
        if (command == 1) {
            MenuItem separator;
            separator.separator = true;
            popup.children.push_back(separator);
            ++command;
        }
        MenuItem entry;
        entry.id = command++;
        entry.text = Favourites::label(favourite);
        popup.children.push_back(entry);
    }
    if (!favourites.isEmpty()) {
        MenuItem separator;
        separator.separator = true;
        popup.children.push_back(separator);
        ++command;
        MenuItem clear;
        clear.id = command++;
        clear.text = loadString(IDS_CLEAR_FAVORITES);
        popup.children.push_back(clear);
    }
    if (popup.children.size() <= 1) {
        pickFromPhoneBook();
        return;
    }
    const QRect button = itemRect(IDC_COMPOSE_RECP);
    const int chosen = Menu(popup).track(window(), clientArea()->mapToGlobal(button.bottomRight()),
                                         TPM_RIGHTALIGN | TPM_TOPALIGN);
    if (chosen == 0)
        return;
    if (chosen == IDM_FAVORITES_PHONEBOOK) {
        pickFromPhoneBook();
        return;
    }
    QString label;
    for (const MenuItem& entry : popup.children)
        if (entry.id == chosen && !entry.separator)
            label = entry.text.left(256);
    if (label == loadString(IDS_CLEAR_FAVORITES)) {
        Favourites::clear();
        return;
    }
    if (!isValidRecipientText(label))
        label = Favourites::number(Favourites::entry(chosen - 1));
    pickedNumbers_.clear();
    setToText(label);
    appendPickedNumbers();
    onToFieldChange();
}

void ComposerWindow::pickFromPhoneBook() {
    if (!GSM::isServiceAvailable(GSM::ServicePhoneBook))
        return;
    GSM::Folder* picker = GSM::PhoneBook::getFolder(GSM::PhoneBook::FolderPicker);
    if (!picker)
        return;
    picker->removeAll();
    awaitingPick_ = true;
    const GSM::Result result = picker->pick(window());
    // A cancelled picker leaves its folder empty and announces nothing.
    awaitingPick_ = result.isOk() && !picker->isEmpty();
    if (!result.isOk())
        UserAgent::current().messageBox(window(), loadString(IDS_PHONEBOOK_ERROR), boxCaption(),
                                        MB_OK | MB_ICONSTOP);
}

void ComposerWindow::eventContactPicked(GSM::Contact*) {
    // The composer opens the picker through its folder; its answer is eventFolderChanged.
}

void ComposerWindow::eventFolderChanged(GSM::Folder* folder) {
    const ModuleStateGuard guard(moduleState());
    if (!folder || folder->getId() != GSM::PhoneBook::FolderPicker || !awaitingPick_ || !isWindow())
        return;
    awaitingPick_ = false;
    const QString before = toText();
    pickedNumbers_.clear();
    if (!before.isEmpty())
        pickedNumbers_.append(before);
    QString picked;
    for (int i = 0; i < folder->size(); ++i) {
        const GSM::Contact* contact = folder->get(i);
        const GSM::NumberList* numbers = contact ? contact->getNumbers() : nullptr;
        for (int n = 0; numbers && n < numbers->size(); ++n) {
            const GSM::PhoneNumber* number = numbers->get(n);
            if (number && number->getId() == contact->getSelectedNumber() &&
                !fromWide(number->getText()).isEmpty())
                picked = fromWide(number->getText());
        }
    }
    setToText(picked);
    appendPickedNumbers();
    onToFieldChange();
}

// ---- templates, details, edit commands

void ComposerWindow::onComboDropDown(int id) {
    if (id == IDC_COMPOSE_TEMPLATES)
        if (ComboBox* templates = comboBox(id))
            templates->deleteString(0);
}

void ComposerWindow::onComboCloseUp(int id) {
    if (id != IDC_COMPOSE_TEMPLATES)
        return;
    if (ComboBox* templates = comboBox(id)) {
        templates->insertString(0, loadString(IDS_INSERT_TEMPLATE));
        // A choice made in the list is reported after the list has closed: the label comes
        // back into view once that report has been handled.
        postMessage(kShowInsertTemplate);
    }
}

void ComposerWindow::onMessage(UINT message, WPARAM, LPARAM) {
    if (message == kShowInsertTemplate)
        if (ComboBox* templates = comboBox(IDC_COMPOSE_TEMPLATES))
            templates->setCurSel(0);
}

void ComposerWindow::onComboSelChange(int id) {
    if (id == IDC_COMPOSE_TEMPLATES)
        onTemplateSelect();
    else if (id == IDC_COMPOSE_VALIDITY)
        onValidityChange();
}

void ComposerWindow::onTemplateSelect() {
    ComboBox* templates = comboBox(IDC_COMPOSE_TEMPLATES);
    Edit* text = edit(IDC_COMPOSE_TEXT);
    if (!templates || !text || templates->curSel() < 0)
        return;
    const QString label = loadString(IDS_INSERT_TEMPLATE);
    const QString name = templates->itemText(templates->curSel());
    // While the list is open its first entry is a template; it gets its label back on close.
    if (templates->itemText(0) == label)
        templates->setCurSel(0);
    if (name == label)
        return;
    const int caret = text->sel().first;
    text->setSel(caret, caret);
    text->replaceSel(
        PlaceholderExpander::templateToComposerText(TemplateStore::readTemplate(name)));
    text->setModified(true);
    setFocusItem(IDC_COMPOSE_TEXT);
    text->setCaretPos(text->textLength());
    text->scrollCaret();
    updateStatusLine();
}

void ComposerWindow::onValidityChange() {
    ComboBox* validity = comboBox(IDC_COMPOSE_VALIDITY);
    const int index = validity ? validity->curSel() : -1;
    const GSM::Message::ValidityPeriod period = index >= 0 && index < int(kValidityChoices.size())
                                                    ? kValidityChoices[size_t(index)].code
                                                    : GSM::Message::Maximum;
    if (message_)
        message_->setValidityPeriod(period);
}

void ComposerWindow::onEditSetFocus(int id) {
    if (id != IDC_COMPOSE_TO && id != IDC_COMPOSE_TEXT)
        return;
    editCommands_.focused(id);
    Shell::current().sipPreference(window(), SIP_UP);
}

void ComposerWindow::onEditKillFocus(int id) {
    if (id == IDC_COMPOSE_TO)
        onToFieldLeave();
}

void ComposerWindow::onCommand(int id) {
    switch (id) {
    case IDC_COMPOSE_SEND:
        onSend();
        return;
    case IDC_COMPOSE_DOWN:
        showDetails(true);
        return;
    case IDC_COMPOSE_UP:
        showDetails(false);
        return;
    case IDC_COMPOSE_RECP:
        onRecipientButton();
        return;
    case IDM_COMPOSE_PHONEBOOK:
        pickFromPhoneBook();
        return;
    default:
        if (!editCommands_.run(*this, id))
            Dialog::onCommand(id);
    }
}

// ---- sending and closing

void ComposerWindow::onSend() {
    SendForm form;
    form.toText = toText();
    form.messageText = messageText();
    form.serviceCentre = itemText(IDC_COMPOSE_SCA);
    form.sameServiceCentre = isItemChecked(IDC_COMPOSE_SAME_SCA) == BST_CHECKED;
    form.recipientCount = recipientCount_;
    if (valueMenu_.pickedContact())
        form.chosenContactNumber = valueMenu_.pickedContact()->phone;
    MessageSubmitter submitter(message_, senderInfoOf(environment_.settings()), window());
    if (!submitter.send(form))
        return;
    Shell::current().sipPreference(window(), SIP_FORCEDOWN);
    destroyWindow();
}

void ComposerWindow::onCancel() {
    Edit* text = edit(IDC_COMPOSE_TEXT);
    if (text && text->isModified() &&
        UserAgent::current().messageBox(window(), loadString(IDS_MESSAGE_WILL_BE_LOST),
                                        boxCaption(), MB_OKCANCEL | MB_ICONEXCLAMATION) != IDOK)
        return;
    if (message_)
        message_->endEdit(true);
    message_ = nullptr;
    Shell::current().sipPreference(window(), SIP_DOWN);
    destroyWindow();
}

void ComposerWindow::onDestroy() {
    // Closed by the module (exitModule) while still editing: the message is given up.
    if (message_)
        message_->endEdit(true);
    message_ = nullptr;
}

void ComposerWindow::onPostDestroy() {
    environment_.composerDestroyed(this);
    delete this;
}

bool ComposerWindow::onDrawItem(int id, QPainter& painter, const DrawItemState& state) {
    const QRectF box =
        QRectF(itemRect(id).translated(-itemRect(id).topLeft())).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(state.enabled ? Qt::black : Qt::gray, 1));
    painter.setBrush(state.pressed ? QColor(0xc0, 0xc0, 0xc0) : QColor(0xf0, 0xf0, 0xf0));
    painter.drawRoundedRect(box, 2, 2);
    switch (id) {
    case IDC_COMPOSE_SEND: {
        QFont font = painter.font();
        font.setBold(true);
        font.setPixelSize(9);
        painter.setFont(font);
        painter.setPen(state.enabled ? Qt::black : Qt::gray);
        painter.drawText(box, Qt::AlignCenter, itemText(id));
        return true;
    }
    case IDC_COMPOSE_DOWN:
    case IDC_COMPOSE_UP:
        drawTriangle(painter, box, id == IDC_COMPOSE_DOWN);
        return true;
    case IDC_COMPOSE_RECP:
        drawPerson(painter, box);
        return true;
    default:
        return false;
    }
}

} // namespace tessaly::sms
