#pragma once

// Readable QString values in GoogleTest failure messages.

#include <QString>

#include <ostream>

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
