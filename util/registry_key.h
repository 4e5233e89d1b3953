#pragma once

// A thin owner of one registry key handle, and a walk over the subkeys of a key. Failures are
// quiet: a key that did not open has no handle, and every operation on it returns 0 or false
// without calling the registry.

#include "framework/registry/registry.h"

class RegistryKey {
public:
    RegistryKey() = default;
    ~RegistryKey();
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    RegistryKey(RegistryKey&& other) noexcept;
    RegistryKey& operator=(RegistryKey&& other) noexcept;

    // Opens path below a root key (HKEY_LOCAL_MACHINE, ...) or below an open key. Any handle
    // held before is closed first; test isOpen() for the outcome.
    RegistryKey& open(HKEY parent, LPCWSTR path);
    RegistryKey& open(const RegistryKey& parent, LPCWSTR path);
    // Opens path, creating the missing keys on the way.
    RegistryKey& create(HKEY parent, LPCWSTR path, LPWSTR keyClass = nullptr, DWORD options = 0,
                        REGSAM access = 0, void* securityAttributes = nullptr);
    RegistryKey& create(const RegistryKey& parent, LPCWSTR path, LPWSTR keyClass = nullptr,
                        DWORD options = 0, REGSAM access = 0, void* securityAttributes = nullptr);

    // False when nothing is open or the registry refuses; then the handle is kept.
    bool close();

    bool isOpen() const { return handle_ != nullptr; }
    HKEY handle() const { return handle_; }

    // A 32-bit value whatever type it was stored with; 0 when it is missing or does not fit.
    DWORD queryDword(LPCWSTR valueName) const;
    // Reads into data (nullptr asks only for the size) and returns the value's size in bytes,
    // or 0 when the read failed, so a buffer that was not filled is never taken for a value.
    DWORD queryValue(LPCWSTR valueName, LPBYTE data, DWORD& dataSize) const;

    bool setValue(LPCWSTR valueName, const BYTE* data, DWORD dataSize, DWORD type);
    // Stores a REG_SZ, terminating zero included.
    bool setString(LPCWSTR valueName, LPCWSTR text);
    bool setDword(LPCWSTR valueName, DWORD value);

    // True only when the key could be asked and holds neither subkeys nor values.
    bool isEmpty() const;

    bool deleteValue(LPCWSTR valueName);
    bool deleteSubkey(LPCWSTR subkeyName);

private:
    // Closes whatever is open and forgets the handle even if the close failed.
    void reset();

    HKEY handle_ = nullptr;
};

// Visits the subkeys of an open key one by one:
//     RegistrySubkeyIterator subkeys(parent);
//     while (subkeys.next())
//         use(subkeys.current());
class RegistrySubkeyIterator {
public:
    // Subkey names this long or longer end the walk instead of being cut.
    static constexpr DWORD kMaxNameLength = 200;

    explicit RegistrySubkeyIterator(const RegistryKey& parent)
        : parent_(parent) {}

    // Opens the next subkey; false when there is none left. The position moves on even when
    // a subkey could not be opened, so the walk always ends.
    bool next();

    RegistryKey& current() { return current_; }
    // The position the next call of next() will try.
    DWORD nextIndex() const { return nextIndex_; }

private:
    RegistryKey current_;
    const RegistryKey& parent_;
    DWORD nextIndex_ = 0;
};
