#pragma once

#include <QImage>
#include <QObject>
#include <QSet>
#include <QString>
#include <QTimer>

class QWidget;

namespace tessaly::host {

class PhoneWindow;

// A picture of the desktop as the person sees it: the phone screen, the module's windows over
// it and the simulator panel beside it.
QImage grabPhone(const PhoneWindow& phone);

// The headless picture run. Once armed, the picture is taken as soon as every window on the
// screen has painted, from whatever event loop runs then: a modal box or dialog that came up is
// in the picture, nobody has to answer it, and the program ends (every event loop, the modal
// ones included, returns). Should something never paint, the picture is taken after
// kLongestWaitMs all the same.
class ScreenshotRun final : public QObject {
public:
    static constexpr int kLongestWaitMs = 5000;

    ScreenshotRun(const PhoneWindow& phone, QString path);
    ~ScreenshotRun() override;

    // The start steps that belong in the picture have begun (call it right before pressing
    // Messages, which may not return while a modal box is up).
    void arm();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void scheduleCheck();
    void takeWhenPainted();
    void take();

    const PhoneWindow& phone_;
    QString path_;
    QSet<const QWidget*> painted_;
    QTimer longestWait_;
    bool armed_ = false;
    bool checkScheduled_ = false;
    bool taken_ = false;
};

} // namespace tessaly::host
