#include "lists/status_images.h"

#include <QPainter>
#include <QPainterPath>
#include <QPolygon>

namespace tessaly::sms {

namespace {

constexpr int kImageSize = 16;

enum class Envelope { Closed, Open, Incomplete, Failed };

QPixmap drawEnvelope(Envelope kind) {
    QPixmap pixmap(kImageSize, kImageSize);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF body(1.5, 4.5, 13, 9);
    const QColor paper =
        kind == Envelope::Closed ? QColor(0xff, 0xe0, 0x80) : QColor(0xf4, 0xf4, 0xf4);
    const QColor edge(0x50, 0x50, 0x50);
    QPen pen(edge, 1);
    if (kind == Envelope::Incomplete)
        pen.setStyle(Qt::DotLine);
    painter.setPen(pen);
    painter.setBrush(paper);
    painter.drawRect(body);
    if (kind == Envelope::Open) {
        // The flap stands open above the envelope.
        painter.drawPolygon(QPolygonF{{1.5, 4.5}, {8, 0.5}, {14.5, 4.5}});
        painter.drawPolyline(QPolygonF{{1.5, 4.5}, {8, 9.5}, {14.5, 4.5}});
    } else {
        painter.drawPolyline(QPolygonF{{1.5, 4.5}, {8, 10}, {14.5, 4.5}});
    }
    if (kind == Envelope::Failed) {
        painter.setPen(QPen(QColor(0xd0, 0x10, 0x10), 2));
        painter.drawLine(QPointF(9, 8), QPointF(15, 14));
        painter.drawLine(QPointF(15, 8), QPointF(9, 14));
    }
    return pixmap;
}

} // namespace

const QList<QPixmap>& statusImages() {
    static const QList<QPixmap> images{drawEnvelope(Envelope::Closed), drawEnvelope(Envelope::Open),
                                       drawEnvelope(Envelope::Incomplete),
                                       drawEnvelope(Envelope::Failed)};
    return images;
}

QPixmap cellBroadcastImage() {
    QPixmap pixmap(kImageSize, kImageSize);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor mast(0x30, 0x50, 0x80);
    painter.setPen(QPen(mast, 1.5));
    painter.drawLine(QPointF(8, 6), QPointF(5, 15));
    painter.drawLine(QPointF(8, 6), QPointF(11, 15));
    painter.drawLine(QPointF(6.2, 11.5), QPointF(9.8, 11.5));
    painter.setBrush(mast);
    painter.drawEllipse(QPointF(8, 5), 1.5, 1.5);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0xd0, 0x70, 0x10), 1.2));
    for (const qreal radius : {3.5, 6.0}) {
        const QRectF arc(8 - radius, 5 - radius, 2 * radius, 2 * radius);
        painter.drawArc(arc, -40 * 16, 80 * 16);
        painter.drawArc(arc, 140 * 16, 80 * 16);
    }
    return pixmap;
}

void drawArrowButton(QPainter& painter, const QRect& rect, bool pointsDown, bool pressed) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect, pressed ? QColor(0xc8, 0xd4, 0xe8) : QColor(0xe8, 0xee, 0xf6));
    painter.setPen(QColor(0x90, 0xa0, 0xb8));
    painter.drawRect(rect.adjusted(0, 0, -1, -1));
    const QPointF center = QRectF(rect).center();
    const qreal half = std::min(rect.width(), rect.height()) * 0.3;
    const qreal direction = pointsDown ? 1 : -1;
    QPainterPath arrow;
    arrow.moveTo(center.x() - half, center.y() - direction * half / 2);
    arrow.lineTo(center.x() + half, center.y() - direction * half / 2);
    arrow.lineTo(center.x(), center.y() + direction * half / 2 + direction * 1);
    arrow.closeSubpath();
    painter.fillPath(arrow, QColor(0x10, 0x3e, 0x8c));
    painter.restore();
}

} // namespace tessaly::sms
