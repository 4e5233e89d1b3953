#include "module/sim_transfer_window.h"

#include "framework/resources/resources.h"
#include "framework/ui/modeless.h"
#include "framework/ui/useragent.h"
#include "lists/message_texts.h"
#include "module/module_context.h"
#include "module/notification_header.h"
#include "module/notification_layout.h"
#include "resources/resource.h"

namespace tessaly::sms {

namespace {

constexpr int kMargin = 5;
constexpr int kGap = 4;

bool inService(int state) {
    return state == GSM::Device::StateRegisteredHome ||
           state == GSM::Device::StateRegisteredRoaming;
}

} // namespace

SimTransferWindow::SimTransferWindow(int count, int capacity)
    : Dialog(IDD_SIM_TRANSFER)
    , count_(count)
    , capacity_(capacity) {
    setPresentation(Presentation::PopUp);
}

SimTransferWindow* SimTransferWindow::createHidden(int count, int capacity) {
    return createModeless(new SimTransferWindow(count, capacity));
}

bool SimTransferWindow::onInitDialog() {
    const ModuleScope scope;
    showItem(IDC_SIM_NOTE_LABEL, simIsFull());
    showItem(IDC_SIM_FULL_TEXT, simIsFull());
    layoutLines();
    setTimer(kHeaderTimer, kHeaderTickMs);
    return true;
}

void SimTransferWindow::layoutLines() {
    const QSize client = clientSize();
    const int width = client.width() - 2 * kMargin;
    moveItem(IDC_SIM_HEADER, QRect(0, 0, client.width(), itemRect(IDC_SIM_HEADER).height()));
    int y = itemRect(IDC_SIM_HEADER).bottom() + 1 + kGap;
    for (int id : {IDC_SIM_QUESTION, IDC_SIM_NOTE_LABEL, IDC_SIM_FULL_TEXT}) {
        const QRect rect = itemRect(id);
        moveItem(id, QRect(kMargin, y, width, rect.height()));
        if (id == IDC_SIM_QUESTION)
            moveItem(IDC_SIM_PROGRESS, QRect(kMargin, y + rect.height() + kGap, width,
                                             itemRect(IDC_SIM_PROGRESS).height()));
        y += rect.height() + (id == IDC_SIM_NOTE_LABEL ? 0 : kGap);
    }
    paintFrame();
}

void SimTransferWindow::paintFrame() {
    paintHeader(*this, IDC_SIM_HEADER, HeaderPicture::Database, loadString(IDS_HEADER_DATABASE),
                frame_);
}

void SimTransferWindow::onTimer(UINT_PTR id) {
    if (id != kHeaderTimer)
        return;
    const ModuleScope scope;
    ++frame_;
    paintFrame();
}

void SimTransferWindow::startMove() {
    const GSM::Result result = GSM::sms.moveSimMessages();
    if (!result.isOk()) {
        UserAgent::current().messageBox(window(), fromWide(result.getErrorMessage()), boxCaption(),
                                        MB_OK | MB_ICONSTOP);
        destroyWindow();
        return;
    }
    enableItem(IDC_SIM_YES, false);
    enableItem(IDC_SIM_NO, false);
    showItem(IDC_SIM_NOTE_LABEL, false);
    showItem(IDC_SIM_FULL_TEXT, false);
    if (ProgressBar* bar = progressBar(IDC_SIM_PROGRESS)) {
        bar->setRange(0, std::max(0, count_));
        bar->setPos(0);
    }
    showItem(IDC_SIM_PROGRESS, true);
}

void SimTransferWindow::decline() {
    // The person does not want the offer again.
    if (GSM::MainPreferences* preferences = GSM::Preferences::getMainPreferences())
        preferences->setAskToMoveSimMessages(false);
    destroyWindow();
}

void SimTransferWindow::advanceProgress() {
    ProgressBar* bar = progressBar(IDC_SIM_PROGRESS);
    if (bar && bar->pos() < bar->maximum())
        bar->setPos(bar->pos() + 1);
}

void SimTransferWindow::finish() {
    showWindow(SW_HIDE);
    UserAgent::current().messageBox(window(), loadString(IDS_SIM_TRANSFER_DONE), boxCaption(),
                                    MB_OK | MB_ICONINFORMATION);
    destroyWindow();
}

void SimTransferWindow::onCommand(int id) {
    const ModuleScope scope;
    switch (id) {
    case IDC_SIM_YES:
        startMove();
        break;
    case IDC_SIM_NO:
        decline();
        break;
    case IDOK:
    case IDCANCEL: // closed without an answer: the offer stays
        destroyWindow();
        break;
    default:
        Dialog::onCommand(id);
    }
}

void SimTransferWindow::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const ModuleScope scope;
    if (closing_) {
        destroyWindow();
        return;
    }
    if (message == WM_APP)
        finish();
}

void SimTransferWindow::eventStatusChanged() {
    const ModuleScope scope;
    if (!isWindow() || closing_ || inService(GSM::device.getState()))
        return;
    closing_ = true;
    postMessage(kCloseMessage);
}

void SimTransferWindow::onPostDestroy() {
    const ModuleScope scope;
    if (forgetWindow(moduleContext().simTransferWindow, this))
        handBackControlIfIdle();
    delete this;
}

} // namespace tessaly::sms
