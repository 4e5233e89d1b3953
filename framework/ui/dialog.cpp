#include "framework/ui/dialog.h"

#include "framework/resources/module_state.h"

#include "framework/resources/resources.h"
#include "framework/time/clock.h"
#include "framework/ui/accessible_names.h"
#include "framework/ui/menu.h"
#include "framework/ui/screen.h"
#include "framework/ui/useragent.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <set>

namespace tessaly {

namespace {

std::vector<Dialog*>& liveWindows() {
    static std::vector<Dialog*> windows;
    return windows;
}

std::set<const Dialog*>& liveObjects() {
    static std::set<const Dialog*> objects;
    return objects;
}

const QEvent::Type kPostedMessageEvent = QEvent::Type(QEvent::registerEventType());

struct PostedMessage : QEvent {
    PostedMessage(UINT message, WPARAM wParam, LPARAM lParam)
        : QEvent(kPostedMessageEvent)
        , message(message)
        , wParam(wParam)
        , lParam(lParam) {}
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};

bool hasStyle(const QStringList& styles, const char* name) {
    return styles.contains(QLatin1String(name), Qt::CaseInsensitive);
}

bool hasStyle(const ControlTemplate& control, const char* name) {
    return hasStyle(control.styles, name);
}

} // namespace

template <typename Handler> bool Dialog::dispatch(Handler&& handler) {
    // Every event reaches the window in the module state it was made in (its resources and
    // language, the module's own state), whoever's state the event loop was in.
    const ModuleStateGuard guard(createdIn_);
    const std::weak_ptr<int> alive = lifeToken_;
    ++dispatchDepth_;
    handler();
    if (alive.expired())
        return false;
    if (--dispatchDepth_ == 0 && postDestroyPending_) {
        postDestroyPending_ = false;
        onPostDestroy();
        return !alive.expired();
    }
    return true;
}

// The widget behind a Dialog: title strip, client area with the controls, command bar slot.
class DialogWindow : public QDialog {
public:
    DialogWindow(Dialog* owner, QWidget* parent, Presentation presentation)
        : QDialog(parent)
        , owner_(std::make_shared<Dialog*>(owner)) {
        setFont(smallFont());
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        if (presentation == Presentation::Child) {
            setWindowFlags(Qt::Widget);
        } else {
            titleBar_ = new QWidget(this);
            titleBar_->setFixedHeight(kTitleBarHeight);
            titleBar_->setAutoFillBackground(true);
            QPalette titlePalette = titleBar_->palette();
            titlePalette.setColor(QPalette::Window, QColor(0x10, 0x3e, 0x8c));
            titlePalette.setColor(QPalette::WindowText, Qt::white);
            titleBar_->setPalette(titlePalette);
            auto* titleLayout = new QHBoxLayout(titleBar_);
            titleLayout->setContentsMargins(6, 0, 4, 0);
            titleLabel_ = new QLabel(titleBar_);
            QFont titleFont = smallFont();
            titleFont.setBold(true);
            titleFont.setPixelSize(13);
            titleLabel_->setFont(titleFont);
            titleLayout->addWidget(titleLabel_, 1);
            if (presentation == Presentation::FullScreen) {
                // The phone's "ok" in the title strip: the one way a person leaves a full
                // screen without a keyboard.
                auto* okButton = new QPushButton(QStringLiteral("ok"), titleBar_);
                okButton->setObjectName(QStringLiteral("titleOkButton"));
                okButton->setFocusPolicy(Qt::NoFocus);
                okButton->setAutoDefault(false);
                okButton->setFlat(true);
                okButton->setFont(titleFont);
                okButton->setStyleSheet(QStringLiteral("color: white; padding: 0 6px;"));
                connect(okButton, &QPushButton::clicked, this, [this] {
                    if (Dialog* owner = *owner_)
                        owner->sendCommand(IDOK);
                });
                titleLayout->addWidget(okButton);
            }
            layout->addWidget(titleBar_);
        }
        client_ = new ClientArea(this);
        layout->addWidget(client_, 1);
        if (presentation == Presentation::FullScreen) {
            commandBarSlot_ = new QWidget(this);
            commandBarSlot_->setFixedHeight(kCommandBarHeight);
            auto* slotLayout = new QHBoxLayout(commandBarSlot_);
            slotLayout->setContentsMargins(0, 0, 0, 0);
            layout->addWidget(commandBarSlot_);
            setFixedSize(kScreenWidth, kScreenHeight);
        }
    }

    ~DialogWindow() override {
        if (Dialog* owner = std::exchange(*owner_, nullptr))
            owner->windowGone(this);
    }

