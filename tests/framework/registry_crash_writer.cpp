// Helper of test_registry: writes numbered values into a key of HKEY_CURRENT_USER, prints how
// many it wrote and kills itself with SIGKILL at once, without closing anything.
// Usage: registry_crash_writer <data directory> <key path> <count>

#include "framework/datadir.h"
#include "framework/registry/registry.h"

#include <QString>

#include <csignal>
#include <cstdio>
#include <unistd.h>

int main(int argc, char** argv) {
    if (argc != 4)
        return 2;
    tessaly::setDataDirectory(QString::fromLocal8Bit(argv[1]));
    const QString path = QString::fromLocal8Bit(argv[2]);
    const int count = QString::fromLocal8Bit(argv[3]).toInt();

    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, reinterpret_cast<LPCWSTR>(path.utf16()), 0, nullptr, 0,
                        0, nullptr, &key, nullptr) != ERROR_SUCCESS)
        return 1;
    for (int i = 0; i < count; ++i) {
        const QString name = QStringLiteral("value%1").arg(i);
        const QString text = QStringLiteral("written %1").arg(i);
        if (RegSetValueExW(key, reinterpret_cast<LPCWSTR>(name.utf16()), 0, REG_SZ,
                           reinterpret_cast<const BYTE*>(text.utf16()),
                           DWORD((text.size() + 1) * 2)) != ERROR_SUCCESS)
            return 1;
    }
    const QByteArray report = QByteArray::number(count) + '\n';
    if (::write(STDOUT_FILENO, report.constData(), size_t(report.size())) < 0)
        return 1;
    std::raise(SIGKILL);
    return 0;
}
