#include "module/module_context.h"

#include "framework/ui/dialog.h"
#include "module/new_message_notification.h"
#include "module/sending_notification.h"
#include "module/sim_transfer_window.h"
#include "gsm/preferences.h"
#include "gsm/services.h"

#include <QByteArray>

#include <limits>
#include <new>

namespace tessaly::sms {

namespace {

// The telephony library keeps the settings record as the SMS service's preference blob.
constexpr GSM::ServiceId kSettingsService = GSM::ServiceSms;

QByteArray readSettingsBlob() {
    const unsigned long size = GSM::Preferences::getSizeOfPreferences(kSettingsService);
    if (size == 0 || size > static_cast<unsigned long>(std::numeric_limits<qsizetype>::max()))
        return {};
    QByteArray blob;
    try {
        blob.resize(static_cast<qsizetype>(size));
    } catch (const std::bad_alloc&) {
        return {}; // a record that cannot be held leaves the defaults
    }
    if (!GSM::Preferences::getPreferences(kSettingsService, blob.data()).isOk())
        return {};
    return blob;
}

bool writeSettingsBlob(const QByteArray& blob) {
    return GSM::Preferences::setPreferences(kSettingsService, blob.constData(),
                                            static_cast<unsigned long>(blob.size()))
        .isOk();
}

// Destroys a window kept in `slot` and clears the slot, whether or not the window cleared it
// itself (it may finish its destruction later, when called from inside one of its handlers).
template <typename Window> void destroyWindowIn(Window*& slot) {
    if (Window* window = slot) {
        window->destroyWindow();
        if (slot == window)
            slot = nullptr;
    }
}

} // namespace

ModuleContext& moduleContext() {
    static ModuleContext context;
    return context;
}

ModuleScope::ModuleScope()
    : guard_(moduleContext().resources, &moduleContext()) {}

SmsSettings& loadSettings() {
    SmsSettings& settings = moduleContext().settings;
    settings.load(readSettingsBlob);
    return settings;
}

bool saveSettings() {
    return moduleContext().settings.save(writeSettingsBlob);
}

bool hasOpenWindows() {
    const ModuleContext& context = moduleContext();
    return context.mainWindow || context.messageNotification || context.sendingNotification ||
           context.simTransferWindow || !context.composers.empty();
}

void handBackControlIfIdle() {
    if (!hasOpenWindows())
        GSM::moduleIdle(moduleContext().hostIdle);
}

void destroyAllWindows() {
    ModuleContext& context = moduleContext();
    destroyWindowIn(context.mainWindow);
    destroyWindowIn(context.messageNotification);
    destroyWindowIn(context.sendingNotification);
    destroyWindowIn(context.simTransferWindow);
    while (!context.composers.empty()) {
        Dialog* first = context.composers.front();
        first->destroyWindow();
        // A composer removes itself; one that has not done so yet must not stop the loop.
        if (!context.composers.empty() && context.composers.front() == first)
            context.composers.erase(context.composers.begin());
    }
}

} // namespace tessaly::sms