    Dialog* owner() const { return *owner_; }
    // Shared with the controls' connections: Qt still sends events (focus out, hide) while
    // the base classes are being destroyed, when this object may no longer be asked.
    std::shared_ptr<Dialog*> ownerCell() const { return owner_; }
    void detach() { *owner_ = nullptr; }
    QWidget* client() const { return client_; }
    QWidget* commandBarSlot() const { return commandBarSlot_; }
    CommandBar* commandBar() const { return commandBar_; }
    void setCommandBar(CommandBar* bar) {
        commandBar_ = bar;
        commandBarSlot_->layout()->addWidget(bar);
    }

    void setTitle(const QString& title) {
        setWindowTitle(title);
        if (titleLabel_)
            titleLabel_->setText(title);
    }

    void reject() override {
        if (Dialog* owner = *owner_)
            owner->sendCommand(IDCANCEL);
        else
            QDialog::reject();
    }

protected:
    bool event(QEvent* event) override {
        if (event->type() == kPostedMessageEvent) {
            const auto* posted = static_cast<PostedMessage*>(event);
            if (Dialog* owner = *owner_)
                owner->handlePosted(posted->message, posted->wParam, posted->lParam);
            return true;
        }
        if (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate) {
            const bool active = event->type() == QEvent::WindowActivate;
            if (Dialog* owner = *owner_)
                owner->dispatch([owner, active] { owner->onActivate(active); });
        }
        return QDialog::event(event);
    }

    void keyPressEvent(QKeyEvent* event) override {
        Dialog* owner = *owner_;
        if (!owner) {
            event->ignore();
            return;
        }
        switch (event->key()) {
        case Qt::Key_Escape:
            owner->sendCommand(IDCANCEL);
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            for (QPushButton* button : client_->findChildren<QPushButton*>()) {
                if (button->isDefault() && button->isVisible() && button->isEnabled()) {
                    button->click();
                    return;
                }
            }
            owner->sendCommand(IDOK);
            return;
        default:
            event->ignore();
        }
    }

    void closeEvent(QCloseEvent* event) override {
        event->ignore();
        if (Dialog* owner = *owner_)
            owner->dispatch([owner] { owner->onClose(); });
    }

private:
    class ClientArea : public QWidget {
    public:
        explicit ClientArea(DialogWindow* window)
            : QWidget(window)
            , owner_(window->ownerCell()) {}

    protected:
        void paintEvent(QPaintEvent* event) override {
            QPainter painter(this);
            Dialog* owner = *owner_;
            if (!owner || !owner->onEraseBackground(painter, event->rect()))
                painter.fillRect(event->rect(), palette().color(QPalette::Base));
        }

        void resizeEvent(QResizeEvent* event) override {
            QWidget::resizeEvent(event);
            if (Dialog* owner = *owner_) {
                const QSize size = event->size();
                owner->dispatch([owner, size] { owner->onSize(size.width(), size.height()); });
            }
        }

    private:
        std::shared_ptr<Dialog*> owner_;
    };

