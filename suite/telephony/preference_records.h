#pragma once

// Service centres, the settings kept for main preferences and the device, and the main
// preferences the module reads and writes.

#include "gsm/gsm.h"
#include "suite/telephony/store_support.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tessaly::telephony {

class ServiceCentreEntryImpl final : public GSM::ServiceCentreEntry {
public:
    ServiceCentreEntryImpl(std::u16string name, std::u16string number)
        : name_(std::move(name))
        , number_(std::move(number)) {}
    const WCHAR* name() const override { return name_.c_str(); }
    const WCHAR* number() const override { return number_.c_str(); }
    const std::u16string& nameText() const { return name_; }
    const std::u16string& numberText() const { return number_; }

private:
    std::u16string name_;
    std::u16string number_;
};

class ServiceCentreListImpl final : public GSM::ServiceCentreList {
public:
    explicit ServiceCentreListImpl(Store& store)
        : store_(store) {}

    GSM::Result add(const WCHAR* name, const WCHAR* number) override;
    GSM::Result remove(int index) override;
    GSM::Result removeAll() override;
    int preferred() const override { return preferred_; }
    GSM::Result setPreferred(int index) override;
    bool isEmpty() const override { return entries_.size() <= 1; }
    GSM::Result commit(bool announce) override;
    int count() const override { return int(entries_.size()); }
    GSM::ServiceCentreEntry* get(int index) const override;

    void load(std::u16string simNumber, std::vector<std::pair<std::u16string, std::u16string>> rest,
              int preferred);
    GSM::Result setSimNumber(const std::u16string& number);

private:
    GSM::Result save();

    Store& store_;
    std::vector<ServiceCentreEntryImpl*> entries_;
    std::vector<std::unique_ptr<ServiceCentreEntryImpl>> arena_; // entries live until close
    int preferred_ = 0;
};

// The settings that main preferences and the device keep, with their factory values.
struct Settings {
    int validityPeriod = GSM::Message::Maximum;
    bool useSameServiceCentre = false;
    bool statusReport = false;
    bool sendWhileRoaming = true;
    bool playSound = true;
    std::u16string soundName = u"Notify";
    bool askToMoveSimMessages = true;
    bool tickerScrolls = true;
    bool tickerHorizontal = true;
    bool showCbDialog = false;
    bool showEveryCbMessage = false;
    int preferredServiceCentre = 0;
    std::u16string simServiceCentre;
    int smsService = GSM::Device::SmsServiceGprs;
    int simCapacity = 20;
};

class MainPreferencesImpl final : public GSM::MainPreferences {
public:
    explicit MainPreferencesImpl(Store& store)
        : store_(store) {}

    int reserved01() const override { return 0; }
    int reserved02() const override { return 0; }
    int reserved03() const override { return 0; }
    int reserved04() const override { return 0; }
    int reserved05() const override { return 0; }
    int reserved06() const override { return 0; }
    int reserved07() const override { return 0; }
    int reserved08() const override { return 0; }
    int reserved09() const override { return 0; }
    int reserved10() const override { return 0; }
    int reserved11() const override { return 0; }
    int reserved12() const override { return 0; }
    GSM::ServiceCentreList* serviceCentres() override;
    int validityPeriod() const override;
    bool useSameServiceCentre() const override;
    bool statusReport() const override;
    bool sendWhileRoaming() const override;
    int playSound() const override;
    const WCHAR* soundName() const override;
    bool askToMoveSimMessages() const override;
    bool tickerScrolls() const override;
    bool tickerHorizontal() const override;
    bool showCbDialog() const override;
    bool showEveryCbMessage() const override;
    GSM::Result reserved25(int) override { return {}; }
    GSM::Result reserved26(int) override { return {}; }
    GSM::Result reserved27(int) override { return {}; }
    GSM::Result reserved28(int) override { return {}; }
    GSM::Result reserved29(int) override { return {}; }
    GSM::Result reserved30(int) override { return {}; }
    GSM::Result reserved31(int) override { return {}; }
    GSM::Result reserved32(int) override { return {}; }
    GSM::Result reserved33(int) override { return {}; }
    GSM::Result reserved34(int) override { return {}; }
    GSM::Result reserved35(int) override { return {}; }
    GSM::Result reserved36(int) override { return {}; }
    GSM::Result setValidityPeriod(int code) override;
    GSM::Result setUseSameServiceCentre(bool on) override;
    GSM::Result setStatusReport(bool on) override;
    GSM::Result setSendWhileRoaming(bool on) override;
    GSM::Result setPlaySound(bool on) override;
    GSM::Result setSoundName(const WCHAR* name) override;
    GSM::Result setAskToMoveSimMessages(bool on) override;
    GSM::Result setTickerScrolls(bool on) override;
    GSM::Result setTickerHorizontal(bool on) override;
    GSM::Result setShowCbDialog(bool on) override;
    GSM::Result setShowEveryCbMessage(bool on) override;

private:
    Store& store_;
};

} // namespace tessaly::telephony
