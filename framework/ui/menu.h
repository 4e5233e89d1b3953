#pragma once

// Menus from the resource script: popup menus tracked through the UserAgent, and the command
// bar at the bottom of a full-screen window.

#include "framework/resources/resource_model.h"
#include "framework/win32types.h"

#include <QMenuBar>
#include <QPoint>

#include <optional>
#include <vector>

class QWidget;

// Alignment of a tracked popup menu against its point.
constexpr UINT TPM_LEFTALIGN = 0x0;
constexpr UINT TPM_CENTERALIGN = 0x4;
constexpr UINT TPM_RIGHTALIGN = 0x8;
constexpr UINT TPM_TOPALIGN = 0x0;
constexpr UINT TPM_BOTTOMALIGN = 0x20;
constexpr UINT TPM_RETURNCMD = 0x100;

namespace tessaly {

class Dialog;

// A copy of a menu that a window may change (check marks, enabled state) before showing it.
class Menu {
public:
    explicit Menu(MenuItem root);
    // The menu resource as a whole (its top-level entries); nothing when there is no such menu.
    static std::optional<Menu> load(int menuId);

    // The popup at position index of this menu; an empty menu for a bad index.
    Menu subMenu(int index) const;
    // Return false when no entry has the id.
    bool checkItem(int id, bool checked);
    bool enableItem(int id, bool enabled);
    const MenuItem* findItem(int id) const;
    const MenuItem& root() const { return root_; }

    // Shows the menu at a screen point and returns the chosen command id, or 0.
    int track(QWidget* owner, QPoint screenPos, UINT flags = TPM_LEFTALIGN) const;

private:
    MenuItem root_;
};

// A picture button of a command bar: the command it gives and the picture's place in the bar's
// bitmap strip.
struct CommandButton {
    int command = 0;
    int image = 0;
};

// The bar at the bottom of a full-screen window. Each top-level popup of its menu is a button
// that opens the popup; a top-level command is a button of its own. Chosen commands reach the
// target window's onCommand.
class CommandBar : public QMenuBar {
    Q_OBJECT
public:
    explicit CommandBar(QWidget* parent = nullptr);

    // Returns false (and leaves the bar empty) when the menu resource does not exist.
    bool setMenu(int menuId, Dialog* target);
    void setMenu(const MenuTemplate& menu, Dialog* target);
    void clearMenu();
    int menuId() const { return menuId_; }
    Dialog* target() const { return target_; }
    bool checkItem(int id, bool checked);
    bool enableItem(int id, bool enabled);
    // The entry with the command id, as the person would tap it; false when there is none or
    // it is disabled.
    bool trigger(int id);
    // Picture buttons from a bitmap resource: a strip of square pictures, as wide as high. A
    // top-level command of the menu with a button's command shows the picture instead of its
    // text; any other button is added after the menu, named after the command's entry in the
    // menu (shown as its tip). False, and the bar unchanged, when the bitmap cannot be read.
    // Buttons go with the menu when setMenu puts another one in.
    bool addButtons(int bitmapId, const std::vector<CommandButton>& buttons);
    // The entries in order, as shown (top level with their popups).
    std::vector<MenuItem> items() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QAction* findAction(int id) const;
    std::vector<QAction*> findActions(int id) const;

    int menuId_ = 0;
    Dialog* target_ = nullptr;
};

// Builds Qt menu entries for the children of item; each command action carries its id as data.
void fillQtMenu(QMenu& menu, const MenuItem& item);

} // namespace tessaly
