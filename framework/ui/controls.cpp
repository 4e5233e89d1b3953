#include "framework/ui/controls.h"

#include "framework/time/clock.h"
#include "framework/ui/press_and_hold.h"
#include "framework/ui/screen.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProxyStyle>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyleOptionButton>
#include <QTextBlock>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <initializer_list>

namespace tessaly {

int virtualKeyFromQtKey(int qtKey) {
    switch (qtKey) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return VK_RETURN;
    case Qt::Key_Backspace:
        return VK_BACK;
    case Qt::Key_Tab:
        return VK_TAB;
    case Qt::Key_Escape:
        return VK_ESCAPE;
    case Qt::Key_Space:
        return VK_SPACE;
    case Qt::Key_Left:
        return VK_LEFT;
    case Qt::Key_Up:
        return VK_UP;
    case Qt::Key_Right:
        return VK_RIGHT;
    case Qt::Key_Down:
        return VK_DOWN;
    case Qt::Key_Delete:
        return VK_DELETE;
    default:
        break;
    }
    if ((qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9) || (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z))
        return qtKey; // Qt's codes for these are their ASCII codes, as the platform's
    return 0;
}

// ---- StaticLabel ----

StaticLabel::StaticLabel(QWidget* parent)
    : QWidget(parent) {
    setFont(smallFont());
}

void StaticLabel::setText(const QString& text) {
    if (text_ == text)
        return;
    text_ = text;
    update();
}

void StaticLabel::setTextColor(const QColor& color) {
    textColor_ = color;
    update();
}

void StaticLabel::setBackgroundColor(const QColor& color) {
    backgroundColor_ = color;
    update();
}

void StaticLabel::setAlignment(Qt::Alignment alignment) {
    alignment_ = alignment;
    update();
}

void StaticLabel::setPixmap(const QPixmap& pixmap) {
    pixmap_ = pixmap;
    update();
}

int StaticLabel::preferredWidth() const {
    return fontMetrics().horizontalAdvance(text_) + kLabelPadding;
}

void StaticLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (backgroundColor_.isValid())
        painter.fillRect(rect(), backgroundColor_);
    if (!pixmap_.isNull()) {
        painter.drawPixmap(0, 0, pixmap_);
        return;
    }
    painter.setPen(textColor_.isValid() ? textColor_ : palette().color(QPalette::WindowText));
    painter.setFont(font());
    painter.drawText(rect(), int(alignment_) | Qt::TextWordWrap, text_);
}

void StaticLabel::mouseReleaseEvent(QMouseEvent* event) {
    QWidget::mouseReleaseEvent(event);
    if (notify_ && rect().contains(event->position().toPoint()))
        emit clicked();
}

int layoutLabelChain(const std::vector<StaticLabel*>& labels, int edgeX, Qt::AlignmentFlag side) {
    std::vector<StaticLabel*> visible;
    for (StaticLabel* label : labels)
        if (label && !label->isHidden())
            visible.push_back(label);
    int total = 0;
    for (StaticLabel* label : visible)
        total += label->preferredWidth();
    if (!visible.empty())
        total += kLabelChainGap * int(visible.size() - 1);
    int x = side == Qt::AlignRight ? edgeX - total : edgeX;
    for (StaticLabel* label : visible) {
        const int width = label->preferredWidth();
        label->setGeometry(x, label->y(), width, label->height());
        x += width + kLabelChainGap;
    }
    return side == Qt::AlignRight ? edgeX - total : edgeX + total;
}

// ---- OwnerDrawButton ----

OwnerDrawButton::OwnerDrawButton(QWidget* parent)
    : QAbstractButton(parent) {
    setFont(smallFont());
}

void OwnerDrawButton::setImages(const QPixmap& normal, const QPixmap& pressed,
                                const QPixmap& disabled) {
    normal_ = normal;
    pressed_ = pressed;
    disabled_ = disabled;
    update();
}

void OwnerDrawButton::setDrawHandler(std::function<bool(QPainter&, const DrawItemState&)> handler) {
    drawHandler_ = std::move(handler);
}

QSize OwnerDrawButton::sizeHint() const {
    if (!normal_.isNull())
        return normal_.size();
    return QSize(fontMetrics().horizontalAdvance(text()) + kLabelPadding, 20);
}

void OwnerDrawButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const DrawItemState state{isDown(), isEnabled(), hasFocus()};
    if (drawHandler_ && drawHandler_(painter, state))
        return;
    const QPixmap& image = !state.enabled && !disabled_.isNull() ? disabled_
                           : state.pressed && !pressed_.isNull() ? pressed_
                                                                 : normal_;
    if (!image.isNull()) {
        painter.drawPixmap(0, 0, image);
        return;
    }
    painter.fillRect(rect(), state.pressed ? palette().dark() : palette().button());
    painter.setPen(palette().color(state.enabled ? QPalette::Active : QPalette::Disabled,
                                   QPalette::ButtonText));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

// ---- CheckBox, RadioButton ----

CheckBox::CheckBox(bool automatic, QWidget* parent)
    : QCheckBox(parent)
    , automatic_(automatic) {
    setFont(smallFont());
}

void CheckBox::nextCheckState() {
    if (automatic_)
        QCheckBox::nextCheckState();
}

RadioButton::RadioButton(bool automatic, QWidget* parent)
    : QRadioButton(parent)
    , automatic_(automatic) {
    setFont(smallFont());
    setAutoExclusive(false); // groups follow the template, not the Qt parent
}

void RadioButton::nextCheckState() {
    if (automatic_)
        setChecked(true);
}

// ---- Edit ----

namespace {

QString toEditorText(const QString& text) {
    QString result = text;
    result.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    result.replace(QChar(u'\r'), QChar(u'\n'));
    return result;
}

} // namespace

Edit::Edit(bool multiLine, QWidget* parent)
    : QWidget(parent) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    QWidget* inner = nullptr;
    if (multiLine) {
        plain_ = new QPlainTextEdit(this);
        plain_->setTabChangesFocus(true);
        connect(plain_, &QPlainTextEdit::textChanged, this, &Edit::textChanged);
        inner = plain_;
    } else {
        line_ = new QLineEdit(this);
        connect(line_, &QLineEdit::textChanged, this, &Edit::textChanged);
        inner = line_;
    }
    inner->setFont(smallFont());
    inner->installEventFilter(this);
    inner->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(inner, &QWidget::customContextMenuRequested, this, &Edit::contextMenuRequested);
    PressAndHold::attach(plain_ ? plain_->viewport() : inner);
    layout->addWidget(inner);
    setFocusProxy(inner);
}

