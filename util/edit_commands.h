#pragma once

// The "Edit" command-bar menu (Copy, Cut, Paste, Select All, Delete) of windows with several
// edit fields: the commands act on the field that last had the focus, and on nothing before
// any field had it.

namespace tessaly {
class Dialog;
}

namespace tessaly::sms {

class EditCommands {
public:
    // Call from the window's onEditSetFocus.
    void focused(int editId) { lastFocused_ = editId; }
    int lastFocused() const { return lastFocused_; }

    // Runs Copy, Cut, Paste or Select All on the last focused field of `window`; Delete removes
    // its selection. Returns false for other commands (which the window handles itself).
    bool run(Dialog& window, int command) const;

private:
    int lastFocused_ = 0;
};

} // namespace tessaly::sms
