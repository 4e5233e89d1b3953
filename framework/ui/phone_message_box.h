#pragma once

// The message box the person sees: sized for the phone's 240-pixel screen (the text wrapped
// to it, the buttons inside it), centred on the phone window it belongs to. Results are the
// platform's IDOK, IDCANCEL, IDYES and IDNO.
//
// A click that closes a box ends there: for the double-click time after, further clicks where
// the box stood are dropped, so a second tap meant for the box does not open what lay beneath
// it.
//
// A box holds only the window it came up over (runOverOwner): the simulator panel and the
// phone's other windows still take clicks.

#include "framework/win32types.h"

#include <QDialog>

#include <vector>

class QLabel;

namespace tessaly {

class PhoneMessageBox final : public QDialog {
    Q_OBJECT
public:
    // `flags`: the MB_* buttons, icon and default-button flags.
    PhoneMessageBox(QWidget* owner, const QString& text, const QString& caption, UINT flags);

    // Runs the box; the result of the button pressed, or of closing it (Cancel where there is
    // one, else the only button).
    int run();
    // Ends the box as if the button with that result had been pressed.
    void finish(int result);

    QString text() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void placeOverOwner();

    QWidget* owner_;
    QLabel* text_ = nullptr;
    std::vector<int> results_;
    int result_ = 0;
};

} // namespace tessaly