void Edit::setScrollBars(bool vertical, bool horizontal) {
    if (!plain_)
        return;
    plain_->setVerticalScrollBarPolicy(vertical ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    plain_->setHorizontalScrollBarPolicy(horizontal ? Qt::ScrollBarAsNeeded
                                                    : Qt::ScrollBarAlwaysOff);
    plain_->setLineWrapMode(horizontal ? QPlainTextEdit::NoWrap : QPlainTextEdit::WidgetWidth);
}

QWidget* Edit::editor() const {
    return plain_ ? static_cast<QWidget*>(plain_) : line_;
}

void Edit::setText(const QString& text) {
    if (plain_) {
        plain_->setPlainText(toEditorText(text));
        plain_->document()->setModified(false);
    } else {
        line_->setText(text);
    }
}

QString Edit::text() const {
    if (!plain_)
        return line_->text();
    QString result = plain_->toPlainText();
    result.replace(QChar(u'\n'), QStringLiteral("\r\n"));
    return result;
}

void Edit::contextMenuRequested(QPoint editorPos) {
    // A multi-line editor reports the point in its viewport, a line editor in itself.
    QPoint globalPos;
    if (plain_) {
        plain_->setTextCursor(plain_->cursorForPosition(editorPos));
        globalPos = plain_->viewport()->mapToGlobal(editorPos);
    } else {
        line_->setCursorPosition(line_->cursorPositionAt(editorPos));
        globalPos = line_->mapToGlobal(editorPos);
    }
    emit tapAndHold(globalPos);
}

int Edit::toEditorPos(int pos) const {
    if (!plain_)
        return pos;
    const QString plain = plain_->toPlainText();
    int windowsPos = 0;
    int index = 0;
    for (; index < plain.size(); ++index) {
        const int width = plain.at(index) == u'\n' ? 2 : 1;
        if (windowsPos + width > pos)
            break;
        windowsPos += width;
    }
    return index;
}

int Edit::fromEditorPos(int pos) const {
    if (!plain_)
        return pos;
    const QString plain = plain_->toPlainText();
    const int end = std::min<int>(pos, plain.size());
    return end + int(std::count(plain.begin(), plain.begin() + end, QChar(u'\n')));
}

void Edit::setSel(int start, int end) {
    const int length = textLength();
    if (start < 0) {
        // Removes the selection, leaving the caret where it is.
        const int caret = caretPos();
        start = end = caret;
    }
    if (end < 0 || end > length)
        end = length;
    start = std::clamp(start, 0, length);
    const int from = toEditorPos(start);
    const int to = toEditorPos(end);
    if (plain_) {
        QTextCursor cursor = plain_->textCursor();
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        plain_->setTextCursor(cursor);
    } else {
        line_->setSelection(from, to - from);
        if (from == to)
            line_->setCursorPosition(from);
    }
}

std::pair<int, int> Edit::sel() const {
    if (plain_) {
        const QTextCursor cursor = plain_->textCursor();
        return {fromEditorPos(cursor.selectionStart()), fromEditorPos(cursor.selectionEnd())};
    }
    if (!line_->hasSelectedText())
        return {line_->cursorPosition(), line_->cursorPosition()};
    const int start = line_->selectionStart();
    return {start, start + int(line_->selectedText().size())};
}

void Edit::replaceSel(const QString& text) {
    if (plain_)
        plain_->textCursor().insertText(toEditorText(text));
    else
        line_->insert(text);
}

int Edit::caretPos() const {
    if (plain_)
        return fromEditorPos(plain_->textCursor().position());
    return line_->cursorPosition();
}

void Edit::scrollCaret() {
    if (plain_)
        plain_->ensureCursorVisible();
    else if (!line_->hasSelectedText()) // a line keeps its caret in view; setting it unselects
        line_->setCursorPosition(line_->cursorPosition());
}

bool Edit::isModified() const {
    return plain_ ? plain_->document()->isModified() : line_->isModified();
}

void Edit::setModified(bool modified) {
    if (plain_)
        plain_->document()->setModified(modified);
    else
        line_->setModified(modified);
}

void Edit::copy() {
    if (plain_)
        plain_->copy();
    else
        line_->copy();
}

void Edit::cut() {
    if (isReadOnly())
        return;
    if (plain_)
        plain_->cut();
    else
        line_->cut();
}

void Edit::paste() {
    if (isReadOnly())
        return;
    if (plain_)
        plain_->paste();
    else
        line_->paste();
}

void Edit::clear() {
    if (isReadOnly())
        return;
    if (plain_)
        plain_->textCursor().removeSelectedText();
    else
        line_->del();
}

void Edit::selectAll() {
    if (plain_)
        plain_->selectAll();
    else
        line_->selectAll();
}

void Edit::undo() {
    if (plain_)
        plain_->undo();
    else
        line_->undo();
}

void Edit::setReadOnly(bool readOnly) {
    if (plain_)
        plain_->setReadOnly(readOnly);
    else
        line_->setReadOnly(readOnly);
}

bool Edit::isReadOnly() const {
    return plain_ ? plain_->isReadOnly() : line_->isReadOnly();
}

void Edit::setLimitText(int maxChars) {
    limit_ = std::max(0, maxChars);
    if (line_)
        line_->setMaxLength(limit_ > 0 ? limit_ : 32767);
}

void Edit::setPassword(bool password) {
    if (line_)
        line_->setEchoMode(password ? QLineEdit::Password : QLineEdit::Normal);
}

void Edit::setTextAlignment(Qt::Alignment alignment) {
    if (line_)
        line_->setAlignment(alignment);
}

bool Edit::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::FocusIn:
        emit focusGained();
        break;
    case QEvent::FocusOut:
        emit focusLost();
        break;
    case QEvent::KeyPress: {
        const auto* key = static_cast<QKeyEvent*>(event);
        const QString typed = key->text();
        const bool printable = !typed.isEmpty() && typed.at(0).isPrint();
        if (digitsOnly_ && printable && !typed.at(0).isDigit())
            return true;
        if (plain_ && limit_ > 0 && printable && plain_->textCursor().selectedText().isEmpty() &&
            textLength() >= limit_)
            return true;
        break;
    }
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

// ---- ListView ----

namespace {

constexpr int kItemDataRole = Qt::UserRole;
constexpr int kImageRole = Qt::UserRole + 1;

Qt::Alignment alignmentFromFormat(int format) {
    switch (format & 3) {
    case LVCFMT_RIGHT:
        return Qt::AlignRight | Qt::AlignVCenter;
    case LVCFMT_CENTER:
        return Qt::AlignCenter;
    default:
        return Qt::AlignLeft | Qt::AlignVCenter;
    }
}

// The list's own metrics on the 240-pixel screen: narrow scroll bars and one pixel beside a
// cell's or a header's text, so that the default column widths show what they were made for.
class CompactListStyle final : public QProxyStyle {
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override {
        switch (metric) {
        case PM_ScrollBarExtent:
            return kListScrollBarWidth;
        case PM_FocusFrameHMargin:
            return 0;
        case PM_HeaderMargin:
            return 1;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }
};

// Shared by every list and never deleted: widgets do not own the style they are given.
QStyle* compactListStyle() {
    static QStyle* const style = new CompactListStyle;
    return style;
}

} // namespace

ListView::ListView(QWidget* parent)
    : QTableWidget(parent) {
    setFont(listFont());
    PressAndHold::attach(viewport());
    for (QWidget* part : std::initializer_list<QWidget*>{this, verticalScrollBar(),
                                                         horizontalScrollBar(), horizontalHeader()})
        part->setStyle(compactListStyle());
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(QFontMetrics(listFont()).height() + 4);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setMinimumSectionSize(0);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    horizontalHeader()->setStretchLastSection(false);
    horizontalHeader()->viewport()->installEventFilter(this);
    setShowGrid(false);
    setWordWrap(false);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);

    connect(this, &QTableWidget::cellClicked, this, &ListView::itemClicked);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &ListView::columnClicked);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column, int, int) {
        // The dragged divider resizes first; a filling last column follows it.
        if (trackingDivider_ && resizedColumn_ < 0)
            resizedColumn_ = column;
        if (column != columnCount() - 1)
            fitLastColumn();
    });
}

