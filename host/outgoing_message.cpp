#include "host/outgoing_message.h"

#include <string>

namespace tessaly::host {

GSM::Message* makeOutgoingMessage(const QStringList& numbers, const QString& text,
                                  GSM::Result* error) {
    GSM::Message* message = GSM::Message::make();
    if (!message) {
        *error = GSM::Result(GSM::ErrorNotAvailable, u"The message store is not available.");
        return nullptr;
    }
    GSM::Result result = message->setText(text.toStdU16String().c_str());
    for (const QString& number : numbers) {
        if (!result.isOk())
            break;
        result = message->getContacts()->add(number.toStdU16String().c_str());
    }
    if (!result.isOk()) {
        message->endEdit(true);
        *error = result;
        return nullptr;
    }
    return message;
}

} // namespace tessaly::host
