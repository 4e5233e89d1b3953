#include "settings/options_sheet.h"

#include "framework/resources/resources.h"
#include "framework/ui/useragent.h"
#include "gsm/preferences.h"
#include "resources/resource.h"

#include <algorithm>

namespace tessaly::sms {

OptionsSheet::OptionsSheet(Dialog* parent, OptionsEnvironment& environment,
                           std::span<const OptionsPageFactory> factories)
    : PropertySheet(loadString(IDS_APP_TITLE), parent)
    , environment_(environment) {
    std::vector<OptionsPageFactory> ordered(factories.begin(), factories.end());
    std::stable_sort(
        ordered.begin(), ordered.end(),
        [](const OptionsPageFactory& a, const OptionsPageFactory& b) { return a.kind < b.kind; });
    for (const OptionsPageFactory& factory : ordered) {
        if (!factory.make || std::find(kinds_.begin(), kinds_.end(), factory.kind) != kinds_.end())
            continue;
        std::unique_ptr<PropertyPage> page = factory.make(environment_);
        if (!page)
            continue;
        addPage(page.get());
        ownedPages_.push_back(std::move(page));
        kinds_.push_back(factory.kind);
    }
}

// The pages go before the base class: deleting a page takes its window down without hooks, and
// the base class then finds no page window left.
OptionsSheet::~OptionsSheet() = default;

void OptionsSheet::onSheetCallback(UINT message, QString& title) {
    if (message == PSCB_GETTITLE)
        title = loadString(IDS_OPTIONS);
}

void OptionsSheet::onDestroy() {
    environment_.saveSettings();
    GSM::Preferences::endEdit();
    PropertySheet::onDestroy();
}

void runOptionsSheet(Dialog& parent, OptionsEnvironment& environment,
                     std::span<const OptionsPageFactory> factories) {
    OptionsSheet sheet(&parent, environment, factories);
    sheet.doModal();
}

} // namespace tessaly::sms
