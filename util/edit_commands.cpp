#include "util/edit_commands.h"

#include "framework/ui/dialog.h"
#include "resources/resource.h"

namespace tessaly::sms {

bool EditCommands::run(Dialog& window, int command) const {
    switch (command) {
    case IDM_EDIT_COPY:
    case IDM_EDIT_CUT:
    case IDM_EDIT_PASTE:
    case IDM_EDIT_SELECT_ALL:
    case IDM_EDIT_DELETE:
        break;
    default:
        return false;
    }
    Edit* field = lastFocused_ != 0 ? window.edit(lastFocused_) : nullptr;
    if (!field)
        return true;
    switch (command) {
    case IDM_EDIT_COPY:
        field->copy();
        break;
    case IDM_EDIT_CUT:
        field->cut();
        break;
    case IDM_EDIT_PASTE:
        field->paste();
        break;
    case IDM_EDIT_SELECT_ALL:
        field->selectAll();
        field->scrollCaret();
        break;
    case IDM_EDIT_DELETE:
        field->clear();
        break;
    }
    return true;
}

} // namespace tessaly::sms
