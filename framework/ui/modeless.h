#pragma once

// Opening a modeless window the caller allocated with new.

#include "framework/ui/dialog.h"

namespace tessaly {

// Creates `window`, hidden; null when it could not be created, and the object is gone then
// (deleted here unless it already deleted itself while being created).
template <class Window> Window* createModeless(Window* window) {
    if (!window->create()) {
        if (Dialog::exists(window))
            delete window;
        return nullptr;
    }
    return window;
}

// Creates and shows `window`; null, with the object gone, when it could not be created.
template <class Window> Window* showModeless(Window* window) {
    if (!createModeless(window))
        return nullptr;
    window->showWindow(SW_SHOW);
    return window;
}

} // namespace tessaly
