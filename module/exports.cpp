#include "module/exports.h"

#include "compose/composer_environment.h"
#include "compose/composer_window.h"
#include "framework/ui/dialog.h"
#include "lists/main_window.h"
#include "lists/message_texts.h"
#include "lists/message_view.h"
#include "module/lists_environment_adapter.h"
#include "module/module_context.h"
#include "module/new_message_notification.h"
#include "module/sending_notification.h"
#include "module/sim_transfer_window.h"

#include <QtGlobal>

#include <algorithm>

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

// The folder a stored message belongs to, read from its status: sent, failed and unsent
// messages are the Outbox's, everything else (unknown ids too) the Inbox's.
int folderOfMessage(long id) {
    const GSM::Message* message = GSM::sms.getMessage(id);
    if (!message)
        return tessaly::sms::kInboxFolder;
    switch (message->getStatus()) {
    case GSM::Message::NotSent:
    case GSM::Message::SendNow:
    case GSM::Message::Sent:
    case GSM::Message::Failed:
        return tessaly::sms::kOutboxFolder;
    default:
        return tessaly::sms::kInboxFolder;
    }
}

// The composers' view of the module: the settings record and the list of open composers.
class ModuleComposerEnvironment final : public tessaly::sms::ComposerEnvironment {
public:
    SmsSettings& settings() override { return loadSettings(); }
    void composerDestroyed(tessaly::Dialog* composer) override {
        std::erase(moduleContext().composers, composer);
    }
};

ModuleComposerEnvironment& composerEnvironment() {
    static ModuleComposerEnvironment environment;
    return environment;
}

// The one sending notification, shared by the progress and the completion export; created
// hidden when there is none. Null when it cannot be created.
tessaly::sms::SendingNotification* sendingNotification() {
    auto& slot = moduleContext().sendingNotification;
    if (!slot)
        slot = tessaly::sms::SendingNotification::createHidden();
    return slot;
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
    context.mainWindow = tessaly::sms::MainSmsWindow::open(tessaly::sms::moduleListsEnvironment());
}

void openMessage(long id) {
    const ModuleScope scope;
    loadSettings();
    tessaly::sms::MessageView view(id, folderOfMessage(id));
    view.doModal();
}

void editMessage(GSM::Message* message) {
    const ModuleScope scope;
    loadSettings();
    if (auto* composer = tessaly::sms::ComposerWindow::open(message, composerEnvironment()))
        moduleContext().composers.push_back(composer);
}

void openMessageNotification(long id) {
    const ModuleScope scope;
    loadSettings();
    auto& context = moduleContext();
    if (context.messageNotification) {
        // The window keeps its own message; the store's event recounts the unread ones.
        context.messageNotification->showWindow(SW_SHOW);
        return;
    }
    context.messageNotification = tessaly::sms::NewMessageNotification::open(id);
}

void openSendingNotification(long id, int recipient, int segment, int segments, int reserved1,
                             int reserved2) {
    const ModuleScope scope;
    const SmsSettings& settings = loadSettings();
    auto& context = moduleContext();
    if (!settings.showProgress || context.sendingNotificationSuppressed)
        return;
    tessaly::sms::SendingNotification* window = sendingNotification();
    if (!window)
        return;
    window->showWindow(SW_SHOW);
    window->showProgress(id, recipient, segment, segments, reserved1, reserved2);
}

void openSendingCompletion(GSM::Result result, bool plural) {
    const ModuleScope scope;
    tessaly::sms::SendingNotification* window = sendingNotification();
    if (!window)
        return;
    window->setCompletion(result, plural);
    window->showWindow(SW_HIDE);
    window->postMessage(WM_APP);
}

void openSimNotification(int count, int capacity) {
    const ModuleScope scope;
    auto& context = moduleContext();
    if (!context.simTransferWindow && count == 0 && capacity == 0)
        return;
    loadSettings();
    if (!context.simTransferWindow) {
        context.simTransferWindow = tessaly::sms::SimTransferWindow::createHidden(count, capacity);
        if (!context.simTransferWindow)
            return;
    }
    tessaly::sms::SimTransferWindow* window = context.simTransferWindow;
    if (count == -1 && capacity == -1) {
        window->postMessage(WM_APP); // the move has ended
        return;
    }
    window->showWindow(SW_SHOW);
    if (count == 0 && capacity == 0)
        window->advanceProgress();
}
