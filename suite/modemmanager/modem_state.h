#pragma once

// ModemManager's view of the network as the phone's device states: the modem's state
// (MMModemState) and its 3GPP registration (MMModem3gppRegistrationState).

namespace tessaly::telephony {

// MMModemState values the phone tells apart.
enum ModemManagerState {
    kMmStateFailed = -1,
    kMmStateLocked = 2,
    kMmStateEnabling = 5,
    kMmStateEnabled = 6,
};

// MMModemStateFailedReason: why a modem is in the failed state.
enum ModemManagerFailedReason {
    kMmFailedSimMissing = 2,
    kMmFailedSimError = 3,
};

// A GSM::Device::State for the modem's state, why it failed, and its registration.
int deviceStateFrom(int modemState, int failedReason, unsigned registration);

} // namespace tessaly::telephony
