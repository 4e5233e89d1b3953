#include "framework/ui/press_and_hold.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QWidget>

namespace tessaly {

void PressAndHold::attach(QWidget* widget) {
    new PressAndHold(widget);
}

PressAndHold::PressAndHold(QWidget* widget)
    : QObject(widget)
    , widget_(widget) {
    widget->installEventFilter(this);
}

PressAndHold::~PressAndHold() {
    cancel();
}

void PressAndHold::cancel() {
    if (timer_ != 0)
        Clock::current().stopTimer(timer_);
    timer_ = 0;
}

void PressAndHold::hold() {
    cancel();
    held_ = true;
    QContextMenuEvent menu(QContextMenuEvent::Mouse, pressedAt_, widget_->mapToGlobal(pressedAt_));
    QCoreApplication::sendEvent(widget_, &menu);
}

bool PressAndHold::eventFilter(QObject* watched, QEvent* event) {
    if (watched != widget_)
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        cancel();
        held_ = false;
        if (mouse->button() == Qt::LeftButton) {
            pressedAt_ = mouse->position().toPoint();
            timer_ = Clock::current().startTimer(kHoldMs, [this] { hold(); });
        }
        return false;
    }
    case QEvent::MouseMove: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (timer_ != 0 &&
            (mouse->position().toPoint() - pressedAt_).manhattanLength() > kSlopPixels)
            cancel();
        return false;
    }
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
        cancel();
        if (held_) {
            held_ = false;
            return true; // the hold opened a menu: this release is no click
        }
        return false;
    default:
        return false;
    }
}

} // namespace tessaly
