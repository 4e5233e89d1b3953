#include "framework/registry/registry.h"

#include "framework/datadir.h"
#include "framework/registry/hive.h"

#include <QDir>
#include <QtDebug>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <new>
#include <unordered_set>
#include <vector>

using tessaly::registry::Hive;
using tessaly::registry::HiveError;
using tessaly::registry::KeyId;

struct RegistryKeyHandle {
    // A handle keeps its hive open, so it stays usable after the data directory changes.
    std::shared_ptr<Hive> hive;
    KeyId key = 0;
};

namespace {

constexpr qsizetype maxKeyNameLength = 255;
constexpr qsizetype maxValueNameLength = 16383;

struct RootHive {
    const char* fileName;
    QString path;
    std::shared_ptr<Hive> hive;
};

struct RegistryState {
    std::mutex mutex;
    std::unordered_set<RegistryKeyHandle*> handles;
    RootHive currentUser{"registry-current-user.db", {}, {}};
    RootHive localMachine{"registry-local-machine.db", {}, {}};
    QString lastError;
    int batchDepth = 0;
    std::vector<std::shared_ptr<Hive>> batched; // hives with a batch transaction open
};

// Never destroyed: handles still open at exit stay reachable and nothing runs after main.
RegistryState& state() {
    static auto* registryState = new RegistryState;
    return *registryState;
}

// A call's own refusal (bad handle, bad argument), as opposed to a failure of the file.
struct Refusal {
    LONG code;
};

struct Target {
    std::shared_ptr<Hive> hive;
    KeyId key;
};

// The hive of a root follows the data directory: it is (re)opened whenever the path changes.
std::shared_ptr<Hive> rootHive(RootHive& root) {
    const QString path =
        QDir(tessaly::dataDirectory()).filePath(QString::fromLatin1(root.fileName));
    if (!root.hive || root.path != path) {
        root.hive.reset();
        root.path = path;
        root.hive = Hive::open(path);
    }
    return root.hive;
}

// Inside a write batch, the first call on a hive opens the batch's transaction there.
Target joinBatch(Target target) {
    RegistryState& registry = state();
    if (registry.batchDepth > 0 && std::find(registry.batched.begin(), registry.batched.end(),
                                             target.hive) == registry.batched.end()) {
        target.hive->beginBatch();
        registry.batched.push_back(target.hive);
    }
    return target;
}

Target resolve(HKEY key) {
    RegistryState& registry = state();
    if (key == HKEY_CURRENT_USER)
        return joinBatch({rootHive(registry.currentUser), Hive::rootKey});
    if (key == HKEY_LOCAL_MACHINE)
        return joinBatch({rootHive(registry.localMachine), Hive::rootKey});
    if (key == nullptr || !registry.handles.contains(key))
        throw Refusal{ERROR_INVALID_HANDLE};
    return joinBatch({key->hive, key->key});
}

// Nothing found under a key means "no such item" while the key lives, "key deleted" after.
LONG missing(const Target& target, LONG whenKeyExists) {
    return target.hive->keyExists(target.key) ? whenKeyExists : ERROR_KEY_DELETED;
}

HKEY newHandle(const Target& parent, KeyId key) {
    auto* handle = new RegistryKeyHandle{parent.hive, key};
    state().handles.insert(handle);
    return handle;
}

void report(const HiveError& error) {
    RegistryState& registry = state();
    if (registry.lastError != error.message())
        qWarning().noquote() << error.message();
    registry.lastError = error.message();
}

template <typename Body> LONG guarded(Body&& body) {
    std::lock_guard lock(state().mutex);
    try {
        return body();
    } catch (const Refusal& refusal) {
        return refusal.code;
    } catch (const HiveError& error) {
        report(error);
        return error.errorCode();
    } catch (const std::bad_alloc&) {
        return ERROR_OUTOFMEMORY;
    }
}

QString fromWide(LPCWSTR text) {
    return text ? QString::fromUtf16(text) : QString();
}

// "A\B\C" into its names; one trailing backslash is tolerated, empty or overlong names are not.
QStringList splitPath(LPCWSTR subKey) {
    QString path = fromWide(subKey);
    if (path.endsWith(QLatin1Char('\\')))
        path.chop(1);
    if (path.isEmpty())
        return {};
    QStringList names = path.split(QLatin1Char('\\'));
    for (const QString& name : names) {
        if (name.isEmpty() || name.size() > maxKeyNameLength)
            throw Refusal{ERROR_INVALID_PARAMETER};
    }
    return names;
}

QString valueNameOf(LPCWSTR valueName) {
    QString name = fromWide(valueName);
    if (name.size() > maxValueNameLength)
        throw Refusal{ERROR_INVALID_PARAMETER};
    return name;
}

// Copies a name with its terminating zero into a buffer of *length characters; on return
// *length holds the name's length without the zero (also when the buffer was too small).
LONG copyName(const QString& name, LPWSTR buffer, LPDWORD length) {
    const auto size = DWORD(name.size());
    const bool fits = size < *length;
    *length = size;
    if (!fits)
        return ERROR_MORE_DATA;
    std::copy_n(reinterpret_cast<const WCHAR*>(name.utf16()), size, buffer);
    buffer[size] = 0;
    return ERROR_SUCCESS;
}

// The platform's data rule: no buffer asks for the size; a small one gets ERROR_MORE_DATA and
// the size needed; otherwise the bytes are copied and the size is what was written.
LONG copyData(const QByteArray& bytes, LPBYTE data, LPDWORD dataSize) {
    const auto size = DWORD(bytes.size());
    if (data && *dataSize < size) {
        *dataSize = size;
        return ERROR_MORE_DATA;
    }
    if (data && size > 0)
        std::memcpy(data, bytes.constData(), size);
    if (dataSize)
        *dataSize = size;
    return ERROR_SUCCESS;
}

void clearClass(LPWSTR keyClass, LPDWORD classLength) {
    if (keyClass && classLength && *classLength > 0)
        keyClass[0] = 0;
    if (classLength)
        *classLength = 0;
}

} // namespace

