#include "host/module_loader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStringList>

#include <dlfcn.h>

namespace tessaly::host {

namespace {

constexpr ExportName kExportNames[9] = {
    {"initModule(void*)", "_Z10initModulePv"},
    {"exitModule()", "_Z10exitModulev"},
    {"openSms()", "_Z7openSmsv"},
    {"openMessage(long)", "_Z11openMessagel"},
    {"editMessage(GSM::Message*)", "_Z11editMessagePN3GSM7MessageE"},
    {"openMessageNotification(long)", "_Z23openMessageNotificationl"},
    {"openSendingNotification(long, int, int, int, int, int)", "_Z23openSendingNotificationliiiii"},
    {"openSendingCompletion(GSM::Result, bool)", "_Z21openSendingCompletionN3GSM6ResultEb"},
    {"openSimNotification(int, int)", "_Z19openSimNotificationii"},
};

template <typename Function> void assign(Function& target, void* address) {
    target = reinterpret_cast<Function>(address);
}

} // namespace

const ExportName (&smsExportNames())[9] {
    return kExportNames;
}

bool resolveSmsExports(const std::function<void*(const char* symbol)>& lookup, SmsExports& exports,
                       QString* error) {
    void* found[9];
    QStringList missing;
    for (int i = 0; i < 9; ++i) {
        found[i] = lookup(kExportNames[i].symbol);
        if (!found[i])
            missing << QStringLiteral("%1 (symbol %2)")
                           .arg(QLatin1String(kExportNames[i].signature),
                                QLatin1String(kExportNames[i].symbol));
    }
    if (!missing.isEmpty()) {
        if (error)
            *error = QStringLiteral("The SMS module lacks %1: %2")
                         .arg(missing.size() == 1
                                  ? QStringLiteral("an entry point")
                                  : QStringLiteral("%1 entry points").arg(missing.size()),
                              missing.join(QStringLiteral(", ")));
        return false;
    }
    SmsExports resolved;
    assign(resolved.initModule, found[0]);
    assign(resolved.exitModule, found[1]);
    assign(resolved.openSms, found[2]);
    assign(resolved.openMessage, found[3]);
    assign(resolved.editMessage, found[4]);
    assign(resolved.openMessageNotification, found[5]);
    assign(resolved.openSendingNotification, found[6]);
    assign(resolved.openSendingCompletion, found[7]);
    assign(resolved.openSimNotification, found[8]);
    exports = resolved;
    return true;
}

QString defaultModulePath() {
    const QString overridden = qEnvironmentVariable("TESSALY_MODULE");
    if (!overridden.isEmpty())
        return overridden;
    // Beside the program in the build folder; where `cmake --install` put it otherwise.
    const QDir programs(QCoreApplication::applicationDirPath());
    const QString beside = programs.filePath(QStringLiteral("Sms.tsm"));
    if (QFile::exists(beside))
        return beside;
    return QDir::cleanPath(
        programs.filePath(QStringLiteral(TESSALY_INSTALLED_MODULE_DIR "/Sms.tsm")));
}

SmsModuleLibrary::~SmsModuleLibrary() {
    unload();
}

bool SmsModuleLibrary::load(const QString& path, QString* error) {
    unload();
    // RTLD_NOW: a module that needs a missing symbol fails here, not in the middle of a call.
    void* handle = dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        if (error)
            *error = QStringLiteral("Cannot load the SMS module %1: %2")
                         .arg(path, QString::fromLocal8Bit(dlerror()));
        return false;
    }
    SmsExports resolved;
    QString resolveError;
    if (!resolveSmsExports([handle](const char* symbol) { return dlsym(handle, symbol); }, resolved,
                           &resolveError)) {
        dlclose(handle);
        if (error)
            *error = QStringLiteral("%1 (%2)").arg(resolveError, path);
        return false;
    }
    handle_ = handle;
    exports_ = resolved;
    return true;
}

void SmsModuleLibrary::unload() {
    if (handle_) {
        dlclose(handle_);
        handle_ = nullptr;
        exports_ = SmsExports();
    }
}

} // namespace tessaly::host
