#pragma once

#include <QImage>

namespace tessaly::host {

class PhoneWindow;

// A picture of the desktop as the person sees it: the phone screen, the module's windows over
// it and the simulator panel beside it.
QImage grabPhone(const PhoneWindow& phone);

} // namespace tessaly::host
