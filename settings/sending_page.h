#pragma once

// The Sending page: the service centre used, sending while roaming, the device's preference for
// GPRS, the progress dialog, and the defaults of new messages (validity, same service centre
// for the reply, status report). Its command bar opens the service-centre directory.

#include "module/telephony/device.h"
#include "module/telephony/message.h"
#include "module/telephony/preferences.h"
#include "resources/resource.h"
#include "settings/options_page.h"
#include "settings/options_sheet.h"

#include <array>

namespace tessaly::sms {

// The validity choices in combo-box order: their texts and the relative validity-period codes
// they store. "1 Week" stores 175 on purpose (nine days by the letter of the code).
struct ValidityChoice {
    int textId;
    int code;
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

class SendingPage final : public CPpOptions,
                          public GSM::DeviceEventHandler,
                          public GSM::Preferences {
public:
    explicit SendingPage(OptionsEnvironment& environment);

    static std::unique_ptr<PropertyPage> make(OptionsEnvironment& environment);

    bool dataLoad() override;
    bool dataSave() override;
    bool dataSetDefault() override;

    void eventSmsServiceChanged() override;
    void eventPreferencesChanged() override;

protected:
    void onCommand(int id) override;

private:
    void loadPreferGprs();
    void loadValidity();

    OptionsEnvironment& environment_;
};

} // namespace tessaly::sms
