#pragma once

#include <QImage>

namespace tessaly::host {

class PhoneWindow;

// A picture of the host's window with every other visible top-level window of the process (the
// module's windows) painted over it where it stands on the desktop.
QImage grabPhone(PhoneWindow& phone);

} // namespace tessaly::host
