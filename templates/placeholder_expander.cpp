#include "templates/placeholder_expander.h"

#include "framework/resources/resources.h"
#include "framework/time/clock.h"
#include "resources/resource.h"
#include "templates/placeholder_texts.h"
#include "templates/template_store.h"

#include <QDate>

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <unordered_map>
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

// "name" + colon when a span starting with "[" + that text is the name's placeholder: the name
// ends at the first colon and the span does not close inside the mark. Empty otherwise.
QString placeholderMark(const QString& name, const QString& colon) {
    const QString mark = name + colon;
    if (name.isEmpty() || colon.isEmpty() || mark.contains(u']') ||
        mark.indexOf(colon) != name.size())
        return {};
    return mark;
}

// The send-time walk over the brackets, in one pass.
//
// The text is cut into groups, each ending at a "]". The walk always takes the first "[" of the
// first group that holds one; its span runs to the group's "]". Turning the span's brackets into
// "<" ">" or replacing the span uses up that "]", so what is left of the group joins the next
// one. Replacing a sender or recipient span also replaces, at once, every later group that ends
// with the same span; that is applied lazily here: when a group is reached, it is tested against
// the spans replaced so far, each as the group stood when that span was replaced. A carried part
// that joined at step k (the number of spans recorded by then; a replacement joins its rest one
// step after its span) did not belong to the group before, so only spans from k on can start in
// it; each carried part keeps its own step, as an earlier part may have joined later than a later
// one. Spans are compared by a polynomial hash of the group's suffix, and confirmed character by
// character, so the walk is linear in the text.
class PlaceholderWalk {
public:
    PlaceholderWalk(const QString& senderMark, const QString& recipientMark)
        : senderMark_(senderMark)
        , recipientMark_(recipientMark)
        , longestMark_(std::max(senderMark.size(), recipientMark.size()) + 1) {}

    template <typename Replace> QString run(const QString& text, Replace&& replacementFor) {
        QString out;
        out.reserve(text.size());
        qsizetype start = 0;
        for (;;) {
            const qsizetype close = text.indexOf(u']', start);
            const qsizetype end = close < 0 ? text.size() : close + 1;
            append(QStringView(text).mid(start, end - start));
            start = end;
            if (close < 0)
                break;
            if (replaceRecordedSuffix())
                continue;
            if (opens_.empty()) {
                flushInto(out);
                continue;
            }
            takeFirstSpan(replacementFor);
        }
        flushInto(out);
        return out;
    }

private:
    static constexpr std::uint64_t kModulus = (std::uint64_t(1) << 61) - 1;
    static constexpr std::uint64_t kBase = 1000003;
    static constexpr std::size_t kComparedDirectly = 4;

    struct Recorded {
        QString span;
        QString replacement;
    };

    static std::uint64_t multiply(std::uint64_t a, std::uint64_t b) {
        const unsigned __int128 product = static_cast<unsigned __int128>(a) * b;
        const std::uint64_t low = std::uint64_t(product & kModulus);
        const std::uint64_t high = std::uint64_t(product >> 61);
        const std::uint64_t sum = low + high;
        return sum >= kModulus ? sum - kModulus : sum;
    }

    std::uint64_t power(qsizetype exponent) {
        while (qsizetype(powers_.size()) <= exponent)
            powers_.push_back(multiply(powers_.back(), kBase));
        return powers_[std::size_t(exponent)];
    }

    // The same polynomial as suffixHash, for a text on its own.
    static std::uint64_t hashOf(QStringView text) {
        std::uint64_t hash = 0;
        for (const QChar c : text) {
            const std::uint64_t next = multiply(hash, kBase) + c.unicode() + 1;
            hash = next >= kModulus ? next - kModulus : next;
        }
        return hash;
    }

