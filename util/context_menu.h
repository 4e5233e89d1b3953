#pragma once

// The option lists' tap-and-hold menu ("ContextMenu": New, Edit, Delete), shared by the
// service-centre directory and the Templates and Variables pages.

#include <QPoint>

#include <vector>

namespace tessaly {
class Dialog;
}

namespace tessaly::sms {

// Tracks the menu without the commands in `without` over the window; the chosen command or 0.
int trackContextMenu(Dialog& window, QPoint screenPos, const std::vector<int>& without = {});

} // namespace tessaly::sms
