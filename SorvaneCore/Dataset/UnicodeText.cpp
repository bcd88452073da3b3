#include "SorvaneCore/Dataset/UnicodeText.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

namespace sorvane::UnicodeText {

namespace {

bool isAsciiWhiteSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

UChar32 codePointAt(std::string_view text, std::size_t& position) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    auto index = static_cast<std::int64_t>(position);
    const auto length = static_cast<std::int64_t>(text.size());
    UChar32 c = 0;
    U8_NEXT(bytes, index, length, c);
    position = static_cast<std::size_t>(index);
    return c;
}

UChar32 codePointBefore(std::string_view text, std::size_t& position) {
    constexpr std::size_t longestSequence = 4;
    const std::size_t first = position > longestSequence ? position - longestSequence : 0;
    std::size_t start = position - 1;
    while (start > first && (static_cast<unsigned char>(text[start]) & 0xC0) == 0x80) {
        --start;
    }
    std::size_t end = start;
    const UChar32 c = codePointAt(text.substr(0, position), end);
    // A sequence that ends early is malformed: what stands before the position is no character.
    const bool whole = end == position;
    position = start;
    return whole ? c : -1;
}

bool isWhiteSpace(UChar32 c) {
    return c >= 0 && u_isUWhiteSpace(c);
}

bool isAlphanumeric(UChar32 c) {
    if (c < 0) {
        return false;
    }
    const std::uint32_t letterMarkOrNumber = U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK;
    return (U_GET_GC_MASK(c) & letterMarkOrNumber) != 0;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
    std::size_t begin = 0;
    while (begin < text.size()) {
        if (isAsciiWhiteSpace(text[begin])) {
            ++begin;
            continue;
        }
        std::size_t next = begin;
        const bool ascii = static_cast<unsigned char>(text[begin]) < 0x80;
        if (ascii || !isWhiteSpace(codePointAt(text, next))) {
            break;
        }
        begin = next;
    }
    std::size_t end = text.size();
    while (end > begin) {
        if (isAsciiWhiteSpace(text[end - 1])) {
            --end;
            continue;
        }
        std::size_t previous = end;
        const bool ascii = static_cast<unsigned char>(text[end - 1]) < 0x80;
        if (ascii || !isWhiteSpace(codePointBefore(text, previous))) {
            break;
        }
        end = previous;
    }
    return text.substr(begin, end - begin);
}

std::string lowerCased(std::string_view text) {
    if (isAscii(text)) {
        std::string result(text);
        for (char& c : result) {
            c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
        }
        return result;
    }
    icu::UnicodeString wide = icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
    wide.toLower(icu::Locale::getRoot());
    std::string result;
    wide.toUTF8String(result);
    return result;
}

std::size_t characterCount(std::string_view text) {
    if (isAscii(text)) {
        // The only cluster of several ASCII characters is CR LF.
        std::size_t count = text.size();
        for (std::size_t at = text.find("\r\n"); at != text.npos; at = text.find("\r\n", at + 2)) {
            --count;
        }
        return count;
    }
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    const icu::UnicodeString wide = icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
    characters->setText(wide);
    std::size_t count = 0;
    while (characters->next() != icu::BreakIterator::DONE) {
        ++count;
    }
    return count;
}

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::vector<std::string> alphanumericPieces(std::string_view text) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t at = position;
        if (!isAlphanumeric(codePointAt(text, position))) {
            if (at > start) {
                pieces.emplace_back(text.substr(start, at - start));
            }
            start = position;
        }
    }
    if (start < text.size()) {
        pieces.emplace_back(text.substr(start));
    }
    return pieces;
}

}  // namespace sorvane::UnicodeText
