#pragma once

// Timers that belong to no window: the callback gets the timer's id on each tick. They run on
// the Clock in force, so a test's virtual clock drives them as it drives window timers.

#include "framework/win32types.h"

#include <functional>

namespace tessaly {

// Returns the new timer's id (never 0).
UINT_PTR setThreadTimer(UINT elapseMs, std::function<void(UINT_PTR id)> callback);
// False when no such timer runs.
bool killThreadTimer(UINT_PTR id);

} // namespace tessaly
