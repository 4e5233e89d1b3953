#include "templates/template_editors.h"

#include "framework/resources/resources.h"
#include "framework/ui/menu.h"
#include "framework/ui/shell.h"
#include "resources/resource.h"
#include "templates/placeholder_expander.h"
#include "templates/placeholder_texts.h"
#include "util/context_menu.h"

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QHeaderView>

#include <algorithm>
#include <vector>

namespace tessaly::sms {

namespace {

// Posted after a row of the value list changed, so that the list is filled again once the
// in-place editor or the check box has finished with its item.
constexpr UINT kRefillValues = WM_APP + 1;

constexpr int kMarkColumnWidth = 20;
constexpr char16_t kMark = u'\u25CF';

} // namespace

// ---- Edit Template ----

EditTemplateDialog::EditTemplateDialog(Dialog* parent)
    : Dialog(IDD_EDIT_TEMPLATE, parent)
    , valueMenu_(*this, IDC_EDIT_TEMPLATE_BODY, ValueMenuContext::TemplateEditor) {}

EditTemplateDialog::EditTemplateDialog(const QString& name, Dialog* parent)
    : EditTemplateDialog(parent) {
    edit_.isNew = false;
    edit_.loadedName = name;
    edit_.loadedBody = TemplateStore::readTemplate(name);
}

bool EditTemplateDialog::onInitDialog() {
    setItemText(IDC_EDIT_TEMPLATE_NAME, edit_.loadedName);
    if (Edit* name = edit(IDC_EDIT_TEMPLATE_NAME))
        name->setLimitText(kLongestTemplateName);
    if (Edit* body = edit(IDC_EDIT_TEMPLATE_BODY)) {
        body->setText(PlaceholderExpander::templateToComposerText(edit_.loadedBody));
        // As the edit gives it back (line breaks as "\r\n"), so that an untouched body is
        // recognised as unchanged.
        edit_.loadedText = body->text();
        // The body wraps; a sideways scroll bar would only take a line away.
        if (auto* plain = qobject_cast<QAbstractScrollArea*>(body->editor()))
            plain->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }
    if (ComboBox* variables = comboBox(IDC_EDIT_TEMPLATE_VARIABLE)) {
        for (const QString& name : sortedVariableNames())
            variables->addString(name);
    }
    valueMenu_.attach();
    Shell::current().sipPreference(window(), SIP_UP);
    return true;
}

void EditTemplateDialog::onOK() {
    edit_.name = itemText(IDC_EDIT_TEMPLATE_NAME);
    edit_.text = itemText(IDC_EDIT_TEMPLATE_BODY);
    if (saveTemplate(edit_, window()) == EditorStep::Close)
        endDialog(IDOK);
}

void EditTemplateDialog::onComboSelChange(int id) {
    ComboBox* variables = comboBox(id);
    if (id != IDC_EDIT_TEMPLATE_VARIABLE || !variables || variables->curSel() < 0)
        return;
    insertVariable(variables->itemText(variables->curSel()));
    setFocusItem(IDC_EDIT_TEMPLATE_BODY);
}

void EditTemplateDialog::insertVariable(const QString& name) {
    Edit* body = edit(IDC_EDIT_TEMPLATE_BODY);
    if (!body || name.isEmpty())
        return;
    QString value = TemplateStore::readDefault(name);
    if (value.isEmpty())
        value = name;
    const QString placeholder = TemplateStore::isComputedVariable(name)
                                    ? u'[' + name + placeholderColon() + value + u']'
                                    : u'<' + value + u'>';
    const QString text = body->text();
    const int caret = std::clamp(body->sel().first, 0, int(text.size()));
    body->setText(text.left(caret) + placeholder + text.mid(caret));
    body->setCaretPos(caret + int(placeholder.size()));
    body->scrollCaret();
}

// ---- Edit Variable ----

EditVariableDialog::EditVariableDialog(Dialog* parent)
    : Dialog(IDD_EDIT_VARIABLE, parent) {}

EditVariableDialog::EditVariableDialog(const QString& name, Dialog* parent)
    : EditVariableDialog(parent) {
    edit_.loadedName = name;
    edit_.loaded = VariableValueList::of(TemplateStore::readVariable(name));
    edit_.list = edit_.loaded;
}

bool EditVariableDialog::onInitDialog() {
    setItemText(IDC_EDIT_VARIABLE_NAME, edit_.loadedName);
    if (Edit* name = edit(IDC_EDIT_VARIABLE_NAME)) {
        name->setReadOnly(!edit_.list.isExtendable());
        name->setLimitText(kLongestVariableName);
    }
    if (ListView* values = listView(IDC_EDIT_VARIABLE_VALUES)) {
        values->setExtendedStyle(LVS_EX_GRIDLINES | LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
        values->insertColumn(0, QString(), 0);
        values->insertColumn(1, QString(), kMarkColumnWidth, LVCFMT_CENTER);
        values->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
        // A value is changed where it stands: double tap, or "Edit" of the tap-and-hold menu.
        values->setEditTriggers(QAbstractItemView::DoubleClicked |
                                QAbstractItemView::EditKeyPressed);
        QObject::connect(values, &QTableWidget::cellChanged, values,
                         [this](int row, int column) { rowChanged(row, column); });
        // An editor closed without a change leaves an emptied "<<New value>>" row behind.
        QObject::connect(values->itemDelegate(), &QAbstractItemDelegate::closeEditor, values,
                         [this] { postMessage(kRefillValues); });
    }
    fillValueList();
    Shell::current().sipPreference(window(), SIP_UP);
    return true;
}

void EditVariableDialog::fillValueList() {
    ListView* values = listView(IDC_EDIT_VARIABLE_VALUES);
    if (!values)
        return;
    filling_ = true;
    values->deleteAllItems();
    const VariableValueList& list = edit_.list;
    for (int row = 0; row < list.rowCount(); ++row) {
        const bool newValueRow = list.isNewValueRow(row);
        values->insertItem(row, newValueRow ? loadString(IDS_NEW_VALUE_ROW) : list.values()[row]);
        QTableWidgetItem* value = values->item(row, 0);
        Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
        if (newValueRow) {
            value->setData(Qt::CheckStateRole, QVariant());
        } else {
            values->setItemText(row, 1, QString(QChar(kMark)));
            values->item(row, 1)->setFlags(flags);
            values->setItemChecked(row, row == list.defaultRow());
            flags |= Qt::ItemIsUserCheckable;
            if (list.isExtendable())
                flags |= Qt::ItemIsEditable;
        }
        value->setFlags(flags);
    }
    filling_ = false;
}

void EditVariableDialog::beginEditing(int row) {
    ListView* values = listView(IDC_EDIT_VARIABLE_VALUES);
    if (!values || !edit_.list.isExtendable() || row < 0 || row >= edit_.list.rowCount())
        return;
    QTableWidgetItem* value = values->item(row, 0);
    if (edit_.list.isNewValueRow(row)) {
        // The new value is typed into an empty row; leaving it empty puts the row back.
        filling_ = true;
        value->setText(QString());
        value->setFlags(value->flags() | Qt::ItemIsEditable);
        filling_ = false;
    }
    values->setCurrentItem(value);
    values->editItem(value);
}

void EditVariableDialog::rowChanged(int row, int column) {
    ListView* values = listView(IDC_EDIT_VARIABLE_VALUES);
    if (filling_ || !values || column != 0)
        return;
    const bool checked = values->isItemChecked(row);
    if (checked != (row == edit_.list.defaultRow()))
        edit_.list.setChecked(row, checked);
    else
        edit_.list.setRowText(row, values->itemText(row, 0));
    postMessage(kRefillValues);
}

QWidget* EditVariableDialog::rowEditor() const {
    ListView* values = listView(IDC_EDIT_VARIABLE_VALUES);
    return values ? values->indexWidget(values->currentIndex()) : nullptr;
}

void EditVariableDialog::commitEditedRow() {
    ListView* values = listView(IDC_EDIT_VARIABLE_VALUES);
    if (QWidget* editor = rowEditor()) {
        emit values->itemDelegate()->commitData(editor);
        emit values->itemDelegate()->closeEditor(editor);
    }
}

void EditVariableDialog::onMessage(UINT message, WPARAM, LPARAM) {
    // Not while the person is still typing into a row: its editor would go with the rows.
    if (message == kRefillValues && !rowEditor())
        fillValueList();
}

void EditVariableDialog::onListClick(int id, int row, int) {
    if (id == IDC_EDIT_VARIABLE_VALUES && edit_.list.isNewValueRow(row))
        beginEditing(row);
}

void EditVariableDialog::onListTapAndHold(int id, int row, QPoint screenPos) {
    if (id != IDC_EDIT_VARIABLE_VALUES || !edit_.list.isExtendable() || row < 0)
        return;
    const int newValueRow = edit_.list.rowCount() - 1;
    std::vector<int> leftOut;
    if (edit_.list.isNewValueRow(row))
        leftOut = {IDM_CONTEXT_EDIT, IDM_CONTEXT_DELETE};
    else if (!edit_.list.isNewValueRow(newValueRow)) // full: no room for another value
        leftOut = {IDM_CONTEXT_NEW};
    switch (trackContextMenu(*this, screenPos, leftOut)) {
    case IDM_CONTEXT_NEW:
        beginEditing(newValueRow);
        break;
    case IDM_CONTEXT_EDIT:
        beginEditing(row);
        break;
    case IDM_CONTEXT_DELETE:
        if (edit_.list.removeRow(row))
            fillValueList();
        break;
    default:
        break;
    }
}

void EditVariableDialog::onOK() {
    edit_.name = itemText(IDC_EDIT_VARIABLE_NAME);
    commitEditedRow();
    if (saveVariable(edit_, window()) == EditorStep::Close)
        endDialog(IDOK);
}

} // namespace tessaly::sms
