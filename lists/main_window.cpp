#include "lists/main_window.h"

#include "cellbroadcast/cb_message_view.h"
#include "cellbroadcast/cb_texts.h"
#include "cellbroadcast/cb_ticker.h"
#include "framework/resources/resources.h"
#include "framework/ui/menu.h"
#include "framework/ui/modeless.h"
#include "framework/ui/screen.h"
#include "framework/ui/shell.h"
#include "lists/delete_messages_window.h"
#include "lists/list_sort_table.h"
#include "lists/lists_environment.h"
#include "lists/message_commands.h"
#include "lists/message_texts.h"
#include "lists/message_view.h"
#include "lists/search_window.h"
#include "lists/status_images.h"
#include "resources/command_bar_images.h"
#include "resources/resource.h"
#include "settings/sms_settings.h"
#include "util/date_time_text.h"

#include <QHeaderView>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>

namespace tessaly::sms {

namespace {

constexpr int kLargestQuietFolderSize = 1000;
constexpr int kLabelMargin = 4;
// Rows filled beyond the page in view, so that scrolling a little finds them ready.
constexpr int kRowsFilledAhead = 16;
constexpr QColor kLabelStripColor(0xdd, 0xe6, 0xf3);
constexpr QColor kLabelTextColor(0x10, 0x3e, 0x8c);

bool isMessageFolder(int folder) {
    return folder == kInboxFolder || folder == kOutboxFolder;
}

bool isFolder(int folder) {
    return isMessageFolder(folder) || folder == kCellBroadcastFolder;
}

int labelStripHeight() {
    return dialogUnitsToPixelsY(10);
}

// The small triangle after a label's text that says "tap me for a menu".
void drawMenuMark(QPainter& painter, const QRect& label) {
    const qreal right = label.right() - 4;
    const qreal middle = label.center().y() + 1;
    QPainterPath mark;
    mark.moveTo(right - 7, middle - 2);
    mark.lineTo(right, middle - 2);
    mark.lineTo(right - 3.5, middle + 2);
    mark.closeSubpath();
    painter.fillPath(mark, kLabelTextColor);
}

} // namespace

MainSmsWindow::MainSmsWindow(ListsEnvironment& environment)
    : Dialog(IDD_MAIN)
    , environment_(environment) {}

MainSmsWindow::~MainSmsWindow() = default;

MainSmsWindow* MainSmsWindow::open(ListsEnvironment& environment) {
    MainSmsWindow* window = showModeless(new MainSmsWindow(environment));
    if (QWidget* widget = window ? window->window() : nullptr)
        widget->activateWindow();
    return window;
}

ListView* MainSmsWindow::messageList() const {
    return listView(IDC_MAIN_LIST);
}

ListView* MainSmsWindow::cellBroadcastList() const {
    return listView(IDC_MAIN_CB_LIST);
}

int MainSmsWindow::sortKey() const {
    return listSortTable().sortKey(listFolder_);
}

bool MainSmsWindow::ascending() const {
    return listSortTable().ascending(listFolder_);
}

bool MainSmsWindow::onInitDialog() {
    createCommandBar(IDR_MENU_MAIN);
    if (CommandBar* bar = commandBar()) {
        bar->enableItem(IDM_MAIN_OPTIONS, environment_.hasOptionsSheet());
        bar->addButtons(IDB_COMMAND_BAR, {{IDM_MAIN_NEW, kImageNew}});
    }
    for (int id : {IDC_MAIN_FOLDER, IDC_MAIN_SORT}) {
        if (StaticLabel* label = staticLabel(id)) {
            label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
            label->setTextColor(kLabelTextColor);
        }
    }
    if (ListView* list = messageList()) {
        list->setImageList(statusImages());
        list->setSingleSelection(true);
        list->setExtendedStyle(LVS_EX_FULLROWSELECT);
        QObject::connect(list->verticalScrollBar(), &QScrollBar::valueChanged, list,
                         [this] { fillRowsInView(); });
    }
    if (ListView* list = cellBroadcastList()) {
        list->setImageList({cellBroadcastImage()});
        list->setSingleSelection(true);
        list->setExtendedStyle(LVS_EX_FULLROWSELECT);
    }
    // The ticker line shows only while it has something to show; the lists take its room.
    showItem(IDC_MAIN_TICKER, false);
    ticker_ = std::make_unique<CbTicker>(item(IDC_MAIN_TICKER));
    ticker_->setColors(kLabelStripColor, kLabelTextColor);
    ticker_->setShownChanged([this](bool shown) {
        showItem(IDC_MAIN_TICKER, shown);
        layoutControls();
    });
    const int lastFolder = environment_.settings().currentList;
    showFolder(isFolder(lastFolder) ? lastFolder : kInboxFolder);
    ticker_->refresh();
    layoutControls();
    return true;
}

void MainSmsWindow::showFolder(int folder) {
    if (!isFolder(folder))
        return;
    const bool otherFolder = folder != currentFolder_;
    if (otherFolder) {
        environment_.settings().currentList = folder;
        environment_.saveSettings();
    }
    currentFolder_ = folder;
    showItem(IDC_MAIN_LIST, false);
    showItem(IDC_MAIN_CB_LIST, false);
    showItem(IDC_MAIN_SORT, isMessageFolder(folder));
    if (folder == kCellBroadcastFolder) {
        ListView* list = cellBroadcastList();
        if (!list)
            return;
        const int selected = otherFolder ? -1 : list->selectedRow();
        list->deleteAllColumns();
        listFolder_ = folder;
        insertCellBroadcastColumns();
        fillCellBroadcastList(selected);
        refreshLabels();
        showItem(IDC_MAIN_CB_LIST, true);
        listShown_ = true;
        return;
    }
    ListView* list = messageList();
    if (!list)
        return;
    // A rebuild of the same folder keeps the row the person had selected.
    const int selected = otherFolder ? -1 : list->selectedRow();
    list->deleteAllColumns();
    listFolder_ = folder;
    insertColumns();
    fillList(selected);
    refreshLabels();
    showItem(IDC_MAIN_LIST, true);
    listShown_ = true;
}

void MainSmsWindow::refreshLabels() {
    setItemText(IDC_MAIN_FOLDER, loadString(folderNameId(currentFolder_)));
    setItemText(IDC_MAIN_SORT, loadString(sortKeyNameId(listSortTable().sortKey(currentFolder_))));
    layoutControls();
}

void MainSmsWindow::insertColumns() {
    ListView* list = messageList();
    const SmsSettings::ColumnWidths widths = environment_.settings().columnWidths(listFolder_);
    const int contactWord = listFolder_ == kOutboxFolder ? IDS_TO : IDS_FROM;
    const QString headers[SmsSettings::kColumnCount] = {
        QString(), loadString(contactWord), loadString(IDS_COLUMN_TEXT), loadString(IDS_DATE)};
    for (int column = 0; column < SmsSettings::kColumnCount; ++column)
        list->insertColumn(column, headers[column], widths[column]);
    list->setLastColumnFillsWidth(true);
}

void MainSmsWindow::insertCellBroadcastColumns() {
    ListView* list = cellBroadcastList();
    const SmsSettings::ColumnWidths widths =
        environment_.settings().columnWidths(kCellBroadcastFolder);
    // The fourth stored width belongs to no column.
    list->insertColumn(0, QString(), widths[0]);
    list->insertColumn(1, loadString(IDS_CB_CHANNEL_COLUMN), widths[1]);
    list->insertColumn(2, loadString(IDS_COLUMN_TEXT), widths[2]);
    list->setLastColumnFillsWidth(true);
}

void MainSmsWindow::fillCellBroadcastList(int rowToSelect) {
    ListView* list = cellBroadcastList();
    list->setUpdatesEnabled(false);
    list->deleteAllItems();
    const GSM::CbFolder folder;
    const int last = folder.lastChannel();
    for (int channel = folder.firstChannel(); channel <= last; ++channel) {
        const CbMessagePtr message(folder.get(channel));
        if (!message)
            continue;
        const int row = list->insertItem(list->itemCount(), QString(), 0, LPARAM(channel));
        list->setItemText(row, 1, QString::number(channel));
        list->setItemText(row, 2, cbOneLineText(message->messageText()));
    }
    if (rowToSelect >= 0 && rowToSelect < list->itemCount()) {
        list->setItemSelected(rowToSelect, true);
        list->ensureVisible(rowToSelect);
    }
    list->setUpdatesEnabled(true);
}

void MainSmsWindow::viewCellBroadcast(int row) {
    const ListView* list = cellBroadcastList();
    if (!list || row < 0 || row >= list->itemCount())
        return;
    CbMessageView(int(list->getItemData(row)), this).doModal();
}

void MainSmsWindow::fillList(int rowToSelect) {
    ListView* list = messageList();
    list->setUpdatesEnabled(false);
    list->deleteAllItems();
    container_ = GSM::sms.getMessages(listFolder_, sortKey());
    const int count = container_ ? container_->size() : 0;
    if (count > kLargestQuietFolderSize && warnAboutSize_) {
        warnAboutSize_ = false;
        UserAgent::current().messageBox(window(), sizeWarningText(listFolder_), boxCaption(),
                                        MB_OK | MB_ICONINFORMATION);
    }
    // Every row exists at once; its cells are filled when it first comes into view, so that a
    // large folder opens as fast as a small one.
    list->setRowCount(count);
    rowFilled_.assign(std::size_t(count), false);
    if (rowToSelect >= 0 && rowToSelect < count) {
        list->setItemSelected(rowToSelect, true);
        list->ensureVisible(rowToSelect);
    }
    fillRowsInView();
    list->setUpdatesEnabled(true);
}

GSM::Message* MainSmsWindow::messageAtRow(int row) const {
    const int count = int(rowFilled_.size());
    if (!container_ || row < 0 || row >= count)
        return nullptr;
    return container_->get(ascending() ? row : count - 1 - row);
}

void MainSmsWindow::fillRowsInView() {
    ListView* list = messageList();
    const int count = int(rowFilled_.size());
    if (!list || count == 0)
        return;
    const int rowHeight = std::max(1, list->verticalHeader()->defaultSectionSize());
    const int first = std::max(0, list->rowAt(0));
    const int pageRows = std::max(list->viewport()->height(), kClientHeight) / rowHeight + 1;
    const int last = std::min(count - 1, first + pageRows + kRowsFilledAhead);
    for (int row = std::max(0, first - kRowsFilledAhead); row <= last; ++row) {
        if (rowFilled_[std::size_t(row)])
            continue;
        rowFilled_[std::size_t(row)] = true;
        GSM::Message* message = messageAtRow(row);
        if (!message)
            continue;
        list->setItemData(row, LPARAM(message->getId()));
        list->setItemImage(row, statusImageIndex(message->getStatus()));
        list->setItemText(row, 1, contactColumnText(firstContact(*message)));
        list->setItemText(row, 2, oneLineText(fromWide(message->getText())));
        list->setItemText(row, 3, FormatListDate(message->date(), false));
    }
}

void MainSmsWindow::sortBy(int key) {
    listSortTable().setSortKey(listFolder_, key);
    fillList(-1);
    refreshLabels();
}

void MainSmsWindow::setAscending(bool ascending) {
    listSortTable().setAscending(listFolder_, ascending);
    fillList(-1);
}

void MainSmsWindow::showFolderMenu() {
    std::optional<Menu> resource = Menu::load(IDR_MENU_FOLDER);
    if (!resource)
        return;
    Menu menu = resource->subMenu(0);
    menu.checkItem(currentFolder_ == kOutboxFolder          ? IDM_FOLDER_OUTBOX
                   : currentFolder_ == kCellBroadcastFolder ? IDM_FOLDER_CELLBROADCAST
                                                            : IDM_FOLDER_INBOX,
                   true);
    setItemText(IDC_MAIN_FOLDER, loadString(IDS_SHOW));
    const QPoint below = clientArea()->mapToGlobal(itemRect(IDC_MAIN_FOLDER).bottomLeft());
    const int command = menu.track(window(), below, TPM_LEFTALIGN);
    refreshLabels();
    if (command)
        onCommand(command);
}

void MainSmsWindow::showSortMenu() {
    std::optional<Menu> resource = Menu::load(IDR_MENU_SORT);
    if (!resource)
        return;
    Menu menu = resource->subMenu(0);
    switch (sortKey()) {
    case GSM::Sms::SortByContact:
        menu.checkItem(IDM_SORT_CONTACT, true);
        break;
    case GSM::Sms::SortByStatus:
        menu.checkItem(IDM_SORT_STATUS, true);
        break;
    default:
        menu.checkItem(IDM_SORT_DATE, true);
    }
    menu.checkItem(ascending() ? IDM_SORT_ASCENDING : IDM_SORT_DESCENDING, true);
    setItemText(IDC_MAIN_SORT, loadString(IDS_SORT_BY));
    const QPoint below = clientArea()->mapToGlobal(itemRect(IDC_MAIN_SORT).bottomRight());
    const int command = menu.track(window(), below, TPM_RIGHTALIGN);
    refreshLabels();
    if (command)
        onCommand(command);
}

void MainSmsWindow::onCommand(int id) {
    switch (id) {
    case IDC_MAIN_FOLDER:
        showFolderMenu();
        break;
    case IDC_MAIN_SORT:
        showSortMenu();
        break;
    case IDM_FOLDER_INBOX:
        showFolder(kInboxFolder);
        break;
    case IDM_FOLDER_OUTBOX:
        showFolder(kOutboxFolder);
        break;
    case IDM_FOLDER_CELLBROADCAST:
        showFolder(kCellBroadcastFolder);
        break;
    case IDM_CB_VIEW:
        if (const ListView* list = cellBroadcastList())
            viewCellBroadcast(list->selectedRow());
        break;
    case IDM_SORT_DATE:
        sortBy(GSM::Sms::SortByDate);
        break;
    case IDM_SORT_CONTACT:
        sortBy(GSM::Sms::SortByContact);
        break;
    case IDM_SORT_STATUS:
        sortBy(GSM::Sms::SortByStatus);
        break;
    case IDM_SORT_ASCENDING:
        setAscending(true);
        break;
    case IDM_SORT_DESCENDING:
        setAscending(false);
        break;
    case IDM_MAIN_NEW:
        reportFailure(GSM::sms.newMessage(0));
        refreshLabels();
        break;
    case IDM_MAIN_OPTIONS:
        if (environment_.hasOptionsSheet())
            environment_.openOptionsSheet(*this);
        break;
    case IDM_MAIN_INFO:
        Shell::current().showAbout(window());
        break;
    case IDM_MAIN_FIND:
        openSearch();
        break;
    case IDM_INBOX_REPLY:
    case IDM_INBOX_FORWARD:
    case IDM_INBOX_CALL:
    case IDM_INBOX_VIEW:
    case IDM_INBOX_DELETE:
    case IDM_INBOX_DELETE_MESSAGES:
    case IDM_INBOX_COPY_TO_PHONEBOOK:
    case IDM_OUTBOX_FORWARD:
    case IDM_OUTBOX_CALL:
    case IDM_OUTBOX_VIEW:
    case IDM_OUTBOX_DELETE:
    case IDM_OUTBOX_SEND_NOW:
    case IDM_OUTBOX_DELETE_MESSAGES:
    case IDM_OUTBOX_COPY_TO_PHONEBOOK:
        runRowCommand(id);
        break;
    default:
        Dialog::onCommand(id);
    }
}

GSM::Message* MainSmsWindow::selectedMessage() const {
    const ListView* list = messageList();
    return list ? messageAtRow(list->selectedRow()) : nullptr;
}

void MainSmsWindow::runRowCommand(int command) {
    GSM::Message* message = selectedMessage();
    if (!message)
        return;
    const long id = message->getId();
    switch (command) {
    case IDM_INBOX_REPLY:
        reportFailure(GSM::sms.replyMessage(id));
        break;
    case IDM_INBOX_FORWARD:
    case IDM_OUTBOX_FORWARD:
        reportFailure(GSM::sms.forwardMessage(id));
        break;
    case IDM_INBOX_CALL:
    case IDM_OUTBOX_CALL:
        // The row shows a name where there is one; the call goes to the number behind it.
        if (!contactColumnText(firstContact(*message)).isEmpty())
            callNumber(contactNumber(firstContact(*message)));
        break;
    case IDM_INBOX_VIEW:
    case IDM_OUTBOX_VIEW:
        viewMessage(id, listFolder_);
        break;
    case IDM_INBOX_DELETE:
    case IDM_OUTBOX_DELETE:
        confirmAndDeleteMessage(window(), id, IDS_DELETE_MESSAGE_QUESTION);
        break;
    case IDM_OUTBOX_SEND_NOW: {
        const GSM::Result result = GSM::sms.setMessageStatus(id, GSM::Message::SendNow);
        if (result.isOk())
            environment_.allowSendingNotification();
        reportFailure(result);
        break;
    }
    case IDM_INBOX_DELETE_MESSAGES:
    case IDM_OUTBOX_DELETE_MESSAGES:
        DeleteMessagesWindow::open(listFolder_);
        break;
    case IDM_INBOX_COPY_TO_PHONEBOOK:
    case IDM_OUTBOX_COPY_TO_PHONEBOOK:
        copyToPhonebook(window(), contactNumber(firstContact(*message)));
        break;
    default:
        break;
    }
}

void MainSmsWindow::viewMessage(long messageId, int folder) {
    const GSM::Message* message = GSM::sms.getMessage(messageId);
    const bool wasUnread = message && message->getStatus() == GSM::Message::Unread;
    MessageView view(messageId, folder);
    view.doModal();
    // Only an unread message becomes read: a replied or forwarded one keeps what it says.
    if (folder == kInboxFolder && wasUnread && !view.wasDeleted())
        reportFailure(GSM::sms.setMessageStatus(messageId, GSM::Message::Read));
}

void MainSmsWindow::openSearch() {
    SearchWindow search([this](long messageId, int folder) { viewMessage(messageId, folder); },
                        this);
    search.doModal();
    fillList(messageList() ? messageList()->selectedRow() : 0);
}

void MainSmsWindow::openRow(int row) {
    GSM::Message* message = messageAtRow(row);
    if (!message)
        return;
    viewMessage(message->getId(), listFolder_);
    fillList(row);
}

void MainSmsWindow::onOK() {
    environment_.handBackControl();
}

void MainSmsWindow::onCancel() {
    // The home screen of the module is never closed by a key; OK hands control back instead.
}

void MainSmsWindow::onListClick(int id, int row, int column) {
    if (id == IDC_MAIN_LIST)
        openRow(row);
    else if (id == IDC_MAIN_CB_LIST)
        viewCellBroadcast(row);
}

void MainSmsWindow::onListColumnClick(int id, int column) {
    if (id != IDC_MAIN_LIST)
        return;
    const int key = column == 0   ? GSM::Sms::SortByStatus
                    : column == 1 ? GSM::Sms::SortByContact
                                  : -1;
    if (key < 0)
        return;
    if (sortKey() == key)
        listSortTable().setAscending(listFolder_, !ascending());
    sortBy(key);
}

void MainSmsWindow::onListKeyDown(int id, int virtualKey) {
    if (id == IDC_MAIN_LIST && virtualKey == VK_RETURN)
        openRow(messageList()->selectedRow());
}

void MainSmsWindow::onListTapAndHold(int id, int row, QPoint screenPos) {
    if ((id != IDC_MAIN_LIST && id != IDC_MAIN_CB_LIST) || row < 0)
        return;
    const int menuId = id == IDC_MAIN_CB_LIST         ? IDR_MENU_CB_ITEM
                       : listFolder_ == kOutboxFolder ? IDR_MENU_OUTBOX_ITEM
                                                      : IDR_MENU_INBOX_ITEM;
    std::optional<Menu> resource = Menu::load(menuId);
    if (!resource)
        return;
    if (const int command = resource->subMenu(0).track(window(), screenPos))
        onCommand(command);
}

void MainSmsWindow::onListColumnWidthChanged(int id, int column, int width) {
    const bool shownList =
        id == (listFolder_ == kCellBroadcastFolder ? IDC_MAIN_CB_LIST : IDC_MAIN_LIST);
    if (!shownList || !isFolder(listFolder_) || column < 0 || column >= SmsSettings::kColumnCount)
        return;
    SmsSettings& settings = environment_.settings();
    SmsSettings::ColumnWidths widths = settings.columnWidths(listFolder_);
    widths[column] = width;
    settings.setColumnWidths(listFolder_, widths);
    environment_.saveSettings();
}

void MainSmsWindow::onActivate(bool active) {
    GSM::setActiveService(active ? GSM::ServiceSms : GSM::ServiceNone);
}

void MainSmsWindow::onSize(int clientWidth, int clientHeight) {
    layoutControls();
}

void MainSmsWindow::onSettingChange(UINT flag) {
    if (flag == SPI_SETSIPINFO)
        layoutControls();
}

void MainSmsWindow::layoutControls() {
    const QSize client = clientSize();
    if (client.isEmpty())
        return;
    const int strip = labelStripHeight();
    for (int id : {IDC_MAIN_FOLDER, IDC_MAIN_SORT})
        moveItem(id, QRect(0, 0, 1, strip));
    layoutLabelChain({staticLabel(IDC_MAIN_FOLDER)}, kLabelMargin, Qt::AlignLeft);
    layoutLabelChain({staticLabel(IDC_MAIN_SORT)}, client.width() - kLabelMargin, Qt::AlignRight);
    int listBottom = client.height();
    if (isItemVisible(IDC_MAIN_TICKER)) {
        const int tickerHeight = dialogUnitsToPixelsY(9);
        listBottom -= tickerHeight;
        moveItem(IDC_MAIN_TICKER, QRect(0, listBottom, client.width(), tickerHeight));
    }
    const QRect listArea(0, strip + 1, client.width(), listBottom - strip - 1);
    moveItem(IDC_MAIN_LIST, listArea);
    moveItem(IDC_MAIN_CB_LIST, listArea);
    fillRowsInView();
    if (QWidget* area = clientArea())
        area->update(0, 0, client.width(), strip + 1);
}

bool MainSmsWindow::onEraseBackground(QPainter& painter, const QRect& rect) {
    const QWidget* area = clientArea();
    painter.fillRect(rect, area->palette().color(QPalette::Base));
    const int strip = labelStripHeight();
    painter.fillRect(QRect(0, 0, area->width(), strip), kLabelStripColor);
    painter.setPen(QColor(0xa8, 0xb8, 0xd0));
    painter.drawLine(0, strip, area->width(), strip);
    for (int id : {IDC_MAIN_FOLDER, IDC_MAIN_SORT})
        if (isItemVisible(id))
            drawMenuMark(painter, itemRect(id));
    return true;
}

void MainSmsWindow::eventMessagesChanged() {
    const ModuleStateGuard guard(moduleState());
    if (listShown_ && isMessageFolder(currentFolder_))
        showFolder(currentFolder_);
}

void MainSmsWindow::eventMessage(int channel) {
    const ModuleStateGuard guard(moduleState());
    if (listShown_ && currentFolder_ == kCellBroadcastFolder)
        showFolder(currentFolder_);
}

void MainSmsWindow::onDestroy() {
    // The ticker's timer must not outlive the line it paints.
    ticker_.reset();
}

void MainSmsWindow::onPostDestroy() {
    environment_.mainWindowDestroyed(this);
    delete this;
}

} // namespace tessaly::sms