LONG RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD options, REGSAM access, PHKEY result) {
    if (!result)
        return ERROR_INVALID_PARAMETER;
    *result = nullptr;
    return guarded([&] {
        const Target target = resolve(key);
        const Hive::ReadTransaction snapshot(*target.hive);
        const QStringList names = splitPath(subKey);
        if (!target.hive->keyExists(target.key))
            return ERROR_KEY_DELETED;
        KeyId current = target.key;
        for (const QString& name : names) {
            const auto child = target.hive->findSubKey(current, name);
            if (!child)
                return ERROR_FILE_NOT_FOUND;
            current = *child;
        }
        *result = newHandle(target, current);
        return ERROR_SUCCESS;
    });
}

LONG RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD reserved, LPWSTR keyClass, DWORD options,
                     REGSAM access, void* securityAttributes, PHKEY result, LPDWORD disposition) {
    if (!result || !subKey)
        return ERROR_INVALID_PARAMETER;
    *result = nullptr;
    return guarded([&] {
        const Target target = resolve(key);
        const QStringList names = splitPath(subKey);
        Hive::Transaction transaction(*target.hive);
        if (!target.hive->keyExists(target.key))
            return ERROR_KEY_DELETED;
        KeyId current = target.key;
        bool created = false;
        for (const QString& name : names)
            std::tie(current, created) = target.hive->createSubKey(current, name);
        transaction.commit();
        if (disposition)
            *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
        *result = newHandle(target, current);
        return ERROR_SUCCESS;
    });
}

LONG RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD reserved, LPDWORD type, LPBYTE data,
                      LPDWORD dataSize) {
    if (data && !dataSize)
        return ERROR_INVALID_PARAMETER;
    return guarded([&] {
        const Target target = resolve(key);
        const Hive::ReadTransaction snapshot(*target.hive);
        const auto value = target.hive->value(target.key, valueNameOf(valueName));
        if (!value)
            return missing(target, ERROR_FILE_NOT_FOUND);
        if (type)
            *type = value->type;
        return copyData(value->data, data, dataSize);
    });
}

LONG RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD reserved, DWORD type, const BYTE* data,
                    DWORD dataSize) {
    if ((!data && dataSize > 0) || (type == REG_DWORD && dataSize != sizeof(DWORD)))
        return ERROR_INVALID_PARAMETER;
    return guarded([&] {
        const Target target = resolve(key);
        const QString name = valueNameOf(valueName);
        const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(dataSize));
        Hive::Transaction transaction(*target.hive);
        if (!target.hive->touch(target.key))
            return ERROR_KEY_DELETED;
        target.hive->setValue(target.key, name, type, bytes);
        transaction.commit();
        return ERROR_SUCCESS;
    });
}

LONG RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameLength, LPDWORD reserved,
                   LPWSTR keyClass, LPDWORD classLength, FILETIME* lastWriteTime) {
    if (!name || !nameLength)
        return ERROR_INVALID_PARAMETER;
    return guarded([&] {
        const Target target = resolve(key);
        const Hive::ReadTransaction snapshot(*target.hive);
        const auto subKey = target.hive->subKeyAt(target.key, index);
        if (!subKey)
            return missing(target, ERROR_NO_MORE_ITEMS);
        const LONG copied = copyName(subKey->name, name, nameLength);
        if (copied != ERROR_SUCCESS)
            return copied;
        clearClass(keyClass, classLength);
        if (lastWriteTime)
            *lastWriteTime = fileTimeFromUInt64(subKey->lastWriteTime);
        return ERROR_SUCCESS;
    });
}

