#pragma once

// The platform's registry functions, kept in one SQLite file per hive inside the data directory.
// Names of keys and values are case-insensitive and case-preserving; values enumerate in the
// order they were created, subkeys in case-insensitive name order. Every write is durable when
// the call returns.

#include "framework/win32types.h"

#include <QString>

struct RegistryKeyHandle;
using HKEY = RegistryKeyHandle*;
using PHKEY = HKEY*;

inline HKEY const HKEY_CURRENT_USER = reinterpret_cast<HKEY>(std::uintptr_t(0x80000001));
inline HKEY const HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(std::uintptr_t(0x80000002));

constexpr DWORD REG_NONE = 0;
constexpr DWORD REG_SZ = 1;
constexpr DWORD REG_EXPAND_SZ = 2;
constexpr DWORD REG_BINARY = 3;
constexpr DWORD REG_DWORD = 4;
constexpr DWORD REG_MULTI_SZ = 7;

constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
constexpr DWORD REG_CREATED_NEW_KEY = 1;
constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

constexpr REGSAM KEY_QUERY_VALUE = 0x0001;
constexpr REGSAM KEY_SET_VALUE = 0x0002;
constexpr REGSAM KEY_CREATE_SUB_KEY = 0x0004;
constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 0x0008;
constexpr REGSAM KEY_READ = 0x20019;
constexpr REGSAM KEY_WRITE = 0x20006;
constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;

LONG RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD options, REGSAM access, PHKEY result);
LONG RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD reserved, LPWSTR keyClass, DWORD options,
                     REGSAM access, void* securityAttributes, PHKEY result, LPDWORD disposition);
LONG RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD reserved, LPDWORD type, LPBYTE data,
                      LPDWORD dataSize);
LONG RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD reserved, DWORD type, const BYTE* data,
                    DWORD dataSize);
LONG RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameLength, LPDWORD reserved,
                   LPWSTR keyClass, LPDWORD classLength, FILETIME* lastWriteTime);
LONG RegEnumValueW(HKEY key, DWORD index, LPWSTR valueName, LPDWORD valueNameLength,
                   LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD dataSize);
LONG RegQueryInfoKeyW(HKEY key, LPWSTR keyClass, LPDWORD classLength, LPDWORD reserved,
                      LPDWORD subKeyCount, LPDWORD maxSubKeyLength, LPDWORD maxClassLength,
                      LPDWORD valueCount, LPDWORD maxValueNameLength, LPDWORD maxValueLength,
                      LPDWORD securityDescriptorSize, FILETIME* lastWriteTime);
LONG RegDeleteValueW(HKEY key, LPCWSTR valueName);
LONG RegDeleteKeyW(HKEY key, LPCWSTR subKey);
LONG RegCloseKey(HKEY key);

namespace tessaly {

// What went wrong the last time a hive file could not be opened, read or written, with the
// file's path; empty while nothing has failed. Each new failure is also logged once.
QString registryLastError();

// Opens both hive files of the data directory now (a missing one is created). Returns what is
// wrong with a file that cannot be used, its path included, or an empty text when both are fine.
QString openRegistryHives();

// While an object of this class lives, the registry's writes are gathered into one transaction
// per hive, committed and synced once when the outermost batch ends: many small writes (a
// factory seeding) cost one sync and grow the journal once. A commit that fails loses the
// batch's writes and is reported like any failed write (registryLastError). For short runs of
// writes without a person in between: the hive stays locked for writing until the end.
class RegistryWriteBatch {
public:
    RegistryWriteBatch();
    ~RegistryWriteBatch();
    RegistryWriteBatch(const RegistryWriteBatch&) = delete;
    RegistryWriteBatch& operator=(const RegistryWriteBatch&) = delete;
};

// Closes the hive files that no open key handle uses; the next call opens them again. Lets a
// test reopen the files from disk, or change one while the registry does not hold it open.
void releaseRegistryHives();

} // namespace tessaly
