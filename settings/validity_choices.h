#pragma once

// The validity choices of new messages, shared by the Sending page and the composer.

#include "gsm/message.h"
#include "resources/resource.h"

#include <array>

namespace tessaly {
class ComboBox;
}

namespace tessaly::sms {

// The validity choices in combo-box order: their texts and the relative validity-period codes
// they store. "1 Week" stores 175 on purpose (nine days by the letter of the code).
struct ValidityChoice {
    int textId;
    GSM::Message::ValidityPeriod code;
};
inline constexpr std::array<ValidityChoice, 5> kValidityChoices = {{
    {IDS_VALIDITY_1_HOUR, GSM::Message::OneHour},
    {IDS_VALIDITY_6_HOURS, GSM::Message::SixHours},
    {IDS_VALIDITY_1_DAY, GSM::Message::OneDay},
    {IDS_VALIDITY_1_WEEK, GSM::Message::OneWeek},
    {IDS_VALIDITY_MAXIMUM, GSM::Message::Maximum},
}};

// The combo index showing a stored code; a code outside the table shows the first choice.
int validityIndexForCode(int code);

// Fills `combo` with the choices' texts, in table order.
void fillValidityChoices(ComboBox& combo);

} // namespace tessaly::sms
