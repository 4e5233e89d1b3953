#pragma once

// The resources in force: the module's parsed resource script in the chosen language.
// A ModuleStateGuard switches to a module's resources and restores the caller's on return.

#include "framework/resources/resource_model.h"

#include <QString>

namespace tessaly {

// The resources that loadString, dialogs and menus read now (may be nullptr: nothing loaded).
const ResourceScript* currentResources();
void setCurrentResources(const ResourceScript* resources);

// The text of a string-table entry of the current resources; empty when there is none.
QString loadString(int id);
const DialogTemplate* findDialogTemplate(int id);
const MenuTemplate* findMenuTemplate(int id);
// The path of a file resource (`10008 BITMAP "buttons.png"`) of the current resources, beside
// their script; empty when there is none.
QString findFileResource(const QString& type, int id);

} // namespace tessaly
