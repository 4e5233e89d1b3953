#pragma once

// The controls a dialog template can hold, each a Qt widget with the operations that windows
// use on them. Dialog creates them from the template; windows reach them by id.

#include "framework/win32types.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QIcon>
#include <QListWidget>
#include <QPixmap>
#include <QProgressBar>
#include <QRadioButton>
#include <QTableWidget>
#include <QWidget>

#include <functional>
#include <utility>
#include <vector>

class QLineEdit;
class QPlainTextEdit;
class QToolButton;

// Extended list-view styles.
constexpr DWORD LVS_EX_GRIDLINES = 0x1;
constexpr DWORD LVS_EX_CHECKBOXES = 0x4;
constexpr DWORD LVS_EX_FULLROWSELECT = 0x20;

// Column alignment of list views.
constexpr int LVCFMT_LEFT = 0;
constexpr int LVCFMT_RIGHT = 1;
constexpr int LVCFMT_CENTER = 2;

// Check states of buttons.
constexpr int BST_UNCHECKED = 0;
constexpr int BST_CHECKED = 1;
constexpr int BST_INDETERMINATE = 2;

// Virtual key codes that list key-down notifications carry for non-character keys.
constexpr int VK_BACK = 0x08;
constexpr int VK_TAB = 0x09;
constexpr int VK_RETURN = 0x0d;
constexpr int VK_ESCAPE = 0x1b;
constexpr int VK_SPACE = 0x20;
constexpr int VK_LEFT = 0x25;
constexpr int VK_UP = 0x26;
constexpr int VK_RIGHT = 0x27;
constexpr int VK_DOWN = 0x28;
constexpr int VK_DELETE = 0x2e;

// Returned by list operations that find nothing.
constexpr int LB_ERR = -1;

namespace tessaly {

// The platform's key code for a Qt key (letters and digits as their upper-case ASCII code).
int virtualKeyFromQtKey(int qtKey);

// A label that paints itself with the small font: optional background colour, text colour,
// alignment, optional image. With click notification on, a tap emits clicked().
class StaticLabel : public QWidget {
    Q_OBJECT
public:
    explicit StaticLabel(QWidget* parent = nullptr);

    void setText(const QString& text);
    QString text() const { return text_; }
    void setTextColor(const QColor& color);
    // An invalid colour paints no background (the window's shows through).
    void setBackgroundColor(const QColor& color);
    void setAlignment(Qt::Alignment alignment);
    Qt::Alignment alignment() const { return alignment_; }
    void setPixmap(const QPixmap& pixmap);
    void setNotify(bool notify) { notify_ = notify; }
    bool notifies() const { return notify_; }
    // The width a label of a chain takes: its text width plus 16.
    int preferredWidth() const;

signals:
    void clicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QString text_;
    QColor textColor_;
    QColor backgroundColor_;
    Qt::Alignment alignment_ = Qt::AlignLeft | Qt::AlignTop;
    QPixmap pixmap_;
    bool notify_ = false;
};

// Lays out visible labels in a row 10 px apart, each as wide as preferredWidth(). With
// Qt::AlignLeft the chain starts at edgeX; with Qt::AlignRight it ends at edgeX. Labels keep
// their order, top and height. Returns the x just past the chain's far end.
int layoutLabelChain(const std::vector<StaticLabel*>& labels, int edgeX, Qt::AlignmentFlag side);

constexpr int kLabelChainGap = 10;
constexpr int kLabelPadding = 16;

struct DrawItemState {
    bool pressed = false;
    bool enabled = true;
    bool focused = false;
};

// A button that its window paints: the draw handler runs first; when it declines (or there is
// none) the images set with setImages are drawn, else a plain frame with the text.
class OwnerDrawButton : public QAbstractButton {
    Q_OBJECT
public:
    explicit OwnerDrawButton(QWidget* parent = nullptr);
    void setImages(const QPixmap& normal, const QPixmap& pressed,
                   const QPixmap& disabled = QPixmap());
    void setDrawHandler(std::function<bool(QPainter&, const DrawItemState&)> handler);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap normal_;
    QPixmap pressed_;
    QPixmap disabled_;
    std::function<bool(QPainter&, const DrawItemState&)> drawHandler_;
};

// Check boxes and radio buttons that change their state on a click only with the automatic
// style; a radio button is never unchecked by a click on it.
class CheckBox : public QCheckBox {
    Q_OBJECT
public:
    CheckBox(bool automatic, QWidget* parent = nullptr);

protected:
    void nextCheckState() override;

private:
    bool automatic_;
};

class RadioButton : public QRadioButton {
    Q_OBJECT
public:
    RadioButton(bool automatic, QWidget* parent = nullptr);
    bool isAutomatic() const { return automatic_; }

protected:
    void nextCheckState() override;

private:
    bool automatic_;
};

// An edit field, single- or multi-line. Positions count a line break of a multi-line edit as
// two characters ("\r\n"), as its text() returns them; any of "\r\n", "\r" or "\n" given to
// setText or replaceSel becomes one line break.
class Edit : public QWidget {
    Q_OBJECT
public:
    Edit(bool multiLine, QWidget* parent = nullptr);

