#include "suite/host/screenshot.h"

#include "suite/host/phone_window.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>

#include <vector>

namespace tessaly::host {

QImage grabPhone(const PhoneWindow& phone) {
    // The home screen at the bottom, the panel on top, the module's windows between them in
    // the order they were made.
    std::vector<QWidget*> layers{phone.homeScreen()};
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget != phone.homeScreen() && widget != phone.simulator() && widget->isVisible())
            layers.push_back(widget);
    }
    layers.push_back(phone.simulator());

    QRect desktop;
    for (const QWidget* widget : layers)
        desktop |= widget->frameGeometry();
    QImage picture(desktop.size(), QImage::Format_RGB32);
    picture.fill(Qt::black);
    QPainter painter(&picture);
    for (QWidget* widget : layers)
        painter.drawPixmap(widget->geometry().topLeft() - desktop.topLeft(), widget->grab());
    return picture;
}

} // namespace tessaly::host
