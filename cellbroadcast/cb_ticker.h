#pragma once

// The ticker line of the main window: the cell-broadcast messages the phone holds, one item
// per channel, running right to left or rising line by line as the Cell Broadcast options
// say, the newest channel in the emphasis font. It takes over the painting of the template's
// label (control 12066) and follows the preference and cell-broadcast events itself. Each frame
// is painted whole over an opaque control, so the moving text never flickers.

#include "cellbroadcast/ticker_scroller.h"
#include "gsm/gsm.h"

#include <QColor>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

class QWidget;

namespace tessaly::sms {

class CbTicker final : public QObject,
                       public GSM::Preferences,
                       public GSM::CellBroadcast::EventHandler {
public:
    // control: the label the ticker paints; it must outlive the ticker or be deleted with it.
    explicit CbTicker(QWidget* control);
    ~CbTicker() override;

    // Called whenever the ticker starts or stops showing something, so the window can give
    // the line's room to its lists.
    void setShownChanged(std::function<void(bool shown)> shownChanged);
    void setColors(const QColor& background, const QColor& text);

    // Reads the settings and the store again: off or no message leaves nothing to show;
    // otherwise the scroller of the wanted orientation runs (a new one when it changed).
    void refresh();
    bool isShown() const { return scroller_ != nullptr; }
    // The running scroller, null when the ticker shows nothing.
    TickerScroller* scroller() const { return scroller_.get(); }
    // The channel of the latest message event (-1 before the first).
    int emphasisChannel() const { return emphasisChannel_; }

    // Paints the control: background, then the scroller's items, as one block.
    void paint();

    void eventPreferencesChanged() override;
    // A message arrived: its channel is the newest, and the ticker starts over with it.
    void eventMessage(int channel) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QRect scrollRect() const;
    void replaceScroller(TickerOrientation orientation);
    // Gives the control the texts it shows as its accessible name.
    void announce(const std::vector<TickerItem>& items);
    void setShown(bool shown);

    QPointer<QWidget> control_;
    std::unique_ptr<TickerScroller> scroller_;
    int emphasisChannel_ = -1;
    TickerOrientation orientation_ = TickerOrientation::Vertical;
    QColor background_;
    QColor text_;
    bool shown_ = false;
    std::function<void(bool)> shownChanged_;
};

} // namespace tessaly::sms
