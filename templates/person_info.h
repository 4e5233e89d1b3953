#pragma once

// The people a message text can name: the sender (the signature kept in the settings) and one
// recipient or picked contact (from the phone book).

#include "settings/sms_settings.h"

#include <QString>

namespace tessaly::sms {

struct SenderInfo {
    QString firstName;
    QString lastName;
    QString phone;

    bool operator==(const SenderInfo&) const = default;
};

struct RecipientInfo {
    QString firstName;
    QString lastName;
    QString fullName;
    QString initials;
    QString phone;

    bool operator==(const RecipientInfo&) const = default;
};

// The signature fields of the settings record.
inline SenderInfo senderInfoOf(const SmsSettings& settings) {
    return {settings.firstName, settings.lastName, settings.phone};
}

} // namespace tessaly::sms
