#include "suite/host/screenshot.h"

#include "suite/host/phone_window.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>

namespace tessaly::host {

QImage grabPhone(PhoneWindow& phone) {
    QImage picture = phone.grab().toImage();
    QPainter painter(&picture);
    const QPoint origin = phone.mapToGlobal(QPoint(0, 0));
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget == &phone || !widget->isVisible())
            continue;
        painter.drawPixmap(widget->mapToGlobal(QPoint(0, 0)) - origin, widget->grab());
    }
    return picture;
}

} // namespace tessaly::host
