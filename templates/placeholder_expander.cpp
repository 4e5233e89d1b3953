#include "templates/placeholder_expander.h"

#include "framework/resources/resources.h"
#include "framework/time/clock.h"
#include "resources/resource.h"
#include "templates/placeholder_texts.h"
#include "templates/template_store.h"

#include <QDate>

#include <array>
#include <vector>

namespace tessaly::sms {

namespace {

enum class PersonField { FirstName, LastName, FullName, Initials, NameAndPhone, Phone, None };

PersonField personField(const QString& name) {
    for (int id = IDS_FIELD_FIRST_NAME; id <= IDS_FIELD_PHONE; ++id) {
        const QString field = loadString(id);
        if (!field.isEmpty() && name.compare(field, Qt::CaseInsensitive) == 0)
            return PersonField(id - IDS_FIELD_FIRST_NAME);
    }
    return PersonField::None;
}

QString initialsOf(const QString& firstName, const QString& lastName) {
    QString initials;
    if (!firstName.isEmpty())
        initials += firstName.front();
    if (!lastName.isEmpty())
        initials += lastName.front();
    return initials;
}

// An empty `what` would match between every two characters; it replaces nothing here.
void replaceAll(QString& text, const QString& what, const QString& with) {
    if (!what.isEmpty())
        text.replace(what, with);
}

struct PlaceholderSpan {
    qsizetype open = -1;  // the "["
    qsizetype close = -1; // the "]"
    QString name;
    QString value;
    bool hasColon = false;
};

// The first placeholder at or after `from`; open < 0 when there is none (no "[", or a "[" that
// is never closed).
PlaceholderSpan findPlaceholder(const QString& text, qsizetype from, const QString& colon) {
    PlaceholderSpan span;
    const qsizetype open = text.indexOf(u'[', from);
    if (open < 0)
        return span;
    const qsizetype close = text.indexOf(u']', open + 1);
    if (close < 0)
        return span;
    span.open = open;
    span.close = close;
    const QString inner = text.mid(open + 1, close - open - 1);
    const qsizetype split = inner.indexOf(colon);
    span.hasColon = split >= 0;
    span.name = span.hasColon ? inner.left(split) : inner;
    span.value = span.hasColon ? inner.mid(split + colon.size()) : QString();
    return span;
}

} // namespace

QString PlaceholderExpander::senderField(const SenderInfo& sender, const QString& field,
                                         bool* missing) {
    const bool noFirst = sender.firstName.isEmpty();
    const bool noLast = sender.lastName.isEmpty();
    const bool noPhone = sender.phone.isEmpty();
    bool empty = false;
    QString text;
    switch (personField(field)) {
    case PersonField::FirstName:
        text = sender.firstName;
        empty = noFirst;
        break;
    case PersonField::LastName:
        text = sender.lastName;
        empty = noLast;
        break;
    case PersonField::FullName:
        text = sender.firstName + u' ' + sender.lastName;
        empty = noFirst && noLast;
        break;
    case PersonField::Initials:
        text = initialsOf(sender.firstName, sender.lastName);
        empty = noFirst && noLast;
        break;
    case PersonField::NameAndPhone:
        text = sender.firstName + u' ' + sender.lastName + QStringLiteral(", ") + sender.phone;
        empty = noFirst && noLast && noPhone;
        break;
    case PersonField::Phone:
        text = sender.phone;
        empty = noPhone;
        break;
    case PersonField::None:
        break;
    }
    if (missing != nullptr && empty)
        *missing = true;
    return text;
}

QString PlaceholderExpander::recipientField(const RecipientInfo& recipient, const QString& field) {
    switch (personField(field)) {
    case PersonField::FirstName:
        return recipient.firstName;
    case PersonField::LastName:
        return recipient.lastName;
    case PersonField::FullName:
        return recipient.fullName;
    case PersonField::Initials:
        return recipient.initials;
    case PersonField::NameAndPhone:
        return recipient.fullName + QStringLiteral(", ") + recipient.phone;
    case PersonField::Phone:
        return recipient.phone;
    case PersonField::None:
        break;
    }
    return QString();
}

std::optional<QString> PlaceholderExpander::contactField(const RecipientInfo& contact,
                                                         const QString& field) {
    switch (personField(field)) {
    case PersonField::NameAndPhone:
        return contact.fullName + u',' + contact.phone;
    case PersonField::None:
        return std::nullopt;
    default:
        return recipientField(contact, field);
    }
}

QString PlaceholderExpander::computeValue(const QString& variable, const QString& word) {
    const SYSTEMTIME now = Clock::current().localNow();
    if (!variable.isEmpty() && variable == loadString(IDS_VAR_TIME)) {
        static constexpr std::array<int, 8> offsets{15, 30, 45, 60, 90, 120, 180, 240};
        int hours = now.wHour;
        int minutes = now.wMinute;
        for (int id = IDS_TIME_IN_15_MINUTES; id <= IDS_TIME_IN_4_HOURS; ++id) {
            if (word == loadString(id)) {
                const int offset = offsets[std::size_t(id - IDS_TIME_IN_15_MINUTES)];
                hours += offset / 60;
                minutes += offset % 60;
                break;
            }
        }
        // The hour is not wrapped: 23:50 in 15 minutes reads 24:05.
        if (minutes > 59) {
            hours += 1;
            minutes -= 60;
        }
        return QString::asprintf("%02d:%02d", hours, minutes);
    }
    if (!variable.isEmpty() && variable == loadString(IDS_VAR_DATE)) {
        QDate date(now.wYear, now.wMonth, now.wDay);
        if (!date.isValid()) // a clock out of range: its own fields, no day moved
            return loadString(IDS_DATE_ON) +
                   QString::asprintf("%04d-%02d-%02d", now.wYear, now.wMonth, now.wDay);
        if (!word.isEmpty() && word == loadString(IDS_DATE_YESTERDAY))
            date = date.addDays(-1);
        else if (!word.isEmpty() && word == loadString(IDS_DATE_TOMORROW))
            date = date.addDays(1);
        return loadString(IDS_DATE_ON) +
               QString::asprintf("%04d-%02d-%02d", date.year(), date.month(), date.day());
    }
    return word;
}

QString PlaceholderExpander::expandForSending(const QString& text, const RecipientInfo& recipient) {
    const QString colon = placeholderColon();
    const QString sender = loadString(IDS_VAR_SENDER);
    const QString recipientName = loadString(IDS_VAR_RECIPIENT);
    QString out = text;

    // Each round either turns the first placeholder's brackets into "<" ">" or replaces every
    // copy of it by text without brackets, so the number of "[" falls and the walk ends. Nothing
    // before the first "[" can hold another one, so the search goes on from there.
    qsizetype from = 0;
    for (;;) {
        const PlaceholderSpan span = findPlaceholder(out, from, colon);
        if (span.open < 0)
            break;
        const bool isSender = span.hasColon && !sender.isEmpty() && span.name == sender;
        const bool isRecipient =
            span.hasColon && !recipientName.isEmpty() && span.name == recipientName;
        if (!isSender && !isRecipient) {
            out[span.open] = u'<';
            out[span.close] = u'>';
            from = span.open + 1;
            continue;
        }
        QString replacement = isSender
                                  ? senderField(sender_, span.value, &senderInformationMissing_)
                                  : recipientField(recipient, span.value);
        // A name holding brackets must not start a placeholder of its own; the marks are
        // removed at the end in any case, so the sent text is the same.
        replacement.replace(u'[', u'<').replace(u']', u'>');
        out.replace(out.mid(span.open, span.close - span.open + 1), replacement);
        from = span.open;
    }

    // These work on the whole text on purpose: once "Time:Now" is present, every "Now" is
    // replaced, also in ordinary words.
    const QString time = loadString(IDS_VAR_TIME);
    const QString date = loadString(IDS_VAR_DATE);
    const QString now = QStringLiteral("Now");
    if (!time.isEmpty() && out.contains(time + colon + now))
        out.replace(now, computeValue(time, now));
    if (!time.isEmpty())
        replaceAll(out, time + colon, QStringLiteral(" "));
    const QString contact = loadString(IDS_VAR_CONTACT);
    if (!contact.isEmpty())
        replaceAll(out, contact + colon, QStringLiteral(" "));
    if (!date.isEmpty()) {
        for (const int id : {IDS_DATE_TODAY, IDS_DATE_YESTERDAY, IDS_DATE_TOMORROW}) {
            const QString word = loadString(id);
            if (!word.isEmpty() && out.contains(date + colon + word))
                out.replace(word, computeValue(date, word));
        }
        replaceAll(out, date + colon, QStringLiteral(" "));
    }

    out.remove(u'[').remove(u']').remove(u'>').remove(u'<');
    out.replace(QStringLiteral("  "), QStringLiteral(" "));
    return out;
}

QString PlaceholderExpander::templateToComposerText(const QString& body) {
    const QString colon = placeholderColon();
    QString out;
    qsizetype from = 0;
    for (;;) {
        const PlaceholderSpan span = findPlaceholder(body, from, colon);
        if (span.open < 0)
            break;
        out += QStringView(body).mid(from, span.open - from);
        QString fallback = TemplateStore::readDefault(span.name);
        if (fallback.isEmpty())
            fallback = span.name;
        const QString value = span.value.isEmpty() ? fallback : span.value;
        if (TemplateStore::isComputedVariable(span.name))
            out += u'[' + span.name + colon + value + u']';
        else
            out += u'<' + value + u'>';
        from = span.close + 1;
    }
    out += QStringView(body).mid(from);
    return out;
}

QString PlaceholderExpander::insertTemplate(const QString& templateName, const QString& text,
                                            int caret, int* caretAfter) {
    const qsizetype at = std::clamp<qsizetype>(caret, 0, text.size());
    const QString inserted = templateToComposerText(TemplateStore::readTemplate(templateName));
    if (caretAfter != nullptr)
        *caretAfter = int(at + inserted.size());
    return text.left(at) + inserted + text.mid(at);
}

QString PlaceholderExpander::markersToPlaceholders(const QString& text) {
    return markersToPlaceholders(text, &TemplateStore::findVariableOfValue);
}

QString PlaceholderExpander::markersToPlaceholders(const QString& text,
                                                   const VariableFinder& findVariable) {
    const QString colon = placeholderColon();
    QString out = text;
    // At most one round per character of the text: a variable name that itself holds a "<"
    // cannot keep the conversion going.
    for (qsizetype round = 0; round < text.size(); ++round) {
        const qsizetype open = out.indexOf(u'<');
        if (open < 0)
            break;
        out[open] = u'[';
        const qsizetype close = out.indexOf(u'>', open + 1);
        if (close < 0)
            continue;
        out[close] = u']';
        const QString inner = out.mid(open + 1, close - open - 1);
        if (const std::optional<VariableMatch> match = findVariable(inner))
            out.replace(open + 1, inner.size(), match->name + colon + match->value);
    }
    return out;
}

QString PlaceholderExpander::editorTextToBody(const QString& text, const QString& loadedBody) {
    const QString colon = placeholderColon();
    // The list placeholders of the loaded template, in order: the ones the editor showed as marks.
    std::vector<VariableMatch> loaded;
    for (qsizetype from = 0;;) {
        const PlaceholderSpan span = findPlaceholder(loadedBody, from, colon);
        if (span.open < 0)
            break;
        if (!TemplateStore::isComputedVariable(span.name))
            loaded.push_back({span.name, span.value});
        from = span.close + 1;
    }
    std::size_t markIndex = 0;
    return markersToPlaceholders(text, [&](const QString& value) -> std::optional<VariableMatch> {
        const std::size_t place = markIndex++;
        if (place < loaded.size() && loaded[place].value == value)
            return loaded[place];
        for (const VariableMatch& placeholder : loaded)
            if (placeholder.value == value)
                return placeholder;
        std::optional<VariableMatch> match = TemplateStore::findVariableOfValue(value);
        if (!match)
            return match;
        for (const VariableMatch& placeholder : loaded) {
            if (placeholder.name.compare(match->name, Qt::CaseInsensitive) == 0) {
                match->name = placeholder.name;
                break;
            }
        }
        return match;
    });
}

} // namespace tessaly::sms
