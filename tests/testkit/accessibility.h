#pragma once

// A window walked as a screen reader walks it: the controls a person can operate that have no
// accessible name.

#include <QStringList>

class QWidget;

namespace tessaly::testkit {

// "role <number> <class>" for each unnamed operable control (button, edit, combo box, list,
// check box, radio button, spin box) in the accessible tree of `window`.
QStringList unnamedOperableControls(QWidget* window);

} // namespace tessaly::testkit
