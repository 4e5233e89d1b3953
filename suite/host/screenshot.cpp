#include "suite/host/screenshot.h"

#include "framework/ui/dialog.h"
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
    // and on the phone a pop-up always stands over the full screen it came up on); within each,
    // in the order they were made, the active one last (it is the one in front).
    std::vector<QWidget*> windows;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget != phone.homeScreen() && widget != phone.simulator() && widget->isVisible())
            windows.push_back(widget);
    }
    const std::vector<Dialog*> made = Dialog::windows();
    const auto madeAt = [&made](const QWidget* widget) {
        const auto found = std::find_if(made.begin(), made.end(), [widget](const Dialog* dialog) {
            return dialog->window() == widget;
        });
        return found - made.begin();
    };
    const auto isPopup = [&phone](const QWidget* widget) {
        return widget->width() * widget->height() <
               phone.homeScreen()->width() * phone.homeScreen()->height();
    };
    std::stable_sort(windows.begin(), windows.end(), [&](const QWidget* a, const QWidget* b) {
        if (isPopup(a) != isPopup(b))
            return isPopup(b);
        const bool aActive = a == QApplication::activeWindow();
        const bool bActive = b == QApplication::activeWindow();
        return aActive != bActive ? bActive : madeAt(a) < madeAt(b);
    });
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
