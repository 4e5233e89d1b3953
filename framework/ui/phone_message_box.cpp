#include "framework/ui/phone_message_box.h"

#include "framework/ui/screen.h"
#include "framework/ui/useragent.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace tessaly {
namespace {

constexpr int kBoxWidth = kScreenWidth - 16;

QStyle::StandardPixmap iconFromFlags(UINT flags) {
    switch (flags & 0xf0) {
    case MB_ICONHAND:
        return QStyle::SP_MessageBoxCritical;
    case MB_ICONQUESTION:
        return QStyle::SP_MessageBoxQuestion;
    case MB_ICONEXCLAMATION:
        return QStyle::SP_MessageBoxWarning;
    case MB_ICONINFORMATION:
        return QStyle::SP_MessageBoxInformation;
    default:
        return QStyle::SP_CustomBase;
    }
}

struct BoxButton {
    QDialogButtonBox::StandardButton button;
    int result;
};

std::vector<BoxButton> buttonsFromFlags(UINT flags) {
    switch (flags & 0xf) {
    case MB_OKCANCEL:
        return {{QDialogButtonBox::Ok, IDOK}, {QDialogButtonBox::Cancel, IDCANCEL}};
    case MB_YESNOCANCEL:
        return {{QDialogButtonBox::Yes, IDYES},
                {QDialogButtonBox::No, IDNO},
                {QDialogButtonBox::Cancel, IDCANCEL}};
    case MB_YESNO:
        return {{QDialogButtonBox::Yes, IDYES}, {QDialogButtonBox::No, IDNO}};
    default:
        return {{QDialogButtonBox::Ok, IDOK}};
    }
}

// Drops the clicks that follow a box's closing where the box stood, for the double-click time
// (a second tap meant for the box lands on what was beneath it); then it goes. Clicks elsewhere,
// on the simulator panel beside the phone for one, pass.
class ClickAfterBoxFilter final : public QObject {
public:
    explicit ClickAfterBoxFilter(QRect boxArea)
        : QObject(qApp)
        , boxArea_(boxArea) {
        since_.start();
        qApp->installEventFilter(this);
        QTimer::singleShot(QApplication::doubleClickInterval(), this, &QObject::deleteLater);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const QEvent::Type type = event->type();
        if (type != QEvent::MouseButtonPress && type != QEvent::MouseButtonRelease &&
            type != QEvent::MouseButtonDblClick)
            return false;
        if (since_.elapsed() > QApplication::doubleClickInterval()) {
            deleteLater();
            return false;
        }
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (!boxArea_.contains(mouse->globalPosition().toPoint()))
            return false;
        // A box shown meanwhile takes its clicks.
        auto* widget = qobject_cast<QWidget*>(watched);
        return widget && !qobject_cast<PhoneMessageBox*>(widget->window());
    }

private:
    QRect boxArea_;
    QElapsedTimer since_;
};

} // namespace

PhoneMessageBox::PhoneMessageBox(QWidget* owner, const QString& text, const QString& caption,
                                 UINT flags)
    : QDialog(owner ? owner->window() : nullptr)
    , owner_(owner) {
    setWindowTitle(caption);
    setFont(smallFont());
    if (flags & (MB_TOPMOST | MB_SETFOREGROUND))
        setWindowFlag(Qt::WindowStaysOnTopHint);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    auto* row = new QHBoxLayout;
    const QStyle::StandardPixmap icon = iconFromFlags(flags);
    int textWidth = kBoxWidth - 16;
    if (icon != QStyle::SP_CustomBase) {
        auto* picture = new QLabel(this);
        picture->setPixmap(style()->standardIcon(icon).pixmap(24, 24));
        picture->setAlignment(Qt::AlignTop);
        row->addWidget(picture);
        textWidth -= 24 + row->spacing();
    }
    text_ = new QLabel(text, this);
    text_->setWordWrap(true);
    text_->setTextFormat(Qt::PlainText);
    text_->setFixedWidth(textWidth);
    text_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    row->addWidget(text_, 1);
    layout->addLayout(row);

    auto* buttons = new QDialogButtonBox(this);
    buttons->setCenterButtons(true);
    const std::vector<BoxButton> offered = buttonsFromFlags(flags);
    const size_t defaultIndex = (flags & MB_DEFBUTTON2) && offered.size() > 1 ? 1 : 0;
    for (size_t i = 0; i < offered.size(); ++i) {
        QPushButton* button = buttons->addButton(offered[i].button);
        const int result = offered[i].result;
        results_.push_back(result);
        connect(button, &QPushButton::clicked, this, [this, result] { finish(result); });
        if (i == defaultIndex) {
            button->setDefault(true);
            button->setFocus();
        }
    }
    layout->addWidget(buttons);
    setFixedWidth(kBoxWidth);
}

QString PhoneMessageBox::text() const {
    return text_->text();
}

void PhoneMessageBox::finish(int result) {
    result_ = result;
    done(QDialog::Accepted);
}

// A frame of its own: on the phone no window manager draws one, and a box without it melts
// into the list beneath.
void PhoneMessageBox::paintEvent(QPaintEvent* event) {
    QDialog::paintEvent(event);
    QPainter painter(this);
    painter.setPen(QPen(QColor(0x10, 0x3e, 0x8c), 2));
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
}

void PhoneMessageBox::placeOverOwner() {
    adjustSize();
    const QWidget* phone = owner_ ? owner_->window() : nullptr;
    QRect area = phone && phone->isVisible() ? phone->frameGeometry()
                 : screen()                  ? screen()->availableGeometry()
                                             : QRect(0, 0, kScreenWidth, kScreenHeight);
    if (phone && phone->isVisible() && area.width() > kScreenWidth)
        area.setWidth(kScreenWidth); // the phone's screen, not the panel beside it
    move(area.center() - QPoint(width() / 2, height() / 2));
}

int PhoneMessageBox::run() {
    placeOverOwner();
    runOverOwner(*this);
    new ClickAfterBoxFilter(frameGeometry());
    if (result_ != 0)
        return result_;
    const bool hasCancel = std::find(results_.begin(), results_.end(), IDCANCEL) != results_.end();
    return hasCancel ? IDCANCEL : results_.front();
}

} // namespace tessaly
