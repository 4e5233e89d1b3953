#pragma once

// Qt's XML reader refuses character references to anything that is not an XML character, but
// real backup files carry them: an emoji as two references to its UTF-16 halves
// (&#55357;&#56832;), now and then a lone half or a control character. The filter rewrites such
// references before the reader sees them (a pair into the character it makes, anything else
// into an escape of noncharacters that the reader passes through), and unescape() turns the
// escapes back into the exact UTF-16 code units. Literal noncharacters U+FDD0..U+FDEF in the
// file are escaped too, so every text comes back as it was.

#include <QByteArray>
#include <QStringView>

#include <string>

namespace tessaly::telephony::archive {

class CharacterReferenceFilter {
public:
    // Filters the next chunk of the UTF-8 file; bytes that may belong to a reference the next
    // chunk completes are held back. `last`: no more chunks follow.
    QByteArray filter(const QByteArray& chunk, bool last);

private:
    QByteArray held_;
};

// The exact code units of a value the filtered file carried.
std::u16string unescapeCodeUnits(QStringView text);

// Appends the escape of one code unit (for the filter, and for tests).
void appendCodeUnitEscape(QByteArray& out, char16_t unit);

} // namespace tessaly::telephony::archive
