#include "framework/resources/resource_ids.h"

#include <functional>
#include <map>
#include <set>

namespace tessaly {

namespace {

// The symbols naming each number, per prefix family (IDS_, IDD_, IDM_, ...): a number may name a
// string and a control at once, so the name is chosen by the kind of id.
class IdNames {
public:
    explicit IdNames(const ResourceScript& script) {
        for (const auto& [symbol, value] : script.symbols)
            bySymbolValue_.emplace(value, symbol);
    }

    QString describe(const QString& kind, int id, QStringView prefixes) const {
        QString text = QStringLiteral("%1 %2").arg(kind).arg(id);
        const auto [first, last] = bySymbolValue_.equal_range(id);
        for (QStringView prefix : prefixes.split(u'|')) { // the first prefix wins
            for (auto it = first; it != last; ++it) {
                if (it->second.startsWith(prefix))
                    return text + QStringLiteral(" (%1)").arg(it->second);
            }
        }
        return text;
    }

private:
    std::multimap<int, QString> bySymbolValue_;
};

template <typename Map> std::set<int> keysOf(const Map& map) {
    std::set<int> keys;
    for (const auto& entry : map)
        keys.insert(entry.first);
    return keys;
}

void collectCommands(const std::vector<MenuItem>& items, std::set<int>& commands) {
    for (const MenuItem& item : items) {
        if (item.id != 0)
            commands.insert(item.id);
        collectCommands(item.children, commands);
    }
}

std::set<int> commandsOf(const MenuTemplate& menu) {
    std::set<int> commands;
    collectCommands(menu.items, commands);
    return commands;
}

std::set<int> controlsOf(const DialogTemplate& dialog) {
    std::set<int> controls;
    for (const ControlTemplate& control : dialog.controls) {
        if (control.id != -1) // unnamed statics may differ in number
            controls.insert(control.id);
    }
    return controls;
}

// Appends "<prefix><name> missing" / "extra" lines for the differences of two id sets.
void compareSets(const std::set<int>& reference, const std::set<int>& translation,
                 const std::function<QString(int)>& name, QStringList& differences) {
    for (int id : reference) {
        if (!translation.contains(id))
            differences.append(name(id) + QStringLiteral(" missing"));
    }
    for (int id : translation) {
        if (!reference.contains(id))
            differences.append(name(id) + QStringLiteral(" extra"));
    }
}

// Compares the keys of two maps of resources (menus, dialogs), then the inner ids (commands,
// controls) of each resource both have.
struct Kind {
    QString outer;
    QStringView outerPrefixes;
    QString inner;
    QStringView innerPrefixes;
};

template <typename Map, typename InnerIds>
void compareNested(const Map& reference, const Map& translation, const Kind& kind,
                   const IdNames& names, InnerIds innerIds, QStringList& differences) {
    const auto outerName = [&](int id) {
        return names.describe(kind.outer, id, kind.outerPrefixes);
    };
    compareSets(keysOf(reference), keysOf(translation), outerName, differences);
    for (const auto& entry : reference) {
        const int id = entry.first; // a lambda may not capture a structured binding in clang
        const auto& resource = entry.second;
        const auto translated = translation.find(id);
        if (translated == translation.end())
            continue;
        compareSets(
            innerIds(resource), innerIds(translated->second),
            [&](int inner) {
                return outerName(id) + QStringLiteral(": ") +
                       names.describe(kind.inner, inner, kind.innerPrefixes);
            },
            differences);
    }
}

} // namespace

QStringList compareResourceIds(const ResourceScript& reference, const ResourceScript& translation) {
    const IdNames names(reference);
    QStringList differences;
    compareSets(
        keysOf(reference.strings), keysOf(translation.strings),
        [&](int id) { return names.describe(QStringLiteral("string"), id, u"IDS_"); }, differences);
    compareNested(reference.menus, translation.menus,
                  {QStringLiteral("menu"), u"IDR_|IDM_", QStringLiteral("command"), u"IDM_|ID"},
                  names, commandsOf, differences);
    compareNested(reference.dialogs, translation.dialogs,
                  {QStringLiteral("dialog"), u"IDD_", QStringLiteral("control"), u"IDC_|ID"}, names,
                  controlsOf, differences);
    return differences;
}

} // namespace tessaly