    std::shared_ptr<Dialog*> owner_;
    QWidget* titleBar_ = nullptr;
    QLabel* titleLabel_ = nullptr;
    QWidget* client_ = nullptr;
    QWidget* commandBarSlot_ = nullptr;
    CommandBar* commandBar_ = nullptr;
};

// ---- construction ----

Dialog::Dialog(int templateId, Dialog* parent)
    : Dialog(findDialogTemplate(templateId) ? *findDialogTemplate(templateId) : DialogTemplate{},
             parent) {
    templateFound_ = findDialogTemplate(templateId) != nullptr;
    template_.id = templateId;
}

Dialog::Dialog(const DialogTemplate& dialogTemplate, Dialog* parent)
    : template_(dialogTemplate)
    , parent_(parent)
    , title_(dialogTemplate.caption)
    , createdIn_(currentModuleState()) {
    if (hasStyle(template_.styles, "WS_CHILD"))
        presentation_ = Presentation::Child;
    liveObjects().insert(this);
}

Dialog::~Dialog() {
    liveObjects().erase(this);
    stopAllTimers();
    if (DialogWindow* window = window_) {
        window->detach();
        auto& windows = liveWindows();
        windows.erase(std::remove(windows.begin(), windows.end(), this), windows.end());
        // Inside one of its own handlers the widget may still be on the call stack.
        if (dispatchDepth_ > 0 || modalRunning_) {
            window->hide();
            window->deleteLater();
        } else {
            delete window;
        }
    }
}

Dialog* Dialog::parentDialog() const {
    return exists(parent_) ? parent_ : nullptr;
}

std::vector<Dialog*> Dialog::windows() {
    return liveWindows();
}

bool Dialog::exists(const Dialog* dialog) {
    return dialog && liveObjects().count(dialog) > 0;
}

// ---- window life ----

bool Dialog::create(QWidget* parentWidget) {
    if (window_ || !templateFound_)
        return false;
    if (!parentWidget && parentDialog())
        parentWidget = parentDialog()->window();
    ended_ = false;
    endCode_ = 0;
    buildWindow(parentWidget);
    liveWindows().push_back(this);
    createControls();

    bool focusFirst = true;
    if (!dispatch([this, &focusFirst] { focusFirst = onInitDialog(); }))
        return false;
    if (!window_)
        return false;
    if (focusFirst) {
        for (const Control& control : controls_) {
            QWidget* widget = control.widget;
            if ((widget->focusPolicy() & Qt::TabFocus) && widget->isEnabled() &&
                !widget->isHidden()) {
                widget->setFocus();
                break;
            }
        }
    }
    return true;
}

void Dialog::buildWindow(QWidget* parentWidget) {
    auto* window = new DialogWindow(this, parentWidget, presentation_);
    window_ = window;
    window->setTitle(title_);
    const QRect templateRect =
        dialogUnitsToPixels(template_.x, template_.y, template_.width, template_.height);
    switch (presentation_) {
    case Presentation::FullScreen:
        window->move(0, 0);
        break;
    case Presentation::PopUp: {
        const int width = std::clamp(templateRect.width(), 60, kScreenWidth);
        const int height =
            std::clamp(templateRect.height() + kTitleBarHeight, kTitleBarHeight, kScreenHeight);
        window->setFixedSize(width, height);
        window->move((kScreenWidth - width) / 2, (kScreenHeight - height) / 2);
        break;
    }
    case Presentation::Child:
        window->setGeometry(templateRect);
        break;
    }
}

void Dialog::createControls() {
    controls_.clear();
    controlIndex_.clear();
    controls_.reserve(template_.controls.size());
    for (const ControlTemplate& source : template_.controls) {
        QWidget* widget = createControl(source);
        widget->setGeometry(dialogUnitsToPixels(source.x, source.y, source.width, source.height));
        if (hasStyle(source, "NOT WS_VISIBLE"))
            widget->hide();
        if (hasStyle(source, "WS_DISABLED"))
            widget->setEnabled(false);
        controls_.push_back(Control{source.id, widget, &source});
        if (source.id != -1)
            controlIndex_.emplace(source.id, controls_.size() - 1);
    }
    // Up-down controls with the auto-buddy style take the control created just before them.
    for (size_t i = 1; i < controls_.size(); ++i) {
        auto* upDown = qobject_cast<UpDown*>(controls_[i].widget);
        if (upDown && hasStyle(*controls_[i].source, "UDS_AUTOBUDDY")) {
            auto* buddy = qobject_cast<Edit*>(controls_[i - 1].widget);
            upDown->setBuddy(buddy);
            if (buddy && hasStyle(*controls_[i].source, "UDS_ALIGNRIGHT")) {
                const QRect buddyRect = buddy->geometry();
                const int width = upDown->width();
                buddy->resize(buddyRect.width() - width, buddyRect.height());
                upDown->setGeometry(buddy->geometry().right() + 1, buddyRect.top(), width,
                                    buddyRect.height());
            }
        }
    }
    for (const Control& control : controls_)
        connectControl(control.id, control.widget);
    installAccessibleFactory();
    std::vector<NamedControl> named;
    named.reserve(controls_.size());
    for (const Control& control : controls_)
        named.push_back(NamedControl{control.source, control.widget});
    nameControls(named, template_.caption);
}

QWidget* Dialog::createControl(const ControlTemplate& control) {
    QWidget* parent = clientArea();
    const QString statement = control.statement.toUpper();
    QString className = control.className.toLower();
    className.remove(QChar(u'"'));

    const auto staticLabel = [&](Qt::Alignment alignment) {
        auto* label = new StaticLabel(parent);
        label->setText(control.text);
        if (hasStyle(control, "SS_CENTER"))
            alignment = Qt::AlignHCenter | Qt::AlignTop;
        else if (hasStyle(control, "SS_RIGHT"))
            alignment = Qt::AlignRight | Qt::AlignTop;
        label->setAlignment(alignment);
        label->setNotify(hasStyle(control, "SS_NOTIFY"));
        return label;
    };
    const auto pushButton = [&](bool isDefault) -> QWidget* {
        if (hasStyle(control, "BS_OWNERDRAW")) {
            auto* button = new OwnerDrawButton(parent);
            button->setText(control.text);
            return button;
        }
        auto* button = new QPushButton(control.text, parent);
        button->setFont(smallFont());
        button->setAutoDefault(false);
        button->setDefault(isDefault || hasStyle(control, "BS_DEFPUSHBUTTON"));
        return button;
    };
    const auto checkBox = [&](bool automatic, bool threeState) {
        auto* box = new CheckBox(automatic, parent);
        box->setText(control.text);
        box->setTristate(threeState);
        return box;
    };
    const auto radioButton = [&](bool automatic) {
        auto* radio = new RadioButton(automatic, parent);
        radio->setText(control.text);
        return radio;
    };
    const auto groupBox = [&] {
        auto* box = new QGroupBox(control.text, parent);
        box->setFont(smallFont());
        box->setAttribute(Qt::WA_TransparentForMouseEvents);
        return box;
    };
    const auto edit = [&] {
        auto* field = new Edit(hasStyle(control, "ES_MULTILINE"), parent);
        field->setText(control.text);
        field->setReadOnly(hasStyle(control, "ES_READONLY"));
        field->setDigitsOnly(hasStyle(control, "ES_NUMBER"));
        field->setPassword(hasStyle(control, "ES_PASSWORD"));
        field->setScrollBars(hasStyle(control, "WS_VSCROLL"),
                             hasStyle(control, "WS_HSCROLL") ||
                                 hasStyle(control, "ES_AUTOHSCROLL"));
        if (hasStyle(control, "ES_RIGHT"))
            field->setTextAlignment(Qt::AlignRight);
        else if (hasStyle(control, "ES_CENTER"))
            field->setTextAlignment(Qt::AlignHCenter);
        return field;
    };
    const auto comboBox = [&] {
        auto* box = new ComboBox(parent);
        box->setSorted(hasStyle(control, "CBS_SORT"));
        box->setEditable(hasStyle(control, "CBS_DROPDOWN") || hasStyle(control, "CBS_SIMPLE"));
        return box;
    };
    const auto listBox = [&] {
        auto* box = new ListBox(parent);
        box->setSorted(hasStyle(control, "LBS_SORT") || hasStyle(control, "LBS_STANDARD"));
        box->setMultipleSelection(hasStyle(control, "LBS_MULTIPLESEL") ||
                                  hasStyle(control, "LBS_EXTENDEDSEL"));
        return box;
    };
    const auto listView = [&] {
        auto* view = new ListView(parent);
        view->setSingleSelection(hasStyle(control, "LVS_SINGLESEL"));
        view->setHeaderVisible(!hasStyle(control, "LVS_NOCOLUMNHEADER"));
        return view;
    };
    const auto upDown = [&] {
        auto* arrows = new UpDown(parent);
        arrows->setBuddyInt(hasStyle(control, "UDS_SETBUDDYINT"));
        arrows->setWrap(hasStyle(control, "UDS_WRAP"));
        return arrows;
    };
    const auto dateTime = [&] {
        auto* picker = new DateTimePicker(parent);
        if (hasStyle(control, "DTS_TIMEFORMAT"))
            picker->setMode(DateTimePicker::Mode::Time);
        else if (hasStyle(control, "DTS_LONGDATEFORMAT"))
            picker->setMode(DateTimePicker::Mode::LongDate);
        return picker;
    };

    if (statement == u"LTEXT")
        return staticLabel(Qt::AlignLeft | Qt::AlignTop);
    if (statement == u"RTEXT")
        return staticLabel(Qt::AlignRight | Qt::AlignTop);
    if (statement == u"CTEXT")
        return staticLabel(Qt::AlignHCenter | Qt::AlignTop);
    if (statement == u"ICON")
        return staticLabel(Qt::AlignLeft | Qt::AlignTop);
    if (statement == u"PUSHBUTTON")
        return pushButton(false);
    if (statement == u"DEFPUSHBUTTON")
        return pushButton(true);
    if (statement == u"CHECKBOX")
        return checkBox(false, false);
    if (statement == u"AUTOCHECKBOX")
        return checkBox(true, false);
    if (statement == u"STATE3")
        return checkBox(false, true);
    if (statement == u"AUTO3STATE")
        return checkBox(true, true);
    if (statement == u"RADIOBUTTON")
        return radioButton(false);
    if (statement == u"AUTORADIOBUTTON")
        return radioButton(true);
    if (statement == u"GROUPBOX")
        return groupBox();
    if (statement == u"EDITTEXT")
        return edit();
    if (statement == u"COMBOBOX")
        return comboBox();
    if (statement == u"LISTBOX")
        return listBox();
    if (statement == u"SCROLLBAR")
        return new QScrollBar(hasStyle(control, "SBS_VERT") ? Qt::Vertical : Qt::Horizontal,
                              parent);

    // CONTROL statements name their window class.
    if (className == u"static")
        return staticLabel(Qt::AlignLeft | Qt::AlignTop);
    if (className == u"button") {
        if (hasStyle(control, "BS_AUTOCHECKBOX"))
            return checkBox(true, false);
        if (hasStyle(control, "BS_CHECKBOX"))
            return checkBox(false, false);
        if (hasStyle(control, "BS_AUTO3STATE"))
            return checkBox(true, true);
        if (hasStyle(control, "BS_3STATE"))
            return checkBox(false, true);
        if (hasStyle(control, "BS_AUTORADIOBUTTON"))
            return radioButton(true);
        if (hasStyle(control, "BS_RADIOBUTTON"))
            return radioButton(false);
        if (hasStyle(control, "BS_GROUPBOX"))
            return groupBox();
        return pushButton(false);
    }
    if (className == u"edit")
        return edit();
    if (className == u"combobox")
        return comboBox();
    if (className == u"listbox")
        return listBox();
    if (className == u"syslistview32")
        return listView();
    if (className == u"msctls_progress32")
        return new ProgressBar(parent);
    if (className == u"msctls_updown32")
        return upDown();
    if (className == u"sysdatetimepick32")
        return dateTime();
    if (className == u"scrollbar")
        return new QScrollBar(hasStyle(control, "SBS_VERT") ? Qt::Vertical : Qt::Horizontal,
                              parent);
    // An unknown class still takes its place, so that ids and layout stay intact.
    auto* placeholder = new QWidget(parent);
    placeholder->setObjectName(control.className);
    return placeholder;
}

void Dialog::connectControl(int id, QWidget* widget) {
    // Every connection has the control as context (it dies with it) and looks up the owner at
    // the time of the notification: after destroyWindow nothing reaches the Dialog.
    const std::shared_ptr<Dialog*> cell = window_->ownerCell();
    const auto owner = [cell]() -> Dialog* { return *cell; };

    if (auto* button = qobject_cast<OwnerDrawButton*>(widget)) {
        button->setDrawHandler([owner, id](QPainter& painter, const DrawItemState& state) {
            Dialog* dialog = owner();
            return dialog && dialog->onDrawItem(id, painter, state);
        });
    }
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        QObject::connect(button, &QAbstractButton::clicked, button, [owner, id, button] {
            Dialog* dialog = owner();
            if (!dialog)
                return;
            if (auto* radio = qobject_cast<RadioButton*>(button); radio && radio->isAutomatic())
                dialog->uncheckRadioGroup(id);
            dialog->sendCommand(id);
        });
        return;
    }
    if (auto* label = qobject_cast<StaticLabel*>(widget)) {
        QObject::connect(label, &StaticLabel::clicked, label, [owner, id] {
            if (Dialog* dialog = owner())
                dialog->sendCommand(id);
        });
        return;
    }
    if (auto* field = qobject_cast<Edit*>(widget)) {
        QObject::connect(field, &Edit::textChanged, field, [owner, id] {
            if (Dialog* dialog = owner()) {
                if (dialog->dispatch([dialog, id] { dialog->onEditUpdate(id); }) && dialog->window_)
                    dialog->dispatch([dialog, id] { dialog->onEditChange(id); });
            }
        });
        QObject::connect(field, &Edit::focusGained, field, [owner, id] {
            if (Dialog* dialog = owner())
                dialog->dispatch([dialog, id] { dialog->onEditSetFocus(id); });
        });
        QObject::connect(field, &Edit::focusLost, field, [owner, id] {
            if (Dialog* dialog = owner())
                dialog->dispatch([dialog, id] { dialog->onEditKillFocus(id); });
        });
        return;
    }
    if (auto* view = qobject_cast<ListView*>(widget)) {
        QObject::connect(view, &ListView::itemClicked, view, [owner, id](int row, int column) {
            if (Dialog* dialog = owner())
                dialog->dispatch([=] { dialog->onListClick(id, row, column); });
        });
        QObject::connect(view, &ListView::columnClicked, view, [owner, id](int column) {
            if (Dialog* dialog = owner())
                dialog->dispatch([=] { dialog->onListColumnClick(id, column); });
        });
        QObject::connect(view, &ListView::keyDown, view, [owner, id](int key) {
            if (Dialog* dialog = owner())
                dialog->dispatch([=] { dialog->onListKeyDown(id, key); });
        });
        QObject::connect(view, &ListView::tapAndHold, view, [owner, id](int row, QPoint pos) {
            if (Dialog* dialog = owner())
                dialog->dispatch([=] { dialog->onListTapAndHold(id, row, pos); });
        });
        QObject::connect(
            view, &ListView::columnWidthChanged, view, [owner, id](int column, int width) {
                if (Dialog* dialog = owner())
                    dialog->dispatch([=] { dialog->onListColumnWidthChanged(id, column, width); });
            });
        return;
    }
    if (auto* box = qobject_cast<ComboBox*>(widget)) {
        const int lineHeight = QFontMetrics(smallFont()).height() + 8;
        box->resize(box->width(), std::min(box->height(), lineHeight));
        QObject::connect(box, &ComboBox::droppedDown, box, [owner, id] {
            if (Dialog* dialog = owner())
                dialog->dispatch([=] { dialog->onComboDropDown(id); });
        });
        QObject::connect(box, &ComboBox::closedUp, box, [owner, id] {
            if (Dialog* dialog = owner())
                dialog->dispatch([=] { dialog->onComboCloseUp(id); });
        });
        QObject::connect(box, &ComboBox::selectionChanged, box, [owner, id] {
            if (Dialog* dialog = owner())
                dialog->dispatch([=] { dialog->onComboSelChange(id); });
        });
        return;
    }
    if (auto* box = qobject_cast<ListBox*>(widget)) {
        QObject::connect(box, &ListBox::selectionChanged, box, [owner, id] {
            if (Dialog* dialog = owner())
                dialog->dispatch([=] { dialog->onListBoxSelChange(id); });
        });
        return;
    }
    if (auto* arrows = qobject_cast<UpDown*>(widget)) {
        QObject::connect(arrows, &UpDown::positionChanged, arrows, [owner, id](int pos) {
            if (Dialog* dialog = owner())
                dialog->dispatch([=] { dialog->onUpDownChange(id, pos); });
        });
        return;
    }
    if (auto* picker = qobject_cast<DateTimePicker*>(widget)) {
        QObject::connect(picker, &DateTimePicker::changed, picker, [owner, id] {
            if (Dialog* dialog = owner())
                dialog->dispatch([=] { dialog->onDateTimeChange(id); });
        });
    }
}

