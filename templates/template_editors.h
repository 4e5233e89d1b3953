#pragma once

// The Edit Template and Edit Variable dialogs, run modally over the options sheet. Both save on
// OK through saveTemplate / saveVariable, which ask and refuse as needed; a refusal keeps the
// dialog open.

#include "framework/ui/dialog.h"
#include "templates/edit_value_menu.h"
#include "templates/template_editing.h"

namespace tessaly::sms {

class EditTemplateDialog : public Dialog {
public:
    // A new template.
    explicit EditTemplateDialog(Dialog* parent = nullptr);
    // The stored template `name`, its placeholders shown as the composer shows them ("<value>"
    // for list variables).
    EditTemplateDialog(const QString& name, Dialog* parent);

    // Puts the variable's placeholder in at the body's caret: "[name:default]" for a computed
    // variable, "<default>" for the others (the name when there is no default).
    void insertVariable(const QString& name);

protected:
    bool onInitDialog() override;
    void onOK() override;
    void onComboSelChange(int id) override;

private:
    TemplateEdit edit_;
    EditValueMenu valueMenu_;
};

class EditVariableDialog : public Dialog {
public:
    // A new variable.
    explicit EditVariableDialog(Dialog* parent = nullptr);
    // The stored variable `name`; a computed one keeps its name and values, only its default
    // can change.
    EditVariableDialog(const QString& name, Dialog* parent);

    const VariableValueList& valueList() const { return edit_.list; }

protected:
    bool onInitDialog() override;
    void onOK() override;
    void onListClick(int id, int row, int column) override;
    void onListTapAndHold(int id, int row, QPoint screenPos) override;
    void onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void fillValueList();
    void beginEditing(int row);
    void rowChanged(int row, int column);
    // The in-place editor of the row being typed into, or nullptr.
    QWidget* rowEditor() const;
    // A value still being typed when OK is tapped counts.
    void commitEditedRow();

    VariableEdit edit_;
    bool filling_ = false;
};

} // namespace tessaly::sms
