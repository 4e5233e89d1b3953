#pragma once

// The nine entry points of Sms.tsm. They have C++ linkage on purpose: the host resolves each by
// its signature-decorated name, so a host built against other argument types finds nothing
// instead of calling with the wrong ones. None returns a value; all run on the host's
// user-interface thread.

#include "gsm/message.h"
#include "gsm/result.h"

#define TESSALY_SMS_EXPORT __attribute__((visibility("default")))

// Keeps `hostIdle` for GSM::moduleIdle; creates nothing and reads no settings.
TESSALY_SMS_EXPORT void initModule(void* hostIdle);
// Destroys every window of the module; the idle pointer and the settings stay.
TESSALY_SMS_EXPORT void exitModule();
// Brings up the message lists (or the first open composer).
TESSALY_SMS_EXPORT void openSms();
// Shows one stored message and returns when the person closes it.
TESSALY_SMS_EXPORT void openMessage(long id);
// Opens a composer for a message the telephony library prepared (new, reply, forward).
TESSALY_SMS_EXPORT void editMessage(GSM::Message* message);
// A message arrived.
TESSALY_SMS_EXPORT void openMessageNotification(long id);
// Sending progress: message, recipient index, segment, segment count, two values kept unread.
TESSALY_SMS_EXPORT void openSendingNotification(long id, int recipient, int segment, int segments,
                                                int reserved1, int reserved2);
// The queue was sent: the first failure (or success), and whether more than one went.
TESSALY_SMS_EXPORT void openSendingCompletion(GSM::Result result, bool plural);
// SIM storage: (messages, capacity) to offer the move, (0, 0) per message moved, (-1, -1) done.
TESSALY_SMS_EXPORT void openSimNotification(int count, int capacity);
