#include "framework/registry/profile.h"

#include <mutex>

namespace tessaly::profile {

namespace {

struct ProfileNames {
    std::mutex mutex;
    QString registryKey;
    QString profileName;
};

ProfileNames& names() {
    static ProfileNames profileNames;
    return profileNames;
}

LPCWSTR wide(const QString& text) {
    return reinterpret_cast<LPCWSTR>(text.utf16());
}

// "Software\<registry key>\<profile name>", or nothing while either part is unset.
QString profilePath() {
    const QString key = registryKey();
    const QString name = profileName();
    if (key.isEmpty() || name.isEmpty())
        return {};
    return QStringLiteral("Software\\%1\\%2").arg(key, name);
}

QString sectionPath(const QString& section) {
    const QString profile = profilePath();
    if (profile.isEmpty() || section.isEmpty())
        return profile;
    return profile + QLatin1Char('\\') + section;
}

// Closes the key when the scope ends.
class OpenKey {
public:
    explicit OpenKey(HKEY key)
        : handle(key) {}
    ~OpenKey() {
        if (handle)
            RegCloseKey(handle);
    }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;
    HKEY get() const { return handle; }
    explicit operator bool() const { return handle != nullptr; }

private:
    HKEY handle;
};

HKEY openExisting(const QString& path) {
    HKEY key = nullptr;
    if (path.isEmpty() || RegOpenKeyExW(HKEY_CURRENT_USER, wide(path), 0, 0, &key) != ERROR_SUCCESS)
        return nullptr;
    return key;
}

HKEY openOrCreate(const QString& path) {
    HKEY key = nullptr;
    if (path.isEmpty() ||
        RegCreateKeyExW(HKEY_CURRENT_USER, wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE,
                        KEY_ALL_ACCESS, nullptr, &key, nullptr) != ERROR_SUCCESS)
        return nullptr;
    return key;
}

// The stored text up to its first zero; a stray odd byte at the end is not half a character.
QString textOf(const QByteArray& bytes) {
    const auto* units = reinterpret_cast<const char16_t*>(bytes.constData());
    const qsizetype count = bytes.size() / 2;
    qsizetype length = 0;
    while (length < count && units[length] != 0)
        ++length;
    return QString::fromUtf16(units, length);
}

} // namespace

void setRegistryKey(const QString& registryKey) {
    std::lock_guard lock(names().mutex);
    names().registryKey = registryKey;
}

void setProfileName(const QString& profileName) {
    std::lock_guard lock(names().mutex);
    names().profileName = profileName;
}

QString registryKey() {
    std::lock_guard lock(names().mutex);
    return names().registryKey;
}

QString profileName() {
    std::lock_guard lock(names().mutex);
    return names().profileName;
}

QString getProfileString(const QString& section, const QString& entry,
                         const QString& defaultValue) {
    const OpenKey key(openExisting(sectionPath(section)));
    if (!key)
        return defaultValue;
    // Most entries fit the first buffer; a longer one is read again at its full size.
    QByteArray bytes(256, Qt::Uninitialized);
    DWORD type = REG_NONE;
    for (;;) {
        auto size = DWORD(bytes.size());
        const LONG result = RegQueryValueExW(key.get(), wide(entry), nullptr, &type,
                                             reinterpret_cast<LPBYTE>(bytes.data()), &size);
        if (result == ERROR_MORE_DATA) {
            bytes.resize(size);
            continue;
        }
        if (result != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ))
            return defaultValue;
        bytes.truncate(size);
        return textOf(bytes);
    }
}

bool writeProfileString(const QString& section, const QString& entry, const QString& value) {
    if (profilePath().isEmpty())
        return false;
    if (entry.isNull()) {
        // No entry: the whole section goes, when it has no subkeys of its own.
        if (section.isEmpty())
            return false;
        const OpenKey profile(openExisting(profilePath()));
        if (!profile)
            return true;
        const LONG result = RegDeleteKeyW(profile.get(), wide(section));
        return result == ERROR_SUCCESS || result == ERROR_FILE_NOT_FOUND;
    }
    if (value.isNull()) {
        // Deleting what is not there leaves the profile as asked, and creates nothing.
        const OpenKey key(openExisting(sectionPath(section)));
        if (!key)
            return true;
        const LONG result = RegDeleteValueW(key.get(), wide(entry));
        return result == ERROR_SUCCESS || result == ERROR_FILE_NOT_FOUND;
    }
    const OpenKey key(openOrCreate(sectionPath(section)));
    if (!key)
        return false;
    const auto bytes = DWORD((value.size() + 1) * sizeof(WCHAR));
    return RegSetValueExW(key.get(), wide(entry), 0, REG_SZ,
                          reinterpret_cast<const BYTE*>(value.utf16()), bytes) == ERROR_SUCCESS;
}

HKEY getAppRegistryKey() {
    return openOrCreate(profilePath());
}

HKEY getSectionKey(const QString& section) {
    if (profilePath().isEmpty())
        return nullptr;
    return openOrCreate(sectionPath(section));
}

} // namespace tessaly::profile