void Dialog::uncheckRadioGroup(int id) {
    // A group runs from a control with WS_GROUP (or the first of a run of radio buttons) to
    // the next control with WS_GROUP or the next control that is not a radio button.
    const auto found = controlIndex_.find(id);
    if (found == controlIndex_.end())
        return;
    const auto isRadio = [this](size_t i) {
        return qobject_cast<RadioButton*>(controls_[i].widget) != nullptr;
    };
    const auto startsGroup = [this](size_t i) {
        return hasStyle(*controls_[i].source, "WS_GROUP");
    };
    size_t first = found->second;
    while (first > 0 && !startsGroup(first) && isRadio(first - 1))
        --first;
    for (size_t i = first; i < controls_.size() && isRadio(i); ++i) {
        if (i > first && startsGroup(i))
            break;
        if (controls_[i].id != id)
            static_cast<RadioButton*>(controls_[i].widget)->setChecked(false);
    }
}

int Dialog::doModal() {
    if (window_)
        return -1;
    return UserAgent::current().runModal(*this);
}

bool Dialog::beginModal() {
    if (!create())
        return false;
    modalRunning_ = true;
    return true;
}

int Dialog::finishModal() {
    modalRunning_ = false;
    const int code = ended_ ? endCode_ : IDCANCEL;
    destroyWindow();
    return code;
}

