#pragma once

// Texts across the telephony interface: NUL-terminated UTF-16, never null from the library but
// treated as empty when they are.

#include "framework/win32types.h"

#include <QString>

namespace tessaly::sms {

inline QString fromWide(const WCHAR* text) {
    return text ? QString::fromUtf16(text) : QString();
}

// Valid while `text` lives unchanged.
inline const WCHAR* toWide(const QString& text) {
    return reinterpret_cast<const WCHAR*>(text.utf16());
}

} // namespace tessaly::sms
