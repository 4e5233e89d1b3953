#pragma once

// The Templates and Variables pages of the options sheet. Their lists are read from the store
// and every change (an edit dialog's save, Delete, Factory Settings) is written to it at once;
// the Templates page's two check boxes show the settings record's insert-greeting and
// insert-signature flags and write them back when the page is left. Neither page has a menu
// or a text field: the command bar stays empty and the input panel goes down.

#include "settings/options_page.h"
#include "settings/options_sheet.h"

#include <memory>

namespace tessaly::sms {

// What both pages share: a list of names from the store, whose row opens its editor on a tap
// or on Enter.
class StoreListPage : public CPpOptions {
public:
    // The name in `row` of the list, or empty text.
    QString nameAt(int row) const;

protected:
    StoreListPage(int templateId, int listId);
    virtual void openEditor(int row) = 0;
    void onListClick(int id, int row, int column) override;
    void onListKeyDown(int id, int virtualKey) override;

private:
    int listId_;
};

class TemplatesPage final : public StoreListPage {
public:
    // The environment must outlive the page.
    explicit TemplatesPage(OptionsEnvironment& environment);
    static std::unique_ptr<PropertyPage> make(OptionsEnvironment& environment);

    // The check boxes from the settings record; to it when the page is left.
    bool dataLoad() override;
    bool dataSave() override;
    // "Factory Settings": after its question, the nine factory templates replace the user's,
    // and both check boxes are set again.
    bool dataSetDefault() override;

    // Fills the list again from the store, names in code-point order.
    void reloadList();
    // Opens Edit Template for a new template, or for the template in `row`, and reloads.
    void newTemplate();
    void editTemplate(int row);

protected:
    bool onInitDialog() override;
    void onCommand(int id) override;
    void openEditor(int row) override { editTemplate(row); }
    void onListTapAndHold(int id, int row, QPoint screenPos) override;

private:
    OptionsEnvironment& environment_;
};

class VariablesPage final : public StoreListPage {
public:
    VariablesPage();
    static std::unique_ptr<PropertyPage> make(OptionsEnvironment& environment);

    // The list is the page's only control; it is read in the initialisation and after every
    // change, and nothing waits to be stored when the page is left.
    bool dataLoad() override;
    bool dataSave() override;
    // "Factory Settings": after its question, the eleven factory variables replace the user's.
    bool dataSetDefault() override;

    // Fills the list again (names in code-point order, with their kind) and selects `select`
    // when it is listed.
    void reloadList(const QString& select = QString());
    void newVariable();
    void editVariable(int row);

protected:
    bool onInitDialog() override;
    void onCommand(int id) override;
    void openEditor(int row) override { editVariable(row); }
    void onListTapAndHold(int id, int row, QPoint screenPos) override;
};

} // namespace tessaly::sms
