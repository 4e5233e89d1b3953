#pragma once

// Whether a translated resource script has the same ids as the script it was translated from:
// the same string ids, the same menus with the same command ids, the same dialogs with the same
// control ids. A translation with an id too few shows an empty text; one with an id too many
// carries a text no code asks for.

#include "framework/resources/resource_model.h"

#include <QStringList>

namespace tessaly {

// One line per difference, empty when the ids match, e.g. "string 10319 (IDS_TIME_NOW)
// missing" or "dialog 10050 (IDD_COMPOSER): control 1002 (IDC_X) extra". Ids are named by
// the reference's #define symbols where it has one.
QStringList compareResourceIds(const ResourceScript& reference, const ResourceScript& translation);

} // namespace tessaly
