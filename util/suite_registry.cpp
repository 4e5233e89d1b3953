#include "util/suite_registry.h"

#include "util/registry_key.h"

#include <array>

namespace {

constexpr LPCWSTR kInternationalKey = u"SOFTWARE\\Microsoft\\International";
constexpr LPCWSTR kLcidValue = u"LCID";
constexpr LPCWSTR kActiveDriversKey = u"Drivers\\Active";
constexpr LPCWSTR kDriverKeyValue = u"Key";
constexpr DWORD kDriverKeyBytes = 400;
constexpr LPCWSTR kSuiteKey = u"Software\\Tessaly";

LPCWSTR wide(const QString& text) {
    return QStringView(text).utf16();
}

} // namespace

int languageIndexForLcid(DWORD lcid) {
    // Primary language identifiers and the one full identifier that has resources of its own.
    constexpr DWORD kGerman = 0x07;
    constexpr DWORD kSpanish = 0x0a;
    constexpr DWORD kItalian = 0x10;
    constexpr DWORD kFrench = 0x0c;
    constexpr DWORD kChinese = 0x04;
    constexpr DWORD kChineseTaiwan = 0x0404;
    constexpr DWORD kPseudoLanguage = 0x0501; // qps-ploc: lengthened English, for layout checks
    if (lcid == kPseudoLanguage)
        return 7;
    switch (lcid & 0x3ff) {
    case kGerman:
        return 1;
    case kSpanish:
        return 2;
    case kItalian:
        return 3;
    case kFrench:
        return 4;
    case kChinese:
        return lcid == kChineseTaiwan ? 5 : 6;
    default:
        return 0;
    }
}

int systemLanguageIndex() {
    RegistryKey international;
    international.open(HKEY_LOCAL_MACHINE, kInternationalKey);
    const DWORD lcid = international.queryDword(kLcidValue);
    international.close();
    return languageIndexForLcid(lcid);
}

bool isDriverActive(const QString& driverKeyPath) {
    RegistryKey active;
    active.open(HKEY_LOCAL_MACHINE, kActiveDriversKey);
    RegistrySubkeyIterator drivers(active);
    while (drivers.next()) {
        std::array<BYTE, kDriverKeyBytes> bytes{};
        DWORD size = kDriverKeyBytes;
        const DWORD read = drivers.current().queryValue(kDriverKeyValue, bytes.data(), size);
        QString path = QString::fromUtf16(reinterpret_cast<const char16_t*>(bytes.data()),
                                          qsizetype(read / sizeof(WCHAR)));
        // The stored size counts the terminating zero; anything after a zero is not the path.
        if (const qsizetype zero = path.indexOf(QChar(u'\0')); zero >= 0)
            path.truncate(zero);
        if (read > 0 && path.compare(driverKeyPath, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

bool writeSuiteValue(const QString& name, DWORD value) {
    RegistryKey suite;
    return suite.create(HKEY_LOCAL_MACHINE, kSuiteKey).setDword(wide(name), value);
}

DWORD readSuiteValue(const QString& name) {
    RegistryKey suite;
    return suite.open(HKEY_LOCAL_MACHINE, kSuiteKey).queryDword(wide(name));
}

bool removeSuiteValue(const QString& name) {
    RegistryKey suite;
    if (!suite.open(HKEY_LOCAL_MACHINE, kSuiteKey).isOpen())
        return false;
    const bool removed = suite.deleteValue(wide(name)) || suite.deleteSubkey(wide(name));
    if (suite.isEmpty()) {
        suite.close();
        RegDeleteKeyW(HKEY_LOCAL_MACHINE, kSuiteKey);
    }
    return removed;
}
