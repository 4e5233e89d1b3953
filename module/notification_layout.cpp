#include "module/notification_layout.h"

#include "framework/ui/dialog.h"
#include "framework/ui/screen.h"

#include <QFontMetrics>

#include <algorithm>

namespace tessaly::sms {

namespace {

constexpr int kMargin = 5;
constexpr int kLabelGap = 6;
constexpr int kGap = 4;

} // namespace

void paintHeader(Dialog& window, int headerId, HeaderPicture picture, const QString& word,
                 int frame, double progress) {
    if (StaticLabel* header = window.staticLabel(headerId))
        header->setPixmap(notificationHeader(header->size(), picture, word, frame, progress));
}

NotificationLayout::NotificationLayout(Dialog& window)
    : window_(window) {}

void NotificationLayout::addLine(int labelId, int valueId) {
    lines_.push_back({labelId, valueId});
}

void NotificationLayout::place(int headerId, int textId, int noteId, int bottomRowId) {
    const QSize client = window_.clientSize();
    const QFontMetrics metrics(smallFont());
    const int lineHeight = metrics.height() + 3;
    int labelWidth = 0;
    for (const Line& line : lines_)
        if (line.labelId != 0)
            labelWidth = std::max(labelWidth,
                                  int(metrics.horizontalAdvance(window_.itemText(line.labelId))));
    const int valueX = kMargin + labelWidth + kLabelGap;
    const int valueWidth = client.width() - valueX - kMargin;

    window_.moveItem(headerId, QRect(0, 0, client.width(), window_.itemRect(headerId).height()));
    int y = window_.itemRect(headerId).bottom() + 1 + kGap;
    for (const Line& line : lines_) {
        if (line.labelId != 0) {
            window_.showItem(line.labelId, true);
            window_.moveItem(line.labelId, QRect(kMargin, y, labelWidth + kLabelGap, lineHeight));
        }
        window_.showItem(line.valueId, true);
        window_.moveItem(line.valueId, QRect(valueX, y, valueWidth, lineHeight));
        y += lineHeight;
    }

    int bottom = window_.itemRect(bottomRowId).top() - kGap;
    if (noteId != 0) {
        bottom -= lineHeight;
        window_.moveItem(noteId, QRect(kMargin, bottom, client.width() - 2 * kMargin, lineHeight));
    }
    y += kGap;
    window_.moveItem(textId,
                     QRect(kMargin, y, client.width() - 2 * kMargin, std::max(0, bottom - y)));
}

} // namespace tessaly::sms
