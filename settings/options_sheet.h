#pragma once

// The options sheet: one modal property sheet with a page per kind of option, in a fixed order.
// The sheet does not know the pages: whoever opens it hands over a list of page factories, and
// the sheet builds the pages in the order of OptionsPageKind whatever the list's order. A kind
// without a factory has no page (and no tab).
//
// Closing the sheet (OK or otherwise) writes the settings record once and then tells the
// telephony library that the preferences were edited (GSM::Preferences::endEdit), once.

#include "framework/ui/property_sheet.h"

#include <memory>
#include <span>
#include <vector>

class SmsSettings;

namespace tessaly::sms {

// What the pages and the sheet need from the module around them.
class OptionsEnvironment {
public:
    virtual ~OptionsEnvironment() = default;
    // The module's settings record, already loaded; pages change it in memory.
    virtual SmsSettings& settings() = 0;
    // Writes the record through the telephony library.
    virtual void saveSettings() = 0;
};

// The pages in the order they appear.
enum class OptionsPageKind {
    Signature,
    Sending,
    Receiving,
    Templates,
    Variables,
    CellBroadcast,
};

// Makes one page; returns null when it cannot (the kind is then left out).
using OptionsPageMaker = std::unique_ptr<PropertyPage> (*)(OptionsEnvironment& environment);

struct OptionsPageFactory {
    OptionsPageKind kind;
    OptionsPageMaker make;
};

class OptionsSheet final : public PropertySheet {
public:
    // Builds the pages at once. A second factory of a kind already given is ignored.
    OptionsSheet(Dialog* parent, OptionsEnvironment& environment,
                 std::span<const OptionsPageFactory> factories);
    ~OptionsSheet() override;

    // The kind of each page, in tab order.
    const std::vector<OptionsPageKind>& pageKinds() const { return kinds_; }

protected:
    void onSheetCallback(UINT message, QString& title) override;
    void onDestroy() override;

private:
    OptionsEnvironment& environment_;
    std::vector<std::unique_ptr<PropertyPage>> ownedPages_;
    std::vector<OptionsPageKind> kinds_;
};

// Opens the sheet over `parent` and returns when it is closed.
void runOptionsSheet(Dialog& parent, OptionsEnvironment& environment,
                     std::span<const OptionsPageFactory> factories);

} // namespace tessaly::sms