    bool isMultiLine() const { return plain_ != nullptr; }
    void setText(const QString& text);
    QString text() const;
    int textLength() const { return text().size(); }

    // start == -1 removes the selection; end == -1 selects to the end.
    void setSel(int start, int end);
    std::pair<int, int> sel() const;
    void replaceSel(const QString& text);
    int caretPos() const;
    void setCaretPos(int pos) { setSel(pos, pos); }
    void scrollCaret();
    bool isModified() const;
    void setModified(bool modified);

    void copy();
    void cut();
    void paste();
    // Deletes the selection.
    void clear();
    void selectAll();
    void undo();

    void setReadOnly(bool readOnly);
    bool isReadOnly() const;
    // Typed characters other than digits are refused; pasted text is not checked.
    void setDigitsOnly(bool digitsOnly) { digitsOnly_ = digitsOnly; }
    bool isDigitsOnly() const { return digitsOnly_; }
    void setLimitText(int maxChars);
    void setPassword(bool password);
    void setTextAlignment(Qt::Alignment alignment);
    // A multi-line field shows a scroll bar only where its style asks for one; its lines wrap
    // at the width unless it scrolls sideways.
    void setScrollBars(bool vertical, bool horizontal);

    QWidget* editor() const;

signals:
    void textChanged();
    void focusGained();
    void focusLost();
    // The stylus held on the field (the platform's context-menu gesture). A tap puts the caret
    // where it lands first, so the caret is there when this arrives; the editor's own context
    // menu is never shown.
    void tapAndHold(QPoint globalPos);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void contextMenuRequested(QPoint editorPos);
    int toEditorPos(int pos) const;
    int fromEditorPos(int pos) const;

    QLineEdit* line_ = nullptr;
    QPlainTextEdit* plain_ = nullptr;
    bool digitsOnly_ = false;
    int limit_ = 0;
};

// A list view in report mode: columns with headers and widths, rows with item data, an image
// from the image list and sub-item texts. Notifications come as signals.
class ListView : public QTableWidget {
    Q_OBJECT
public:
    explicit ListView(QWidget* parent = nullptr);

    int insertColumn(int index, const QString& text, int width, int format = LVCFMT_LEFT);
    // The last column takes whatever width the others leave, so the list never scrolls sideways
    // while they fit.
    void setLastColumnFillsWidth(bool fill);
    bool deleteColumn(int index);
    void deleteAllColumns();
    QString columnText(int index) const;

    // Inserts a row at index (appends when index is past the end); returns its index.
    int insertItem(int index, const QString& text, int image = -1, LPARAM data = 0);
    int itemCount() const { return rowCount(); }
    bool deleteItem(int index);
    void deleteAllItems();
    bool setItemText(int row, int subItem, const QString& text);
    QString itemText(int row, int subItem) const;
    bool setItemData(int row, LPARAM data);
    LPARAM getItemData(int row) const;
    // Finds the row whose item data equals data; -1 when none.
    int findItemData(LPARAM data) const;
    bool setItemImage(int row, int image);
    int itemImage(int row) const;
    void setImageList(const QList<QPixmap>& images);

    bool setItemSelected(int row, bool selected);
    bool isItemSelected(int row) const;
    // The first selected row, or -1.
    int selectedRow() const;
    std::vector<int> selectedRows() const;
    void ensureVisible(int row);

    void setExtendedStyle(DWORD exStyle);
    DWORD extendedStyle() const { return exStyle_; }
    bool setItemChecked(int row, bool checked);
    bool isItemChecked(int row) const;
    void setSingleSelection(bool single);
    void setHeaderVisible(bool visible);

signals:
    void itemClicked(int row, int column);
    void columnClicked(int column);
    void keyDown(int virtualKey);
    void tapAndHold(int row, QPoint globalPos);
    // Only when the person finishes dragging a column divider.
    void columnWidthChanged(int column, int width);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QTableWidgetItem* cell(int row, int column);
    void fitLastColumn();