int ListView::insertColumn(int index, const QString& text, int width, int format) {
    index = std::clamp(index, 0, columnCount());
    QTableWidget::insertColumn(index);
    auto* header = new QTableWidgetItem(text);
    header->setTextAlignment(alignmentFromFormat(format));
    setHorizontalHeaderItem(index, header);
    setColumnWidth(index, std::max(0, width));
    return index;
}

void ListView::setLastColumnFillsWidth(bool fill) {
    lastColumnFills_ = fill;
    fitLastColumn();
}

void ListView::fitLastColumn() {
    const int last = columnCount() - 1;
    if (!lastColumnFills_ || last < 0)
        return;
    int used = 0;
    for (int column = 0; column < last; ++column)
        used += columnWidth(column);
    const int available = viewport()->width() - used;
    if (columnWidth(last) != std::max(0, available))
        setColumnWidth(last, std::max(0, available));
}

void ListView::resizeEvent(QResizeEvent* event) {
    QTableWidget::resizeEvent(event);
    fitLastColumn();
}

bool ListView::deleteColumn(int index) {
    if (index < 0 || index >= columnCount())
        return false;
    removeColumn(index);
    return true;
}

void ListView::deleteAllColumns() {
    setColumnCount(0);
}

QString ListView::columnText(int index) const {
    const QTableWidgetItem* header = horizontalHeaderItem(index);
    return header ? header->text() : QString();
}

QTableWidgetItem* ListView::cell(int row, int column) {
    if (row < 0 || row >= rowCount() || column < 0 || column >= std::max(1, columnCount()))
        return nullptr;
    if (columnCount() == 0)
        setColumnCount(1);
    QTableWidgetItem* found = item(row, column);
    if (!found) {
        found = new QTableWidgetItem;
        setItem(row, column, found);
    }
    return found;
}

int ListView::insertItem(int index, const QString& text, int image, LPARAM data) {
    index = std::clamp(index, 0, rowCount());
    insertRow(index);
    QTableWidgetItem* first = cell(index, 0);
    first->setText(text);
    first->setData(kItemDataRole, qlonglong(data));
    if (exStyle_ & LVS_EX_CHECKBOXES)
        first->setCheckState(Qt::Unchecked);
    if (image >= 0)
        setItemImage(index, image);
    return index;
}

bool ListView::deleteItem(int index) {
    if (index < 0 || index >= rowCount())
        return false;
    removeRow(index);
    return true;
}

void ListView::deleteAllItems() {
    setRowCount(0);
}

