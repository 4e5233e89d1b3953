#include "templates/factory_defaults.h"
#include "util/box_caption.h"

#include "framework/registry/profile.h"
#include "framework/registry/registry.h"
#include "framework/resources/resources.h"
#include "framework/ui/useragent.h"
#include "resources/resource.h"
#include "templates/template_store.h"

#include <array>

namespace tessaly::sms {

namespace {

constexpr QLatin1StringView kVariableMarker{"VAR:"};
constexpr QLatin1StringView kDefaultMarker{"DEF:"};
constexpr QLatin1StringView kEndMarker{"END:"};
constexpr qsizetype kMarkerLength = 4;

// String ids stop here: a run that lost its closing "END:" line ends at the last possible id
// instead of walking for ever.
constexpr int kLastStringId = 65535;

LPCWSTR wide(const QString& text) {
    return reinterpret_cast<LPCWSTR>(text.utf16());
}

bool keyExists(const QString& section) {
    HKEY app = profile::getAppRegistryKey();
    if (app == nullptr)
        return false;
    HKEY key = nullptr;
    const bool exists = RegOpenKeyExW(app, wide(section), 0, 0, &key) == ERROR_SUCCESS;
    if (exists)
        RegCloseKey(key);
    RegCloseKey(app);
    return exists;
}

// Deletes `name` below `parent` with everything under it (the registry refuses to delete a key
// that has subkeys, and a variable name holding a backslash makes one).
void deleteKeyTree(HKEY parent, const QString& name) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(parent, wide(name), 0, 0, &key) != ERROR_SUCCESS)
        return;
    std::array<WCHAR, 256> buffer{};
    for (;;) {
        DWORD length = DWORD(buffer.size());
        if (RegEnumKeyExW(key, 0, buffer.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS)
            break;
        const QString child = QString::fromUtf16(buffer.data(), length);
        HKEY before = nullptr;
        deleteKeyTree(key, child);
        // A child that could not be deleted would be enumerated again: stop instead.
        if (RegOpenKeyExW(key, wide(child), 0, 0, &before) == ERROR_SUCCESS) {
            RegCloseKey(before);
            break;
        }
    }
    RegCloseKey(key);
    RegDeleteKeyW(parent, wide(name));
}

void deleteSectionTree(const QString& section) {
    HKEY app = profile::getAppRegistryKey();
    if (app == nullptr)
        return;
    deleteKeyTree(app, section);
    RegCloseKey(app);
}

bool confirm(int questionId, QWidget* owner) {
    return UserAgent::current().messageBox(owner, loadString(questionId), boxCaption(),
                                           MB_OKCANCEL) == IDOK;
}

// Writes every definition named `name` in the run, later definitions winning where they overlap.
// The default and the last index carry over from one definition to the next on purpose: a
// definition without a "DEF:" line inherits the previous default, one without values the
// previous count.
struct VariableRunWriter {
    QString defaultValue;
    int lastIndex = 0;

    void writeDefinitionsOf(const QString& name) {
        for (int id = IDS_FACTORY_VARIABLES_FIRST; id <= IDS_FACTORY_VARIABLES_LAST; ++id) {
            const QString line = loadString(id);
            if (line.contains(kVariableMarker) && line.mid(kMarkerLength) == name)
                writeDefinitionAt(id, name);
        }
    }

    void writeDefinitionAt(int variableId, const QString& name) {
        const QString section = TemplateStore::variableSection(name);
        int next = 1;
        for (int id = variableId + 1; id <= kLastStringId; ++id) {
            const QString line = loadString(id);
            if (line.contains(kVariableMarker) || line.contains(kEndMarker))
                break;
            if (line.contains(kDefaultMarker)) {
                defaultValue = line.mid(kMarkerLength);
            } else if (line.size() > kMarkerLength) {
                lastIndex = next++;
                profile::writeProfileString(section, TemplateStore::twoDigit(lastIndex),
                                            line.mid(kMarkerLength));
            }
        }
        profile::writeProfileString(section, TemplateStore::kDefaultEntry,
                                    defaultValue.isNull() ? QStringLiteral("") : defaultValue);
        profile::writeProfileString(section, TemplateStore::kCountEntry,
                                    TemplateStore::twoDigit(lastIndex));
    }
};

} // namespace

bool restoreFactoryTemplates(bool silent, QWidget* owner) {
    if (!silent) {
        if (!confirm(IDS_RESTORE_TEMPLATES_QUESTION, owner))
            return false;
        for (const QString& name : TemplateStore::templateNames())
            TemplateStore::deleteTemplate(name);
        deleteSectionTree(TemplateStore::kTemplatesSection);
    }
    for (int id = IDS_FACTORY_TEMPLATES_FIRST; id < IDS_FACTORY_TEMPLATES_END; id += 2)
        TemplateStore::writeTemplate(loadString(id), loadString(id + 1));
    return true;
}

bool restoreFactoryVariables(bool silent, QWidget* owner) {
    if (!silent) {
        if (!confirm(IDS_RESTORE_VARIABLES_QUESTION, owner))
            return false;
        for (const QString& name : TemplateStore::variableNames())
            deleteSectionTree(TemplateStore::variableSection(name));
        deleteSectionTree(TemplateStore::kVariablesSection);
        deleteSectionTree(TemplateStore::kUserAddedSection);
    }
    VariableRunWriter writer;
    for (int id = IDS_FACTORY_VARIABLES_FIRST; id <= IDS_FACTORY_VARIABLES_LAST; ++id) {
        const QString line = loadString(id);
        const qsizetype marker = line.indexOf(kVariableMarker);
        if (marker < 0)
            continue;
        const QString name = line.mid(marker + kMarkerLength);
        // A nameless definition would land in "Variables" itself.
        if (!name.isEmpty())
            writer.writeDefinitionsOf(name);
    }
    return true;
}

void seedFactoryDefaults() {
    if (!keyExists(TemplateStore::kTemplatesSection))
        restoreFactoryTemplates(true);
    if (!keyExists(TemplateStore::kVariablesSection))
        restoreFactoryVariables(true);
}

} // namespace tessaly::sms
