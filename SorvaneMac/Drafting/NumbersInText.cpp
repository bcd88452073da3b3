#include "SorvaneMac/Drafting/NumbersInText.h"

#include <algorithm>
#include <array>
#include <set>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane::NumbersInText {

namespace {

constexpr char minus = '-';

struct Number {
    std::string asWritten;
    /// Parts between commas, each without zeros that change nothing; the sign is with the first.
    std::vector<std::string> parts;
    /// The same without the commas.
    std::string joined;
};

bool isDigit(char each) {
    return each >= '0' && each <= '9';
}

/// Hyphens, dashes of a digit's width and minus signs, which all stand for a minus in print.
bool isMinus(UChar32 character) {
    return (character >= 0x2010 && character <= 0x2013) || character == 0x2212 ||
           character == 0xFE63 || character == 0xFF0D;
}

/// Digits of other scripts as ASCII digits, every minus as that of ASCII, all other characters as
/// they stand.
std::string plain(std::string_view text) {
    std::string made;
    made.reserve(text.size());
    const auto size = static_cast<int32_t>(text.size());
    for (int32_t at = 0; at < size;) {
        const int32_t start = at;
        UChar32 character = 0;
        U8_NEXT(text.data(), at, size, character);
        const int32_t digit = character > 0x7F ? u_charDigitValue(character) : -1;
        if (digit >= 0) {
            made += static_cast<char>('0' + digit);
        } else if (isMinus(character)) {
            made += minus;
        } else {
            made +=
                text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(at - start));
        }
    }
    return made;
}

/// "0.50" and ".5" as "0.5", "007" as "7".
std::string canonical(std::string_view number) {
    std::string text(number);
    const std::size_t point = text.find('.');
    if (point != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.ends_with('.')) {
            text.pop_back();
        }
    }
    text.erase(0, std::min(text.find_first_not_of('0'), text.size()));
    return text.empty() || text.front() == '.' ? "0" + text : text;
}

/// Whether the mark at a place parts digits: a point before a digit, a comma between digits.
bool goesOn(std::string_view text, std::size_t at) {
    return (text[at] == '.' || text[at] == ',') && at + 1 < text.size() && isDigit(text[at + 1]);
}

/// The end of the number that begins at a place; the place itself where none does.
std::size_t numberEnd(std::string_view text, std::size_t at) {
    std::size_t end = at;
    bool hasPoint = false;
    while (end < text.size()) {
        const bool isMark = goesOn(text, end) && !hasPoint && (end > at || text[end] == '.');
        if (!isDigit(text[end]) && !isMark) {
            break;
        }
        hasPoint = hasPoint || text[end] == '.';
        ++end;
    }
    return end;
}

/// The character that a text ends with; 0 for none.
UChar32 lastCharacter(std::string_view text) {
    std::size_t start = text.size();
    while (start > 0 && (start == text.size() || U8_IS_TRAIL(text[start]))) {
        --start;
    }
    const auto size = static_cast<int32_t>(text.size() - start);
    UChar32 character = 0;
    if (size > 0) {
        int32_t at = 0;
        U8_NEXT(text.data() + start, at, size, character);
    }
    return character;
}

/// Whether what stands before a number ends with its sign: no hyphen of a word or of a range, and
/// apart from the number only behind a mark that leads to one ("r = - .45", but not "5 - 3").
bool endsWithSign(std::string_view before) {
    constexpr std::array<std::string_view, 8> leads = {"=", "<", ">", "≤", "≥", "≈", "(", "["};
    const bool isApart = !before.ends_with(minus);
    before = UnicodeText::trimmed(before);
    if (!before.ends_with(minus)) {
        return false;
    }
    before.remove_suffix(1);
    if (isApart) {
        before = UnicodeText::trimmed(before);
        return std::ranges::any_of(
            leads, [before](std::string_view lead) { return before.ends_with(lead); });
    }
    const UChar32 last = lastCharacter(before);
    return !u_isalnum(last) && last != ')' && last != ']' && last != '%';
}

std::string withSign(std::string number, bool isNegative) {
    return isNegative && number != "0" ? minus + number : number;
}

Number read(std::string_view text, bool isNegative) {
    Number number{.asWritten = withSign(std::string(text), isNegative), .parts = {}, .joined = {}};
    std::string whole;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(',', start), text.size());
        number.parts.push_back(canonical(text.substr(start, end - start)));
        whole += text.substr(start, end - start);
        start = end + 1;
    }
    number.parts.front() = withSign(number.parts.front(), isNegative);
    number.joined = withSign(canonical(whole), isNegative);
    return number;
}

std::vector<Number> numbers(std::string_view text) {
    std::vector<Number> found;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = numberEnd(text, at);
        if (end > at) {
            found.push_back(read(text.substr(at, end - at), endsWithSign(text.substr(0, at))));
        }
        at = std::max(end, at + 1);
    }
    return found;
}

}  // namespace

std::vector<std::string> foreign(std::string_view draft, std::string_view source) {
    std::set<std::string> known;
    for (const Number& each : numbers(plain(source))) {
        known.insert(each.parts.begin(), each.parts.end());
        known.insert(each.joined);
    }
    std::vector<std::string> strangers;
    for (const Number& each : numbers(plain(draft))) {
        const bool isKnown = known.contains(each.joined) ||
                             std::ranges::all_of(each.parts, [&known](const std::string& part) {
                                 return known.contains(part);
                             });
        if (!isKnown && std::ranges::find(strangers, each.asWritten) == strangers.end()) {
            strangers.push_back(each.asWritten);
        }
    }
    return strangers;
}

}  // namespace sorvane::NumbersInText