bool ListView::setItemText(int row, int subItem, const QString& text) {
    QTableWidgetItem* target = cell(row, subItem);
    if (!target)
        return false;
    target->setText(text);
    return true;
}

QString ListView::itemText(int row, int subItem) const {
    const QTableWidgetItem* found = item(row, subItem);
    return found ? found->text() : QString();
}

bool ListView::setItemData(int row, LPARAM data) {
    QTableWidgetItem* first = cell(row, 0);
    if (!first)
        return false;
    first->setData(kItemDataRole, qlonglong(data));
    return true;
}

LPARAM ListView::getItemData(int row) const {
    const QTableWidgetItem* first = item(row, 0);
    return first ? LPARAM(first->data(kItemDataRole).toLongLong()) : 0;
}

int ListView::findItemData(LPARAM data) const {
    for (int row = 0; row < rowCount(); ++row)
        if (getItemData(row) == data)
            return row;
    return -1;
}

bool ListView::setItemImage(int row, int image) {
    QTableWidgetItem* first = cell(row, 0);
    if (!first)
        return false;
    first->setData(kImageRole, image);
    first->setIcon(image >= 0 && image < images_.size() ? QIcon(images_.at(image)) : QIcon());
    return true;
}

int ListView::itemImage(int row) const {
    const QTableWidgetItem* first = item(row, 0);
    if (!first)
        return -1;
    const QVariant image = first->data(kImageRole);
    return image.isValid() ? image.toInt() : -1;
}

void ListView::setImageList(const QList<QPixmap>& images) {
    images_ = images;
    if (!images.isEmpty())
        setIconSize(images.first().size());
    for (int row = 0; row < rowCount(); ++row)
        if (itemImage(row) >= 0)
            setItemImage(row, itemImage(row));
}

bool ListView::setItemSelected(int row, bool selected) {
    if (row < 0 || row >= rowCount())
        return false;
    const QModelIndex index = model()->index(row, 0);
    const auto flags = QItemSelectionModel::Rows |
                       (selected ? QItemSelectionModel::Select : QItemSelectionModel::Deselect);
    selectionModel()->select(index, flags);
    if (selected)
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    return true;
}

bool ListView::isItemSelected(int row) const {
    return row >= 0 && row < rowCount() && selectionModel()->isRowSelected(row, QModelIndex());
}

int ListView::selectedRow() const {
    for (int row = 0; row < rowCount(); ++row)
        if (selectionModel()->isRowSelected(row, QModelIndex()))
            return row;
    return -1;
}

std::vector<int> ListView::selectedRows() const {
    std::vector<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void ListView::ensureVisible(int row) {
    if (row >= 0 && row < rowCount())
        scrollTo(model()->index(row, 0));
}

void ListView::setExtendedStyle(DWORD exStyle) {
    const bool checkBoxesBefore = exStyle_ & LVS_EX_CHECKBOXES;
    exStyle_ = exStyle;
    setShowGrid(exStyle & LVS_EX_GRIDLINES);
    const bool checkBoxes = exStyle & LVS_EX_CHECKBOXES;
    if (checkBoxes != checkBoxesBefore) {
        for (int row = 0; row < rowCount(); ++row) {
            QTableWidgetItem* first = cell(row, 0);
            if (checkBoxes)
                first->setCheckState(Qt::Unchecked);
            else
                first->setData(Qt::CheckStateRole, QVariant());
        }
    }
}

bool ListView::setItemChecked(int row, bool checked) {
    QTableWidgetItem* first = cell(row, 0);
    if (!first || !(exStyle_ & LVS_EX_CHECKBOXES))
        return false;
    first->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
    return true;
}

bool ListView::isItemChecked(int row) const {
    const QTableWidgetItem* first = item(row, 0);
    return first && first->checkState() == Qt::Checked;
}

void ListView::setSingleSelection(bool single) {
    setSelectionMode(single ? QAbstractItemView::SingleSelection
                            : QAbstractItemView::ExtendedSelection);
}

void ListView::setHeaderVisible(bool visible) {
    horizontalHeader()->setVisible(visible);
}

void ListView::keyPressEvent(QKeyEvent* event) {
    const int key = virtualKeyFromQtKey(event->key());
    if (key != 0)
        emit keyDown(key);
    // Enter belongs to the list (its window opens the row), not to the dialog's OK.
    if (key == VK_RETURN) {
        event->accept();
        return;
    }
    QTableWidget::keyPressEvent(event);
}

void ListView::contextMenuEvent(QContextMenuEvent* event) {
    const int row = rowAt(event->pos().y());
    if (row >= 0) {
        clearSelection();
        setItemSelected(row, true);
    }
    emit tapAndHold(row, event->globalPos());
}

bool ListView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == horizontalHeader()->viewport()) {
        if (event->type() == QEvent::MouseButtonPress) {
            trackingDivider_ = true;
            resizedColumn_ = -1;
        } else if (event->type() == QEvent::MouseButtonRelease) {
            trackingDivider_ = false;
            const int column = resizedColumn_;
            resizedColumn_ = -1;
            if (column >= 0)
                emit columnWidthChanged(column, columnWidth(column));
        }
    }
    return QTableWidget::eventFilter(watched, event);
}