LONG RegEnumValueW(HKEY key, DWORD index, LPWSTR valueName, LPDWORD valueNameLength,
                   LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD dataSize) {
    if (!valueName || !valueNameLength || (data && !dataSize))
        return ERROR_INVALID_PARAMETER;
    return guarded([&] {
        const Target target = resolve(key);
        const Hive::ReadTransaction snapshot(*target.hive);
        const auto value = target.hive->valueAt(target.key, index);
        if (!value)
            return missing(target, ERROR_NO_MORE_ITEMS);
        const LONG copied = copyName(value->name, valueName, valueNameLength);
        if (copied != ERROR_SUCCESS)
            return copied;
        if (type)
            *type = value->type;
        return copyData(value->data, data, dataSize);
    });
}

LONG RegQueryInfoKeyW(HKEY key, LPWSTR keyClass, LPDWORD classLength, LPDWORD reserved,
                      LPDWORD subKeyCount, LPDWORD maxSubKeyLength, LPDWORD maxClassLength,
                      LPDWORD valueCount, LPDWORD maxValueNameLength, LPDWORD maxValueLength,
                      LPDWORD securityDescriptorSize, FILETIME* lastWriteTime) {
    if (keyClass && !classLength)
        return ERROR_INVALID_PARAMETER;
    return guarded([&] {
        const Target target = resolve(key);
        const Hive::ReadTransaction snapshot(*target.hive);
        if (!target.hive->keyExists(target.key))
            return ERROR_KEY_DELETED;
        const auto statistics = target.hive->statistics(target.key);
        clearClass(keyClass, classLength);
        const std::pair<LPDWORD, DWORD> outputs[] = {
            {subKeyCount, statistics.subKeyCount},
            {maxSubKeyLength, statistics.maxSubKeyLength},
            {maxClassLength, 0},
            {valueCount, statistics.valueCount},
            {maxValueNameLength, statistics.maxValueNameLength},
            {maxValueLength, statistics.maxValueLength},
            {securityDescriptorSize, 0},
        };
        for (const auto& [output, value] : outputs) {
            if (output)
                *output = value;
        }
        if (lastWriteTime)
            *lastWriteTime = fileTimeFromUInt64(statistics.lastWriteTime);
        return ERROR_SUCCESS;
    });
}

LONG RegDeleteValueW(HKEY key, LPCWSTR valueName) {
    return guarded([&] {
        const Target target = resolve(key);
        const QString name = valueNameOf(valueName);
        Hive::Transaction transaction(*target.hive);
        if (!target.hive->touch(target.key))
            return ERROR_KEY_DELETED;
        if (!target.hive->deleteValue(target.key, name))
            return ERROR_FILE_NOT_FOUND;
        transaction.commit();
        return ERROR_SUCCESS;
    });
}

LONG RegDeleteKeyW(HKEY key, LPCWSTR subKey) {
    if (!subKey)
        return ERROR_INVALID_PARAMETER;
    return guarded([&] {
        const Target target = resolve(key);
        const QStringList names = splitPath(subKey);
        Hive::Transaction transaction(*target.hive);
        if (!target.hive->keyExists(target.key))
            return ERROR_KEY_DELETED;
        KeyId parent = 0;
        KeyId doomed = target.key;
        for (const QString& name : names) {
            const auto child = target.hive->findSubKey(doomed, name);
            if (!child)
                return ERROR_FILE_NOT_FOUND;
            parent = doomed;
            doomed = *child;
        }
        // The root of a hive stays; a key with subkeys is refused, as the platform does.
        if (doomed == Hive::rootKey || target.hive->hasSubKeys(doomed))
            return ERROR_ACCESS_DENIED;
        target.hive->deleteKey(doomed);
        if (parent != 0)
            target.hive->touch(parent);
        transaction.commit();
        return ERROR_SUCCESS;
    });
}

LONG RegCloseKey(HKEY key) {
    if (key == HKEY_CURRENT_USER || key == HKEY_LOCAL_MACHINE)
        return ERROR_SUCCESS;
    std::lock_guard lock(state().mutex);
    if (key == nullptr || state().handles.erase(key) == 0)
        return ERROR_INVALID_HANDLE;
    delete key;
    return ERROR_SUCCESS;
}

namespace tessaly {

QString registryLastError() {
    std::lock_guard lock(state().mutex);
    return state().lastError;
}

QString openRegistryHives() {
    std::lock_guard lock(state().mutex);
    try {
        rootHive(state().currentUser);
        rootHive(state().localMachine);
    } catch (const HiveError& error) {
        report(error);
        return error.message();
    }
    return {};
}

RegistryWriteBatch::RegistryWriteBatch() {
    std::lock_guard lock(state().mutex);
    ++state().batchDepth;
}

RegistryWriteBatch::~RegistryWriteBatch() {
    std::lock_guard lock(state().mutex);
    RegistryState& registry = state();
    if (--registry.batchDepth > 0)
        return;
    for (const std::shared_ptr<Hive>& hive : registry.batched) {
        try {
            hive->endBatch();
        } catch (const HiveError& error) {
            report(error);
        }
    }
    registry.batched.clear();
}

void releaseRegistryHives() {
    std::lock_guard lock(state().mutex);
    for (RootHive* root : {&state().currentUser, &state().localMachine}) {
        root->hive.reset();
        root->path.clear();
    }
}

} // namespace tessaly
