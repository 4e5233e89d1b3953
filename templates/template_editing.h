#pragma once

// What the Templates and Variables pages and their two edit dialogs do with the store, without
// windows: the sorted lists, the kind of a variable, the value list of the variable editor, and
// the checks, questions and writes of saving a template or a variable. Questions and messages
// go through the UserAgent, captioned with the application title.

#include "templates/template_store.h"

#include <QString>
#include <QStringList>

class QWidget;

namespace tessaly::sms {

// The longest names the editors take: a template's name must fit the lists' 522-character name
// buffer with its terminating zero (a longer one would end the listing), and a variable's name
// is a registry key name, at most 255 characters (a longer one could not be written).
constexpr int kLongestTemplateName = 521;
constexpr int kLongestVariableName = 255;
// The store counts values with two digits: a 100th value would hide all but the first eleven.
constexpr int kMostValues = 99;

// Ascending, case-sensitive, by code point: "Zebra" before "apple".
QStringList sortedByCodePoint(QStringList names);
QStringList sortedTemplateNames();
QStringList sortedVariableNames();

// "Calculating" for the five variables computed when sending, "List selection" for the others.
QString variableKindText(const QString& name);

// The variable editor's list: the values in order, the one whose check box is set (the
// default), and for the variables whose values may be extended a last "<<New value>>" row
// while there is room for another value.
// The computed variables keep their values: only the default can change.
class VariableValueList {
public:
    VariableValueList() = default; // a new variable: no values, extendable
    // The variable as stored; the default row is the first value equal to the default.
    static VariableValueList of(const VariableDefinition& variable);

    const QStringList& values() const { return values_; }
    bool isExtendable() const { return extendable_; }
    // Rows of the list, the "<<New value>>" row included.
    int rowCount() const { return int(values_.size()) + (hasNewValueRow() ? 1 : 0); }
    bool isNewValueRow(int row) const { return hasNewValueRow() && row == int(values_.size()); }
    // -1 when no row is checked.
    int defaultRow() const { return defaultRow_; }
    QString defaultValue() const;

    // Checks the row (unchecking the others) or, with checked false, unchecks it. The
    // "<<New value>>" row cannot be checked. False when nothing changed.
    bool setChecked(int row, bool checked);
    // Text entered into a row: on the "<<New value>>" row a non-empty text adds a value; on a
    // value row it replaces the value, and an empty text removes the row. False when nothing
    // changed (also for the computed variables, whose values are fixed).
    bool setRowText(int row, const QString& text);
    bool removeRow(int row);

    bool operator==(const VariableValueList&) const = default;

private:
    bool hasNewValueRow() const { return extendable_ && values_.size() < kMostValues; }

    QStringList values_;
    int defaultRow_ = -1;
    bool extendable_ = true;
};

// What the dialog does after its OK was handled.
enum class EditorStep {
    Close, // saved, unchanged or cancelled
    Stay,  // a message was shown; the person goes on editing
};

struct TemplateEdit {
    bool isNew = true;
    QString loadedName;
    QString loadedBody; // the stored body, its placeholders' names are kept on save
    QString loadedText; // the body as the editor showed it ("<value>" marks)
    QString name;
    QString text;
};

// OK of the Edit Template dialog: unchanged closes; otherwise "Do you want to save changes?"
// (Cancel closes unsaved); an empty name or body is refused; in new mode an existing name is
// overwritten only after "Template name already exists..." (No: stay); in edit mode a renamed
// template replaces the old one, and an existing template of the new name, without asking.
EditorStep saveTemplate(const TemplateEdit& edit, QWidget* owner);

struct VariableEdit {
    QString loadedName; // empty for a new variable
    VariableValueList loaded;
    QString name;
    VariableValueList list;
};

// The most variables a person may add: the store counts them with two digits.
constexpr int kMostUserVariables = 99;

// Why a new or renamed variable may not take `name` (a string id), or 0 when it may: a
// backslash would make nested registry keys, a name taken by another variable (names compare
// without case, as the registry does) would overwrite it, and past kMostUserVariables the
// count would no longer fit. `loadedName` is empty for a new variable.
int variableNameProblem(const QString& name, const QString& loadedName,
                        const QStringList& existingNames, int userAddedCount);

// OK of the Edit Variable dialog: "Do you want to save changes?" (always for a list variable,
// for a computed one only when its default changed); an empty name is refused, and a name
// variableNameProblem finds a problem with, saying why; a new or renamed
// variable without values is refused; a renamed variable takes the templates' placeholders with
// it; a new or renamed one is registered as added by the user; then default and values are
// written.
EditorStep saveVariable(const VariableEdit& edit, QWidget* owner);

} // namespace tessaly::sms