    // The hash of cur_[from, end). Prefix hashes are made when first asked for: a text without
    // sender or recipient placeholders never needs them.
    std::uint64_t suffixHash(qsizetype from) {
        const qsizetype length = cur_.size();
        for (qsizetype at = qsizetype(prefix_.size()) - 1; at < length; ++at) {
            const std::uint64_t next = multiply(prefix_.back(), kBase) + cur_.at(at).unicode() + 1;
            prefix_.push_back(next >= kModulus ? next - kModulus : next);
        }
        const std::uint64_t whole = prefix_[std::size_t(length)];
        const std::uint64_t head = multiply(prefix_[std::size_t(from)], power(length - from));
        return whole >= head ? whole - head : whole + kModulus - head;
    }

    bool isMarkAt(qsizetype at, const QString& mark) const {
        return !mark.isEmpty() && QStringView(cur_).mid(at + 1).startsWith(mark);
    }

    void pushText(QStringView text) {
        const qsizetype start = cur_.size();
        if (!text.isEmpty() && (joins_.empty() || joins_.back().since != 0))
            joins_.push_back({start, 0});
        cur_.append(text);
        for (qsizetype at = text.indexOf(u'['); at >= 0; at = text.indexOf(u'[', at + 1))
            opens_.push_back(start + at);
    }

    // Whether a "[" starts a mark depends on the text after it, so every change at the end of
    // the group judges again the "[" whose mark could reach into what changed.
    void judgeMarksFrom(qsizetype changedAt) {
        const qsizetype from = changedAt - longestMark_;
        while (!candidates_.empty() && candidates_.back() >= from)
            candidates_.pop_back();
        auto open = std::lower_bound(opens_.begin(), opens_.end(), from);
        for (; open != opens_.end(); ++open) {
            if (isMarkAt(*open, senderMark_) || isMarkAt(*open, recipientMark_))
                candidates_.push_back(*open);
        }
    }

    void append(QStringView group) {
        const qsizetype start = cur_.size();
        pushText(group);
        judgeMarksFrom(start);
    }

    // What is left of the group before `at`, then `replacement` (which holds no brackets).
    void replaceFrom(qsizetype at, const QString& replacement) {
        truncate(at);
        pushText(replacement);
        judgeMarksFrom(at);
    }

    // The group's "]" is used up at step `step`: all of it joins the next group, and only spans
    // recorded from `step` on can reach back into it. A part that joined even later keeps its
    // own, later step.
    void joinNextGroupAt(std::size_t step) {
        qsizetype start = cur_.size();
        while (!joins_.empty() && joins_.back().since <= step) {
            start = joins_.back().start;
            joins_.pop_back();
        }
        if (start < cur_.size())
            joins_.push_back({start, step});
    }

    void truncate(qsizetype length) {
        cur_.truncate(length);
        if (qsizetype(prefix_.size()) > length + 1)
            prefix_.resize(std::size_t(length) + 1);
        while (!opens_.empty() && opens_.back() >= length)
            opens_.pop_back();
        while (!candidates_.empty() && candidates_.back() >= length)
            candidates_.pop_back();
        while (!joins_.empty() && joins_.back().start >= length)
            joins_.pop_back();
    }

    void flushInto(QString& out) {
        out += cur_;
        truncate(0);
    }

    // The earliest recorded span the group ended with when it was recorded; replaces it.
    bool replaceRecordedSuffix() {
        if (recorded_.empty())
            return false;
        std::size_t best = recorded_.size();
        qsizetype bestAt = -1;
        // Going left, the parts joined ever later: the join steps only grow.
        auto join = joins_.rbegin();
        for (auto it = candidates_.rbegin(); it != candidates_.rend(); ++it) {
            const qsizetype at = *it;
            while (join->start > at)
                ++join;
            const std::size_t earliest = join->since;
            if (earliest >= recorded_.size())
                break;
            const auto sameLength = byLength_.find(cur_.size() - at);
            if (sameLength == byLength_.end())
                continue;
            // A few spans of that length are compared as they are; many, through the hash.
            const std::vector<std::size_t>* indexes = &sameLength->second;
            if (indexes->size() > kComparedDirectly) {
                const auto found = byHash_.find(suffixHash(at));
                if (found == byHash_.end())
                    continue;
                indexes = &found->second;
            }
            for (const std::size_t index : *indexes) {
                if (index >= best)
                    break;
                if (index < earliest || recorded_[index].span != QStringView(cur_).mid(at))
                    continue;
                best = index;
                bestAt = at;
                break;
            }
        }
        if (bestAt < 0)
            return false;
        replaceFrom(bestAt, recorded_[best].replacement);
        joinNextGroupAt(best + 1);
        return true;
    }

