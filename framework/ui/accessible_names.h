#pragma once

// Accessible names and roles for controls created from a dialog template, so that a screen
// reader announces each control as a person sees it on the screen.

#include "framework/resources/resource_model.h"

#include <QString>

#include <vector>

class QWidget;

namespace tessaly {

// A control's text as a screen reader should say it: mnemonic ampersands removed ("&&" stays a
// single '&'), a trailing colon and surrounding blanks dropped.
QString accessibleText(const QString& controlText);

struct NamedControl {
    const ControlTemplate* source = nullptr;
    QWidget* widget = nullptr;
};

// Names the controls of one window in template order. A static label names itself and, as a
// mnemonic does, the control that follows it when that control has no text of its own; buttons,
// check boxes, radio buttons and group boxes take their own text; a control left without a
// name takes the window's caption, or, for a window without one, the text of its first label
// (its title line). A name already set is kept.
void nameControls(const std::vector<NamedControl>& controls, const QString& windowCaption);

// Sets the accessible name of a control and of the widget that takes its focus (the line of an
// edit field), which is what a screen reader lands on.
void setControlAccessibleName(QWidget* control, const QString& name);

// Gives the framework's own painted controls the roles of what they do (a label reads as static
// text, an up-down control as one spin box). Idempotent; called when the first window is created.
void installAccessibleFactory();

} // namespace tessaly
