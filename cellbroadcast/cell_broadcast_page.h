#pragma once

// The "Cell Broadcast" options page: how the ticker moves and when the message dialog shows
// (main preferences, stored when the page is left), and the subscription the phone holds:
// channels added and deleted by hand, languages picked from fifteen. The subscription arrives
// later than the page (eventSubscription); until then a status text stands where the lists go,
// and the same place shows the library's errors. The subscription is sent back only when the
// person changed it.

#include "gsm/gsm.h"
#include "settings/options_page.h"

#include <memory>
#include <vector>

namespace tessaly::sms {

class AddChannelDialog;
class OptionsEnvironment;

class CellBroadcastPage final : public CPpOptions, public GSM::CellBroadcast::EventHandler {
public:
    CellBroadcastPage();
    ~CellBroadcastPage() override;
    static std::unique_ptr<PropertyPage> make(OptionsEnvironment& environment);

    bool isModified() const { return modified_; }
    // The add-channel dialog opened last, while it is open.
    AddChannelDialog* addChannelDialog() const;

    // The four display settings from and to the main preferences; saving also sends the
    // subscription when it was changed. The page is left in any case.
    bool dataLoad() override;
    bool dataSave() override;
    // The library's factory values: the ticker runs horizontally, no dialog.
    bool dataSetDefault() override;

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
    // The lists and their labels, or the status text in their place.
    void showLists(bool show);
    void showStatus(const QString& text);
    void enableRadioPairs();
    void addChannel();
    void channelEntered();
    void deleteChannel();
    std::vector<int> channelNumbers() const;
    std::vector<int> selectedLanguageCodes() const;

    bool modified_ = false;
    AddChannelDialog* addDialog_ = nullptr;
};

} // namespace tessaly::sms
