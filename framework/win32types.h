#pragma once

// The handful of platform types, constants and conversions that the module and the suite share.
// Strings are UTF-16: WCHAR is char16_t on every platform, so texts match QString unit for unit.

#include <cstdint>

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using UINT = unsigned int;
using BOOL = int;
using WCHAR = char16_t;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using REGSAM = DWORD;

#ifndef TRUE
constexpr BOOL TRUE = 1;
constexpr BOOL FALSE = 0;
#endif

struct SYSTEMTIME {
    WORD wYear = 0;
    WORD wMonth = 0;
    WORD wDayOfWeek = 0;
    WORD wDay = 0;
    WORD wHour = 0;
    WORD wMinute = 0;
    WORD wSecond = 0;
    WORD wMilliseconds = 0;
};

// 100-nanosecond intervals since 1601-01-01, split in two halves.
struct FILETIME {
    DWORD dwLowDateTime = 0;
    DWORD dwHighDateTime = 0;
};

inline std::uint64_t fileTimeToUInt64(const FILETIME& ft) {
    return (std::uint64_t(ft.dwHighDateTime) << 32) | ft.dwLowDateTime;
}

inline FILETIME fileTimeFromUInt64(std::uint64_t value) {
    return FILETIME{DWORD(value & 0xffffffffu), DWORD(value >> 32)};
}

// Window messages the module posts to itself.
constexpr UINT WM_APP = 0x8000;

// Result codes of the registry functions.
constexpr LONG ERROR_SUCCESS = 0;
constexpr LONG ERROR_FILE_NOT_FOUND = 2;
constexpr LONG ERROR_ACCESS_DENIED = 5;
constexpr LONG ERROR_INVALID_HANDLE = 6;
constexpr LONG ERROR_OUTOFMEMORY = 14;
constexpr LONG ERROR_INVALID_PARAMETER = 87;
constexpr LONG ERROR_INSUFFICIENT_BUFFER = 122;
constexpr LONG ERROR_MORE_DATA = 234;
constexpr LONG ERROR_NO_MORE_ITEMS = 259;
constexpr LONG ERROR_KEY_DELETED = 1018;
constexpr LONG ERROR_BADDB = 1009;
constexpr LONG ERROR_BADKEY = 1010;
constexpr LONG ERROR_CANTOPEN = 1011;
constexpr LONG ERROR_CANTREAD = 1012;
constexpr LONG ERROR_CANTWRITE = 1013;
