#include "compose/favourites.h"

#include "framework/registry/profile.h"
#include "gsm/contacts.h"
#include "templates/template_store.h"
#include "util/wide_text.h"

namespace tessaly::sms {

namespace {

QString countText() {
    return profile::getProfileString(Favourites::kSection, TemplateStore::kCountEntry);
}

QString stored(int number) {
    return profile::getProfileString(Favourites::kSection, TemplateStore::twoDigit(number));
}

void store(int number, const QString& text) {
    // An empty text is written as an empty entry, never as a deletion.
    profile::writeProfileString(Favourites::kSection, TemplateStore::twoDigit(number),
                                text.isNull() ? QStringLiteral("") : text);
}

// Entry `to` receives entry `to - 1`, for `to` from `from` down to `downTo`.
void shiftDown(int from, int downTo) {
    for (int to = from; to >= downTo; --to)
        store(to, stored(to - 1));
}

} // namespace

QStringList Favourites::entries() {
    QStringList texts;
    for (const QString& key : TemplateStore::walkKeys(countText()))
        texts.append(profile::getProfileString(kSection, key));
    return texts;
}

QString Favourites::entry(int number) {
    return stored(number);
}

QString Favourites::label(const QString& entry) {
    const qsizetype colon = entry.indexOf(u':');
    return colon < 0 ? entry : entry.left(colon);
}

QString Favourites::number(const QString& entry) {
    const qsizetype colon = entry.indexOf(u':');
    return colon < 0 ? entry : entry.mid(colon + 1);
}

QString Favourites::favouriteTextFor(const QString& firstRecipient) {
    const QString number = firstRecipient.trimmed();
    const GSM::Contact* contact = GSM::PhoneBook::lookup(toWide(number));
    if (!contact)
        return firstRecipient;
    return fromWide(contact->getText(GSM::Contact::FieldFirstName)) + u' ' +
           fromWide(contact->getText(GSM::Contact::FieldLastName)) + u':' + number;
}

void Favourites::remember(const QString& favouriteText) {
    const QString count = countText();
    int total = 0;
    if (count.isEmpty())
        profile::writeProfileString(kSection, TemplateStore::kCountEntry, QStringLiteral(""));
    else
        total = count.toInt();

    const QStringList keys = TemplateStore::walkKeys(count);
    for (int position = 1; position <= keys.size(); ++position) {
        const QString existing = stored(position);
        if (existing != favouriteText && number(existing) != favouriteText)
            continue;
        shiftDown(position, 2);
        store(1, existing);
        return;
    }
    if (total > kLimit)
        return;
    if (total < kLimit) {
        shiftDown(total + 1, 2);
        profile::writeProfileString(kSection, TemplateStore::kCountEntry,
                                    TemplateStore::twoDigit(total + 1));
    } else {
        shiftDown(kLimit, 2);
    }
    store(1, favouriteText);
}

void Favourites::clear() {
    profile::writeProfileString(kSection, QString(), QString());
}

} // namespace tessaly::sms
