#pragma once

// Finding windows and driving their controls by id, as the person would: each helper goes
// through the control (so the window's notification handlers run) and returns false when the
// person could not do it (no such control, hidden, disabled, no such row).

#include "framework/ui/dialog.h"

#include <QString>

namespace tessaly::testkit {

// The first existing window with the title or the template id; nullptr when there is none.
Dialog* findWindow(const QString& title);
Dialog* findWindow(int templateId);

// Delivers posted messages and deferred deletions until the queue is empty.
void pumpMessages();

// Buttons, check boxes, radio buttons and labels with click notification.
bool click(Dialog& dialog, int id);
// Types into an edit key by key (digits-only edits refuse other characters).
bool type(Dialog& dialog, int id, const QString& text);
// Presses a key on a control (list views report it as key down).
bool pressKey(Dialog& dialog, int id, Qt::Key key);
// Combo box: picks the entry. List box: a tap on the entry (toggles it in a multiple-selection
// box). List view: a tap on the row (selects it and reports the click).
bool select(Dialog& dialog, int id, int index, int column = 0);
bool tapAndHold(Dialog& dialog, int listId, int row);
// Edit: the stylus held at a character position (line breaks count two, as in the edit's
// positions); the tap puts the caret there before the edit reports the hold.
bool tapAndHoldText(Dialog& dialog, int editId, int position);
bool columnClick(Dialog& dialog, int listId, int column);
// Drags the divider right of a column until the column is width pixels wide.
bool dragColumnDivider(Dialog& dialog, int listId, int column, int width);
// Opens and closes a combo box's list without choosing.
bool dropDown(Dialog& dialog, int comboId);
bool closeUp(Dialog& dialog, int comboId);
// Taps an entry of the window's command bar.
bool chooseCommand(Dialog& dialog, int commandId);
// The window becomes the active one (or loses activation).
bool activate(Dialog& dialog, bool active = true);

// Renders the window (shown or not) offscreen into a PNG file.
bool saveScreenshot(const Dialog& dialog, const QString& path);
// A path in the build folder's test-output directory for a screenshot of that name.
QString testOutputPath(const QString& fileName);

} // namespace tessaly::testkit
