#include "suite/host/screenshot.h"

#include "suite/host/phone_window.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

#include <cstdio>
#include <vector>

namespace tessaly::host {

QImage grabPhone(const PhoneWindow& phone) {
    // The host's two windows at the bottom, the module's windows over them in the order they
    // were made (a box the module raised is the window in front).
    std::vector<QWidget*> layers{phone.homeScreen(), phone.simulator()};
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget != phone.homeScreen() && widget != phone.simulator() && widget->isVisible())
            layers.push_back(widget);
    }

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
