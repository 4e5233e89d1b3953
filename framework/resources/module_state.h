#pragma once

// The module state in force on this thread: whose resources loadString and the templates read,
// and an opaque pointer to the module's own state. Every entry into a module (its exports and
// its event overrides) switches to the module's state with a ModuleStateGuard, which restores
// the caller's when it goes out of scope; guards nest.

#include "framework/resources/resource_model.h"

namespace tessaly {

struct ModuleState {
    const ResourceScript* resources = nullptr;
    void* moduleData = nullptr; // the module's own, never looked into by the framework

    bool operator==(const ModuleState&) const = default;
};

// Per thread: all windows live on the user-interface thread, and a worker thread never sees
// a switch made on another thread.
ModuleState currentModuleState();
void setCurrentModuleState(const ModuleState& state);

class ModuleStateGuard {
public:
    explicit ModuleStateGuard(const ModuleState& state);
    ModuleStateGuard(const ResourceScript* resources, void* moduleData)
        : ModuleStateGuard(ModuleState{resources, moduleData}) {}
    ~ModuleStateGuard();

    ModuleStateGuard(const ModuleStateGuard&) = delete;
    ModuleStateGuard& operator=(const ModuleStateGuard&) = delete;

    const ModuleState& previous() const { return previous_; }

private:
    ModuleState previous_;
};

} // namespace tessaly
