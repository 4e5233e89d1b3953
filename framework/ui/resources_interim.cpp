#include "framework/resources/resources.h"

// Stand-in lookups over whatever resources were set, until the resource-script parser lands.

namespace tessaly {

namespace {

const ResourceScript* inForce = nullptr;

} // namespace

const ResourceScript* currentResources() {
    return inForce;
}

void setCurrentResources(const ResourceScript* resources) {
    inForce = resources;
}

QString loadString(int id) {
    if (!inForce)
        return QString();
    const auto found = inForce->strings.find(id);
    return found == inForce->strings.end() ? QString() : found->second;
}

const DialogTemplate* findDialogTemplate(int id) {
    if (!inForce)
        return nullptr;
    const auto found = inForce->dialogs.find(id);
    return found == inForce->dialogs.end() ? nullptr : &found->second;
}

const MenuTemplate* findMenuTemplate(int id) {
    if (!inForce)
        return nullptr;
    const auto found = inForce->menus.find(id);
    return found == inForce->menus.end() ? nullptr : &found->second;
}

} // namespace tessaly
