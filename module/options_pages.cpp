#include "module/options_pages.h"

#include "cellbroadcast/cell_broadcast_page.h"
#include "module/module_context.h"
#include "settings/receiving_page.h"
#include "settings/sending_page.h"
#include "settings/signature_page.h"
#include "templates/template_pages.h"

namespace tessaly::sms {

namespace {

class ModuleOptionsEnvironment final : public OptionsEnvironment {
public:
    SmsSettings& settings() override { return loadSettings(); }
    // A refused write keeps the record in memory; the next save tries again.
    void saveSettings() override { sms::saveSettings(); }
};

// Add a page here: its kind and its maker. Kinds without an entry have no tab.
constexpr OptionsPageFactory kPages[] = {
    {OptionsPageKind::Signature, &SignaturePage::make},
    {OptionsPageKind::Sending, &SendingPage::make},
    {OptionsPageKind::Receiving, &ReceivingPage::make},
    {OptionsPageKind::Templates, &TemplatesPage::make},
    {OptionsPageKind::Variables, &VariablesPage::make},
    {OptionsPageKind::CellBroadcast, &CellBroadcastPage::make},
};

} // namespace

std::span<const OptionsPageFactory> moduleOptionsPages() {
    return kPages;
}

OptionsEnvironment& moduleOptionsEnvironment() {
    static ModuleOptionsEnvironment environment;
    return environment;
}

} // namespace tessaly::sms
