#include "cellbroadcast/cb_ticker.h"

#include <QEvent>
#include <QPainter>
#include <QWidget>

namespace tessaly::sms {

namespace {

// The items move in the control less this much at the top and at the bottom.
constexpr int kVerticalInset = 2;

} // namespace

CbTicker::CbTicker(QWidget* control)
    : control_(control) {
    if (!control)
        return;
    // Every pixel is painted each frame: no erasing in between.
    control->setAttribute(Qt::WA_OpaquePaintEvent);
    control->installEventFilter(this);
}

CbTicker::~CbTicker() {
    scroller_.reset();
    if (control_)
        control_->removeEventFilter(this);
}

void CbTicker::setShownChanged(std::function<void(bool)> shownChanged) {
    shownChanged_ = std::move(shownChanged);
}

void CbTicker::setColors(const QColor& background, const QColor& text) {
    background_ = background;
    text_ = text;
    if (control_)
        control_->update();
}

QRect CbTicker::scrollRect() const {
    return control_ ? control_->rect().adjusted(0, kVerticalInset, 0, -kVerticalInset) : QRect();
}

void CbTicker::refresh() {
    const GSM::MainPreferences* preferences = GSM::Preferences::getMainPreferences();
    const GSM::CbFolder folder;
    if (!control_ || !preferences || !preferences->tickerScrolls() || folder.size() < 1) {
        scroller_.reset();
        setShown(false);
        announce({});
        return;
    }
    const TickerOrientation wanted = preferences->tickerHorizontal() ? TickerOrientation::Horizontal
                                                                     : TickerOrientation::Vertical;
    // Shown first: the window lays the line out, and the items start in its final size.
    setShown(true);
    if (!scroller_ || wanted != orientation_) {
        replaceScroller(wanted);
        scroller_->restart();
    }
    control_->update();
}

void CbTicker::replaceScroller(TickerOrientation orientation) {
    scroller_.reset();
    orientation_ = orientation;
    scroller_ = std::make_unique<TickerScroller>(orientation, control_, scrollRect(), [this] {
        std::vector<TickerItem> items = tickerItems(GSM::CbFolder(), emphasisChannel_);
        announce(items);
        return items;
    });
}

void CbTicker::announce(const std::vector<TickerItem>& items) {
    // The line is painted, so a screen reader learns what it shows from the control's name.
    QStringList texts;
    for (const TickerItem& item : items)
        texts.append(item.text);
    const QString name = texts.join(QStringLiteral(" • "));
    if (control_ && control_->accessibleName() != name)
        control_->setAccessibleName(name);
}

void CbTicker::setShown(bool shown) {
    if (shown == shown_)
        return;
    shown_ = shown;
    if (shownChanged_)
        shownChanged_(shown);
}

void CbTicker::paint() {
    QWidget* control = control_;
    if (!control)
        return;
    if (scroller_ && !scroller_->hasTimer())
        scroller_->restart();
    // Qt's backing store already buffers the widget: the frame reaches the screen in one block.
    QPainter painter(control);
    painter.fillRect(control->rect(), background_.isValid()
                                          ? background_
                                          : control->palette().color(QPalette::Window));
    painter.setFont(control->font());
    painter.setPen(text_.isValid() ? text_ : control->palette().color(QPalette::WindowText));
    if (scroller_)
        scroller_->draw(painter);
}

bool CbTicker::eventFilter(QObject* watched, QEvent* event) {
    if (watched != control_)
        return false;
    switch (event->type()) {
    case QEvent::Paint:
        paint();
        return true;
    case QEvent::Resize:
        if (scroller_ && scroller_->rect() != scrollRect()) {
            scroller_->setRect(scrollRect());
            scroller_->restart();
        }
        return false;
    default:
        return false;
    }
}

void CbTicker::eventPreferencesChanged() {
    refresh();
}

void CbTicker::eventMessage(int channel) {
    emphasisChannel_ = channel;
    // A fresh scroller shows the new item at once rather than at the end of the cycle.
    scroller_.reset();
    refresh();
}

} // namespace tessaly::sms
