#include "tests/testkit/accessibility.h"

#include <QAccessible>
#include <QAccessibleInterface>
#include <QWidget>

namespace tessaly::testkit {

namespace {

bool isOperable(QAccessible::Role role) {
    switch (role) {
    case QAccessible::PushButton:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::EditableText:
    case QAccessible::ComboBox:
    case QAccessible::List:
    case QAccessible::Table:
    case QAccessible::Tree:
    case QAccessible::SpinBox:
    case QAccessible::Slider:
    case QAccessible::ButtonMenu:
    case QAccessible::ButtonDropDown:
        return true;
    default:
        return false;
    }
}

void collectUnnamed(QAccessibleInterface* node, QStringList& unnamed, int depth) {
    if (!node || depth > 16)
        return;
    if (isOperable(node->role()) && node->text(QAccessible::Name).trimmed().isEmpty()) {
        QObject* object = node->object();
        unnamed.append(QStringLiteral("role %1 %2")
                           .arg(int(node->role()))
                           .arg(object ? QString::fromUtf8(object->metaObject()->className())
                                       : QStringLiteral("(item)")));
    }
    // Rows and cells of a list carry their own text; the list itself is what must be named.
    if (node->role() == QAccessible::Table || node->role() == QAccessible::List)
        return;
    for (int i = 0; i < node->childCount(); ++i)
        collectUnnamed(node->child(i), unnamed, depth + 1);
}

} // namespace

QStringList unnamedOperableControls(QWidget* window) {
    QStringList unnamed;
    collectUnnamed(QAccessible::queryAccessibleInterface(window), unnamed, 0);
    return unnamed;
}

} // namespace tessaly::testkit
