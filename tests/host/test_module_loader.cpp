#include "host/module_loader.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using tessaly::host::resolveSmsExports;
using tessaly::host::SmsExports;
using tessaly::host::SmsModuleLibrary;

// A module that defines every entry point except the ones named.
auto lookupWithout(std::set<std::string> missing) {
    return [missing = std::move(missing)](const char* symbol) -> void* {
        static int somewhere;
        return missing.count(symbol) ? nullptr : &somewhere;
    };
}

TEST(ExportResolution, AMissingEntryPointIsNamedWithItsSignatureAndSymbol) {
    const struct {
        std::set<std::string> missing;
        QStringList named;
    } cases[] = {
        {{"_Z19openSimNotificationii"},
         {"an entry point", "openSimNotification(int, int) (symbol _Z19openSimNotificationii)"}},
        {{"_Z21openSendingCompletionN3GSM6ResultEb", "_Z10initModulePv"},
         {"2 entry points", "initModule(void*)", "openSendingCompletion(GSM::Result, bool)"}},
    };
    for (const auto& c : cases) {
        SmsExports exports;
        QString error;
        EXPECT_FALSE(resolveSmsExports(lookupWithout(c.missing), exports, &error));
        for (const QString& part : c.named)
            EXPECT_TRUE(error.contains(part)) << error.toStdString();
        EXPECT_EQ(exports.initModule, nullptr) << "nothing is taken from a module that fails";
    }
}

TEST(ExportResolution, AllNinePresentFillEveryEntry) {
    SmsExports exports;
    QString error;
    ASSERT_TRUE(resolveSmsExports(lookupWithout({}), exports, &error));
    const void* entries[] = {
        reinterpret_cast<void*>(exports.initModule),
        reinterpret_cast<void*>(exports.exitModule),
        reinterpret_cast<void*>(exports.openSms),
        reinterpret_cast<void*>(exports.openMessage),
        reinterpret_cast<void*>(exports.editMessage),
        reinterpret_cast<void*>(exports.openMessageNotification),
        reinterpret_cast<void*>(exports.openSendingNotification),
        reinterpret_cast<void*>(exports.openSendingCompletion),
        reinterpret_cast<void*>(exports.openSimNotification),
    };
    for (const void* entry : entries)
        EXPECT_NE(entry, nullptr);
}

TEST(ModuleLibrary, FilesThatAreNotTheModuleAreRefusedWithTheReason) {
    const struct {
        QString path;
        QString says;
    } cases[] = {
        {QStringLiteral("/nonexistent/Sms.tsm"), QStringLiteral("Cannot load the SMS module")},
        // A real library without the entry points: all nine are named.
        {QStringLiteral(TESSALY_GSM_LIBRARY_PATH), QStringLiteral("lacks 9 entry points")},
    };
    for (const auto& c : cases) {
        SmsModuleLibrary module;
        QString error;
        EXPECT_FALSE(module.load(c.path, &error));
        EXPECT_FALSE(module.isLoaded());
        EXPECT_TRUE(error.contains(c.says)) << error.toStdString();
        EXPECT_TRUE(error.contains(c.path)) << error.toStdString();
    }
}

TEST(ModuleLibrary, TheEnvironmentOverridesWhereTheModuleIsLookedFor) {
    qputenv("TESSALY_MODULE", "/opt/elsewhere/Sms.tsm");
    EXPECT_EQ(tessaly::host::defaultModulePath(), QStringLiteral("/opt/elsewhere/Sms.tsm"));
    qunsetenv("TESSALY_MODULE");
    EXPECT_TRUE(tessaly::host::defaultModulePath().endsWith(QStringLiteral("/Sms.tsm")));
}

} // namespace
