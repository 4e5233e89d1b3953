#include "lists/search_window.h"

#include "framework/resources/resources.h"
#include "framework/ui/controls.h"
#include "lists/message_texts.h"
#include "resources/resource.h"
#include "util/date_time_text.h"
#include "util/wide_text.h"

#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

namespace tessaly::sms {
namespace {

enum Role {
    PartyRole = Qt::UserRole + 1,
    DateRole,
    ExcerptRole,
    MatchStartRole,
    MatchLengthRole,
    FolderRole
};

// Two lines a row: the other party and the date, then the excerpt with the match in bold.
class FoundMessageDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem background = option;
        initStyleOption(&background, index);
        background.text.clear();
        QStyle* style = background.widget ? background.widget->style() : nullptr;
        if (style)
            style->drawControl(QStyle::CE_ItemViewItem, &background, painter, background.widget);
        const bool selected = option.state & QStyle::State_Selected;
        painter->save();
        painter->setPen(
            option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
        const QRect area = option.rect.adjusted(3, 1, -3, -1);
        const int line = option.fontMetrics.height();
        QFont bold = option.font;
        bold.setBold(true);
        const QString date = index.data(DateRole).toString();
        const int dateWidth = option.fontMetrics.horizontalAdvance(date);
        painter->setFont(bold);
        const QString party = QFontMetrics(bold).elidedText(
            index.data(PartyRole).toString(), Qt::ElideRight, area.width() - dateWidth - 6);
        painter->drawText(QRect(area.left(), area.top(), area.width(), line), Qt::AlignLeft, party);
        painter->setFont(option.font);
        painter->drawText(QRect(area.left(), area.top(), area.width(), line), Qt::AlignRight, date);

        const QString excerpt = index.data(ExcerptRole).toString();
        const int start = index.data(MatchStartRole).toInt();
        const int length = index.data(MatchLengthRole).toInt();
        int x = area.left();
        const int y = area.top() + line;
        const auto drawPart = [&](const QString& part, const QFont& font) {
            if (part.isEmpty() || x >= area.right())
                return;
            const QFontMetrics metrics(font);
            const QString shown = metrics.elidedText(part, Qt::ElideRight, area.right() - x);
            painter->setFont(font);
            painter->drawText(QRect(x, y, area.right() - x, line), Qt::AlignLeft, shown);
            x += metrics.horizontalAdvance(shown);
        };
        if (start < 0 || start >= excerpt.size()) {
            drawPart(excerpt, option.font);
        } else {
            drawPart(excerpt.left(start), option.font);
            drawPart(excerpt.mid(start, length), bold);
            drawPart(excerpt.mid(start + length), option.font);
        }
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
        return QSize(option.rect.width(), 2 * option.fontMetrics.height() + 3);
    }
};

} // namespace

SearchWindow::SearchWindow(OpenMessage openMessage, Dialog* parent)
    : Dialog(IDD_SEARCH, parent)
    , openMessage_(std::move(openMessage)) {}

SearchWindow::~SearchWindow() = default;

bool SearchWindow::onInitDialog() {
    setItemText(IDC_SEARCH_COUNT, loadString(IDS_SEARCH_PROMPT));
    if (ListView* list = listView(IDC_SEARCH_LIST)) {
        list->insertColumn(0, QString(), list->viewport()->width());
        list->setLastColumnFillsWidth(true);
        list->setItemDelegate(new FoundMessageDelegate(list));
        list->verticalHeader()->setDefaultSectionSize(2 * list->fontMetrics().height() + 3);
        QObject::connect(list->verticalScrollBar(), &QScrollBar::valueChanged, list,
                         [this, list](int value) {
                             if (value >= list->verticalScrollBar()->maximum() - 2)
                                 showNextPage();
                         });
    }
    return true;
}

int SearchWindow::rowsShown() const {
    const ListView* list = listView(IDC_SEARCH_LIST);
    return list ? list->itemCount() : 0;
}

long SearchWindow::messageAt(int row) const {
    const ListView* list = listView(IDC_SEARCH_LIST);
    return list && row >= 0 && row < list->itemCount() ? long(list->getItemData(row)) : 0;
}

void SearchWindow::onEditChange(int id) {
    if (id == IDC_SEARCH_TEXT)
        searchFor(itemText(IDC_SEARCH_TEXT));
}

void SearchWindow::searchFor(const QString& text) {
    if (ListView* list = listView(IDC_SEARCH_LIST))
        list->deleteAllItems();
    search_ = GSM::searchMessages(toWide(text));
    found_ = search_ ? search_->count() : 0;
    setItemText(IDC_SEARCH_COUNT,
                !search_      ? loadString(IDS_SEARCH_PROMPT)
                : found_ == 0 ? loadString(IDS_SEARCH_NOTHING)
                : found_ == 1 ? loadString(IDS_SEARCH_ONE)
                              : QString::asprintf(qPrintable(loadString(IDS_SEARCH_MANY)), found_));
    showNextPage();
}

void SearchWindow::showNextPage() {
    ListView* list = listView(IDC_SEARCH_LIST);
    if (!list || !search_)
        return;
    for (const GSM::SearchHit& hit : search_->next(kPageSize)) {
        GSM::Message* message = GSM::sms.getMessage(hit.messageId);
        if (!message)
            continue; // deleted since the search began
        const int row = list->insertItem(list->itemCount(), QString(), -1, LPARAM(hit.messageId));
        QTableWidgetItem* item = list->item(row, 0);
        QString party = contactColumnText(firstContact(*message));
        if (!item)
            continue;
        item->setData(PartyRole, party);
        item->setData(DateRole, FormatListDate(message->date(), false));
        item->setData(ExcerptRole, QString::fromStdU16String(hit.excerpt));
        item->setData(MatchStartRole, hit.matchStart);
        item->setData(MatchLengthRole, hit.matchLength);
        item->setData(FolderRole, hit.folder);
        item->setData(Qt::AccessibleTextRole,
                      party + QStringLiteral(", ") + QString::fromStdU16String(hit.excerpt));
    }
}

void SearchWindow::onListClick(int id, int row, int) {
    if (id == IDC_SEARCH_LIST)
        openRow(row);
}

void SearchWindow::onListKeyDown(int id, int virtualKey) {
    if (id == IDC_SEARCH_LIST && virtualKey == VK_RETURN)
        if (const ListView* list = listView(IDC_SEARCH_LIST))
            openRow(list->selectedRow());
}

// Enter in the field opens the selected message, or the newest found.
void SearchWindow::onOK() {
    const ListView* list = listView(IDC_SEARCH_LIST);
    if (list && list->itemCount() > 0)
        openRow(std::max(0, list->selectedRow()));
}

void SearchWindow::openRow(int row) {
    ListView* list = listView(IDC_SEARCH_LIST);
    if (!list || row < 0 || row >= list->itemCount() || !openMessage_)
        return;
    const QTableWidgetItem* item = list->item(row, 0);
    openMessage_(long(list->getItemData(row)), item ? item->data(FolderRole).toInt() : 0);
}

} // namespace tessaly::sms
