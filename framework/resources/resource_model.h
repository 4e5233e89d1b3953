#pragma once

// What a resource script holds once parsed: the string table, dialog templates and menus.
// The parser fills these; windows, menus and loadString read them.

#include <QString>
#include <QStringList>

#include <map>
#include <utility>
#include <vector>

namespace tessaly {

struct ControlTemplate {
    QString statement; // LTEXT, PUSHBUTTON, EDITTEXT, ..., or CONTROL
    QString className; // window class for CONTROL ("SysListView32", "Button", ...), else empty
    QString text;
    int id = -1;
    int x = 0; // dialog units
    int y = 0;
    int width = 0;
    int height = 0;
    QStringList styles; // style names as written; a NOT-ed style is stored as "NOT NAME"
    QStringList exStyles;
    int helpId = 0; // DIALOGEX only
};

struct DialogTemplate {
    int id = 0;
    bool extended = false; // DIALOGEX
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    QString caption;
    QStringList styles;
    QStringList exStyles;
    QString fontName;
    int fontSize = 0;
    int fontWeight = 0; // DIALOGEX FONT extras; 0 when not given
    bool fontItalic = false;
    int fontCharset = 0;
    int menuId = 0;
    QString className; // CLASS statement, empty when absent
    int helpId = 0;    // DIALOGEX only
    std::vector<ControlTemplate> controls;

    const ControlTemplate* control(int controlId) const {
        for (const ControlTemplate& c : controls) {
            if (c.id == controlId)
                return &c;
        }
        return nullptr;
    }
};

struct MenuItem {
    int id = 0; // 0 for a popup or separator
    QString text;
    bool separator = false;
    bool checked = false;
    bool enabled = true; // false for GRAYED and for INACTIVE
    bool grayed = false; // GRAYED: disabled and drawn dimmed; INACTIVE leaves it undimmed
    std::vector<MenuItem> children; // non-empty or isPopup for POPUP entries
    bool isPopup = false;
};

struct MenuTemplate {
    int id = 0;
    std::vector<MenuItem> items;
};

// A resource that names a file beside the script, such as `10020 BITMAP "send.bmp"`.
struct FileResource {
    QString type; // as written: BITMAP, ICON, PNG, ...
    int id = 0;
    QString fileName;
};

struct ResourceScript {
    std::map<int, QString> strings;
    std::map<int, DialogTemplate> dialogs;
    std::map<int, MenuTemplate> menus;
    std::map<QString, int> symbols;                        // #define NAME value seen while parsing
    std::map<std::pair<QString, int>, FileResource> files; // keyed by (upper-case type, id)
    QString folder; // where the files it names are read from; empty for a script from text

    // The text of a string-table entry, empty when there is none.
    QString string(int id) const {
        const auto found = strings.find(id);
        return found == strings.end() ? QString() : found->second;
    }
};

} // namespace tessaly
