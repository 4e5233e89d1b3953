#pragma once

// The suite's telephony contract: everything the module calls in namespace GSM.

#include "module/telephony/cellbroadcast.h"
#include "module/telephony/contacts.h"
#include "module/telephony/device.h"
#include "module/telephony/lists.h"
#include "module/telephony/message.h"
#include "module/telephony/preferences.h"
#include "module/telephony/result.h"
#include "module/telephony/services.h"
#include "module/telephony/sms.h"
