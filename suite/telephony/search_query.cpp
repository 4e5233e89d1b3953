#include "suite/telephony/search_query.h"

#include "suite/telephony/database.h"

#include <QString>

#include <algorithm>

namespace tessaly::telephony {
namespace {

bool isNumberCharacter(char16_t c) {
    return (c >= u'0' && c <= u'9') || c == u'+' || c == u'-' || c == u'(' || c == u')' ||
           c == u'/' || c == u'.';
}

// Control characters (NUL among them) separate words as spaces do.
bool isSeparator(char16_t c) {
    return QChar(c).isSpace() || QChar(c).category() == QChar::Other_Control;
}

// "ß" written as "ss", or where there is none, "ss" as "ß": the index folds neither into the
// other. One pass, whatever the length.
std::u16string otherSpelling(std::u16string_view word) {
    const bool sharpS = word.find(u'\u00DF') != std::u16string_view::npos;
    std::u16string other;
    other.reserve(word.size() + 8);
    for (size_t i = 0; i < word.size(); ++i) {
        if (sharpS && word[i] == u'\u00DF') {
            other += u"ss";
        } else if (!sharpS && word[i] == u's' && i + 1 < word.size() && word[i + 1] == u's') {
            other.push_back(u'\u00DF');
            ++i;
        } else {
            other.push_back(word[i]);
        }
    }
    return other;
}

bool hasLetterOrDigit(std::u16string_view text) {
    for (const char16_t c : text) {
        if (QChar(c).isLetterOrNumber() || QChar::isSurrogate(c))
            return true;
    }
    return false;
}

std::u16string digitsOf(std::u16string_view text) {
    std::u16string digits;
    for (const char16_t c : text) {
        if (c >= u'0' && c <= u'9')
            digits.push_back(c);
    }
    return digits;
}

void appendQuoted(std::u16string& out, std::u16string_view term) {
    out.push_back(u'"');
    for (const char16_t c : term) {
        if (c == u'"')
            out.push_back(u'"');
        out.push_back(c);
    }
    out.push_back(u'"');
}

bool isWordBoundary(std::u16string_view text, size_t at) {
    return at == 0 || !QChar(text[at - 1]).isLetterOrNumber();
}

} // namespace

std::u16string foldForSearch(std::u16string_view text) {
    // Plain ASCII, most words, needs no normalisation: lower case is all there is to fold.
    if (std::all_of(text.begin(), text.end(), [](char16_t c) { return c < 0x80; })) {
        std::u16string folded(text);
        for (char16_t& c : folded) {
            if (c >= u'A' && c <= u'Z')
                c = char16_t(c - u'A' + u'a');
        }
        return folded;
    }
    const QString decomposed = QString::fromUtf16(text.data(), qsizetype(text.size()))
                                   .toCaseFolded()
                                   .normalized(QString::NormalizationForm_D);
    std::u16string folded;
    folded.reserve(size_t(decomposed.size()));
    for (const QChar c : decomposed) {
        if (c.category() != QChar::Mark_NonSpacing)
            folded.push_back(c.unicode());
    }
    return folded;
}

SearchQuery parseSearchQuery(std::u16string_view typed) {
    typed = typed.substr(0, SearchQuery::kLongestTyped);
    SearchQuery query;
    std::vector<bool> phrase;
    size_t i = 0;
    bool allNumbers = true;
    std::u16string digits;
    while (i < typed.size() && query.terms.size() < SearchQuery::kMostTerms) {
        if (isSeparator(typed[i])) {
            ++i;
            continue;
        }
        std::u16string term;
        const bool quoted = typed[i] == u'"';
        if (quoted) {
            const size_t close = typed.find(u'"', i + 1);
            term = typed.substr(i + 1, (close == std::u16string_view::npos ? typed.size() : close) -
                                           i - 1);
            i = close == std::u16string_view::npos ? typed.size() : close + 1;
        } else {
            const size_t start = i;
            while (i < typed.size() && !isSeparator(typed[i]) && typed[i] != u'"')
                ++i;
            term = typed.substr(start, i - start);
        }
        if (!hasLetterOrDigit(term))
            continue;
        for (const char16_t c : term) {
            if (!isNumberCharacter(c))
                allNumbers = false;
        }
        digits += digitsOf(term);
        for (char16_t& c : term) {
            if (isSeparator(c))
                c = u' ';
        }
        // SQLite would pair a lone surrogate with whatever follows it, the closing quote
        // included: terms are made as the index reads the texts.
        query.terms.push_back(foldForSearch(searchableText(term)));
        phrase.push_back(quoted);
    }
    if (query.terms.empty())
        return query;
    // The last term is still being typed when nothing follows it.
    const bool cutShort = i < typed.size();
    query.lastIsPrefix = !phrase.back() && !cutShort && !isSeparator(typed.back());
    for (size_t t = 0; t < query.terms.size(); ++t) {
        if (t)
            query.textIndexQuery += u" AND ";
        const char16_t* prefix = t + 1 == query.terms.size() && query.lastIsPrefix ? u"*" : u"";
        // The index keeps "ß" as it is, folding finds "ss": either spelling finds both.
        const std::u16string other = otherSpelling(query.terms[t]);
        if (other == query.terms[t]) {
            appendQuoted(query.textIndexQuery, query.terms[t]);
            query.textIndexQuery += prefix;
            continue;
        }
        query.textIndexQuery.push_back(u'(');
        appendQuoted(query.textIndexQuery, query.terms[t]);
        query.textIndexQuery += prefix;
        query.textIndexQuery += u" OR ";
        appendQuoted(query.textIndexQuery, other);
        query.textIndexQuery += prefix;
        query.textIndexQuery.push_back(u')');
    }
    if (allNumbers && digits.size() >= 3) {
        if (digits.starts_with(u"00"))
            digits.erase(0, 2);
        else if (digits.starts_with(u"0"))
            digits.erase(0, 1);
        query.numberDigits = digits;
    }
    return query;
}

bool numberContainsDigits(std::u16string_view number, std::u16string_view digits) {
    return !digits.empty() && digitsOf(number).find(digits) != std::u16string::npos;
}

std::pair<int, int> firstMatch(std::u16string_view text, const SearchQuery& query) {
    // The first word of each term, and its other spelling with "ß" or "ss".
    std::vector<std::pair<std::u16string, bool>> wanted;
    for (size_t t = 0; t < query.terms.size(); ++t) {
        const std::u16string& term = query.terms[t];
        size_t end = 0;
        while (end < term.size() && QChar(term[end]).isLetterOrNumber())
            ++end;
        const bool prefix =
            (t + 1 == query.terms.size() && query.lastIsPrefix) || end < term.size();
        std::u16string word = term.substr(0, end);
        if (word.empty())
            continue;
        wanted.emplace_back(word, prefix);
        std::u16string other = otherSpelling(word);
        if (other != word)
            wanted.emplace_back(std::move(other), prefix);
    }
    // A word much longer than every term cannot match one: only its beginning is folded.
    size_t longestTerm = 0;
    for (const auto& [term, prefix] : wanted)
        longestTerm = std::max(longestTerm, term.size());
    const size_t folded = 2 * longestTerm + 16;
    size_t i = 0;
    while (i < text.size()) {
        if (!QChar(text[i]).isLetterOrNumber()) {
            ++i;
            continue;
        }
        size_t end = i;
        while (end < text.size() && (QChar(text[end]).isLetterOrNumber() ||
                                     QChar(text[end]).category() == QChar::Mark_NonSpacing))
            ++end;
        const std::u16string word = foldForSearch(text.substr(i, std::min(end - i, folded)));
        for (const auto& [term, prefix] : wanted) {
            if (prefix ? word.starts_with(term) : word == term)
                return {int(i), int(end - i)};
        }
        i = end;
    }
    return {-1, 0};
}

bool nameMatches(std::u16string_view foldedName, const SearchQuery& query) {
    if (query.terms.empty())
        return false;
    for (size_t t = 0; t < query.terms.size(); ++t) {
        const std::u16string& term = query.terms[t];
        const bool prefix = t + 1 == query.terms.size() && query.lastIsPrefix;
        bool found = false;
        for (size_t at = foldedName.find(term); at != std::u16string_view::npos && !found;
             at = foldedName.find(term, at + 1)) {
            const size_t end = at + term.size();
            found = isWordBoundary(foldedName, at) && (prefix || end == foldedName.size() ||
                                                       !QChar(foldedName[end]).isLetterOrNumber());
        }
        if (!found)
            return false;
    }
    return true;
}

} // namespace tessaly::telephony