    // The walk's own step on the first "[" of the group.
    template <typename Replace> void takeFirstSpan(Replace&& replacementFor) {
        const qsizetype open = opens_.front();
        const qsizetype last = cur_.size() - 1;
        if (candidates_.empty() || candidates_.front() != open) {
            // The "[" stays in the prefix hashes made so far: only suffixes after it are asked
            // for, and the difference of two prefix hashes does not depend on it.
            cur_[open] = u'<';
            cur_[last] = u'>';
            if (qsizetype(prefix_.size()) > last + 1)
                prefix_.resize(std::size_t(last) + 1);
            opens_.pop_front();
            judgeMarksFrom(last);
            joinNextGroupAt(recorded_.size());
            return;
        }
        const bool sender = isMarkAt(open, senderMark_);
        const qsizetype valueAt = open + 1 + (sender ? senderMark_ : recipientMark_).size();
        QString replacement = replacementFor(sender, cur_.mid(valueAt, last - valueAt));
        replacement.replace(u'[', u'<').replace(u']', u'>');
        const QString span = cur_.mid(open);
        byHash_[hashOf(span)].push_back(recorded_.size());
        byLength_[span.size()].push_back(recorded_.size());
        recorded_.push_back({span, replacement});
        replaceFrom(open, replacement);
        joinNextGroupAt(recorded_.size());
    }

    const QString& senderMark_;
    const QString& recipientMark_;
    const qsizetype longestMark_;          // with its "["
    QString cur_;                          // the group being walked, with what it carried in
    std::vector<std::uint64_t> prefix_{0}; // hashes of cur_'s prefixes, as far as made
    std::vector<std::uint64_t> powers_{1};
    std::deque<qsizetype> opens_;      // every "[" in cur_
    std::deque<qsizetype> candidates_; // the "[" that start a sender or recipient span
    // Where cur_'s parts joined the group: from `start` on, only spans recorded from step
    // `since` on (the index into recorded_) were replaced in them; 0 for the group's own text.
    struct Join {
        qsizetype start;
        std::size_t since;
    };
    std::vector<Join> joins_; // `since` falls from left to right
    std::vector<Recorded> recorded_;
    std::unordered_map<std::uint64_t, std::vector<std::size_t>> byHash_;
    std::unordered_map<qsizetype, std::vector<std::size_t>> byLength_;
};

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

QString PlaceholderExpander::fillPersonPlaceholders(const QString& text,
                                                    const RecipientInfo& recipient) {
    const QString colon = placeholderColon();
    const QString senderMark = placeholderMark(loadString(IDS_VAR_SENDER), colon);
    const QString recipientMark = placeholderMark(loadString(IDS_VAR_RECIPIENT), colon);
    PlaceholderWalk walk(senderMark, recipientMark);
    return walk.run(text, [&](bool sender, const QString& field) {
        return sender ? senderField(sender_, field, &senderInformationMissing_)
                      : recipientField(recipient, field);
    });
}

QString PlaceholderExpander::expandForSending(const QString& text, const RecipientInfo& recipient) {
    const QString colon = placeholderColon();
    QString out = fillPersonPlaceholders(text, recipient);

    // These work on the whole text on purpose: once "Time:Now" is present, every "Now" is
    // replaced, also in ordinary words. "Now" is the language's own word.
    const QString time = loadString(IDS_VAR_TIME);
    const QString date = loadString(IDS_VAR_DATE);
    const QString now = loadString(IDS_TIME_NOW);
    if (!time.isEmpty() && !now.isEmpty() && out.contains(time + colon + now))
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
    const VariableLookup lookup;
    return markersToPlaceholders(text, [&](QStringView value) { return lookup.find(value); });
}

