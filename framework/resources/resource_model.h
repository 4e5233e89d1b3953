#pragma once

// What a resource script holds once parsed: the string table, dialog templates and menus.
// The parser fills these; windows, menus and loadString read them.

#include <QString>
#include <QStringList>

#include <map>
#include <vector>

namespace tessaly {

struct ControlTemplate {
    QString statement;  // LTEXT, PUSHBUTTON, EDITTEXT, ..., or CONTROL
    QString className;  // window class for CONTROL ("SysListView32", "Button", ...), else empty
    QString text;
    int id = -1;
    int x = 0;  // dialog units
    int y = 0;
    int width = 0;
    int height = 0;
    QStringList styles;  // style names as written; a NOT-ed style is stored as "NOT NAME"
    QStringList exStyles;
};

struct DialogTemplate {
    int id = 0;
    bool extended = false;  // DIALOGEX
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    QString caption;
    QStringList styles;
    QStringList exStyles;
    QString fontName;
    int fontSize = 0;
    int menuId = 0;
    std::vector<ControlTemplate> controls;
};

struct MenuItem {
    int id = 0;  // 0 for a popup or separator
    QString text;
    bool separator = false;
    bool checked = false;
    bool enabled = true;
    std::vector<MenuItem> children;  // non-empty or isPopup for POPUP entries
    bool isPopup = false;
};

struct MenuTemplate {
    int id = 0;
    std::vector<MenuItem> items;
};

struct ResourceScript {
    std::map<int, QString> strings;
    std::map<int, DialogTemplate> dialogs;
    std::map<int, MenuTemplate> menus;
    std::map<QString, int> symbols;  // #define NAME value seen while parsing
};

} // namespace tessaly