// ---- ComboBox ----

namespace {

// Where a sorted list inserts text: after every entry that compares less or equal.
template <typename TextAt> int sortedInsertIndex(int count, const QString& text, TextAt textAt) {
    int low = 0;
    int high = count;
    while (low < high) {
        const int middle = (low + high) / 2;
        if (QString::compare(textAt(middle), text, Qt::CaseInsensitive) <= 0)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

} // namespace

ComboBox::ComboBox(QWidget* parent)
    : QComboBox(parent) {
    setFont(smallFont());
    connect(this, &QComboBox::activated, this, [this](int) { emit selectionChanged(); });
}

int ComboBox::addString(const QString& text) {
    const int index =
        sorted_ ? sortedInsertIndex(count(), text, [this](int i) { return itemText(i); }) : count();
    QComboBox::insertItem(index, text);
    return index;
}

int ComboBox::insertString(int index, const QString& text) {
    if (index < 0 || index > count())
        index = count();
    QComboBox::insertItem(index, text);
    return index;
}

int ComboBox::deleteString(int index) {
    if (index < 0 || index >= count())
        return LB_ERR;
    removeItem(index);
    return count();
}

void ComboBox::resetContent() {
    QComboBox::clear();
}

int ComboBox::setCurSel(int index) {
    if (index < 0 || index >= count()) {
        setCurrentIndex(-1);
        return LB_ERR;
    }
    setCurrentIndex(index);
    return index;
}

bool ComboBox::setItemData(int index, LPARAM data) {
    if (index < 0 || index >= count())
        return false;
    QComboBox::setItemData(index, qlonglong(data), Qt::UserRole);
    return true;
}

LPARAM ComboBox::getItemData(int index) const {
    return LPARAM(itemData(index, Qt::UserRole).toLongLong());
}

int ComboBox::findStringExact(int start, const QString& text) const {
    for (int i = std::max(0, start + 1); i < count(); ++i)
        if (QString::compare(itemText(i), text, Qt::CaseInsensitive) == 0)
            return i;
    for (int i = 0; i <= std::min(start, count() - 1); ++i)
        if (QString::compare(itemText(i), text, Qt::CaseInsensitive) == 0)
            return i;
    return LB_ERR;
}

void ComboBox::choose(int index) {
    if (index < 0 || index >= count())
        return;
    setCurrentIndex(index);
    emit selectionChanged();
}

void ComboBox::showPopup() {
    if (!popupOpen_) {
        popupOpen_ = true;
        emit droppedDown();
    }
    QComboBox::showPopup();
}

void ComboBox::hidePopup() {
    QComboBox::hidePopup();
    if (popupOpen_) {
        popupOpen_ = false;
        emit closedUp();
    }
}

// ---- ListBox ----

ListBox::ListBox(QWidget* parent)
    : QListWidget(parent) {
    setFont(smallFont());
    setSelectionMode(QAbstractItemView::SingleSelection);
    connect(this, &QListWidget::itemSelectionChanged, this, [this] {
        if (quiet_ == 0)
            emit selectionChanged();
    });
}

void ListBox::programmatic(const std::function<void()>& change) {
    ++quiet_;
    change();
    --quiet_;
}

void ListBox::setMultipleSelection(bool multiple) {
    setSelectionMode(multiple ? QAbstractItemView::MultiSelection
                              : QAbstractItemView::SingleSelection);
}

bool ListBox::isMultipleSelection() const {
    return selectionMode() == QAbstractItemView::MultiSelection;
}

int ListBox::addString(const QString& text) {
    const int index =
        sorted_ ? sortedInsertIndex(count(), text, [this](int i) { return item(i)->text(); })
                : count();
    programmatic([&] { insertItem(index, text); });
    return index;
}

int ListBox::insertString(int index, const QString& text) {
    if (index < 0 || index > count())
        index = count();
    programmatic([&] { insertItem(index, text); });
    return index;
}

int ListBox::deleteString(int index) {
    if (index < 0 || index >= count())
        return LB_ERR;
    programmatic([&] { delete takeItem(index); });
    return count();
}

void ListBox::resetContent() {
    programmatic([&] { QListWidget::clear(); });
}

QString ListBox::text(int index) const {
    const QListWidgetItem* found = item(index);
    return found ? found->text() : QString();
}

bool ListBox::setItemData(int index, LPARAM data) {
    QListWidgetItem* found = item(index);
    if (!found)
        return false;
    found->setData(Qt::UserRole, qlonglong(data));
    return true;
}

LPARAM ListBox::getItemData(int index) const {
    const QListWidgetItem* found = item(index);
    return found ? LPARAM(found->data(Qt::UserRole).toLongLong()) : 0;
}

int ListBox::findStringExact(int start, const QString& text) const {
    for (int step = 1; step <= count(); ++step) {
        const int i = (std::max(-1, start) + step) % count();
        if (QString::compare(item(i)->text(), text, Qt::CaseInsensitive) == 0)
            return i;
    }
    return LB_ERR;
}

int ListBox::curSel() const {
    if (isMultipleSelection()) {
        const int current = currentRow();
        return current;
    }
    const std::vector<int> selected = selItems();
    return selected.empty() ? LB_ERR : selected.front();
}

int ListBox::setCurSel(int index) {
    programmatic([&] {
        clearSelection();
        if (index >= 0 && index < count())
            setCurrentRow(index, QItemSelectionModel::ClearAndSelect);
    });
    return index >= 0 && index < count() ? index : LB_ERR;
}

bool ListBox::setSel(int index, bool selected) {
    if (index == -1) {
        setSelAll(selected);
        return true;
    }
    QListWidgetItem* found = item(index);
    if (!found)
        return false;
    programmatic([&] { found->setSelected(selected); });
    return true;
}

bool ListBox::isSel(int index) const {
    const QListWidgetItem* found = item(index);
    return found && found->isSelected();
}

void ListBox::setSelAll(bool selected) {
    programmatic([&] {
        if (selected)
            QListWidget::selectAll();
        else
            clearSelection();
    });
}

int ListBox::selCount() const {
    return int(selItems().size());
}

std::vector<int> ListBox::selItems() const {
    std::vector<int> rows;
    for (int i = 0; i < count(); ++i)
        if (item(i)->isSelected())
            rows.push_back(i);
    return rows;
}

// ---- ProgressBar ----

ProgressBar::ProgressBar(QWidget* parent)
    : QProgressBar(parent) {
    setRange(0, 100);
    setValue(0);
    setTextVisible(false);
}

int ProgressBar::setPos(int pos) {
    const int previous = value();
    setValue(std::clamp(pos, minimum(), maximum()));
    return previous;
}

int ProgressBar::setStep(int step) {
    return std::exchange(step_, step);
}

int ProgressBar::stepIt() {
    const int previous = value();
    int next = previous + step_;
    if (next > maximum())
        next = minimum() + (next - maximum());
    if (next > maximum() || next < minimum())
        next = minimum();
    setValue(next);
    return previous;
}

int ProgressBar::deltaPos(int delta) {
    return setPos(value() + delta);
}

// ---- UpDown ----

UpDown::UpDown(QWidget* parent)
    : QWidget(parent)
    , up_(new QToolButton(this))
    , down_(new QToolButton(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    up_->setArrowType(Qt::UpArrow);
    down_->setArrowType(Qt::DownArrow);
    for (QToolButton* button : {up_, down_}) {
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        layout->addWidget(button);
    }
    connect(up_, &QToolButton::clicked, this, [this] { stepBy(+1); });
    connect(down_, &QToolButton::clicked, this, [this] { stepBy(-1); });
}

void UpDown::setRange(int lower, int upper) {
    lower_ = lower;
    upper_ = upper;
    setPos(pos_);
}

int UpDown::setPos(int pos) {
    const int previous = pos_;
    pos_ = std::clamp(pos, std::min(lower_, upper_), std::max(lower_, upper_));
    writeBuddy();
    return previous;
}

void UpDown::setBuddy(Edit* buddy) {
    buddy_ = buddy;
    writeBuddy();
}

void UpDown::stepBy(int delta) {
    // A range given upside down (lower > upper) makes "up" count down, as on the platform.
    const int direction = lower_ <= upper_ ? 1 : -1;
    const int low = std::min(lower_, upper_);
    const int high = std::max(lower_, upper_);
    if (buddyInt_ && buddy_) {
        bool ok = false;
        const int typed = buddy_->text().toInt(&ok);
        if (ok)
            pos_ = std::clamp(typed, low, high);
    }
    int next = pos_ + delta * direction;
    if (next > high)
        next = wrap_ ? low : high;
    else if (next < low)
        next = wrap_ ? high : low;
    if (next == pos_)
        return;
    pos_ = next;
    writeBuddy();
    emit positionChanged(pos_);
}

void UpDown::writeBuddy() {
    if (buddyInt_ && buddy_)
        buddy_->setText(QString::number(pos_));
}

// ---- DateTimePicker ----

QString qtDateTimeFormat(const QString& platformFormat) {
    QString result;
    const int size = int(platformFormat.size());
    for (int i = 0; i < size;) {
        const QChar c = platformFormat.at(i);
        if (c == u'\'') {
            // Quoted literal: copied as Qt's quoted text; '' inside stands for one quote.
            int end = i + 1;
            QString literal;
            while (end < size) {
                if (platformFormat.at(end) == u'\'') {
                    if (end + 1 < size && platformFormat.at(end + 1) == u'\'') {
                        literal += u'\'';
                        end += 2;
                        continue;
                    }
                    break;
                }
                literal += platformFormat.at(end++);
            }
            result += u'\'' + literal.replace(u'\'', QStringLiteral("''")) + u'\'';
            i = end + 1;
            continue;
        }
        int run = 1;
        while (i + run < size && platformFormat.at(i + run) == c)
            ++run;
        switch (c.unicode()) {
        case u'd':
            result += QString(std::min(run, 4), u'd');
            break;
        case u'M':
            result += QString(std::min(run, 4), u'M');
            break;
        case u'y':
            result += run >= 3 ? QStringLiteral("yyyy") : QStringLiteral("yy");
            break;
        case u'h':
            result += QString(std::min(run, 2), u'h');
            break;
        case u'H':
            result += QString(std::min(run, 2), u'H');
            break;
        case u'm':
            result += QString(std::min(run, 2), u'm');
            break;
        case u's':
            result += QString(std::min(run, 2), u's');
            break;
        case u't':
            result += run >= 2 ? QStringLiteral("AP") : QStringLiteral("A");
            break;
        default:
            // Letters Qt would read as fields are quoted; other characters pass through.
            if (c.isLetter())
                result += u'\'' + QString(run, c) + u'\'';
            else
                result += QString(run, c);
            break;
        }
        i += run;
    }
    return result;
}

DateTimePicker::DateTimePicker(QWidget* parent)
    : QDateTimeEdit(parent) {
    setFont(smallFont());
    setMode(Mode::ShortDate);
    connect(this, &QDateTimeEdit::dateTimeChanged, this, &DateTimePicker::changed);
}

void DateTimePicker::setMode(Mode mode) {
    mode_ = mode;
    setFormat(QString());
    setCalendarPopup(mode != Mode::Time);
}

void DateTimePicker::setFormat(const QString& platformFormat) {
    if (!platformFormat.isEmpty()) {
        setDisplayFormat(qtDateTimeFormat(platformFormat));
        return;
    }
    switch (mode_) {
    case Mode::ShortDate:
        setDisplayFormat(QStringLiteral("dd.MM.yy"));
        break;
    case Mode::LongDate:
        setDisplayFormat(QStringLiteral("dddd, d MMMM yyyy"));
        break;
    case Mode::Time:
        setDisplayFormat(QStringLiteral("HH:mm:ss"));
        break;
    }
}

void DateTimePicker::setSystemTime(const SYSTEMTIME& time) {
    const QDateTime chosen = dateTimeFromSystemTime(time);
    if (!chosen.isValid())
        return;
    // Set by the program, not by the person: no change notification.
    const QSignalBlocker quiet(this);
    setDateTime(chosen);
}

SYSTEMTIME DateTimePicker::systemTime() const {
    return systemTimeFromDateTime(dateTime());
}

} // namespace tessaly
