#include "templates/template_pages.h"

#include "framework/resources/resources.h"
#include "framework/ui/menu.h"
#include "framework/ui/shell.h"

#include "resources/resource.h"
#include "settings/sms_settings.h"
#include "templates/factory_defaults.h"
#include "templates/template_editing.h"
#include "templates/template_editors.h"
#include "util/context_menu.h"
#include <QHeaderView>

namespace tessaly::sms {

namespace {

constexpr int kKindColumnWidth = 80;

} // namespace

// ---- Both pages ----

StoreListPage::StoreListPage(int templateId, int listId)
    : CPpOptions(templateId, 0, SIP_FORCEDOWN)
    , listId_(listId) {}

QString StoreListPage::nameAt(int row) const {
    ListView* list = listView(listId_);
    return list && row >= 0 && row < list->itemCount() ? list->itemText(row, 0) : QString();
}

void StoreListPage::onListClick(int id, int row, int) {
    if (id == listId_)
        openEditor(row);
}

void StoreListPage::onListKeyDown(int id, int virtualKey) {
    if (id == listId_ && virtualKey == VK_RETURN)
        if (ListView* list = listView(id))
            openEditor(list->selectedRow());
}

// ---- Templates ----

TemplatesPage::TemplatesPage(OptionsEnvironment& environment)
    : StoreListPage(IDD_PAGE_TEMPLATES, IDC_TEMPLATES_LIST)
    , environment_(environment) {}

std::unique_ptr<PropertyPage> TemplatesPage::make(OptionsEnvironment& environment) {
    return std::make_unique<TemplatesPage>(environment);
}

bool TemplatesPage::onInitDialog() {
    if (ListView* list = listView(IDC_TEMPLATES_LIST)) {
        list->setExtendedStyle(LVS_EX_FULLROWSELECT);
        list->insertColumn(0, QString(), 0);
        list->setLastColumnFillsWidth(true);
    }
    // The list comes from the store, which needs no preferences of the library.
    reloadList();
    return StoreListPage::onInitDialog();
}

bool TemplatesPage::dataLoad() {
    const SmsSettings& settings = environment_.settings();
    checkItem(IDC_TEMPLATES_INSERT_GREETING, settings.insertGreeting ? BST_CHECKED : BST_UNCHECKED);
    checkItem(IDC_TEMPLATES_INSERT_SIGNATURE,
              settings.insertSignature ? BST_CHECKED : BST_UNCHECKED);
    return true;
}

bool TemplatesPage::dataSave() {
    SmsSettings& settings = environment_.settings();
    settings.insertGreeting = isItemChecked(IDC_TEMPLATES_INSERT_GREETING) == BST_CHECKED;
    settings.insertSignature = isItemChecked(IDC_TEMPLATES_INSERT_SIGNATURE) == BST_CHECKED;
    return true;
}

bool TemplatesPage::dataSetDefault() {
    if (restoreFactoryTemplates(false, window())) {
        const SmsSettings defaults;
        checkItem(IDC_TEMPLATES_INSERT_GREETING,
                  defaults.insertGreeting ? BST_CHECKED : BST_UNCHECKED);
        checkItem(IDC_TEMPLATES_INSERT_SIGNATURE,
                  defaults.insertSignature ? BST_CHECKED : BST_UNCHECKED);
    }
    reloadList();
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
    default:
        StoreListPage::onCommand(id);
    }
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
    : StoreListPage(IDD_PAGE_VARIABLES, IDC_VARIABLES_LIST) {}

std::unique_ptr<PropertyPage> VariablesPage::make(OptionsEnvironment&) {
    return std::make_unique<VariablesPage>();
}

bool VariablesPage::dataLoad() {
    return true;
}

bool VariablesPage::dataSave() {
    return true;
}

bool VariablesPage::dataSetDefault() {
    restoreFactoryVariables(false, window());
    reloadList();
    return true;
}

bool VariablesPage::onInitDialog() {
    if (ListView* list = listView(IDC_VARIABLES_LIST)) {
        list->setExtendedStyle(LVS_EX_FULLROWSELECT);
        list->insertColumn(0, loadString(IDS_VARIABLES_COLUMN_NAME), 0);
        list->insertColumn(1, loadString(IDS_VARIABLES_COLUMN_KIND), kKindColumnWidth);
        list->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    }
    reloadList();
    return StoreListPage::onInitDialog();
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

void VariablesPage::newVariable() {
    ListView* list = listView(IDC_VARIABLES_LIST);
    const QString selected = list ? nameAt(list->selectedRow()) : QString();
    EditVariableDialog(this).doModal();
    reloadList(selected);
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
    default:
        StoreListPage::onCommand(id);
    }
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
