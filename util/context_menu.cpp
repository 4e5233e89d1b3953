#include "util/context_menu.h"

#include "framework/ui/dialog.h"
#include "framework/ui/menu.h"
#include "resources/resource.h"

#include <algorithm>

namespace tessaly::sms {

int trackContextMenu(Dialog& window, QPoint screenPos, const std::vector<int>& without) {
    std::optional<Menu> menu = Menu::load(IDR_MENU_CONTEXT);
    if (!menu)
        return 0;
    MenuItem popup = menu->subMenu(0).root();
    std::erase_if(popup.children, [&](const MenuItem& item) {
        return std::ranges::find(without, item.id) != without.end();
    });
    return Menu(popup).track(window.window(), screenPos);
}

} // namespace tessaly::sms
