#pragma once

// The SIM transfer window ("Database"): offers to move the messages kept on the SIM into the
// phone's message database, with a note when the SIM is full, and then shows the move's
// progress until the library reports its end. A device that leaves service closes it. Modeless;
// it deletes itself when destroyed and hands control back to the host when it was the module's
// last window.

#include "framework/ui/dialog.h"
#include "gsm/gsm.h"

namespace tessaly::sms {

class SimTransferWindow : public Dialog, public GSM::DeviceEventHandler {
public:
    static constexpr UINT_PTR kHeaderTimer = 1;
    static constexpr UINT kHeaderTickMs = 500;
    // Posted to itself when the device leaves service: the window closes from its own loop.
    static constexpr UINT kCloseMessage = WM_APP + 1;

    // count: messages on the SIM; capacity: what the SIM holds (equal: the SIM is full).
    SimTransferWindow(int count, int capacity);

    // Creates the window, hidden; null when it cannot be created.
    static SimTransferWindow* createHidden(int count, int capacity);

    bool simIsFull() const { return count_ == capacity_; }
    // One more message has been moved: the bar advances unless it stands at its end.
    void advanceProgress();
    int headerFrame() const { return frame_; }

    void eventStatusChanged() override;

protected:
    bool onInitDialog() override;
    void onCommand(int id) override;
    void onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onTimer(UINT_PTR id) override;
    void onPostDestroy() override;

private:
    void startMove();
    void decline();
    void finish();
    void layoutLines();
    void paintFrame();

    int count_;
    int capacity_;
    int frame_ = 0;
    bool closing_ = false;
};

} // namespace tessaly::sms
