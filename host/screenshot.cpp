#include "host/screenshot.h"

#include "framework/ui/dialog.h"
#include "host/phone_window.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <tuple>
#include <vector>

namespace tessaly::host {

QImage grabPhone(const PhoneWindow& phone) {
    // The host's two windows at the bottom, the module's windows over them (a box the module
    // raised may be wider than the phone and must not hide behind the panel): full-screen
    // windows under pop-ups (offscreen windows have no stacking order of their own, and on the
    // phone a pop-up always stands over the full screen it came up on); within each, in the
    // order they were made, the active one last (it is the one in front).
    const std::vector<Dialog*> made = Dialog::windows();
    const int phoneArea = phone.homeScreen()->width() * phone.homeScreen()->height();
    // Where a window stands: sorted on (pop-up, active, made at), the last one in front.
    const auto stacking = [&made, phoneArea](const QWidget* widget) {
        const bool popup = widget->width() * widget->height() < phoneArea;
        const bool active = widget == QApplication::activeWindow();
        const auto madeAt =
            std::find_if(made.begin(), made.end(),
                         [widget](const Dialog* dialog) { return dialog->window() == widget; }) -
            made.begin();
        return std::tuple(popup, active, madeAt);
    };
    std::vector<QWidget*> windows;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget != phone.homeScreen() && widget != phone.simulator() && widget->isVisible())
            windows.push_back(widget);
    }
    std::stable_sort(windows.begin(), windows.end(),
                     [&](const QWidget* a, const QWidget* b) { return stacking(a) < stacking(b); });
    std::vector<QWidget*> layers{phone.homeScreen(), phone.simulator()};
    layers.insert(layers.end(), windows.begin(), windows.end());

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

ScreenshotRun::ScreenshotRun(const PhoneWindow& phone, QString path)
    : phone_(phone)
    , path_(std::move(path)) {
    qApp->installEventFilter(this);
    longestWait_.setSingleShot(true);
    longestWait_.setInterval(kLongestWaitMs);
    connect(&longestWait_, &QTimer::timeout, this, &ScreenshotRun::take);
}

ScreenshotRun::~ScreenshotRun() {
    qApp->removeEventFilter(this);
}

void ScreenshotRun::arm() {
    armed_ = true;
    longestWait_.start();
    scheduleCheck();
}

bool ScreenshotRun::eventFilter(QObject* watched, QEvent* event) {
    if (watched->isWidgetType()) {
        const auto* widget = static_cast<const QWidget*>(watched);
        if (widget->isWindow()) {
            if (event->type() == QEvent::Show) {
                painted_.remove(widget); // a window shown again must paint again
            } else if (event->type() == QEvent::Paint) {
                painted_.insert(widget);
                scheduleCheck();
            }
        }
    }
    return QObject::eventFilter(watched, event);
}

// On the next turn of whichever loop runs, after the paint that asked for it has finished.
void ScreenshotRun::scheduleCheck() {
    if (!armed_ || checkScheduled_ || taken_)
        return;
    checkScheduled_ = true;
    QMetaObject::invokeMethod(this, &ScreenshotRun::takeWhenPainted, Qt::QueuedConnection);
}

void ScreenshotRun::takeWhenPainted() {
    checkScheduled_ = false;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && !painted_.contains(widget))
            return; // its paint will check again
    }
    take();
}

void ScreenshotRun::take() {
    if (taken_)
        return;
    taken_ = true;
    longestWait_.stop();
    if (!grabPhone(phone_).save(path_)) {
        std::fprintf(stderr, "tessaly-phone: cannot write %s\n", qPrintable(path_));
        QApplication::exit(1);
        return;
    }
    // exit, not quit: quit asks every window to close, and module windows may refuse.
    QApplication::exit(0);
}

} // namespace tessaly::host
