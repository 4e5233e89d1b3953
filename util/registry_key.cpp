#include "util/registry_key.h"

#include <array>
#include <utility>

RegistryKey::~RegistryKey() {
    reset();
}

RegistryKey::RegistryKey(RegistryKey&& other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)) {}

RegistryKey& RegistryKey::operator=(RegistryKey&& other) noexcept {
    if (this != &other) {
        reset();
        handle_ = std::exchange(other.handle_, nullptr);
    }
    return *this;
}

void RegistryKey::reset() {
    if (handle_)
        RegCloseKey(handle_);
    handle_ = nullptr;
}

RegistryKey& RegistryKey::open(HKEY parent, LPCWSTR path) {
    reset();
    HKEY opened = nullptr;
    // Options and access are 0: the registry grants what the caller uses.
    if (parent && RegOpenKeyExW(parent, path, 0, 0, &opened) == ERROR_SUCCESS)
        handle_ = opened;
    return *this;
}

RegistryKey& RegistryKey::open(const RegistryKey& parent, LPCWSTR path) {
    if (&parent == this) {
        RegistryKey child;
        child.open(handle_, path);
        return *this = std::move(child);
    }
    return open(parent.handle_, path);
}

RegistryKey& RegistryKey::create(HKEY parent, LPCWSTR path, LPWSTR keyClass, DWORD options,
                                 REGSAM access, void* securityAttributes) {
    reset();
    HKEY created = nullptr;
    DWORD disposition = 0;
    if (parent && RegCreateKeyExW(parent, path, 0, keyClass, options, access, securityAttributes,
                                  &created, &disposition) == ERROR_SUCCESS)
        handle_ = created;
    return *this;
}

RegistryKey& RegistryKey::create(const RegistryKey& parent, LPCWSTR path, LPWSTR keyClass,
                                 DWORD options, REGSAM access, void* securityAttributes) {
    if (&parent == this) {
        RegistryKey child;
        child.create(handle_, path, keyClass, options, access, securityAttributes);
        return *this = std::move(child);
    }
    return create(parent.handle_, path, keyClass, options, access, securityAttributes);
}

bool RegistryKey::close() {
    if (!handle_ || RegCloseKey(handle_) != ERROR_SUCCESS)
        return false;
    handle_ = nullptr;
    return true;
}

DWORD RegistryKey::queryDword(LPCWSTR valueName) const {
    std::array<BYTE, 4> bytes{};
    DWORD size = DWORD(bytes.size());
    if (queryValue(valueName, bytes.data(), size) == 0)
        return 0;
    return DWORD(bytes[0]) | DWORD(bytes[1]) << 8 | DWORD(bytes[2]) << 16 | DWORD(bytes[3]) << 24;
}

DWORD RegistryKey::queryValue(LPCWSTR valueName, LPBYTE data, DWORD& dataSize) const {
    if (!handle_)
        return 0;
    DWORD type = REG_NONE;
    if (RegQueryValueExW(handle_, valueName, nullptr, &type, data, &dataSize) != ERROR_SUCCESS)
        return 0;
    return dataSize;
}

bool RegistryKey::setValue(LPCWSTR valueName, const BYTE* data, DWORD dataSize, DWORD type) {
    return handle_ && RegSetValueExW(handle_, valueName, 0, type, data, dataSize) == ERROR_SUCCESS;
}

bool RegistryKey::setString(LPCWSTR valueName, LPCWSTR text) {
    if (!text)
        return false;
    DWORD length = 0;
    while (text[length] != 0)
        ++length;
    return setValue(valueName, reinterpret_cast<const BYTE*>(text),
                    (length + 1) * DWORD(sizeof(WCHAR)), REG_SZ);
}

bool RegistryKey::setDword(LPCWSTR valueName, DWORD value) {
    const std::array<BYTE, 4> bytes{BYTE(value), BYTE(value >> 8), BYTE(value >> 16),
                                    BYTE(value >> 24)};
    return setValue(valueName, bytes.data(), DWORD(bytes.size()), REG_DWORD);
}

bool RegistryKey::isEmpty() const {
    if (!handle_)
        return false;
    DWORD subkeys = 0;
    DWORD values = 0;
    return RegQueryInfoKeyW(handle_, nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values,
                            nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS &&
           subkeys == 0 && values == 0;
}

bool RegistryKey::deleteValue(LPCWSTR valueName) {
    return handle_ && RegDeleteValueW(handle_, valueName) == ERROR_SUCCESS;
}

bool RegistryKey::deleteSubkey(LPCWSTR subkeyName) {
    return handle_ && RegDeleteKeyW(handle_, subkeyName) == ERROR_SUCCESS;
}

bool RegistrySubkeyIterator::next() {
    current_ = RegistryKey();
    const DWORD index = nextIndex_++;
    if (!parent_.isOpen())
        return false;
    std::array<WCHAR, kMaxNameLength> name{};
    DWORD nameLength = kMaxNameLength;
    if (RegEnumKeyExW(parent_.handle(), index, name.data(), &nameLength, nullptr, nullptr, nullptr,
                      nullptr) != ERROR_SUCCESS ||
        nameLength >= kMaxNameLength)
        return false;
    return current_.open(parent_, name.data()).isOpen();
}
