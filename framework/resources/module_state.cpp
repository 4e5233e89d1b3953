#include "framework/resources/module_state.h"

namespace tessaly {

namespace {
thread_local ModuleState threadState;
} // namespace

ModuleState currentModuleState() {
    return threadState;
}

void setCurrentModuleState(const ModuleState& state) {
    threadState = state;
}

ModuleStateGuard::ModuleStateGuard(const ModuleState& state)
    : previous_(threadState) {
    threadState = state;
}

ModuleStateGuard::~ModuleStateGuard() {
    threadState = previous_;
}

} // namespace tessaly
