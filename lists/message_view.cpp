#include "lists/message_view.h"

#include "framework/resources/resources.h"
#include "framework/ui/accessible_names.h"
#include "framework/ui/menu.h"
#include "framework/ui/screen.h"
#include "lists/main_window.h"
#include "lists/message_commands.h"
#include "lists/status_images.h"
#include "resources/command_bar_images.h"
#include "resources/resource.h"

#include <QFontMetrics>
#include <QStyle>

namespace tessaly::sms {

namespace {

constexpr int kMargin = 3;
constexpr int kValueX = 58;

const int kDetailLines[][2] = {
    {IDC_VIEW_STATUS_LABEL, IDC_VIEW_STATUS},
    {IDC_VIEW_VALIDITY_LABEL, IDC_VIEW_VALIDITY},
    {IDC_VIEW_SCA_LABEL, IDC_VIEW_SCA},
    {IDC_VIEW_REPLY_LABEL, IDC_VIEW_REPLY},
};

// Tells an open main window that its labels may have changed.
void refreshMainWindowLabels() {
    for (Dialog* window : Dialog::windows())
        if (auto* main = dynamic_cast<MainSmsWindow*>(window))
            main->refreshLabels();
}

} // namespace

MessageView::MessageView(long messageId, int folder, Dialog* parent)
    : Dialog(IDD_MESSAGE_VIEW, parent)
    , messageId_(messageId)
    , folder_(folder)
    , message_(GSM::sms.getMessage(messageId)) {
    titleFont_ = QFont(QStringLiteral("Tahoma"));
    titleFont_.setPixelSize(13);
    titleFont_.setWeight(QFont::Bold);
    if (!message_)
        return;
    serviceCentre_ = fromWide(message_->getServiceCentre());
    text_ = fromWide(message_->getText());
    validity_ = message_->getValidityPeriod();
    status_ = message_->getStatus();
    deleted_ = status_ == GSM::Message::Deleted;
    GSM::Folder* contacts = message_->getContacts();
    const GSM::Contact* first = contacts ? contacts->get(0) : nullptr;
    name_ = contactName(first);
    number_ = contactNumber(first);
    hasName_ = !name_.isEmpty();
    replyPath_ = message_->useSameServiceCentre();
    dateText_ = fromWide(message_->getDate());
    if (folder_ == kOutboxFolder) {
        recipients_ = recipientsText(contacts);
        notSent_ = notSentText(*message_, contacts);
        delivered_ = deliveredText(*message_, contacts);
    }
}

bool MessageView::onInitDialog() {
    const bool outbox = folder_ == kOutboxFolder;
    if (CommandBar* bar = createCommandBar(outbox ? IDR_MENU_VIEW_OUTBOX : IDR_MENU_VIEW_INBOX))
        bar->addButtons(IDB_COMMAND_BAR,
                        {{outbox ? IDM_VIEW_OUTBOX_NEW : IDM_VIEW_INBOX_NEW, kImageNew}});
    if (QWidget* title = item(IDC_VIEW_TITLE))
        title->setFont(titleFont_);
    // The arrows show pictures; a screen reader says these instead.
    for (const auto& [id, name] : {std::pair{IDC_VIEW_DOWN, IDS_A11Y_SHOW_DETAILS},
                                   std::pair{IDC_VIEW_UP, IDS_A11Y_HIDE_DETAILS}})
        if (QWidget* button = item(id))
            setControlAccessibleName(button, loadString(name));
    if (message_)
        fillFields();
    showDetails(false);
    return true;
}

void MessageView::fillFields() {
    const bool outbox = folder_ == kOutboxFolder;
    setItemText(IDC_VIEW_TITLE, hasName_ ? name_ : number_);
    setItemText(IDC_VIEW_FROM_LABEL, labelText(outbox ? IDS_TO : IDS_FROM));
    setItemText(IDC_VIEW_DATE_LABEL, labelText(IDS_DATE));
    setItemText(IDC_VIEW_STATUS_LABEL, labelText(IDS_STATUS));
    setItemText(IDC_VIEW_VALIDITY_LABEL, labelText(IDS_VALIDITY));
    setItemText(IDC_VIEW_SCA_LABEL, labelText(IDS_SCA));
    setItemText(IDC_VIEW_REPLY_LABEL, labelText(IDS_REPLY));

    setItemText(IDC_VIEW_NAME, name_);
    setItemText(IDC_VIEW_NUMBER, number_);
    setItemText(IDC_VIEW_RECIPIENTS, recipients_.text);
    setItemText(IDC_VIEW_DATE, dateText_);
    setItemText(IDC_VIEW_NOT_SENT_LABEL, labelText(IDS_NOT_SENT));
    setItemText(IDC_VIEW_NOT_SENT, notSent_);
    setItemText(IDC_VIEW_DELIVERED_LABEL, labelText(IDS_DELIVERED));
    setItemText(IDC_VIEW_DELIVERED, delivered_);
    setItemText(IDC_VIEW_STATUS, loadString(statusTextId(status_)));
    if (outbox)
        setItemText(IDC_VIEW_VALIDITY, loadString(validityTextId(validity_)));
    setItemText(IDC_VIEW_SCA, serviceCentre_);
    setItemText(IDC_VIEW_REPLY, loadString(replyPath_ ? IDS_REPLY_PREPAID : IDS_REPLY_NOT_PREPAID));
    setItemText(IDC_VIEW_TEXT, text_);
}

bool MessageView::detailsShown() const {
    return isItemVisible(IDC_VIEW_UP);
}

void MessageView::showDetails(bool show) {
    showItem(IDC_VIEW_DOWN, !show);
    showItem(IDC_VIEW_UP, show);
    for (const auto& line : kDetailLines) {
        // An Inbox message carries no validity of its own.
        const bool relevant = line[0] != IDC_VIEW_VALIDITY_LABEL || folder_ == kOutboxFolder;
        showItem(line[0], show && relevant);
        showItem(line[1], show && relevant);
    }
    layoutControls();
}

void MessageView::onSize(int clientWidth, int clientHeight) {
    layoutControls();
}

void MessageView::layoutControls() {
    const QSize client = clientSize();
    if (client.isEmpty())
        return;
    const int lineHeight = dialogUnitsToPixelsY(9);
    const int valueWidth = client.width() - kValueX - kMargin;
    const QRect arrow = itemRect(IDC_VIEW_DOWN);
    const int titleHeight = std::max(arrow.height(), lineHeight + 2);
    moveItem(IDC_VIEW_DOWN,
             QRect(client.width() - kMargin - arrow.width(), 2, arrow.width(), titleHeight - 2));
    moveItem(IDC_VIEW_UP, itemRect(IDC_VIEW_DOWN));
    moveItem(IDC_VIEW_TITLE,
             QRect(kMargin, 2, client.width() - 3 * kMargin - arrow.width(), titleHeight));
    int y = titleHeight + 6;

    const bool outbox = folder_ == kOutboxFolder;
    showItem(IDC_VIEW_RECIPIENTS, outbox && message_);
    showItem(IDC_VIEW_NAME, !outbox && (hasName_ || !message_));
    showItem(IDC_VIEW_NUMBER, !outbox);
    moveItem(IDC_VIEW_FROM_LABEL, QRect(kMargin, y, kValueX - kMargin, lineHeight));
    if (outbox && message_) {
        // The field's frame and scroll bar take their share of the width.
        const QWidget* field = item(IDC_VIEW_RECIPIENTS);
        const int textWidth =
            valueWidth - 8 - (field ? field->style()->pixelMetric(QStyle::PM_ScrollBarExtent) : 0);
        const int lines =
            std::min(wrappedLines(IDC_VIEW_RECIPIENTS, recipients_.text, textWidth), 3);
        const int height = lines * lineHeight + 6;
        moveItem(IDC_VIEW_RECIPIENTS, QRect(kValueX, y - 2, valueWidth, height));
        y += height;
    } else {
        for (int id : {IDC_VIEW_NAME, IDC_VIEW_NUMBER}) {
            if (!isItemVisible(id))
                continue;
            moveItem(id, QRect(kValueX, y, valueWidth, lineHeight));
            y += lineHeight;
        }
    }
    moveItem(IDC_VIEW_DATE_LABEL, QRect(kMargin, y, kValueX - kMargin, lineHeight));
    moveItem(IDC_VIEW_DATE, QRect(kValueX, y, valueWidth, lineHeight));
    y += lineHeight;
    // Whom a failed message did not reach stays in sight, details shown or not.
    showItem(IDC_VIEW_NOT_SENT_LABEL, !notSent_.isEmpty());
    showItem(IDC_VIEW_NOT_SENT, !notSent_.isEmpty());
    if (!notSent_.isEmpty()) {
        const int height =
            std::min(wrappedLines(IDC_VIEW_NOT_SENT, notSent_, valueWidth), 3) * lineHeight;
        moveItem(IDC_VIEW_NOT_SENT_LABEL, QRect(kMargin, y, kValueX - kMargin, lineHeight));
        moveItem(IDC_VIEW_NOT_SENT, QRect(kValueX, y, valueWidth, height));
        y += height;
    }
    // The delivery report, too, is part of what the person looks for in a sent message.
    showItem(IDC_VIEW_DELIVERED_LABEL, !delivered_.isEmpty());
    showItem(IDC_VIEW_DELIVERED, !delivered_.isEmpty());
    if (!delivered_.isEmpty()) {
        moveItem(IDC_VIEW_DELIVERED_LABEL, QRect(kMargin, y, kValueX - kMargin, lineHeight));
        moveItem(IDC_VIEW_DELIVERED, QRect(kValueX, y, valueWidth, lineHeight));
        y += lineHeight;
    }
    const int lines[][2] = {{IDC_VIEW_STATUS_LABEL, IDC_VIEW_STATUS},
                            {IDC_VIEW_VALIDITY_LABEL, IDC_VIEW_VALIDITY},
                            {IDC_VIEW_SCA_LABEL, IDC_VIEW_SCA},
                            {IDC_VIEW_REPLY_LABEL, IDC_VIEW_REPLY}};
    for (const auto& line : lines) {
        if (!isItemVisible(line[0]))
            continue;
        moveItem(line[0], QRect(kMargin, y, kValueX - kMargin, lineHeight));
        moveItem(line[1], QRect(kValueX, y, valueWidth, lineHeight));
        y += lineHeight;
    }
    y += 4;
    moveItem(IDC_VIEW_TEXT,
             QRect(kMargin, y, client.width() - 2 * kMargin, client.height() - y - kMargin));
}

int MessageView::wrappedLines(int id, const QString& text, int width) const {
    const QWidget* value = item(id);
    if (!value || width <= 0)
        return 1;
    const QFontMetrics metrics = value->fontMetrics();
    const QRect needed = metrics.boundingRect(QRect(0, 0, width, 100000), Qt::TextWordWrap, text);
    return std::max(1, (needed.height() + metrics.height() - 1) / metrics.height());
}

bool MessageView::onDrawItem(int id, QPainter& painter, const DrawItemState& state) {
    if (id != IDC_VIEW_DOWN && id != IDC_VIEW_UP)
        return false;
    drawArrowButton(painter, itemRect(id).translated(-itemRect(id).topLeft()), id == IDC_VIEW_DOWN,
                    state.pressed);
    return true;
}

void MessageView::deleteMessage() {
    if (!confirmAndDeleteMessage(window(), messageId_, IDS_VIEW_DELETE_QUESTION))
        return;
    deleted_ = true;
    refreshMainWindowLabels();
    endDialog(IDOK);
}

void MessageView::onCommand(int id) {
    switch (id) {
    case IDC_VIEW_DOWN:
        showDetails(true);
        return;
    case IDC_VIEW_UP:
        showDetails(false);
        return;
    default:
        break;
    }
    if (!message_) {
        Dialog::onCommand(id);
        return;
    }
    switch (id) {
    case IDM_VIEW_INBOX_NEW:
    case IDM_VIEW_OUTBOX_NEW:
        reportFailure(GSM::sms.newMessage(0));
        endDialog(IDOK);
        break;
    // A command that hands over to another window (the composer, the call) ends the view
    // first, as New does: a modal view left open would take that window's clicks and keys.
    case IDM_VIEW_REPLY:
        endDialog(IDOK);
        reportFailure(GSM::sms.replyMessage(messageId_));
        break;
    case IDM_VIEW_FORWARD:
        endDialog(IDOK);
        reportFailure(GSM::sms.forwardMessage(messageId_));
        break;
    case IDM_VIEW_INBOX_CALL:
    case IDM_VIEW_OUTBOX_CALL:
        endDialog(IDOK);
        callNumber(number_);
        break;
    case IDM_VIEW_DELETE:
        deleteMessage();
        break;
    case IDM_VIEW_SEND_NOW:
        reportFailure(GSM::sms.setMessageStatus(messageId_, GSM::Message::SendNow));
        break;
    case IDM_VIEW_COPY_TO_PHONEBOOK:
        copyToPhonebook(window(), number_);
        break;
    default:
        Dialog::onCommand(id);
    }
}

} // namespace tessaly::sms
