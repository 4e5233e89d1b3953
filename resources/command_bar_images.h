#pragma once

// The pictures of the command bars' bitmap strip IDB_COMMAND_BAR, in the order
// tools/draw-command-bar-buttons draws them.

namespace tessaly::sms {

enum CommandBarImage : int {
    kImageNew = 0,
    kImageCut = 1,
    kImageCopy = 2,
    kImagePaste = 3,
};

} // namespace tessaly::sms