bool Dialog::showWindow(int showCommand) {
    if (!window_)
        return false;
    const bool wasVisible = window_->isVisible();
    if (showCommand == SW_HIDE) {
        window_->hide();
    } else {
        window_->show();
        if (showCommand != SW_SHOWNA && showCommand != SW_SHOWNOACTIVATE)
            window_->raise();
    }
    return wasVisible;
}

void Dialog::destroyWindow() {
    if (!window_ || destroying_)
        return;
    destroying_ = true;
    const std::weak_ptr<int> alive = lifeToken_;
    dispatch([this] { onDestroy(); });
    if (alive.expired() || !window_)
        return;
    DialogWindow* window = window_;
    window->detach();
    window_ = nullptr;
    windowGone(window);
    destroying_ = false;
    // The widget may be on the call stack (a control that called our handler): delete it from
    // the event loop in that case.
    if (dispatchDepth_ > 0 || modalRunning_) {
        window->hide();
        window->deleteLater();
    } else {
        delete window;
    }
    if (dispatchDepth_ > 0)
        postDestroyPending_ = true;
    else
        postDestroy();
}

void Dialog::postDestroy() {
    // Outside any handler, so the module state is entered here; the guard keeps a copy of the
    // state, not a reference, because onPostDestroy may delete this.
    const ModuleStateGuard guard(createdIn_);
    onPostDestroy();
}

