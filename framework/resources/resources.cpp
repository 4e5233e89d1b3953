#include "framework/resources/resources.h"

#include "framework/resources/module_state.h"

#include <QDir>

namespace tessaly {

const ResourceScript* currentResources() {
    return currentModuleState().resources;
}

void setCurrentResources(const ResourceScript* resources) {
    ModuleState state = currentModuleState();
    state.resources = resources;
    setCurrentModuleState(state);
}

QString loadString(int id) {
    const ResourceScript* resources = currentResources();
    return resources ? resources->string(id) : QString();
}

const DialogTemplate* findDialogTemplate(int id) {
    const ResourceScript* resources = currentResources();
    if (!resources)
        return nullptr;
    const auto found = resources->dialogs.find(id);
    return found == resources->dialogs.end() ? nullptr : &found->second;
}

const MenuTemplate* findMenuTemplate(int id) {
    const ResourceScript* resources = currentResources();
    if (!resources)
        return nullptr;
    const auto found = resources->menus.find(id);
    return found == resources->menus.end() ? nullptr : &found->second;
}

QString findFileResource(const QString& type, int id) {
    const ResourceScript* resources = currentResources();
    if (!resources)
        return {};
    const auto found = resources->files.find({type.toUpper(), id});
    if (found == resources->files.end())
        return {};
    return QDir(resources->folder).filePath(found->second.fileName);
}

} // namespace tessaly
