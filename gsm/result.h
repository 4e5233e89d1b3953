#pragma once

// The outcome of every telephony operation that can fail: an error code (0 = success) and a
// text for the person. Copyable by value, so it can travel through events and exports.

#include "framework/win32types.h"

#include <string>
#include <string_view>

namespace GSM {

// Error codes a Result carries. Values other than these may arrive from the host's hooks.
enum ErrorCode : long {
    ErrorNone = 0,
    ErrorInvalidArgument = 1,
    ErrorNotFound = 2,
    ErrorNotAvailable = 3, // the store is closed or the service is not offered
    ErrorStorage = 4,      // the database refused a read or a write
    ErrorSimEmpty = 5,
    ErrorNoNetwork = 6,
    ErrorNoRecipient = 7,
    ErrorBusy = 8,
    ErrorNotSupported = 9,
    ErrorCancelled = 10,
    // The network rejected the message; the result's text is the network's own explanation and
    // is meant to be shown to the person as it stands.
    ErrorNetworkRejected = 520,
};

class Result {
public:
    Result() = default; // success
    Result(long code, std::u16string_view message);

    static Result success() { return Result(); }

    bool isOk() const { return code_ == ErrorNone; }
    long errorCode() const { return code_; }
    // Empty (never null) for a success.
    const WCHAR* getErrorMessage() const { return message_.c_str(); }

private:
    long code_ = ErrorNone;
    std::u16string message_;
};

} // namespace GSM