    QList<QPixmap> images_;
    DWORD exStyle_ = 0;
    bool trackingDivider_ = false;
    bool lastColumnFills_ = false;
    int resizedColumn_ = -1;
};

// A combo box whose entries carry item data; sorted boxes insert new strings in case-insensitive
// order. Drop-down and close-up are reported, and a selection change only when the person made it.
class ComboBox : public QComboBox {
    Q_OBJECT
public:
    explicit ComboBox(QWidget* parent = nullptr);

    void setSorted(bool sorted) { sorted_ = sorted; }
    bool isSorted() const { return sorted_; }
    // Returns the index of the new string.
    int addString(const QString& text);
    int insertString(int index, const QString& text);
    // Returns the count left, or LB_ERR for a bad index.
    int deleteString(int index);
    void resetContent();
    int curSel() const { return currentIndex(); }
    int setCurSel(int index);
    bool setItemData(int index, LPARAM data);
    LPARAM getItemData(int index) const;
    // Case-insensitive whole-text search from after start (-1: from the top); LB_ERR if none.
    int findStringExact(int start, const QString& text) const;
    // As if the person picked the entry: selects it and reports the change.
    void choose(int index);

    void showPopup() override;
    void hidePopup() override;

signals:
    void droppedDown();
    void closedUp();
    void selectionChanged();

private:
    bool sorted_ = false;
    bool popupOpen_ = false;
};

// A list box, single or multiple selection, optionally sorted; entries carry item data.
class ListBox : public QListWidget {
    Q_OBJECT
public:
    explicit ListBox(QWidget* parent = nullptr);

    void setSorted(bool sorted) { sorted_ = sorted; }
    bool isSorted() const { return sorted_; }
    void setMultipleSelection(bool multiple);
    bool isMultipleSelection() const;

    int addString(const QString& text);
    int insertString(int index, const QString& text);
    int deleteString(int index);
    void resetContent();
    QString text(int index) const;
    bool setItemData(int index, LPARAM data);
    LPARAM getItemData(int index) const;
    int findStringExact(int start, const QString& text) const;

    int curSel() const;
    int setCurSel(int index);
    bool setSel(int index, bool selected);
    bool isSel(int index) const;
    // index -1 applies to every entry.
    void setSelAll(bool selected);
    int selCount() const;
    std::vector<int> selItems() const;

signals:
    void selectionChanged();

private:
    void programmatic(const std::function<void()>& change);

    bool sorted_ = false;
    int quiet_ = 0;
};

class ProgressBar : public QProgressBar {
    Q_OBJECT
public:
    explicit ProgressBar(QWidget* parent = nullptr);
    // Returns the previous position.
    int setPos(int pos);
    int pos() const { return value(); }
    int setStep(int step);
    // Advances by the step; past the upper bound it starts again from the lower bound.
    int stepIt();
    int deltaPos(int delta);

private:
    int step_ = 10;
};

// Up and down arrows that change a position within a range and, with buddy-int on, write it
// into their buddy edit.
class UpDown : public QWidget {
    Q_OBJECT
public:
    explicit UpDown(QWidget* parent = nullptr);
    void setRange(int lower, int upper);
    int lower() const { return lower_; }
    int upper() const { return upper_; }
    int setPos(int pos);
    int pos() const { return pos_; }
    void setBuddy(Edit* buddy);
    Edit* buddy() const { return buddy_; }
    void setBuddyInt(bool on) { buddyInt_ = on; }
    void setWrap(bool wrap) { wrap_ = wrap; }
    // As the person pressing an arrow: +1 for up, -1 for down.
    void stepBy(int delta);

signals:
    void positionChanged(int pos);

private:
    void writeBuddy();

    QToolButton* up_;
    QToolButton* down_;
    Edit* buddy_ = nullptr;
    int lower_ = 100;
    int upper_ = 0;
    int pos_ = 0;
    bool buddyInt_ = false;
    bool wrap_ = false;
};

class DateTimePicker : public QDateTimeEdit {
    Q_OBJECT
public:
    enum class Mode { ShortDate, LongDate, Time };
    explicit DateTimePicker(QWidget* parent = nullptr);
    void setMode(Mode mode);
    Mode mode() const { return mode_; }
    // A format in the platform's notation (d, dd, ddd, dddd, M…MMMM, y, yy, yyyy, h, hh, H, HH,
    // m, mm, s, ss, t, tt, 'quoted text'); an empty format restores the mode's own.
    void setFormat(const QString& platformFormat);
    void setSystemTime(const SYSTEMTIME& time);
    SYSTEMTIME systemTime() const;

signals:
    void changed();

private:
    Mode mode_ = Mode::ShortDate;
};

// The platform's display format turned into Qt's.
QString qtDateTimeFormat(const QString& platformFormat);

} // namespace tessaly
