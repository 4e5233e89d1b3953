#include "tests/testkit/window_driver.h"

#include "framework/ui/menu.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDir>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLayout>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QtTest/QTest>

namespace tessaly::testkit {

namespace {

bool reachable(const QWidget* widget) {
    return widget && !widget->isHidden() && widget->isEnabled();
}

void sendMouse(QWidget* target, QEvent::Type type, QPoint pos, Qt::MouseButtons buttons) {
    QMouseEvent event(type, QPointF(pos), QPointF(target->mapToGlobal(pos)), Qt::LeftButton,
                      buttons, Qt::NoModifier);
    QApplication::sendEvent(target, &event);
}

} // namespace

Dialog* findWindow(const QString& title) {
    for (Dialog* dialog : Dialog::windows())
        if (dialog->title() == title)
            return dialog;
    return nullptr;
}

Dialog* findWindow(int templateId) {
    for (Dialog* dialog : Dialog::windows())
        if (dialog->templateId() == templateId)
            return dialog;
    return nullptr;
}

void pumpMessages() {
    for (int round = 0; round < 8; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    }
}

bool click(Dialog& dialog, int id) {
    QWidget* widget = dialog.item(id);
    if (!reachable(widget))
        return false;
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        button->click();
        return true;
    }
    if (auto* label = qobject_cast<StaticLabel*>(widget)) {
        if (!label->notifies())
            return false;
        const QPoint centre = label->rect().center();
        sendMouse(label, QEvent::MouseButtonPress, centre, Qt::LeftButton);
        sendMouse(label, QEvent::MouseButtonRelease, centre, Qt::NoButton);
        return true;
    }
    return false;
}

bool type(Dialog& dialog, int id, const QString& text) {
    Edit* field = dialog.edit(id);
    if (!reachable(field) || field->isReadOnly())
        return false;
    QWidget* editor = field->editor();
    QWidget* window = dialog.window();
    if (window->isVisible() && QApplication::activeWindow() != window->window())
        QApplication::setActiveWindow(window->window());
    editor->setFocus(Qt::OtherFocusReason);
    for (const QChar c : text) {
        if (c == u'\n') {
            QTest::keyClick(editor, Qt::Key_Return);
            continue;
        }
        const int key = c.isLetterOrNumber() && c.unicode() < 0x80 ? c.toUpper().unicode()
                        : c == u' '                                ? int(Qt::Key_Space)
                                                                   : 0;
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QString(c));
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, QString(c));
        QApplication::sendEvent(editor, &press);
        QApplication::sendEvent(editor, &release);
    }
    return true;
}

bool pressKey(Dialog& dialog, int id, Qt::Key key) {
    QWidget* widget = dialog.item(id);
    if (!reachable(widget))
        return false;
    if (auto* field = qobject_cast<Edit*>(widget))
        widget = field->editor();
    QTest::keyClick(widget, key);
    return true;
}

bool select(Dialog& dialog, int id, int index, int column) {
    QWidget* widget = dialog.item(id);
    if (!reachable(widget))
        return false;
    if (auto* box = qobject_cast<ComboBox*>(widget)) {
        if (index < 0 || index >= box->count())
            return false;
        box->choose(index);
        return true;
    }
    if (auto* box = qobject_cast<ListBox*>(widget)) {
        QListWidgetItem* entry = box->item(index);
        if (!entry)
            return false;
        if (box->isMultipleSelection())
            entry->setSelected(!entry->isSelected());
        else
            box->setCurrentItem(entry, QItemSelectionModel::ClearAndSelect);
        return true;
    }
    if (auto* view = qobject_cast<ListView*>(widget)) {
        if (index < 0 || index >= view->itemCount())
            return false;
        view->clearSelection();
        view->setItemSelected(index, true);
        emit view->cellClicked(index, column);
        return true;
    }
    return false;
}

