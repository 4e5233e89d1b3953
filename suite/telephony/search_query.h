#pragma once

// What a person types into the search field, made into what the store looks for: the words
// and phrases for the text index (an FTS5 query), the same words folded for names, and the
// digits of a number.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessaly::telephony {

struct SearchQuery {
    // Words and phrases beyond this many are left out: a person types a few, and every one
    // costs a pass over the index and over each excerpt.
    static constexpr size_t kMostTerms = 16;
    // Of what is typed, this much is read (Qt's normalisation, which folding uses, is not
    // linear on every text).
    static constexpr size_t kLongestTyped = 1024;

    // Words and phrases as typed, case and diacritics folded; the last one a prefix when the
    // person has not finished it (no space after it).
    std::vector<std::u16string> terms;
    bool lastIsPrefix = false;
    // The FTS5 query: every term quoted, so that nothing typed is taken for syntax.
    std::u16string textIndexQuery;
    // For a query of numbers only, with at least three digits: the digits a party's number
    // must contain (a leading 00, + or trunk 0 left off, so "0171 234" finds "+49171234…").
    std::u16string numberDigits;

    bool empty() const { return terms.empty(); }
};

SearchQuery parseSearchQuery(std::u16string_view typed);

// Case folded and diacritics removed ("Élan" → "elan"), as the text index compares.
std::u16string foldForSearch(std::u16string_view text);
// Whether the digits of `number` contain `digits`.
bool numberContainsDigits(std::u16string_view number, std::u16string_view digits);
// Whether every term begins a word of `name` (the last term) or is a word of it (the others);
// a phrase must stand in the name as it is. `name` folded as foldForSearch does.
bool nameMatches(std::u16string_view foldedName, const SearchQuery& query);

// Where the first word of `text` that a term matches stands (the start and length, in code
// units), as the text index matches: case and diacritics aside, the last term as a beginning
// when it is a prefix, a phrase by its first word. {-1, 0} when no word matches.
std::pair<int, int> firstMatch(std::u16string_view text, const SearchQuery& query);

} // namespace tessaly::telephony
