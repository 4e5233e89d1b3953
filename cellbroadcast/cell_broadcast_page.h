#pragma once

// The "Cell Broadcast" options page: how the ticker moves and when the message dialog shows
// (main preferences, stored when the page is left), and the subscription the phone holds:
// channels added and deleted by hand, languages picked from fifteen. The subscription arrives
// later than the page (eventSubscription); until then a status text stands where the lists go,
// and the same place shows the library's errors. The subscription is sent back only when the
// person changed it.

#include "framework/resources/module_state.h"
#include "framework/ui/property_sheet.h"
#include "module/telephony/gsm.h"

#include <vector>

namespace tessaly {
class CommandBar;
}

namespace tessaly::sms {

class AddChannelDialog;

class CellBroadcastPage : public PropertyPage, public GSM::CellBroadcast::EventHandler {
public:
    // commandBar: the sheet's bar, which the page fills with its Channel menu when active
    // (null: the bar of the sheet the page is in).
    explicit CellBroadcastPage(CommandBar* commandBar = nullptr);
    ~CellBroadcastPage() override;

    bool isModified() const { return modified_; }
    // The add-channel dialog opened last, while it is open.
    AddChannelDialog* addChannelDialog() const;

    bool onSetActive() override;
    // Stores the settings and, when changed, the subscription; the page is left in any case.
    bool onKillActive() override;

    void eventSubscription(int channelCount, const Utilities::Range* channels, int languageCount,
                           const Utilities::Range* languages) override;
    void eventCbFailure(const GSM::Result& result) override;

protected:
    bool onInitDialog() override;
    void onCommand(int id) override;
    void onListBoxSelChange(int id) override;
    void onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onDestroy() override;

private:
    CommandBar* bar() const;
    // The lists and their labels, or the status text in their place.
    void showLists(bool show);
    void showStatus(const QString& text);
    void enableRadioPairs();
    void addChannel();
    void channelEntered();
    void deleteChannel();
    void save();
    std::vector<int> channelNumbers() const;
    std::vector<int> selectedLanguageCodes() const;

    CommandBar* commandBar_;
    ModuleState moduleState_;
    bool modified_ = false;
    AddChannelDialog* addDialog_ = nullptr;
};

} // namespace tessaly::sms
