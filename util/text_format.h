#pragma once

// Texts of the string table keep the platform's printf fields ("There are %d other new
// messages.", "You can not call %s, ..."), so translators see the same texts as ever. They are
// filled here with values already turned into text, never by handing a translated text to a
// printf function as its format.

#include <QString>
#include <QStringList>

namespace tessaly::sms {

// Replaces the fields %d, %i, %u and %s (flags and widths are not read) with the values in
// order and "%%" with "%". Fields beyond the values stay as written; values beyond the fields
// are ignored.
QString formatText(const QString& format, const QStringList& values);

} // namespace tessaly::sms
