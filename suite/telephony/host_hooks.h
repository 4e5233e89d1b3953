#pragma once

// How the telephony library reaches the host. The host installs these once, before it drives
// the module; each hook mirrors the module export (or suite service) it stands for. The library
// calls a hook only from its event queue on the UI thread, never inside a call that the module
// is still making; a missing hook is skipped (isServiceAvailable then answers from the defaults
// below, executeService and the call hooks fail with ErrorNotAvailable).

#include "gsm/gsm.h"

#include <functional>

namespace tessaly::telephony {

struct HostHooks {
    // A message to edit: answers Sms::newMessage, replyMessage and forwardMessage.
    std::function<void(GSM::Message*)> editMessage;
    // A message arrived in the Inbox.
    std::function<void(long id)> openMessageNotification;
    // Sending progress: message id, recipient index, segment (from 1), segment count, and two
    // values the module stores without reading (both 0).
    std::function<void(long, int, int, int, int, int)> openSendingNotification;
    // The queue has been sent: the first failure (or success), and whether more than one
    // message (message and recipient pair) was sent.
    std::function<void(GSM::Result, bool)> openSendingCompletion;
    // SIM storage: (messages, capacity) when the SIM holds messages, (0, 0) per message moved,
    // (-1, -1) when the move has finished.
    std::function<void(int, int)> openSimNotification;
    // The network reported a sent message delivered to the recipient at this position (true)
    // or given up on (false).
    std::function<void(long id, int recipient, bool delivered)> openDeliveryReport;
    std::function<void(void*)> moduleIdle;
    std::function<void(GSM::ServiceId)> setActiveService;
    // Without it: SMS and phone book are available, voice calls are not.
    std::function<bool(GSM::ServiceId)> isServiceAvailable;
    std::function<void(GSM::ServiceId)> executeService;
    // Places a voice call; answers GSM::Phone::makeCall.
    std::function<GSM::Result(const WCHAR* number)> makeCall;
    // Shows a failed result; without it GSM::Io uses the framework's message box.
    std::function<void(const GSM::Result&)> showErrorMessage;
};

// Replaces every hook at once.
void installHostHooks(HostHooks hooks);
const HostHooks& hostHooks();

} // namespace tessaly::telephony
