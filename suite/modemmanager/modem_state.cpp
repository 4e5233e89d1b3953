#include "suite/modemmanager/modem_state.h"

#include "gsm/device.h"

namespace tessaly::telephony {
namespace {

// MMModem3gppRegistrationState
enum Registration : unsigned {
    kHome = 1,
    kRoaming = 5,
    kHomeSmsOnly = 6,
    kRoamingSmsOnly = 7,
    kHomeCsfbNotPreferred = 9,
    kRoamingCsfbNotPreferred = 10,
};

} // namespace

int deviceStateFrom(int modemState, int failedReason, unsigned registration) {
    if (modemState == kMmStateFailed)
        return failedReason == kMmFailedSimMissing || failedReason == kMmFailedSimError
                   ? GSM::Device::StateNoSim
                   : GSM::Device::StateOff;
    if (modemState == kMmStateLocked)
        return GSM::Device::StatePinRequired;
    // Unknown, initializing, disabled, disabling: the radio is not on the network.
    if (modemState < kMmStateEnabling)
        return GSM::Device::StateOff;
    switch (registration) {
    case kHome:
    case kHomeSmsOnly:
    case kHomeCsfbNotPreferred:
        return GSM::Device::StateRegisteredHome;
    case kRoaming:
    case kRoamingSmsOnly:
    case kRoamingCsfbNotPreferred:
        return GSM::Device::StateRegisteredRoaming;
    default:
        // Idle, searching, denied, unknown, emergency only.
        return GSM::Device::StateSearching;
    }
}

} // namespace tessaly::telephony
