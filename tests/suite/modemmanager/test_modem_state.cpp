// ModemManager's modem states and registrations as the phone's device states, and its send
// errors as failures worth another attempt or not.

#include "suite/modemmanager/modem_state.h"
#include "suite/modemmanager/modemmanager_backend.h"

#include "gsm/device.h"
#include "gsm/result.h"

#include <gtest/gtest.h>

namespace {

using tessaly::telephony::deviceStateFrom;

TEST(ModemState, ModemStatesAndRegistrationsBecomeDeviceStates) {
    const struct {
        int modemState;
        int failedReason;
        unsigned registration;
        int expected;
    } cases[] = {
        {-1, 2, 0, GSM::Device::StateNoSim},             // failed: SIM missing
        {-1, 1, 0, GSM::Device::StateOff},               // failed for another reason
        {0, 0, 1, GSM::Device::StateOff},                // unknown
        {2, 0, 0, GSM::Device::StatePinRequired},        // locked
        {3, 0, 1, GSM::Device::StateOff},                // disabled, registration stale
        {6, 0, 0, GSM::Device::StateSearching},          // enabled, idle
        {7, 0, 2, GSM::Device::StateSearching},          // searching
        {8, 0, 1, GSM::Device::StateRegisteredHome},     // registered at home
        {8, 0, 6, GSM::Device::StateRegisteredHome},     // home, SMS only
        {11, 0, 5, GSM::Device::StateRegisteredRoaming}, // connected while roaming
        {8, 0, 10, GSM::Device::StateRegisteredRoaming}, // roaming, CSFB not preferred
        {8, 0, 3, GSM::Device::StateSearching},          // denied
        {8, 0, 8, GSM::Device::StateSearching},          // emergency calls only
    };
    for (const auto& c : cases)
        EXPECT_EQ(deviceStateFrom(c.modemState, c.failedReason, c.registration), c.expected)
            << c.modemState << " " << c.failedReason << " " << c.registration;
}

TEST(ModemState, SendErrorsWorthAnotherAttempt) {
    const struct {
        const char* name;
        long code;
    } cases[] = {
        {"org.freedesktop.ModemManager1.Error.Message.NoNetwork", GSM::ErrorNoNetwork},
        {"org.freedesktop.ModemManager1.Error.Core.WrongState", GSM::ErrorNoNetwork},
        {"org.freedesktop.ModemManager1.Error.Message.NetworkTimeout", GSM::ErrorBusy},
        {"org.freedesktop.ModemManager1.Error.Message.SimBusy", GSM::ErrorBusy},
        {"org.freedesktop.ModemManager1.Error.Core.InProgress", GSM::ErrorBusy},
        {"org.freedesktop.ModemManager1.Error.Message.Unknown", GSM::ErrorNetworkRejected},
        {"org.freedesktop.ModemManager1.Error.Message.InvalidPduParameter",
         GSM::ErrorNetworkRejected},
        {"org.freedesktop.DBus.Error.NoReply", GSM::ErrorNetworkRejected},
    };
    for (const auto& c : cases)
        EXPECT_EQ(tessaly::telephony::sendFailureCode(QString::fromLatin1(c.name)), c.code)
            << c.name;
}

} // namespace