void Dialog::windowGone(DialogWindow* window) {
    // Reached from destroyWindow (window_ already cleared), or from the widget's destructor
    // when Qt deletes the window together with its parent.
    const bool fromWidget = window_ == window;
    const std::weak_ptr<int> alive = lifeToken_;
    if (fromWidget) {
        destroying_ = true;
        dispatch([this] { onDestroy(); });
        if (alive.expired())
            return;
        destroying_ = false;
    }
    stopAllTimers();
    controls_.clear();
    controlIndex_.clear();
    auto& windows = liveWindows();
    windows.erase(std::remove(windows.begin(), windows.end(), this), windows.end());
    if (!fromWidget)
        return;
    window_ = nullptr;
    if (dispatchDepth_ > 0)
        postDestroyPending_ = true;
    else
        postDestroy();
}

void Dialog::endDialog(int code) {
    ended_ = true;
    endCode_ = code;
    if (window_)
        window_->done(code);
}

bool Dialog::isWindow() const {
    return window_ != nullptr;
}

bool Dialog::isVisible() const {
    return window_ && window_->isVisible();
}

void Dialog::setTitle(const QString& title) {
    title_ = title;
    if (window_)
        window_->setTitle(title);
}

QWidget* Dialog::window() const {
    return window_.data();
}

