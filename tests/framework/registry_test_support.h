#pragma once

// Shared by the registry and profile tests: a private data directory per test and short ways to
// call the registry with QStrings.

#include "framework/datadir.h"
#include "framework/registry/registry.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <vector>

namespace registry_test {

inline LPCWSTR wide(const QString& text) {
    return reinterpret_cast<LPCWSTR>(text.utf16());
}

class RegistryTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dataDir.isValid());
        tessaly::setDataDirectory(dataDir.path());
    }
    void TearDown() override {
        tessaly::releaseRegistryHives();
        tessaly::setDataDirectory(QString());
    }

    static HKEY create(HKEY parent, const QString& path, DWORD* disposition = nullptr) {
        HKEY key = nullptr;
        EXPECT_EQ(RegCreateKeyExW(parent, wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                  KEY_ALL_ACCESS, nullptr, &key, disposition),
                  ERROR_SUCCESS)
            << path.toStdString();
        return key;
    }
    static LONG open(HKEY parent, const QString& path, HKEY* key) {
        return RegOpenKeyExW(parent, wide(path), 0, 0, key);
    }
    static LONG setString(HKEY key, const QString& name, const QString& text) {
        return RegSetValueExW(key, wide(name), 0, REG_SZ,
                              reinterpret_cast<const BYTE*>(text.utf16()),
                              DWORD((text.size() + 1) * 2));
    }
    // The value's text, or a null QString when the query fails.
    static QString queryString(HKEY key, const QString& name) {
        WCHAR buffer[512] = {};
        DWORD size = sizeof buffer;
        if (RegQueryValueExW(key, wide(name), nullptr, nullptr, reinterpret_cast<LPBYTE>(buffer),
                             &size) != ERROR_SUCCESS)
            return QString();
        return QString::fromUtf16(buffer, size / 2 - 1);
    }
    static std::vector<QString> valueNames(HKEY key) {
        std::vector<QString> names;
        WCHAR name[300];
        for (DWORD index = 0;; ++index) {
            DWORD length = 300;
            if (RegEnumValueW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) !=
                ERROR_SUCCESS)
                return names;
            names.push_back(QString::fromUtf16(name, length));
        }
    }
    static std::vector<QString> subKeyNames(HKEY key) {
        std::vector<QString> names;
        WCHAR name[300];
        for (DWORD index = 0;; ++index) {
            DWORD length = 300;
            if (RegEnumKeyExW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) !=
                ERROR_SUCCESS)
                return names;
            names.push_back(QString::fromUtf16(name, length));
        }
    }

    QTemporaryDir dataDir;
};

} // namespace registry_test
