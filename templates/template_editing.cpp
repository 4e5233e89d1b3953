#include "templates/template_editing.h"
#include "util/box_caption.h"

#include "framework/resources/resources.h"
#include "framework/ui/useragent.h"
#include "resources/resource.h"
#include "templates/placeholder_expander.h"

#include <algorithm>
#include <utility>

namespace tessaly::sms {

namespace {

bool codePointLess(const QString& left, const QString& right) {
    // UTF-16 unit order differs from code-point order only between surrogates and U+E000 and up.
    const QList<uint> leftPoints = left.toUcs4();
    const QList<uint> rightPoints = right.toUcs4();
    return std::ranges::lexicographical_compare(leftPoints, rightPoints);
}

int ask(QWidget* owner, int questionId, UINT buttons) {
    return UserAgent::current().messageBox(owner, loadString(questionId), boxCaption(),
                                           buttons | MB_ICONQUESTION);
}

void refuse(QWidget* owner, int messageId) {
    UserAgent::current().messageBox(owner, loadString(messageId), boxCaption(),
                                    MB_OK | MB_ICONSTOP);
}

bool templateExists(const QString& name) {
    return TemplateStore::templateNames().contains(name, Qt::CaseInsensitive);
}

} // namespace

QStringList sortedByCodePoint(QStringList names) {
    std::ranges::stable_sort(names, codePointLess);
    return names;
}

QStringList sortedTemplateNames() {
    return sortedByCodePoint(TemplateStore::templateNames());
}

QStringList sortedVariableNames() {
    return sortedByCodePoint(TemplateStore::variableNames());
}

QString variableKindText(const QString& name) {
    return loadString(TemplateStore::isComputedVariable(name) ? IDS_KIND_CALCULATING
                                                              : IDS_KIND_LIST_SELECTION);
}

// ---- VariableValueList ----

VariableValueList VariableValueList::of(const VariableDefinition& variable) {
    VariableValueList list;
    list.values_ = variable.values;
    list.defaultRow_ = int(variable.values.indexOf(variable.defaultValue));
    list.extendable_ = !TemplateStore::isComputedVariable(variable.name);
    return list;
}

QString VariableValueList::defaultValue() const {
    return defaultRow_ >= 0 ? values_.at(defaultRow_) : QString();
}

bool VariableValueList::setChecked(int row, bool checked) {
    if (row < 0 || row >= int(values_.size()))
        return false;
    const int newDefault = checked ? row : (row == defaultRow_ ? -1 : defaultRow_);
    return std::exchange(defaultRow_, newDefault) != newDefault;
}

bool VariableValueList::setRowText(int row, const QString& text) {
    if (!extendable_ || row < 0 || row >= rowCount())
        return false;
    if (isNewValueRow(row)) {
        if (text.isEmpty())
            return false;
        values_.append(text);
        return true;
    }
    if (text.isEmpty())
        return removeRow(row);
    if (values_.at(row) == text)
        return false;
    values_[row] = text;
    return true;
}

bool VariableValueList::removeRow(int row) {
    if (!extendable_ || row < 0 || row >= int(values_.size()))
        return false;
    values_.removeAt(row);
    if (defaultRow_ == row)
        defaultRow_ = -1;
    else if (defaultRow_ > row)
        --defaultRow_;
    return true;
}

// ---- Saving ----

EditorStep saveTemplate(const TemplateEdit& edit, QWidget* owner) {
    if (edit.name == edit.loadedName && edit.text == edit.loadedText)
        return EditorStep::Close;
    if (ask(owner, IDS_SAVE_CHANGES_QUESTION, MB_OKCANCEL) != IDOK)
        return EditorStep::Close;
    if (edit.name.isEmpty()) {
        refuse(owner, IDS_TEMPLATE_NAME_EMPTY);
        return EditorStep::Stay;
    }
    if (edit.text.isEmpty()) {
        refuse(owner, IDS_TEMPLATE_BODY_EMPTY);
        return EditorStep::Stay;
    }
    const QString body = PlaceholderExpander::editorTextToBody(edit.text, edit.loadedBody);
    if (edit.isNew) {
        if (templateExists(edit.name) && ask(owner, IDS_TEMPLATE_EXISTS, MB_YESNO) != IDYES)
            return EditorStep::Stay;
    } else if (edit.name != edit.loadedName) {
        TemplateStore::deleteTemplate(edit.loadedName);
    }
    TemplateStore::writeTemplate(edit.name, body);
    return EditorStep::Close;
}

int variableNameProblem(const QString& name, const QString& loadedName,
                        const QStringList& existingNames, int userAddedCount) {
    if (name.contains(u'\\'))
        return IDS_VARIABLE_NAME_BACKSLASH;
    const bool sameVariable =
        !loadedName.isEmpty() && name.compare(loadedName, Qt::CaseInsensitive) == 0;
    if (!sameVariable && existingNames.contains(name, Qt::CaseInsensitive))
        return IDS_VARIABLE_NAME_TAKEN;
    if (loadedName.isEmpty() && userAddedCount >= kMostUserVariables)
        return IDS_VARIABLE_LIMIT;
    return 0;
}

EditorStep saveVariable(const VariableEdit& edit, QWidget* owner) {
    const bool renamed = !edit.loadedName.isEmpty() && edit.name != edit.loadedName;
    const bool asks =
        edit.list.isExtendable() || renamed || edit.list.defaultRow() != edit.loaded.defaultRow();
    if (!asks || ask(owner, IDS_SAVE_CHANGES_QUESTION, MB_OKCANCEL) != IDOK)
        return EditorStep::Close;
    if (edit.name.isEmpty()) {
        refuse(owner, IDS_VARIABLE_NAME_EMPTY);
        return EditorStep::Stay;
    }
    const bool registers = edit.loadedName.isEmpty() || renamed;
    if (registers) {
        if (const int problem =
                variableNameProblem(edit.name, edit.loadedName, TemplateStore::variableNames(),
                                    int(TemplateStore::userAddedVariables().size()))) {
            refuse(owner, problem);
            return EditorStep::Stay;
        }
    }
    // Checked before the rename, which deletes the old key: a refused save must lose nothing.
    if (registers && edit.list.values().isEmpty()) {
        refuse(owner, IDS_VARIABLE_WITHOUT_VALUES);
        return EditorStep::Stay;
    }
    if (renamed)
        TemplateStore::renameVariable(edit.loadedName, edit.name);
    if (registers)
        TemplateStore::registerUserVariable(edit.name);
    TemplateStore::writeVariable({edit.name, edit.list.defaultValue(), edit.list.values()});
    return EditorStep::Close;
}

} // namespace tessaly::sms
