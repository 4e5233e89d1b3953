#pragma once

// Lays out the lines of a notification window under its drawn header: label/value lines from
// the top, a text area taking the room that is left, an optional note line just above the row
// of buttons (its room is kept whether or not it shows, so a note that comes and goes moves
// nothing). The caller hides the lines it leaves out. Used once the window's controls exist.

#include "module/notification_header.h"

#include <vector>

namespace tessaly {
class Dialog;
}

namespace tessaly::sms {

// Paints the header into its label control at the control's size.
void paintHeader(Dialog& window, int headerId, HeaderPicture picture, const QString& word,
                 int frame = 0, double progress = -1.0);

class NotificationLayout {
public:
    explicit NotificationLayout(Dialog& window);

    // A line: the label at the left margin, the value after the widest label. labelId 0
    // continues the line above (a second line of the same value).
    void addLine(int labelId, int valueId);
    // Places the lines from below the header, then the text area from there down to the note
    // line (noteId 0: none) above the bottom row, whose top is that of bottomRowId.
    void place(int headerId, int textId, int noteId, int bottomRowId);

private:
    struct Line {
        int labelId;
        int valueId;
    };
    Dialog& window_;
    std::vector<Line> lines_;
};

} // namespace tessaly::sms
