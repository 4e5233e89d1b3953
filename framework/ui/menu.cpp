#include "framework/ui/menu.h"

#include "framework/resources/resources.h"
#include "framework/ui/dialog.h"
#include "framework/ui/screen.h"
#include "framework/ui/useragent.h"

#include <QEvent>
#include <QIcon>
#include <QMenu>
#include <QPixmap>

#include <algorithm>

namespace tessaly {

namespace {

MenuItem* findIn(MenuItem& item, int id) {
    if (!item.isPopup && !item.separator && item.id == id)
        return &item;
    for (MenuItem& child : item.children)
        if (MenuItem* found = findIn(child, id))
            return found;
    return nullptr;
}

} // namespace

Menu::Menu(MenuItem root)
    : root_(std::move(root)) {
    root_.isPopup = true;
}

std::optional<Menu> Menu::load(int menuId) {
    const MenuTemplate* menu = findMenuTemplate(menuId);
    if (!menu)
        return std::nullopt;
    MenuItem root;
    root.children = menu->items;
    return Menu(std::move(root));
}

Menu Menu::subMenu(int index) const {
    if (index < 0 || index >= int(root_.children.size()))
        return Menu(MenuItem{});
    return Menu(root_.children[size_t(index)]);
}

bool Menu::checkItem(int id, bool checked) {
    MenuItem* found = findIn(root_, id);
    if (found)
        found->checked = checked;
    return found != nullptr;
}

bool Menu::enableItem(int id, bool enabled) {
    MenuItem* found = findIn(root_, id);
    if (found)
        found->enabled = enabled;
    return found != nullptr;
}

const MenuItem* Menu::findItem(int id) const {
    return findIn(const_cast<MenuItem&>(root_), id);
}

int Menu::track(QWidget* owner, QPoint screenPos, UINT flags) const {
    return UserAgent::current().trackPopupMenuEx(owner, root_, screenPos, flags);
}

void fillQtMenu(QMenu& menu, const MenuItem& item) {
    menu.setFont(smallFont());
    for (const MenuItem& child : item.children) {
        if (child.separator) {
            menu.addSeparator();
        } else if (child.isPopup || !child.children.empty()) {
            QMenu* sub = menu.addMenu(child.text);
            sub->setEnabled(child.enabled);
            fillQtMenu(*sub, child);
        } else {
            QAction* action = menu.addAction(child.text);
            action->setData(child.id);
            action->setCheckable(child.checked);
            action->setChecked(child.checked);
            action->setEnabled(child.enabled);
        }
    }
}

// ---- CommandBar ----

CommandBar::CommandBar(QWidget* parent)
    : QMenuBar(parent) {
    setNativeMenuBar(false);
    setFont(smallFont());
    connect(this, &QMenuBar::triggered, this, [this](QAction* action) {
        const int id = action->data().toInt();
        if (id != 0 && Dialog::exists(target_))
            target_->sendCommand(id);
    });
}

// The bar stands at the bottom of the phone's screen: its menus open upward from it, as on the
// phone, instead of below the screen where Qt would put them.
bool CommandBar::eventFilter(QObject* watched, QEvent* event) {
    auto* popup = qobject_cast<QMenu*>(watched);
    if (popup && event->type() == QEvent::Show) {
        const QRect entry = actionGeometry(popup->menuAction());
        const QPoint above = mapToGlobal(QPoint(entry.left(), 0));
        popup->move(above.x(), above.y() - popup->sizeHint().height());
    }
    return QMenuBar::eventFilter(watched, event);
}

bool CommandBar::setMenu(int menuId, Dialog* target) {
    const MenuTemplate* menu = findMenuTemplate(menuId);
    if (!menu) {
        clearMenu();
        return false;
    }
    setMenu(*menu, target);
    return true;
}

void CommandBar::setMenu(const MenuTemplate& menu, Dialog* target) {
    QMenuBar::clear();
    menuId_ = menu.id;
    target_ = target;
    for (const MenuItem& item : menu.items) {
        if (item.separator)
            continue;
        if (item.isPopup || !item.children.empty()) {
            QMenu* popup = addMenu(item.text);
            popup->setEnabled(item.enabled);
            popup->installEventFilter(this);
            fillQtMenu(*popup, item);
        } else {
            QAction* action = addAction(item.text);
            action->setData(item.id);
            action->setEnabled(item.enabled);
        }
    }
}

void CommandBar::clearMenu() {
    QMenuBar::clear();
    menuId_ = 0;
    target_ = nullptr;
}

std::vector<QAction*> CommandBar::findActions(int id) const {
    std::vector<QAction*> found;
    if (id == 0)
        return found;
    for (QAction* action : findChildren<QAction*>())
        if (action->data().toInt() == id && !action->menu())
            found.push_back(action);
    return found;
}

QAction* CommandBar::findAction(int id) const {
    const std::vector<QAction*> found = findActions(id);
    return found.empty() ? nullptr : found.front();
}

// A command's entry in a popup and its picture button are one command: both change together.
bool CommandBar::checkItem(int id, bool checked) {
    const std::vector<QAction*> found = findActions(id);
    for (QAction* action : found) {
        action->setCheckable(checked || action->isCheckable());
        action->setChecked(checked);
    }
    return !found.empty();
}

bool CommandBar::enableItem(int id, bool enabled) {
    const std::vector<QAction*> found = findActions(id);
    for (QAction* action : found)
        action->setEnabled(enabled);
    return !found.empty();
}

bool CommandBar::addButtons(int bitmapId, const std::vector<CommandButton>& buttons) {
    const QPixmap strip(findFileResource(QStringLiteral("BITMAP"), bitmapId));
    if (strip.isNull())
        return false;
    const int side = strip.height();
    for (const CommandButton& button : buttons) {
        if (button.image < 0 || (button.image + 1) * side > strip.width())
            continue;
        const QIcon picture(strip.copy(button.image * side, 0, side, side));
        const std::vector<QAction*> entries = findActions(button.command);
        const auto topLevel = std::find_if(entries.begin(), entries.end(), [this](QAction* entry) {
            return actions().contains(entry);
        });
        if (topLevel != entries.end()) {
            (*topLevel)->setIcon(picture);
            (*topLevel)->setToolTip((*topLevel)->text());
            continue;
        }
        QAction* action = addAction(picture, entries.empty() ? QString() : entries.front()->text());
        action->setData(button.command);
        action->setToolTip(action->text());
        action->setEnabled(entries.empty() || entries.front()->isEnabled());
    }
    return true;
}

bool CommandBar::trigger(int id) {
    QAction* action = findAction(id);
    if (!action || !action->isEnabled())
        return false;
    // Through the bar's own signal, as a tap would.
    emit triggered(action);
    return true;
}

namespace {

MenuItem itemFromAction(QAction* action) {
    MenuItem item;
    item.text = action->text();
    item.separator = action->isSeparator();
    item.enabled = action->isEnabled();
    item.checked = action->isChecked();
    if (QMenu* popup = action->menu()) {
        item.isPopup = true;
        for (QAction* child : popup->actions())
            item.children.push_back(itemFromAction(child));
    } else {
        item.id = action->data().toInt();
    }
    return item;
}

} // namespace

std::vector<MenuItem> CommandBar::items() const {
    std::vector<MenuItem> result;
    for (QAction* action : actions())
        result.push_back(itemFromAction(action));
    return result;
}

} // namespace tessaly
