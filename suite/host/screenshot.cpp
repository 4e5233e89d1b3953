#include "suite/host/screenshot.h"

#include "suite/host/phone_window.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <vector>

namespace tessaly::host {

QImage grabPhone(const PhoneWindow& phone) {
    // The home screen at the bottom, the panel on top, the module's windows between them:
    // full-screen windows under pop-ups (offscreen windows have no stacking order of their own,
    // and on the phone a pop-up always stands over the full screen it came up on).
    std::vector<QWidget*> windows;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget != phone.homeScreen() && widget != phone.simulator() && widget->isVisible())
            windows.push_back(widget);
    }
    const auto area = [](const QWidget* widget) { return widget->width() * widget->height(); };
    std::stable_sort(windows.begin(), windows.end(),
                     [&area](const QWidget* a, const QWidget* b) { return area(a) > area(b); });
    std::vector<QWidget*> layers{phone.homeScreen()};
    layers.insert(layers.end(), windows.begin(), windows.end());
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
