#pragma once

// The Receiving page: whether a sound plays when a message arrives, and which one, from the
// sounds in the suite's sounds folder. Choosing a sound plays it at once.

#include "settings/options_page.h"
#include "settings/options_sheet.h"

#include <QStringList>

namespace tessaly::sms {

// The names the page offers for the sound files found: each file name without its last four
// characters (".wav"), left out when nothing remains.
QStringList soundNames(const QStringList& fileNames);

class ReceivingPage final : public CPpOptions {
public:
    ReceivingPage();

    static std::unique_ptr<PropertyPage> make(OptionsEnvironment& environment);

    bool dataLoad() override;
    bool dataSave() override;
    bool dataSetDefault() override;

protected:
    void onCommand(int id) override;
    void onComboSelChange(int id) override;

private:
    void enableSoundList();
};

} // namespace tessaly::sms
