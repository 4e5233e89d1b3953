#pragma once

// The main SMS window: one folder at a time (Inbox, Outbox or cell broadcast) as a list with
// status images, contact, one-line text and date (cell broadcast: channel and text), the folder
// and sort labels with their menus, the per-message commands of the tap-and-hold menus, and the
// cell-broadcast ticker at the bottom. Modeless and full screen; it rebuilds its list whenever
// the message store or the cell-broadcast store changes. The module owns it through its main-window
// pointer; the window deletes itself when destroyed.

#include "framework/ui/dialog.h"
#include "gsm/gsm.h"

#include <memory>
#include <vector>

namespace tessaly::sms {

class CbTicker;
class ListsEnvironment;

class MainSmsWindow : public Dialog,
                      public GSM::SmsEventHandler,
                      public GSM::CellBroadcast::EventHandler {
public:
    explicit MainSmsWindow(ListsEnvironment& environment);
    ~MainSmsWindow() override;

    // Creates the window on the folder shown last, shows it and makes it active; null when it
    // could not be created.
    static MainSmsWindow* open(ListsEnvironment& environment);

    // 0 Inbox, 1 Outbox, 2 cell broadcast; -1 before the first folder is shown.
    int currentFolder() const { return currentFolder_; }
    // Shows a folder (0, 1 or 2) and rebuilds its list; remembers it as the folder shown last.
    void showFolder(int folder);
    // Puts the folder's and the sort key's names into the labels and lays them out again.
    void refreshLabels();

    // The message store changed: the shown list is built again.
    void eventMessagesChanged() override;
    // A cell broadcast arrived: the cell-broadcast list, when shown, is built again.
    void eventMessage(int channel) override;
    // The ticker line (null before the window is initialised).
    CbTicker* ticker() const { return ticker_.get(); }

protected:
    bool onInitDialog() override;
    void onCommand(int id) override;
    void onOK() override;
    void onCancel() override;
    void onListClick(int id, int row, int column) override;
    void onListColumnClick(int id, int column) override;
    void onListKeyDown(int id, int virtualKey) override;
    void onListTapAndHold(int id, int row, QPoint screenPos) override;
    void onListColumnWidthChanged(int id, int column, int width) override;
    void onActivate(bool active) override;
    void onSize(int clientWidth, int clientHeight) override;
    void onSettingChange(UINT flag) override;
    bool onEraseBackground(QPainter& painter, const QRect& rect) override;
    void onDestroy() override;
    void onPostDestroy() override;

private:
    ListView* messageList() const;
    ListView* cellBroadcastList() const;
    int sortKey() const;
    bool ascending() const;
    void insertColumns();
    void insertCellBroadcastColumns();
    // One row per channel holding a message; selects the row of rowToSelect when it exists.
    void fillCellBroadcastList(int rowToSelect);
    void viewCellBroadcast(int row);
    // Builds the rows afresh and selects rowToSelect when it still exists (-1: none).
    void fillList(int rowToSelect);
    // Fills the cells of the rows in view (and a few beyond) that are still empty.
    void fillRowsInView();
    // The message a row shows: rows stand for container positions, reversed when descending.
    GSM::Message* messageAtRow(int row) const;
    void sortBy(int key);
    void setAscending(bool ascending);
    void showFolderMenu();
    void showSortMenu();
    void openRow(int row);
    // Shows the message view; an Inbox message that was unread and not deleted there is read.
    void viewMessage(long messageId, int folder);
    void openSearch();
    void runRowCommand(int command);
    GSM::Message* selectedMessage() const;
    void layoutControls();

    ListsEnvironment& environment_;
    int currentFolder_ = -1;
    bool listShown_ = false;
    int listFolder_ = -1;
    GSM::MessageContainer* container_ = nullptr;
    std::vector<bool> rowFilled_;
    bool warnAboutSize_ = true;
    std::unique_ptr<CbTicker> ticker_;
};

} // namespace tessaly::sms
