#include "templates/template_pages.h"

#include "framework/resources/resources.h"
#include "framework/ui/menu.h"
#include "framework/ui/shell.h"

#include "resources/resource.h"
#include "settings/sms_settings.h"
#include "templates/factory_defaults.h"
#include "templates/template_editing.h"
#include "templates/template_editors.h"
#include <QHeaderView>

namespace tessaly::sms {

namespace {

constexpr int kKindColumnWidth = 80;

// Both pages have no menu of their own and no text to type.
void showPageBars(Dialog& page) {
    if (PropertySheet* sheet = static_cast<PropertyPage&>(page).sheet())
        if (CommandBar* bar = sheet->commandBar())
            bar->clearMenu();
    Shell::current().sipPreference(page.window(), SIP_DOWN);
}

} // namespace

// ---- Templates ----

TemplatesPage::TemplatesPage(SmsSettings& settings)
    : PropertyPage(IDD_PAGE_TEMPLATES)
    , settings_(settings) {}

bool TemplatesPage::onInitDialog() {
    checkItem(IDC_TEMPLATES_INSERT_GREETING,
              settings_.insertGreeting ? BST_CHECKED : BST_UNCHECKED);
    checkItem(IDC_TEMPLATES_INSERT_SIGNATURE,
              settings_.insertSignature ? BST_CHECKED : BST_UNCHECKED);
    if (ListView* list = listView(IDC_TEMPLATES_LIST)) {
        list->setExtendedStyle(LVS_EX_FULLROWSELECT);
        list->insertColumn(0, QString(), 0);
        list->setLastColumnFillsWidth(true);
    }
    reloadList();
    return true;
}

bool TemplatesPage::onSetActive() {
    showPageBars(*this);
    return true;
}

bool TemplatesPage::onKillActive() {
    settings_.insertGreeting = isItemChecked(IDC_TEMPLATES_INSERT_GREETING) == BST_CHECKED;
    settings_.insertSignature = isItemChecked(IDC_TEMPLATES_INSERT_SIGNATURE) == BST_CHECKED;
    return true;
}

void TemplatesPage::reloadList() {
    ListView* list = listView(IDC_TEMPLATES_LIST);
    if (!list)
        return;
    list->deleteAllItems();
    const QStringList names = sortedTemplateNames();
    for (int row = 0; row < names.size(); ++row)
        list->insertItem(row, names[row]);
}

QString TemplatesPage::nameAt(int row) const {
    ListView* list = listView(IDC_TEMPLATES_LIST);
    return list && row >= 0 && row < list->itemCount() ? list->itemText(row, 0) : QString();
}

void TemplatesPage::newTemplate() {
    EditTemplateDialog(this).doModal();
    reloadList();
}

void TemplatesPage::editTemplate(int row) {
    const QString name = nameAt(row);
    if (name.isEmpty())
        return;
    EditTemplateDialog(name, this).doModal();
    reloadList();
}

void TemplatesPage::onCommand(int id) {
    switch (id) {
    case IDC_TEMPLATES_NEW:
        newTemplate();
        break;
    case IDC_TEMPLATES_FACTORY_SETTINGS:
        if (restoreFactoryTemplates(false, window())) {
            checkItem(IDC_TEMPLATES_INSERT_GREETING, BST_CHECKED);
            checkItem(IDC_TEMPLATES_INSERT_SIGNATURE, BST_CHECKED);
        }
        reloadList();
        break;
    default:
        PropertyPage::onCommand(id);
    }
}

void TemplatesPage::onListClick(int id, int row, int) {
    if (id == IDC_TEMPLATES_LIST)
        editTemplate(row);
}

void TemplatesPage::onListKeyDown(int id, int virtualKey) {
    if (id == IDC_TEMPLATES_LIST && virtualKey == VK_RETURN)
        if (ListView* list = listView(id))
            editTemplate(list->selectedRow());
}

void TemplatesPage::onListTapAndHold(int id, int row, QPoint screenPos) {
    if (id != IDC_TEMPLATES_LIST)
        return;
    const QString name = nameAt(row);
    // Below the last row only "New" makes sense.
    const int command =
        name.isEmpty() ? trackContextMenu(*this, screenPos, {IDM_CONTEXT_EDIT, IDM_CONTEXT_DELETE})
                       : trackContextMenu(*this, screenPos, {});
    switch (command) {
    case IDM_CONTEXT_NEW:
        newTemplate();
        break;
    case IDM_CONTEXT_EDIT:
        editTemplate(row);
        break;
    case IDM_CONTEXT_DELETE:
        TemplateStore::deleteTemplate(name);
        reloadList();
        break;
    default:
        break;
    }
}

// ---- Variables ----

VariablesPage::VariablesPage()
    : PropertyPage(IDD_PAGE_VARIABLES) {}

bool VariablesPage::onInitDialog() {
    if (ListView* list = listView(IDC_VARIABLES_LIST)) {
        list->setExtendedStyle(LVS_EX_FULLROWSELECT);
        list->insertColumn(0, loadString(IDS_VARIABLES_COLUMN_NAME), 0);
        list->insertColumn(1, loadString(IDS_VARIABLES_COLUMN_KIND), kKindColumnWidth);
        list->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    }
    reloadList();
    return true;
}

bool VariablesPage::onSetActive() {
    showPageBars(*this);
    return true;
}

void VariablesPage::reloadList(const QString& select) {
    ListView* list = listView(IDC_VARIABLES_LIST);
    if (!list)
        return;
    list->deleteAllItems();
    const QStringList names = sortedVariableNames();
    for (int row = 0; row < names.size(); ++row) {
        list->insertItem(row, names[row]);
        list->setItemText(row, 1, variableKindText(names[row]));
        if (!select.isEmpty() && names[row] == select) {
            list->setItemSelected(row, true);
            list->ensureVisible(row);
        }
    }
}

QString VariablesPage::nameAt(int row) const {
    ListView* list = listView(IDC_VARIABLES_LIST);
    return list && row >= 0 && row < list->itemCount() ? list->itemText(row, 0) : QString();
}

void VariablesPage::newVariable() {
    EditVariableDialog(this).doModal();
    reloadList();
}

void VariablesPage::editVariable(int row) {
    const QString name = nameAt(row);
    if (name.isEmpty())
        return;
    EditVariableDialog(name, this).doModal();
    reloadList(name);
}

void VariablesPage::onCommand(int id) {
    switch (id) {
    case IDC_VARIABLES_NEW:
        newVariable();
        break;
    case IDC_VARIABLES_FACTORY_SETTINGS:
        restoreFactoryVariables(false, window());
        reloadList();
        break;
    default:
        PropertyPage::onCommand(id);
    }
}

void VariablesPage::onListClick(int id, int row, int) {
    if (id == IDC_VARIABLES_LIST)
        editVariable(row);
}

void VariablesPage::onListKeyDown(int id, int virtualKey) {
    if (id == IDC_VARIABLES_LIST && virtualKey == VK_RETURN)
        if (ListView* list = listView(id))
            editVariable(list->selectedRow());
}

void VariablesPage::onListTapAndHold(int id, int row, QPoint screenPos) {
    const QString name = nameAt(row);
    if (id != IDC_VARIABLES_LIST || name.isEmpty())
        return;
    if (trackContextMenu(*this, screenPos, {IDM_CONTEXT_NEW, IDM_CONTEXT_EDIT}) !=
        IDM_CONTEXT_DELETE)
        return;
    TemplateStore::unregisterUserVariable(name);
    reloadList();
    if (ListView* list = listView(IDC_VARIABLES_LIST))
        list->clearSelection();
}

} // namespace tessaly::sms
