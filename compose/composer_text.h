#pragma once

// The text a composer starts with: a forwarded message's text, and the greeting and signature
// layout of a new one. Pure text functions.

#include <QString>

namespace tessaly::sms {

// A forwarded text below one empty line, every line break made "\r\n": "\r\n", then lone "\r",
// then lone "\n" become "•", and every "•" (one that was already there too) becomes "\r\n".
QString forwardedText(const QString& original);

// Every line break made "\r\n", as the text field keeps them: "\r\n" stays, a lone "\r" or "\n"
// becomes one.
QString withCrLfBreaks(const QString& text);

struct StartText {
    QString text;
    int caret = 0;
};

// Greeting G and signature S as the composer lays them out: "G\r\n\r\nS" with the caret at the
// start of the empty line between them (at 0 without a greeting). G loses its trailing blanks, S
// its leading ones. A null signature means the signature is not inserted: the text is G with the
// caret at its end.
StartText greetingAndSignature(const QString& greeting, const QString& signature);

} // namespace tessaly::sms
