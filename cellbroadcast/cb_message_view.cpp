#include "cellbroadcast/cb_message_view.h"

#include "cellbroadcast/cb_texts.h"
#include "framework/ui/screen.h"
#include "resources/resource.h"
#include "util/date_time_text.h"

#include <algorithm>

namespace tessaly::sms {

namespace {

constexpr int kMargin = 3;
constexpr int kLines[][2] = {
    {IDC_CBVIEW_CHANNEL_LABEL, IDC_CBVIEW_CHANNEL},
    {IDC_CBVIEW_DATE_LABEL, IDC_CBVIEW_DATE},
    {IDC_CBVIEW_COUNT_LABEL, IDC_CBVIEW_COUNT},
};

} // namespace

CbMessageView::CbMessageView(int channel, Dialog* parent)
    : Dialog(IDD_CB_MESSAGE_VIEW, parent) {
    captionFont_ = smallFont();
    captionFont_.setPixelSize(13);
    captionFont_.setWeight(QFont::Bold);
    const CbMessagePtr message(GSM::CbFolder().get(channel));
    if (!message)
        return;
    hasMessage_ = true;
    channelText_ = QString::number(channel);
    dateText_ = FormatTimestamp(message->time());
    countText_ = QString::number(message->count());
    text_ = cbOneLineText(message->messageText());
}

bool CbMessageView::onInitDialog() {
    createCommandBar();
    if (QWidget* caption = item(IDC_CBVIEW_CAPTION))
        caption->setFont(captionFont_);
    setItemText(IDC_CBVIEW_CHANNEL, channelText_);
    setItemText(IDC_CBVIEW_DATE, dateText_);
    setItemText(IDC_CBVIEW_COUNT, countText_);
    setItemText(IDC_CBVIEW_TEXT, text_);
    layoutControls();
    // The whole text selected, from its start: the field opens at the top.
    if (Edit* text = edit(IDC_CBVIEW_TEXT))
        text->selectAll();
    return true;
}

void CbMessageView::onSize(int clientWidth, int clientHeight) {
    layoutControls();
}

void CbMessageView::layoutControls() {
    const QSize client = clientSize();
    if (client.isEmpty())
        return;
    const int lineHeight = dialogUnitsToPixelsY(9);
    const int captionHeight = lineHeight + 4;
    moveItem(IDC_CBVIEW_CAPTION, QRect(kMargin, 2, client.width() - 2 * kMargin, captionHeight));
    const int top = captionHeight + 6;
    // Labels as wide as their words; the values start in one column after the widest.
    int valueX = 0;
    int y = top;
    for (const auto& line : kLines) {
        moveItem(line[0], QRect(0, y, 1, lineHeight));
        valueX = std::max(valueX, layoutLabelChain({staticLabel(line[0])}, kMargin, Qt::AlignLeft));
        y += lineHeight;
    }
    valueX += kLabelChainGap;
    y = top;
    for (const auto& line : kLines) {
        moveItem(line[1], QRect(valueX, y, client.width() - valueX - kMargin, lineHeight));
        y += lineHeight;
    }
    y += 4;
    moveItem(IDC_CBVIEW_TEXT,
             QRect(kMargin, y, client.width() - 2 * kMargin, client.height() - y - kMargin));
}

} // namespace tessaly::sms