// Each round takes the first "<" left, turns it into "[", and the first ">" after it into "]";
// a value found for the text between them replaces it, and is read on like the rest (a name
// holding "<" starts another round). At most one round per character of the text, so such names
// cannot keep it going. In one pass: what is still to be read is the back of `work`, so a
// replacement is written just before its "]" into the room already read, without moving the rest.
QString PlaceholderExpander::markersToPlaceholders(const QString& text,
                                                   const VariableFinder& findVariable) {
    const QString colon = placeholderColon();
    QString out;
    out.reserve(text.size());
    QString work = text;
    qsizetype next = 0; // work[next, end) is still to be read
    // No ">" in work[closeFrom, closeTo); closeTo is the next ">" or the end. Each stretch of the
    // text is looked through once: only a replacement is looked through again.
    qsizetype closeFrom = 0;
    qsizetype closeTo = 0;
    const auto firstCloseFrom = [&](qsizetype from) {
        if (from < closeFrom || from > closeTo)
            closeFrom = closeTo = from;
        while (closeTo < work.size() && work.at(closeTo) != u'>')
            ++closeTo;
        return closeTo < work.size() ? closeTo : -1;
    };
    for (qsizetype round = 0; round < text.size(); ++round) {
        const qsizetype open = work.indexOf(u'<', next);
        if (open < 0)
            break;
        out += QStringView(work).mid(next, open - next);
        out += u'[';
        next = open + 1;
        qsizetype close = firstCloseFrom(next);
        if (close < 0)
            continue;
        work[close] = u']';
        const std::optional<VariableMatch> match =
            findVariable(QStringView(work).mid(next, close - next));
        if (!match)
            continue;
        const QString replacement = match->name + colon + match->value;
        if (replacement.size() > close) {
            // Not room enough before the "]": make the room at least as large as the rest.
            const qsizetype room = replacement.size() + (work.size() - close);
            QString roomier(room, u' ');
            roomier += QStringView(work).mid(close);
            work = std::move(roomier);
            close = room;
        }
        next = close - replacement.size();
        std::copy(replacement.cbegin(), replacement.cend(), work.begin() + next);
        closeFrom = closeTo = next;
    }
    out += QStringView(work).mid(next);
    return out;
}

QString PlaceholderExpander::editorTextToBody(const QString& text, const QString& loadedBody) {
    const QString colon = placeholderColon();
    // The list placeholders of the loaded template, in order: the ones the editor showed as marks.
    std::vector<VariableMatch> loaded;
    std::unordered_map<QString, std::size_t> firstWithValue;
    std::unordered_map<QString, QString> spellingOf; // case-folded name: the first spelling
    qsizetype longestValue = 0;
    for (qsizetype from = 0;;) {
        const PlaceholderSpan span = findPlaceholder(loadedBody, from, colon);
        if (span.open < 0)
            break;
        if (!TemplateStore::isComputedVariable(span.name)) {
            firstWithValue.try_emplace(span.value, loaded.size());
            spellingOf.try_emplace(span.name.toCaseFolded(), span.name);
            longestValue = std::max(longestValue, span.value.size());
            loaded.push_back({span.name, span.value});
        }
        from = span.close + 1;
    }
    const VariableLookup lookup;
    std::size_t markIndex = 0;
    return markersToPlaceholders(text, [&](QStringView value) -> std::optional<VariableMatch> {
        const std::size_t place = markIndex++;
        if (place < loaded.size() && loaded[place].value == value)
            return loaded[place];
        if (value.size() <= longestValue) {
            const auto same = firstWithValue.find(value.toString());
            if (same != firstWithValue.end())
                return loaded[same->second];
        }
        std::optional<VariableMatch> match = lookup.find(value);
        if (!match)
            return match;
        const auto spelt = spellingOf.find(match->name.toCaseFolded());
        if (spelt != spellingOf.end())
            match->name = spelt->second;
        return match;
    });
}

} // namespace tessaly::sms
