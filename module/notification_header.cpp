#include "module/notification_header.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace tessaly::sms {

namespace {

constexpr QColor kBandTop(0x2a, 0x6c, 0xc8);
constexpr QColor kBandBottom(0x0e, 0x3a, 0x80);
constexpr QColor kPaper(0xfb, 0xfb, 0xf5);
constexpr QColor kInk(0x0e, 0x3a, 0x80);
constexpr QColor kChip(0xe0, 0xb0, 0x40);
constexpr QColor kGauge(0x8c, 0xe0, 0x7a);

void drawEnvelope(QPainter& painter, const QRectF& box) {
    painter.setPen(QPen(kInk, 1.2));
    painter.setBrush(kPaper);
    painter.drawRect(box);
    QPainterPath flap;
    flap.moveTo(box.topLeft());
    flap.lineTo(box.center().x(), box.top() + box.height() * 0.55);
    flap.lineTo(box.topRight());
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(flap);
}

void drawArrow(QPainter& painter, QPointF from, double length) {
    painter.setPen(QPen(kPaper, 2.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF to(from.x() + length, from.y());
    painter.drawLine(from, to);
    painter.drawLine(to, to + QPointF(-4, -4));
    painter.drawLine(to, to + QPointF(-4, 4));
}

void drawSimCard(QPainter& painter, const QRectF& box) {
    const double cut = box.width() * 0.3;
    QPainterPath card;
    card.moveTo(box.left(), box.top());
    card.lineTo(box.right() - cut, box.top());
    card.lineTo(box.right(), box.top() + cut);
    card.lineTo(box.right(), box.bottom());
    card.lineTo(box.left(), box.bottom());
    card.closeSubpath();
    painter.setPen(QPen(kInk, 1.2));
    painter.setBrush(kPaper);
    painter.drawPath(card);
    painter.setBrush(kChip);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(QRectF(box.left() + box.width() * 0.22, box.top() + box.height() * 0.4,
                                   box.width() * 0.56, box.height() * 0.4),
                            1.5, 1.5);
}

// Three dots between the card and the envelope; one of them lit per frame.
void drawTransfer(QPainter& painter, QPointF from, double spacing, int frame) {
    painter.setPen(Qt::NoPen);
    for (int dot = 0; dot < 3; ++dot) {
        painter.setBrush(dot == frame % 3 ? kPaper : QColor(0xff, 0xff, 0xff, 90));
        painter.drawEllipse(QPointF(from.x() + dot * spacing, from.y()), 2.2, 2.2);
    }
}

} // namespace

QPixmap notificationHeader(QSize size, HeaderPicture picture, const QString& word, int frame,
                           double progress) {
    QPixmap pixmap(size.expandedTo(QSize(1, 1)));
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient band(0, 0, 0, size.height());
    band.setColorAt(0, kBandTop);
    band.setColorAt(1, kBandBottom);
    painter.fillRect(pixmap.rect(), band);

    const double height = size.height();
    const double iconHeight = std::max(6.0, height * 0.5);
    const double top = (height - iconHeight) / 2;
    const double left = 8;
    double textLeft = left;
    switch (picture) {
    case HeaderPicture::Message:
        drawEnvelope(painter, QRectF(left, top, iconHeight * 1.5, iconHeight));
        textLeft += iconHeight * 1.5 + 10;
        break;
    case HeaderPicture::Sending:
        drawEnvelope(painter, QRectF(left, top, iconHeight * 1.5, iconHeight));
        drawArrow(painter, QPointF(left + iconHeight * 1.5 + 3, height / 2), 12);
        textLeft += iconHeight * 1.5 + 22;
        break;
    case HeaderPicture::Database: {
        const QRectF card(left, top - 1, iconHeight * 0.8, iconHeight + 2);
        drawSimCard(painter, card);
        drawTransfer(painter, QPointF(card.right() + 7, height / 2), 7, frame);
        const QRectF envelope(card.right() + 27, top, iconHeight * 1.5, iconHeight);
        drawEnvelope(painter, envelope);
        textLeft = envelope.right() + 10;
        break;
    }
    }

    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(std::max(8, int(height * 0.55)));
    font.setBold(true);
    font.setItalic(true);
    painter.setFont(font);
    painter.setPen(kPaper);
    painter.drawText(QRectF(textLeft, 0, size.width() - textLeft - 6, height),
                     Qt::AlignVCenter | Qt::AlignLeft, word);

    if (progress >= 0) {
        const double clamped = std::clamp(progress, 0.0, 1.0);
        painter.fillRect(QRectF(0, height - 3, size.width(), 3), kBandBottom.darker(140));
        painter.fillRect(QRectF(0, height - 3, size.width() * clamped, 3), kGauge);
    }
    return pixmap;
}

} // namespace tessaly::sms
