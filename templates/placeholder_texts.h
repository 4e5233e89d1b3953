#pragma once

// Texts of the string table that the placeholder syntax is made of, read from the resources in
// force so that a translation's names work.

#include "framework/resources/resources.h"
#include "resources/resource.h"

#include <QString>

namespace tessaly::sms {

// The separator between a placeholder's name and its value; ":" even without resources, so that
// an empty text never splits every placeholder at its start.
inline QString placeholderColon() {
    const QString colon = loadString(IDS_COLON);
    return colon.isEmpty() ? QStringLiteral(":") : colon;
}

} // namespace tessaly::sms