QWidget* Dialog::clientArea() const {
    return window_ ? window_->client() : nullptr;
}

QSize Dialog::clientSize() const {
    if (!window_)
        return QSize();
    switch (presentation_) {
    case Presentation::FullScreen:
        return QSize(kClientWidth, kClientHeight);
    case Presentation::PopUp:
        return QSize(window_->width(), window_->height() - kTitleBarHeight);
    case Presentation::Child:
        break;
    }
    return window_->client()->size();
}

// ---- controls ----

QWidget* Dialog::item(int id) const {
    const auto found = controlIndex_.find(id);
    return found == controlIndex_.end() ? nullptr : controls_[found->second].widget;
}

int Dialog::itemId(const QWidget* control) const {
    for (const Control& entry : controls_)
        if (entry.widget == control || (control && entry.widget->isAncestorOf(control)))
            return entry.id;
    return 0;
}

std::vector<int> Dialog::itemIds() const {
    std::vector<int> ids;
    for (const Control& entry : controls_)
        ids.push_back(entry.id);
    return ids;
}

void Dialog::setItemText(int id, const QString& text) {
    QWidget* widget = item(id);
    if (auto* label = qobject_cast<StaticLabel*>(widget))
        label->setText(text);
    else if (auto* field = qobject_cast<Edit*>(widget))
        field->setText(text);
    else if (auto* button = qobject_cast<QAbstractButton*>(widget))
        button->setText(text);
    else if (auto* box = qobject_cast<ComboBox*>(widget)) {
        if (box->isEditable())
            box->setEditText(text);
    } else if (auto* group = qobject_cast<QGroupBox*>(widget))
        group->setTitle(text);
}

QString Dialog::itemText(int id) const {
    QWidget* widget = item(id);
    if (auto* label = qobject_cast<StaticLabel*>(widget))
        return label->text();
    if (auto* field = qobject_cast<Edit*>(widget))
        return field->text();
    if (auto* button = qobject_cast<QAbstractButton*>(widget))
        return button->text();
    if (auto* box = qobject_cast<ComboBox*>(widget))
        return box->currentText();
    if (auto* group = qobject_cast<QGroupBox*>(widget))
        return group->title();
    return QString();
}

void Dialog::setItemInt(int id, int value) {
    setItemText(id, QString::number(value));
}

int Dialog::itemInt(int id, bool* ok) const {
    return itemText(id).trimmed().toInt(ok);
}

void Dialog::showItem(int id, bool show) {
    if (QWidget* widget = item(id))
        widget->setVisible(show);
}

bool Dialog::isItemVisible(int id) const {
    const QWidget* widget = item(id);
    return widget && !widget->isHidden();
}

void Dialog::enableItem(int id, bool enable) {
    if (QWidget* widget = item(id))
        widget->setEnabled(enable);
}

