#pragma once

// The favourites behind the composer's RECP button: the last ten first recipients, most recent
// first, in the profile section "Favourites" as "01".."10" with the count in "Values" ("%02d").
// An entry is a bare number or "name:number". The count stays text, as everywhere in the
// profile: entries are walked while "%02d" of the index compares below the "Values" text.

#include <QString>
#include <QStringList>

namespace tessaly::sms {

class Favourites {
public:
    static constexpr QLatin1StringView kSection{"Favourites"};
    static constexpr int kLimit = 10;

    // The stored entries, "01" first, as the walk over "Values" reads them.
    static QStringList entries();
    // The entry "%02d" of `number` (1-based); empty when missing.
    static QString entry(int number);
    // What the menu shows for an entry: the text before its first ":" (all of it without one).
    static QString label(const QString& entry);
    // The number of an entry: the text after its first ":" (all of it without one).
    static QString number(const QString& entry);

    // The favourite text for a first recipient: "First Last:number" when the phone book knows
    // the number, else the number as typed.
    static QString favouriteTextFor(const QString& firstRecipient);
    // Puts a favourite text first: an existing entry (whole text, or its number part, equal)
    // moves up, a new one pushes the others down and the tenth drops out. A count above ten
    // (written by someone else) is left alone.
    static void remember(const QString& favouriteText);
    // Deletes the whole section.
    static void clear();
};

} // namespace tessaly::sms
