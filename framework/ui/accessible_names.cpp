#include "framework/ui/accessible_names.h"

#include "framework/ui/controls.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QComboBox>
#include <QGroupBox>

namespace tessaly {

namespace {

// Label text a screen reader can say: StaticLabel paints its text, so Qt cannot read it.
class StaticLabelAccessible final : public QAccessibleWidget {
public:
    explicit StaticLabelAccessible(StaticLabel* label)
        : QAccessibleWidget(label, QAccessible::StaticText) {}

    QString text(QAccessible::Text kind) const override {
        const QString own = QAccessibleWidget::text(kind);
        if (kind == QAccessible::Name && own.isEmpty())
            return accessibleText(static_cast<StaticLabel*>(widget())->text());
        return own;
    }
};

// An up-down control reads as one spin box named after its buddy field, with the position as
// its value; its two arrow buttons are not separate stops (the arrow keys step it).
class UpDownAccessible final : public QAccessibleWidget {
public:
    explicit UpDownAccessible(UpDown* upDown)
        : QAccessibleWidget(upDown, QAccessible::SpinBox) {}

    int childCount() const override { return 0; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }

    QString text(QAccessible::Text kind) const override {
        const auto* upDown = static_cast<UpDown*>(widget());
        if (kind == QAccessible::Value)
            return QString::number(upDown->pos());
        const QString own = QAccessibleWidget::text(kind);
        if (kind == QAccessible::Name && own.isEmpty() && upDown->buddy())
            return upDown->buddy()->accessibleName();
        return own;
    }
};

QAccessibleInterface* frameworkControlAccessible(const QString& className, QObject* object) {
    if (className == QLatin1String("tessaly::StaticLabel"))
        return new StaticLabelAccessible(static_cast<StaticLabel*>(object));
    if (className == QLatin1String("tessaly::UpDown"))
        return new UpDownAccessible(static_cast<UpDown*>(object));
    return nullptr;
}

bool hasTextOfItsOwn(const QWidget* widget) {
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QGroupBox*>(widget) ||
           qobject_cast<const StaticLabel*>(widget);
}

QString ownText(const QWidget* widget) {
    if (auto* button = qobject_cast<const QAbstractButton*>(widget))
        return button->text();
    if (auto* box = qobject_cast<const QGroupBox*>(widget))
        return box->title();
    if (auto* label = qobject_cast<const StaticLabel*>(widget))
        return label->text();
    return {};
}

} // namespace

QString accessibleText(const QString& controlText) {
    QString text;
    text.reserve(controlText.size());
    for (qsizetype i = 0; i < controlText.size(); ++i) {
        if (controlText[i] == u'&') {
            if (i + 1 < controlText.size() && controlText[i + 1] == u'&')
                text += u'&', ++i;
            continue;
        }
        text += controlText[i];
    }
    text = text.trimmed();
    if (text.endsWith(u':'))
        text.chop(1);
    return text.trimmed();
}

void setControlAccessibleName(QWidget* control, const QString& name) {
    control->setAccessibleName(name);
    if (QWidget* focus = control->focusProxy())
        focus->setAccessibleName(name);
    if (auto* box = qobject_cast<QComboBox*>(control))
        box->view()->setAccessibleName(name);
}

void nameControls(const std::vector<NamedControl>& controls, const QString& windowCaption) {
    // A window without a caption shows its title as its first label.
    QString fallbackName = windowCaption;
    for (auto it = controls.begin(); fallbackName.isEmpty() && it != controls.end(); ++it) {
        if (auto* label = qobject_cast<StaticLabel*>(it->widget))
            fallbackName = label->text();
    }
    QString pendingLabel; // the text of a label that waits for its buddy
    for (const NamedControl& control : controls) {
        QWidget* widget = control.widget;
        const bool isLabel = qobject_cast<StaticLabel*>(widget) != nullptr;
        QString name = widget->accessibleName();
        if (name.isEmpty() && hasTextOfItsOwn(widget))
            name = accessibleText(ownText(widget));
        if (auto* upDown = qobject_cast<UpDown*>(widget);
            name.isEmpty() && upDown && upDown->buddy())
            name = upDown->buddy()->accessibleName();
        if (name.isEmpty() && !isLabel && !hasTextOfItsOwn(widget))
            name = pendingLabel;
        if (name.isEmpty() && !isLabel)
            name = accessibleText(fallbackName);
        if (!name.isEmpty() && widget->accessibleName() != name)
            setControlAccessibleName(widget, name);
        pendingLabel = isLabel ? accessibleText(ownText(widget)) : QString();
    }
}

void installAccessibleFactory() {
    static const bool installed = [] {
        QAccessible::installFactory(frameworkControlAccessible);
        return true;
    }();
    (void)installed;
}

} // namespace tessaly
