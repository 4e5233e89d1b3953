#pragma once

// The suite's services as the module names them, and the calls that reach the host.

#include "gsm/result.h"

namespace GSM {

enum ServiceId {
    ServiceVoice = 1,
    ServiceSms = 2,
    ServicePhoneBook = 3,
    ServiceNone = 13, // no SMS window is active
};

// Tells the host which service the person is looking at.
void setActiveService(ServiceId service);
// Hands control back to the host; `hostIdle` is the pointer the host gave the module.
void moduleIdle(void* hostIdle);
bool isServiceAvailable(ServiceId service);
// Asks the host to bring up a service; the host acts after the call has returned.
Result executeService(ServiceId service);

// An owner window for the library's own dialogs: the QWidget of the module's window (or null).
using WindowHandle = void*;

// Shows a failed result to the person in the suite's way.
class Io {
public:
    static void showErrorMessage(const Result& result);
};

} // namespace GSM
