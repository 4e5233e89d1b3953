#pragma once

// The images of the message lists and the message view, drawn at run time (no image files):
// the four status images in the order of statusImageIndex, and the view's arrow buttons.

#include <QList>
#include <QPixmap>

class QPainter;
class QRect;

namespace tessaly::sms {

// 0 closed envelope (unread and every other status), 1 open envelope (read, sent),
// 2 envelope with a broken edge (incomplete), 3 envelope with a red cross (failed).
const QList<QPixmap>& statusImages();

// The cell-broadcast list's image: a mast sending waves to both sides.
QPixmap cellBroadcastImage();

// A small filled triangle pointing down (show the details) or up (hide them).
void drawArrowButton(QPainter& painter, const QRect& rect, bool pointsDown, bool pressed);

} // namespace tessaly::sms
