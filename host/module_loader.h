#pragma once

// Loading Sms.tsm and finding its nine entry points. Each is looked up by its C++
// signature-decorated name, so a module built with other argument types is refused instead of
// being called wrongly.

#include "module/exports.h"

#include <QString>

#include <functional>

namespace tessaly::host {

struct SmsExports {
    decltype(&::initModule) initModule = nullptr;
    decltype(&::exitModule) exitModule = nullptr;
    decltype(&::openSms) openSms = nullptr;
    decltype(&::openMessage) openMessage = nullptr;
    decltype(&::editMessage) editMessage = nullptr;
    decltype(&::openMessageNotification) openMessageNotification = nullptr;
    decltype(&::openSendingNotification) openSendingNotification = nullptr;
    decltype(&::openSendingCompletion) openSendingCompletion = nullptr;
    decltype(&::openSimNotification) openSimNotification = nullptr;
};

struct ExportName {
    const char* signature; // as a person reads it: "openMessage(long)"
    const char* symbol;    // as the linker knows it: "_Z11openMessagel"
};
// The nine, in the order of SmsExports.
const ExportName (&smsExportNames())[9];

// Looks every entry point up with `lookup` (a dlsym on the module). When one or more are
// missing, returns false and names each in `error`.
bool resolveSmsExports(const std::function<void*(const char* symbol)>& lookup, SmsExports& exports,
                       QString* error);

// Beside the running program, unless the TESSALY_MODULE environment variable names a file.
QString defaultModulePath();

// The loaded module. Loading runs the module's start-up (its application object).
class SmsModuleLibrary {
public:
    SmsModuleLibrary() = default;
    ~SmsModuleLibrary();
    SmsModuleLibrary(const SmsModuleLibrary&) = delete;
    SmsModuleLibrary& operator=(const SmsModuleLibrary&) = delete;

    // False with `error` set when the file cannot be loaded or lacks an entry point; nothing
    // stays loaded then.
    bool load(const QString& path, QString* error);
    bool isLoaded() const { return handle_ != nullptr; }
    const SmsExports& exports() const { return exports_; }
    // Unloads the module (call exitModule first).
    void unload();

private:
    void* handle_ = nullptr;
    SmsExports exports_;
};

} // namespace tessaly::host
