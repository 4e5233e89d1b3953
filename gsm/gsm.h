#pragma once

// The suite's telephony contract: everything the module calls in namespace GSM.

#include "gsm/cellbroadcast.h"
#include "gsm/contacts.h"
#include "gsm/device.h"
#include "gsm/lists.h"
#include "gsm/message.h"
#include "gsm/preferences.h"
#include "gsm/result.h"
#include "gsm/services.h"
#include "gsm/sms.h"
