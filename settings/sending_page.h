#pragma once

// The Sending page: the service centre used, sending while roaming, the device's preference for
// GPRS, the progress dialog, and the defaults of new messages (validity, same service centre
// for the reply, status report). Its command bar opens the service-centre directory.

#include "gsm/device.h"
#include "gsm/message.h"
#include "gsm/preferences.h"
#include "resources/resource.h"
#include "settings/options_page.h"
#include "settings/options_sheet.h"
#include "settings/validity_choices.h"

namespace tessaly::sms {

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
