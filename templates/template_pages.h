#pragma once

// The Templates and Variables pages of the options sheet. Their lists are read from the store
// and every change (an edit dialog's save, Delete, Factory Settings) is written to it at once;
// the Templates page's two check boxes show the settings record's insert-greeting and
// insert-signature flags and write them back when the page is left.

#include "framework/ui/property_sheet.h"

class SmsSettings;

namespace tessaly::sms {

class TemplatesPage : public PropertyPage {
public:
    // `settings` must outlive the page.
    explicit TemplatesPage(SmsSettings& settings);

    // Fills the list again from the store, names in code-point order.
    void reloadList();
    // Opens Edit Template for a new template, or for the template in `row`, and reloads.
    void newTemplate();
    void editTemplate(int row);

protected:
    bool onInitDialog() override;
    bool onSetActive() override;
    bool onKillActive() override;
    void onCommand(int id) override;
    void onListClick(int id, int row, int column) override;
    void onListKeyDown(int id, int virtualKey) override;
    void onListTapAndHold(int id, int row, QPoint screenPos) override;

private:
    QString nameAt(int row) const;

    SmsSettings& settings_;
};

class VariablesPage : public PropertyPage {
public:
    VariablesPage();

    // Fills the list again (names in code-point order, with their kind) and selects `select`
    // when it is listed.
    void reloadList(const QString& select = QString());
    void newVariable();
    void editVariable(int row);

protected:
    bool onInitDialog() override;
    bool onSetActive() override;
    void onCommand(int id) override;
    void onListClick(int id, int row, int column) override;
    void onListKeyDown(int id, int virtualKey) override;
    void onListTapAndHold(int id, int row, QPoint screenPos) override;

private:
    QString nameAt(int row) const;
};

} // namespace tessaly::sms
