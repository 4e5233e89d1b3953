#include "templates/template_store.h"

#include "framework/registry/profile.h"
#include "framework/registry/registry.h"
#include "framework/resources/resources.h"
#include "resources/resource.h"
#include "templates/placeholder_texts.h"

#include <algorithm>
#include <array>

namespace tessaly::sms {

namespace {

// The name buffer the lists have always used; longer names end an enumeration.
constexpr DWORD kNameBufferLength = 522;

LPCWSTR wide(const QString& text) {
    return reinterpret_cast<LPCWSTR>(text.utf16());
}

QString read(const QString& section, const QString& entry) {
    return profile::getProfileString(section, entry);
}

// Reads an entry as text that is never null, so that writing it back writes an (empty) entry
// instead of deleting one.
QString readNonNull(const QString& section, const QString& entry) {
    QString text = read(section, entry);
    if (text.isNull())
        text = QStringLiteral("");
    return text;
}

void write(const QString& section, const QString& entry, const QString& text) {
    profile::writeProfileString(section, entry, text);
}

void deleteEntry(const QString& section, const QString& entry) {
    profile::writeProfileString(section, entry, QString());
}

// Opens a section below the profile key without creating it; nullptr when it is missing.
HKEY openSection(const QString& section) {
    HKEY app = profile::getAppRegistryKey();
    if (app == nullptr)
        return nullptr;
    HKEY key = nullptr;
    const LONG result = RegOpenKeyExW(app, wide(section), 0, 0, &key);
    RegCloseKey(app);
    return result == ERROR_SUCCESS ? key : nullptr;
}

template <typename Enumerate> QStringList enumerateNames(const QString& section, Enumerate next) {
    QStringList names;
    HKEY key = openSection(section);
    if (key == nullptr)
        return names;
    std::array<WCHAR, kNameBufferLength> buffer{};
    for (DWORD index = 0;; ++index) {
        DWORD length = kNameBufferLength;
        if (next(key, index, buffer.data(), &length) != ERROR_SUCCESS)
            break;
        names.append(QString::fromUtf16(buffer.data(), length));
    }
    RegCloseKey(key);
    return names;
}

QStringList valueNames(const QString& section) {
    return enumerateNames(section, [](HKEY key, DWORD index, LPWSTR name, LPDWORD length) {
        return RegEnumValueW(key, index, name, length, nullptr, nullptr, nullptr, nullptr);
    });
}

QStringList subkeyNames(const QString& section) {
    return enumerateNames(section, [](HKEY key, DWORD index, LPWSTR name, LPDWORD length) {
        return RegEnumKeyExW(key, index, name, length, nullptr, nullptr, nullptr, nullptr);
    });
}

QStringList walkEntries(const QString& section) {
    QStringList texts;
    for (const QString& key : TemplateStore::walkKeys(read(section, TemplateStore::kCountEntry)))
        texts.append(readNonNull(section, key));
    return texts;
}

// The span of each placeholder "[...]" in `body`, brackets included, in text order.
struct Span {
    qsizetype start;
    qsizetype end; // one past the "]"
};

std::vector<Span> placeholderSpans(const QString& body) {
    std::vector<Span> spans;
    qsizetype from = 0;
    for (;;) {
        const qsizetype open = body.indexOf(u'[', from);
        if (open < 0)
            break;
        const qsizetype close = body.indexOf(u']', open + 1);
        if (close < 0)
            break;
        spans.push_back({open, close + 1});
        from = close + 1;
    }
    return spans;
}

} // namespace

QString TemplateStore::twoDigit(int number) {
    return QString::asprintf("%02d", number);
}

QString TemplateStore::variableSection(const QString& name) {
    return QString(kVariablesSection) + u'\\' + name;
}

bool TemplateStore::isComputedVariable(const QString& name) {
    if (name.isEmpty())
        return false;
    for (int id = IDS_COMPUTED_VARIABLES_FIRST; id <= IDS_BUILTIN_VARIABLES_LAST; ++id) {
        if (name == loadString(id))
            return true;
    }
    return false;
}

QStringList TemplateStore::walkKeys(const QString& countText) {
    QStringList keys;
    QString key = QStringLiteral("00");
    for (int index = 1; index <= kWalkLimit && key < countText; ++index) {
        key = twoDigit(index);
        keys.append(key);
    }
    return keys;
}

QStringList TemplateStore::templateNames() {
    return valueNames(kTemplatesSection);
}

std::vector<TemplateDefinition> TemplateStore::templates() {
    std::vector<TemplateDefinition> result;
    for (const QString& name : templateNames())
        result.push_back({name, readTemplate(name)});
    return result;
}

QString TemplateStore::readTemplate(const QString& name) {
    return readNonNull(kTemplatesSection, name);
}

void TemplateStore::writeTemplate(const QString& name, const QString& body) {
    write(kTemplatesSection, name, body.isNull() ? QStringLiteral("") : body);
}

void TemplateStore::deleteTemplate(const QString& name) {
    deleteEntry(kTemplatesSection, name);
}

QStringList TemplateStore::variableNames() {
    return subkeyNames(kVariablesSection);
}

VariableDefinition TemplateStore::readVariable(const QString& name) {
    VariableDefinition variable;
    variable.name = name;
    if (name.isEmpty())
        return variable;
    const QString section = variableSection(name);
    variable.defaultValue = readNonNull(section, kDefaultEntry);
    variable.values = walkEntries(section);
    return variable;
}

QString TemplateStore::readDefault(const QString& name) {
    return name.isEmpty() ? QStringLiteral("") : readNonNull(variableSection(name), kDefaultEntry);
}

void TemplateStore::writeVariable(const VariableDefinition& variable) {
    if (variable.name.isEmpty())
        return;
    const QString section = variableSection(variable.name);
    write(section, kDefaultEntry,
          variable.defaultValue.isNull() ? QStringLiteral("") : variable.defaultValue);
    int index = 0;
    for (const QString& value : variable.values)
        write(section, twoDigit(++index), value.isNull() ? QStringLiteral("") : value);
    write(section, kCountEntry, twoDigit(index));
}

void TemplateStore::deleteVariableKey(const QString& name) {
    // An empty name would address the "Variables" key itself.
    if (name.isEmpty())
        return;
    profile::writeProfileString(variableSection(name), QString(), QString());
}

QStringList TemplateStore::userAddedVariables() {
    return walkEntries(kUserAddedSection);
}

void TemplateStore::registerUserVariable(const QString& name) {
    const QString count = read(kUserAddedSection, kCountEntry);
    if (count.isEmpty()) {
        write(kUserAddedSection, QStringLiteral("01"), name);
        write(kUserAddedSection, kCountEntry, QStringLiteral("01"));
        return;
    }
    const QString key = twoDigit(count.toInt() + 1);
    write(kUserAddedSection, key, name);
    write(kUserAddedSection, kCountEntry, key);
}

void TemplateStore::unregisterUserVariable(const QString& name) {
    // Kept exactly as the module has always walked it: the entry after the match moves down one
    // place at a time, and only a match on the last entry shortens the count.
    const QString count = read(kUserAddedSection, kCountEntry);
    int i = 1;
    bool found = false;
    QString key = QStringLiteral("");
    while (key < count && i <= kWalkLimit) {
        key = twoDigit(found ? i + 1 : i);
        QString value = readNonNull(kUserAddedSection, key);
        if (value == name) {
            value = readNonNull(kUserAddedSection, twoDigit(i + 1));
            deleteEntry(kUserAddedSection, key);
            found = true;
        }
        if (found && key == count) {
            deleteEntry(kUserAddedSection, key);
            write(kUserAddedSection, kCountEntry, twoDigit(i - 1));
            break;
        }
        write(kUserAddedSection, key, value);
        ++i;
    }
    if (!isComputedVariable(name))
        deleteVariableKey(name);
}

void TemplateStore::renameVariable(const QString& oldName, const QString& newName) {
    for (const TemplateDefinition& definition : templates()) {
        QString body = definition.body;
        bool changed = false;
        const std::vector<Span> spans = placeholderSpans(body);
        // From the back, so that the earlier spans keep their places.
        for (auto span = spans.rbegin(); span != spans.rend(); ++span) {
            const QString inner = body.mid(span->start + 1, span->end - span->start - 2);
            const qsizetype colon = inner.indexOf(placeholderColon());
            const QString variablePart = colon < 0 ? inner : inner.left(colon);
            if (variablePart.compare(oldName, Qt::CaseInsensitive) != 0)
                continue;
            const QString rest = colon < 0 ? QString() : inner.mid(colon);
            body.replace(span->start, span->end - span->start, u'[' + newName + rest + u']');
            changed = true;
        }
        if (changed)
            writeTemplate(definition.name, body);
    }
    deleteVariableKey(oldName);
}

VariableLookup::VariableLookup() {
    QStringList names;
    for (int id = IDS_BUILTIN_VARIABLES_FIRST; id <= IDS_BUILTIN_VARIABLES_LAST; ++id)
        names.append(loadString(id));
    names += TemplateStore::userAddedVariables();
    // A variable's own name before its values, and the variables in turn: the first one wins.
    for (const QString& name : std::as_const(names)) {
        if (name.isEmpty())
            continue;
        variableOf_.try_emplace(name, name);
        longest_ = std::max(longest_, name.size());
        for (const QString& value : TemplateStore::readVariable(name).values) {
            variableOf_.try_emplace(value, name);
            longest_ = std::max(longest_, value.size());
        }
    }
}

std::optional<VariableMatch> VariableLookup::find(QStringView text) const {
    if (text.size() <= longest_) {
        const auto found = variableOf_.find(text.toString());
        if (found != variableOf_.end())
            return VariableMatch{found->second, text.toString()};
    }
    // Failing that, a "Sender:", "Contact:" or "Recipient:" prefix, the name compared with its
    // usual length, so the colon is only looked for among the first characters.
    const struct {
        qsizetype length;
        int id;
    } prefixes[] = {{6, IDS_VAR_SENDER}, {7, IDS_VAR_CONTACT}, {9, IDS_VAR_RECIPIENT}};
    const QString colonText = placeholderColon();
    const qsizetype colon = text.left(9 + colonText.size()).indexOf(colonText);
    if (colon < 0)
        return std::nullopt;
    const QStringView prefix = text.left(colon);
    for (const auto& candidate : prefixes) {
        if (prefix.size() != candidate.length || prefix != loadString(candidate.id))
            continue;
        // A contact keeps only what follows "Contact:" as its value.
        const QStringView value = candidate.id == IDS_VAR_CONTACT ? text.mid(8) : text;
        return VariableMatch{prefix.toString(), value.toString()};
    }
    return std::nullopt;
}

std::optional<VariableMatch> TemplateStore::findVariableOfValue(const QString& text) {
    return VariableLookup().find(text);
}

} // namespace tessaly::sms