bool Dialog::isItemEnabled(int id) const {
    const QWidget* widget = item(id);
    return widget && widget->isEnabled();
}

void Dialog::checkItem(int id, int state) {
    if (auto* box = qobject_cast<QCheckBox*>(item(id)))
        box->setCheckState(state == BST_INDETERMINATE ? Qt::PartiallyChecked
                           : state                    ? Qt::Checked
                                                      : Qt::Unchecked);
    else if (auto* button = qobject_cast<QAbstractButton*>(item(id));
             button && button->isCheckable())
        button->setChecked(state != BST_UNCHECKED);
}

int Dialog::isItemChecked(int id) const {
    if (auto* box = qobject_cast<QCheckBox*>(item(id))) {
        switch (box->checkState()) {
        case Qt::Checked:
            return BST_CHECKED;
        case Qt::PartiallyChecked:
            return BST_INDETERMINATE;
        default:
            return BST_UNCHECKED;
        }
    }
    auto* button = qobject_cast<QAbstractButton*>(item(id));
    return button && button->isChecked() ? BST_CHECKED : BST_UNCHECKED;
}

void Dialog::checkRadioButton(int firstId, int lastId, int checkId) {
    for (const Control& control : controls_) {
        if (control.id < firstId || control.id > lastId)
            continue;
        if (auto* button = qobject_cast<QAbstractButton*>(control.widget))
            button->setChecked(control.id == checkId);
    }
}

void Dialog::setFocusItem(int id) {
    if (QWidget* widget = item(id))
        widget->setFocus(Qt::OtherFocusReason);
}

int Dialog::focusItemId() const {
    const QWidget* focused = window_ ? window_->focusWidget() : nullptr;
    return focused ? itemId(focused) : 0;
}

QRect Dialog::itemRect(int id) const {
    const QWidget* widget = item(id);
    return widget ? widget->geometry() : QRect();
}

void Dialog::moveItem(int id, const QRect& rect) {
    if (QWidget* widget = item(id))
        widget->setGeometry(rect);
}

// ---- messages, commands, timers ----

bool Dialog::postMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (!window_)
        return false;
    QCoreApplication::postEvent(window_, new PostedMessage(message, wParam, lParam));
    return true;
}

void Dialog::handlePosted(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_COMMAND:
        sendCommand(LOWORD(wParam));
        break;
    case WM_SETTINGCHANGE:
        dispatch([this, wParam] { onSettingChange(UINT(wParam)); });
        break;
    case WM_CLOSE:
        dispatch([this] { onClose(); });
        break;
    default:
        dispatch([=, this] { onMessage(message, wParam, lParam); });
        break;
    }
}

void Dialog::sendCommand(int id) {
    dispatch([this, id] { onCommand(id); });
}

void Dialog::onCommand(int id) {
    if (id == IDOK)
        onOK();
    else if (id == IDCANCEL)
        onCancel();
}

UINT_PTR Dialog::setTimer(UINT_PTR id, UINT elapseMs) {
    if (!window_ || id == 0)
        return 0;
    killTimer(id);
    Clock& clock = Clock::current();
    const std::weak_ptr<int> alive = lifeToken_;
    const TimerHandle handle = clock.startTimer(int(elapseMs), [this, alive, id] {
        if (alive.expired() || !window_ || timers_.count(id) == 0)
            return;
        dispatch([this, id] { onTimer(id); });
    });
    timers_[id] = Timer{handle, &clock};
    return id;
}

bool Dialog::killTimer(UINT_PTR id) {
    const auto found = timers_.find(id);
    if (found == timers_.end())
        return false;
    // A timer started under a clock that is no longer in force has died with it.
    if (found->second.clock == &Clock::current())
        Clock::current().stopTimer(found->second.handle);
    timers_.erase(found);
    return true;
}

void Dialog::stopAllTimers() {
    while (!timers_.empty())
        killTimer(timers_.begin()->first);
}

CommandBar* Dialog::createCommandBar(int menuId) {
    if (!window_ || !window_->commandBarSlot())
        return nullptr;
    CommandBar* bar = window_->commandBar();
    if (!bar) {
        bar = new CommandBar(window_->commandBarSlot());
        window_->setCommandBar(bar);
    }
    if (menuId != 0 && !bar->setMenu(menuId, this))
        return nullptr;
    return bar;
}

CommandBar* Dialog::commandBar() const {
    return window_ ? window_->commandBar() : nullptr;
}

void broadcastSettingChange(UINT flag) {
    for (Dialog* dialog : Dialog::windows())
        dialog->postMessage(WM_SETTINGCHANGE, flag, 0);
}

} // namespace tessaly
