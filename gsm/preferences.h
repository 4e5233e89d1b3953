#pragma once

// Per-service preference records, the suite-wide main preferences with their service-centre
// list, and the base of preference event handlers.

#include "gsm/result.h"
#include "gsm/services.h"

namespace GSM {

// One service centre; its strings belong to the list.
class ServiceCentreEntry {
public:
    ServiceCentreEntry() = default;
    ServiceCentreEntry(const ServiceCentreEntry&) = delete;
    ServiceCentreEntry& operator=(const ServiceCentreEntry&) = delete;

    virtual const WCHAR* name() const = 0;
    virtual const WCHAR* number() const = 0;

protected:
    virtual ~ServiceCentreEntry() = default;
};

// Changing the service-centre list. Index 0 is always the SIM's own centre: it cannot be
// removed, and removeAll keeps it.
class ServiceCentreEditor {
public:
    ServiceCentreEditor() = default;
    ServiceCentreEditor(const ServiceCentreEditor&) = delete;
    ServiceCentreEditor& operator=(const ServiceCentreEditor&) = delete;

    virtual Result add(const WCHAR* name, const WCHAR* number) = 0;
    virtual Result remove(int index) = 0;
    virtual Result removeAll() = 0;
    // Always a valid index.
    virtual int preferred() const = 0;
    virtual Result setPreferred(int index) = 0;
    // True when the list holds no entry besides the SIM's own.
    virtual bool isEmpty() const = 0;
    // Every change is stored at once; `announce` also tells the preference handlers.
    virtual Result commit(bool announce) = 0;

protected:
    virtual ~ServiceCentreEditor() = default;
};

// Reading the service-centre list.
class ServiceCentreEntries {
public:
    ServiceCentreEntries() = default;
    ServiceCentreEntries(const ServiceCentreEntries&) = delete;
    ServiceCentreEntries& operator=(const ServiceCentreEntries&) = delete;

    virtual int count() const = 0;
    // Null outside 0 .. count() - 1. An entry stays valid until the library is closed.
    virtual ServiceCentreEntry* get(int index) const = 0;

protected:
    virtual ~ServiceCentreEntries() = default;
};

class ServiceCentreList : public ServiceCentreEditor, public ServiceCentreEntries {
protected:
    ~ServiceCentreList() override = default;
};

// The suite-wide settings. Setters act at once; Preferences::endEdit announces them. The
// reserved slots hold suite settings that this system does not use: getters answer 0, setters
// succeed without effect.
class MainPreferences {
public:
    MainPreferences() = default;
    MainPreferences(const MainPreferences&) = delete;
    MainPreferences& operator=(const MainPreferences&) = delete;

    virtual int reserved01() const = 0;
    virtual int reserved02() const = 0;
    virtual int reserved03() const = 0;
    virtual int reserved04() const = 0;
    virtual int reserved05() const = 0;
    virtual int reserved06() const = 0;
    virtual int reserved07() const = 0;
    virtual int reserved08() const = 0;
    virtual int reserved09() const = 0;
    virtual int reserved10() const = 0;
    virtual int reserved11() const = 0;
    virtual int reserved12() const = 0;
    virtual ServiceCentreList* serviceCentres() = 0;
    virtual int validityPeriod() const = 0;
    virtual bool useSameServiceCentre() const = 0;
    virtual bool statusReport() const = 0;
    virtual bool sendWhileRoaming() const = 0;
    virtual int playSound() const = 0; // 1 = on
    virtual const WCHAR* soundName() const = 0;
    // Whether the person is offered to move the SIM's messages into the database.
    virtual bool askToMoveSimMessages() const = 0;
    virtual bool tickerScrolls() const = 0;
    virtual bool tickerHorizontal() const = 0;
    virtual bool showCbDialog() const = 0;
    virtual bool showEveryCbMessage() const = 0;
    virtual Result reserved25(int value) = 0;
    virtual Result reserved26(int value) = 0;
    virtual Result reserved27(int value) = 0;
    virtual Result reserved28(int value) = 0;
    virtual Result reserved29(int value) = 0;
    virtual Result reserved30(int value) = 0;
    virtual Result reserved31(int value) = 0;
    virtual Result reserved32(int value) = 0;
    virtual Result reserved33(int value) = 0;
    virtual Result reserved34(int value) = 0;
    virtual Result reserved35(int value) = 0;
    virtual Result reserved36(int value) = 0;
    virtual Result setValidityPeriod(int code) = 0;
    virtual Result setUseSameServiceCentre(bool on) = 0;
    virtual Result setStatusReport(bool on) = 0;
    virtual Result setSendWhileRoaming(bool on) = 0;
    virtual Result setPlaySound(bool on) = 0;
    virtual Result setSoundName(const WCHAR* name) = 0;
    virtual Result setAskToMoveSimMessages(bool on) = 0;
    virtual Result setTickerScrolls(bool on) = 0;
    virtual Result setTickerHorizontal(bool on) = 0;
    virtual Result setShowCbDialog(bool on) = 0;
    virtual Result setShowEveryCbMessage(bool on) = 0;

protected:
    virtual ~MainPreferences() = default;
};

// Static access to the preference records, and the base of preference event handlers: an
// object receives eventPreferencesChanged exactly while it exists.
class Preferences {
public:
    Preferences();
    Preferences(const Preferences&) = delete;
    Preferences& operator=(const Preferences&) = delete;
    virtual ~Preferences();

    virtual void eventPreferencesChanged();

    // Size in bytes of the service's record; 0 when it has none.
    static unsigned long getSizeOfPreferences(ServiceId service);
    // Copies the record into `buffer`, which holds getSizeOfPreferences(service) bytes.
    static Result getPreferences(ServiceId service, void* buffer);
    // Stores the record at once (a crash does not lose it).
    static Result setPreferences(ServiceId service, const void* buffer, unsigned long size);
    // Announces every change since the last call through eventPreferencesChanged.
    static Result endEdit();
    // Null when the store is not available.
    static MainPreferences* getMainPreferences();
};

} // namespace GSM
