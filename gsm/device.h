#pragma once

// The phone device, reached as GSM::device, and the base of device event handlers.

#include "gsm/result.h"

namespace GSM {

class Device {
public:
    enum Battery {
        BatteryUnknown = 0,
        BatteryHigh = 1,
        BatteryLow = 2,
        BatteryCritical = 3,
        BatteryCharging = 4
    };
    enum Net { NetUnknown = 0, NetSearching = 1, NetHome = 2, NetRoaming = 3, NetDenied = 4 };
    enum Information { InformationOperator = 0, InformationImei = 1, InformationSim = 2 };
    // Values of getState; 17 and 18 are the states in which the radio is in service.
    enum State {
        StateOff = 0,
        StateNoSim = 1,
        StatePinRequired = 2,
        StateSearching = 16,
        StateRegisteredHome = 17,
        StateRegisteredRoaming = 18,
    };
    // Values of smsService.
    enum SmsService { SmsServiceUnknown = -1, SmsServiceGprs = 2, SmsServiceCircuit = 3 };

    Device() = default;
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    virtual int signalStrength() const = 0; // 0 .. 100
    virtual Battery battery() const = 0;
    virtual int batteryLevel() const = 0; // 0 .. 100
    virtual Net netStatus() const = 0;
    virtual const WCHAR* information(Information which) const = 0;
    virtual bool isDataConnected() const = 0;
    virtual int bandMode() const = 0;
    virtual Result setBandMode(int mode) = 0;
    virtual int getState() const = 0;
    virtual int gprsClass() const = 0;
    virtual Result setGprsClass(int gprsClass) = 0;
    virtual const WCHAR* operatorName() const = 0;
    virtual Result refresh() = 0;
    // SmsServiceGprs, SmsServiceCircuit, or SmsServiceUnknown when the device cannot tell.
    virtual int smsService() const = 0;
    virtual Result setSmsService(int service) = 0;

protected:
    virtual ~Device() = default;
};

extern Device& device;

// Receives device events exactly while it exists; every event does nothing by default.
class DeviceEventHandler {
public:
    DeviceEventHandler();
    DeviceEventHandler(const DeviceEventHandler&) = delete;
    DeviceEventHandler& operator=(const DeviceEventHandler&) = delete;
    virtual ~DeviceEventHandler();

    virtual void eventSignalStrengthChanged();
    virtual void eventBatteryStatusChanged(Device::Battery battery);
    virtual void eventStatusChanged();
    virtual void eventNetStatusChanged(Device::Net net);
    virtual void eventInformationUpdated(Device::Information information);
    virtual void eventFailure(const Result& result);
    virtual void eventDataConnectionChanged(bool connected);
    virtual void eventBandModeChanged();
    virtual void eventBandModeFailure(const Result& result);
    virtual void eventGprsClassChanged();
    virtual void eventGprsClassFailure(const Result& result);
    virtual void eventSmsServiceChanged();
    virtual void eventSmsServiceFailure(const Result& result);
};

} // namespace GSM
