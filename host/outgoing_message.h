#pragma once

// A new Outbox message filled in by the host: what the simulator panel sends "from the phone"
// and what an sms: link opens in the composer.

#include "gsm/message.h"

#include <QString>
#include <QStringList>

namespace tessaly::host {

// A new message with these recipients and this text, not yet handed over (endEdit is the
// caller's, or the composer's). Null with `error` set when the store is closed or refuses a
// recipient or the text; nothing is left behind then.
GSM::Message* makeOutgoingMessage(const QStringList& numbers, const QString& text,
                                  GSM::Result* error);

} // namespace tessaly::host
