#pragma once

// The pages of the module's options sheet and the module as the sheet sees it.

#include "settings/options_sheet.h"

#include <span>

namespace tessaly::sms {

// One factory per page that exists, in any order: the sheet orders them by kind.
std::span<const OptionsPageFactory> moduleOptionsPages();

// The settings record of the module-wide state, loaded on first use and written through the
// telephony library.
OptionsEnvironment& moduleOptionsEnvironment();

} // namespace tessaly::sms
