#pragma once

// Templates and variables in the per-user profile (HKCU\Software\<key>\<profile>):
//
//   Templates                  one value per template: name = body
//   Variables\<name>           "Def" = default, "01".."NN" = values, "Values" = "NN"
//   User-Added                 "01".."NN" = names of the variables the user created, "Values"
//
// Numbered entries are walked with a key text that starts at "00" and advances ("%02d") while it
// compares lower than the stored "Values" text, so the scheme is two-digit: "100" sorts below
// "99" and ends the walk early. The store keeps no state; every call reads the registry.

#include <QString>
#include <QStringList>

#include <optional>
#include <unordered_map>
#include <vector>

namespace tessaly::sms {

struct TemplateDefinition {
    QString name;
    QString body;

    bool operator==(const TemplateDefinition&) const = default;
};

struct VariableDefinition {
    QString name;
    QString defaultValue;
    QStringList values; // in list order; a missing entry inside the count reads as empty text

    bool operator==(const VariableDefinition&) const = default;
};

// The variable that a marked value belongs to, and the value to put after its colon.
struct VariableMatch {
    QString name;
    QString value;

    bool operator==(const VariableMatch&) const = default;
};

// The variable that a marked value belongs to, for many marks: every variable is read once, and
// each answer is the one TemplateStore::findVariableOfValue gives while the store is unchanged.
// A text longer than every name and value is answered without being read through.
class VariableLookup {
public:
    VariableLookup();
    std::optional<VariableMatch> find(QStringView text) const;

private:
    std::unordered_map<QString, QString> variableOf_; // name or value: the first variable with it
    qsizetype longest_ = 0;
};

class TemplateStore {
public:
    // Constant-initialised, so that the module's start-up may use them before any dynamic
    // initialiser has run.
    static constexpr QLatin1StringView kTemplatesSection{"Templates"};
    static constexpr QLatin1StringView kVariablesSection{"Variables"};
    static constexpr QLatin1StringView kUserAddedSection{"User-Added"};
    static constexpr QLatin1StringView kDefaultEntry{"Def"};
    static constexpr QLatin1StringView kCountEntry{"Values"};

    // Template names in the registry's order (creation order). Stops at the first name the
    // 522-character name buffer cannot hold, as the enumeration fails there.
    static QStringList templateNames();
    static std::vector<TemplateDefinition> templates();
    // An absent template reads as empty text.
    static QString readTemplate(const QString& name);
    static void writeTemplate(const QString& name, const QString& body);
    static void deleteTemplate(const QString& name);

    // Subkeys of "Variables" in the registry's order (case-insensitive name order).
    static QStringList variableNames();
    static VariableDefinition readVariable(const QString& name);
    // Only the "Def" entry; empty text when there is none.
    static QString readDefault(const QString& name);
    // Writes "Def", "01".."NN" and "Values"; entries above NN from a longer list stay behind.
    static void writeVariable(const VariableDefinition& variable);
    static void deleteVariableKey(const QString& name);

    // The names in "User-Added", walked like a variable's values.
    static QStringList userAddedVariables();
    // Appends an entry without looking for the name first.
    static void registerUserVariable(const QString& name);
    // The Variables page's Delete: the "User-Added" walk below, then the variable's key unless
    // it is one of the computed variables. See docs/templates.md for the walk's results.
    static void unregisterUserVariable(const QString& name);

    // Rewrites the placeholders of every template whose variable part equals oldName (without
    // regard to case) to newName and deletes the old key. The caller then writes the variable
    // under its new name and registers it; the old "User-Added" entry stays.
    static void renameVariable(const QString& oldName, const QString& newName);

    // The variable whose name or one of whose values is exactly `text`: the built-in names in
    // their order first, then the user-added ones; failing that, a "Sender:", "Contact:" or
    // "Recipient:" prefix. nullopt when nothing matches.
    static std::optional<VariableMatch> findVariableOfValue(const QString& text);

    // "Variables\<name>".
    static QString variableSection(const QString& name);
    // Whether `name` is one of the five variables computed when sending (exact comparison).
    static bool isComputedVariable(const QString& name);
    // The entry names "01".."NN" that the walk reads for a given "Values" text.
    static QStringList walkKeys(const QString& countText);
    // "%02d".
    static QString twoDigit(int number);

    // The walk stops here even when the "Values" text is never reached (a damaged text such
    // as "x9" would otherwise walk for ever); no counter the module writes comes near it.
    static constexpr int kWalkLimit = 999;
};

} // namespace tessaly::sms
