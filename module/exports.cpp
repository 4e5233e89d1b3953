#include "module/exports.h"

#include "framework/ui/dialog.h"
#include "module/module_state.h"

#include <QtGlobal>

using tessaly::sms::loadSettings;
using tessaly::sms::moduleContext;
using tessaly::sms::ModuleScope;

namespace {

// Brings an existing window of the module to the front of the phone screen.
void bringToFront(tessaly::Dialog* window) {
    if (QWidget* widget = window->window()) {
        widget->show();
        widget->raise();
        widget->activateWindow();
    }
}

} // namespace

void initModule(void* hostIdle) {
    const ModuleScope scope;
    moduleContext().hostIdle = hostIdle;
}

void exitModule() {
    const ModuleScope scope;
    tessaly::sms::destroyAllWindows();
}

void openSms() {
    const ModuleScope scope;
    auto& context = moduleContext();
    if (!context.composers.empty() && context.composers.front()) {
        bringToFront(context.composers.front());
        return;
    }
    if (context.mainWindow) {
        bringToFront(context.mainWindow);
        return;
    }
    loadSettings();
    qInfo("openSms: the main window is not built yet");
}

void openMessage(long id) {
    const ModuleScope scope;
    loadSettings();
    qInfo("openMessage(%ld): the message view is not built yet", id);
}

void editMessage(GSM::Message* message) {
    const ModuleScope scope;
    loadSettings();
    qInfo("editMessage: the composer is not built yet");
}

void openMessageNotification(long id) {
    const ModuleScope scope;
    loadSettings();
    auto& context = moduleContext();
    if (context.messageNotification) {
        context.messageNotification->showWindow(SW_SHOW);
        return;
    }
    qInfo("openMessageNotification(%ld): the new-message notification is not built yet", id);
}

void openSendingNotification(long id, int recipient, int segment, int segments, int reserved1,
                             int reserved2) {
    const ModuleScope scope;
    const SmsSettings& settings = loadSettings();
    auto& context = moduleContext();
    if (!settings.showProgress || context.sendingNotificationSuppressed)
        return;
    qInfo("openSendingNotification(%ld, %d, %d, %d): the sending notification is not built yet", id,
          recipient, segment, segments);
}

void openSendingCompletion(GSM::Result result, bool plural) {
    const ModuleScope scope;
    qInfo("openSendingCompletion(%ld, %s): the sending notification is not built yet",
          result.errorCode(), plural ? "plural" : "single");
}

void openSimNotification(int count, int capacity) {
    const ModuleScope scope;
    auto& context = moduleContext();
    if (!context.simTransferWindow && count == 0 && capacity == 0)
        return;
    loadSettings();
    qInfo("openSimNotification(%d, %d): the SIM transfer window is not built yet", count, capacity);
}