bool tapAndHold(Dialog& dialog, int listId, int row) {
    ListView* view = dialog.listView(listId);
    if (!reachable(view) || row < 0 || row >= view->itemCount())
        return false;
    const QPoint pos(4, view->rowViewportPosition(row) + view->rowHeight(row) / 2);
    QContextMenuEvent event(QContextMenuEvent::Mouse, pos, view->viewport()->mapToGlobal(pos));
    QApplication::sendEvent(view->viewport(), &event);
    return true;
}

bool tapAndHoldText(Dialog& dialog, int editId, int position) {
    Edit* field = dialog.edit(editId);
    if (!reachable(field) || position < 0 || position > field->textLength())
        return false;
    if (field->layout())
        field->layout()->activate();
    // Where the stylus lands: the caret's place at that position (the caret is put back, the
    // edit itself moves it there when the hold begins).
    const std::pair<int, int> selection = field->sel();
    field->setCaretPos(position);
    QWidget* target = nullptr;
    QPoint pos;
    if (auto* plain = qobject_cast<QPlainTextEdit*>(field->editor())) {
        target = plain->viewport();
        pos = plain->cursorRect().center();
    } else {
        target = field->editor();
        pos = target->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    }
    field->setSel(selection.first, selection.second);
    QContextMenuEvent event(QContextMenuEvent::Mouse, pos, target->mapToGlobal(pos));
    QApplication::sendEvent(target, &event);
    return true;
}

bool columnClick(Dialog& dialog, int listId, int column) {
    ListView* view = dialog.listView(listId);
    if (!reachable(view) || column < 0 || column >= view->columnCount())
        return false;
    emit view->horizontalHeader()->sectionClicked(column);
    return true;
}

bool dragColumnDivider(Dialog& dialog, int listId, int column, int width) {
    ListView* view = dialog.listView(listId);
    if (!reachable(view) || column < 0 || column >= view->columnCount())
        return false;
    QHeaderView* header = view->horizontalHeader();
    QWidget* target = header->viewport();
    // Press, move and release go through the header's own handling of a divider drag.
    header->resize(std::max(header->width(), header->length() + width + 10),
                   std::max(header->height(), 20));
    const int divider = header->sectionViewportPosition(column) + header->sectionSize(column) - 1;
    const int y = header->height() / 2;
    sendMouse(target, QEvent::MouseButtonPress, QPoint(divider, y), Qt::LeftButton);
    sendMouse(target, QEvent::MouseMove,
              QPoint(header->sectionViewportPosition(column) + width - 1, y), Qt::LeftButton);
    sendMouse(target, QEvent::MouseButtonRelease,
              QPoint(header->sectionViewportPosition(column) + width - 1, y), Qt::NoButton);
    return view->columnWidth(column) == width;
}

bool dropDown(Dialog& dialog, int comboId) {
    ComboBox* box = dialog.comboBox(comboId);
    if (!reachable(box))
        return false;
    box->showPopup();
    return true;
}

bool closeUp(Dialog& dialog, int comboId) {
    ComboBox* box = dialog.comboBox(comboId);
    if (!box)
        return false;
    box->hidePopup();
    return true;
}

bool chooseCommand(Dialog& dialog, int commandId) {
    CommandBar* bar = dialog.commandBar();
    return bar && bar->trigger(commandId);
}

bool activate(Dialog& dialog, bool active) {
    if (!dialog.window())
        return false;
    QEvent event(active ? QEvent::WindowActivate : QEvent::WindowDeactivate);
    QApplication::sendEvent(dialog.window(), &event);
    return true;
}

bool saveScreenshot(const Dialog& dialog, const QString& path) {
    QWidget* window = dialog.window();
    if (!window)
        return false;
    if (QLayout* layout = window->layout())
        layout->activate();
    QDir().mkpath(QFileInfo(path).absolutePath());
    return window->grab().save(path, "PNG");
}

QString testOutputPath(const QString& fileName) {
    return QStringLiteral(TESSALY_TEST_OUTPUT_DIR "/") + fileName;
}

} // namespace tessaly::testkit
