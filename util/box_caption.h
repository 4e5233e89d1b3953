#pragma once

// The caption of every message box the module shows: the application's title.

#include <QString>

namespace tessaly::sms {

QString boxCaption();

} // namespace tessaly::sms
