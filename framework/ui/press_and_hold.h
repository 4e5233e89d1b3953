#pragma once

// Tap-and-hold with the left button or a finger: pressing and holding about half a second
// without moving gives the widget the same context-menu event the right button gives, so the
// row and value menus open either way. The release that ends such a hold is not a click.
// Its timer runs on the Clock seam.

#include "framework/time/clock.h"

#include <QObject>
#include <QPoint>

class QWidget;

namespace tessaly {

class PressAndHold final : public QObject {
public:
    static constexpr int kHoldMs = 500;
    // Further than this from where it was pressed, it is a drag, not a hold.
    static constexpr int kSlopPixels = 8;

    // Watches `widget` for as long as it lives.
    static void attach(QWidget* widget);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit PressAndHold(QWidget* widget);
    ~PressAndHold() override;
    void cancel();
    void hold();

    QWidget* widget_;
    TimerHandle timer_ = 0;
    QPoint pressedAt_;
    bool held_ = false;
};

} // namespace tessaly
