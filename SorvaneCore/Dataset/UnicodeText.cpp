#include "SorvaneCore/Dataset/UnicodeText.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>
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

/// Combining marks begin here; below, the only cluster of several characters is CR LF.
constexpr UChar32 firstJoining = 0x0300;

constexpr UChar32 capitalIWithDot = 0x0130;
constexpr UChar32 capitalSigma = 0x03A3;

std::int32_t clusterBreak(UChar32 c) {
    return c < 0 ? std::int32_t{U_GCB_OTHER}
                 : u_getIntPropertyValue(c, UCHAR_GRAPHEME_CLUSTER_BREAK);
}

/// Whether a character among others of its kind is a cluster by itself.
bool breaksOnBothSides(UChar32 c) {
    const std::int32_t property = clusterBreak(c);
    return property == U_GCB_OTHER || property == U_GCB_CONTROL;
}

std::size_t segmentedCharacterCount(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    UText source = UTEXT_INITIALIZER;
    utext_openUTF8(&source, text.data(), static_cast<std::int64_t>(text.size()), &status);
    const std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    characters->setText(&source, status);
    std::size_t count = 0;
    while (characters->next() != icu::BreakIterator::DONE) {
        ++count;
    }
    utext_close(&source);
    return count;
}

/// The bytes before the first capital or non-ASCII character, eight at a time.
std::size_t lowerAsciiLength(std::string_view text) {
    constexpr std::uint64_t ones = 0x0101010101010101U;
    constexpr std::uint64_t highs = 0x8080808080808080U;
    std::size_t position = 0;
    for (; position + sizeof(std::uint64_t) <= text.size(); position += sizeof(std::uint64_t)) {
        std::uint64_t word;
        std::memcpy(&word, text.data() + position, sizeof word);
        const std::uint64_t low = word & ~highs;
        const std::uint64_t fromA = low + (0x80 - 'A') * ones;
        const std::uint64_t beyondZ = low + (0x7F - 'Z') * ones;
        if (((word | (fromA & ~beyondZ)) & highs) != 0) {
            break;
        }
    }
    while (position < text.size() && static_cast<unsigned char>(text[position]) < 0x80 &&
           !(text[position] >= 'A' && text[position] <= 'Z')) {
        ++position;
    }
    return position;
}

void appendCodePoint(UChar32 c, std::string& text) {
    std::uint8_t bytes[U8_MAX_LENGTH];
    std::int32_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, c);
    text.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
}

/// Lower-casing of the two letters whose lower case is no single character of its own.
std::string_view lowerCasedInContext(std::string_view text, std::string& storage) {
    icu::UnicodeString wide = icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
    wide.toLower(icu::Locale::getRoot());
    storage.clear();
    wide.toUTF8String(storage);
    return storage;
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
    std::string storage;
    const std::string_view result = lowerCased(text, storage);
    return result.data() == storage.data() ? storage : std::string(result);
}

std::string_view lowerCased(std::string_view text, std::string& storage) {
    const std::size_t unchanged = lowerAsciiLength(text);
    if (unchanged == text.size()) {
        return text;
    }
    storage.assign(text.substr(0, unchanged));
    for (std::size_t position = unchanged; position < text.size();) {
        const char byte = text[position];
        if (byte >= 'A' && byte <= 'Z') {
            storage.push_back(static_cast<char>(byte + ('a' - 'A')));
            ++position;
            continue;
        }
        const std::size_t start = position;
        if (const std::size_t run = lowerAsciiLength(text.substr(position))) {
            storage.append(text.substr(position, run));
            position += run;
            continue;
        }
        const UChar32 c = codePointAt(text, position);
        if (c == capitalIWithDot || c == capitalSigma) {
            return lowerCasedInContext(text, storage);
        }
        const UChar32 lower = c < 0 ? c : u_tolower(c);
        if (lower == c) {
            storage.append(text.substr(start, position - start));
        } else {
            appendCodePoint(lower, storage);
        }
    }
    return storage;
}

std::string upperCased(std::string_view text) {
    std::string result(text);
    if (isAscii(text)) {
        std::transform(result.begin(), result.end(), result.begin(), [](char c) {
            return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
        });
        return result;
    }
    icu::UnicodeString wide = icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
    wide.toUpper(icu::Locale::getRoot());
    result.clear();
    wide.toUTF8String(result);
    return result;
}

std::size_t characterCount(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t position = 0; position < text.size(); ++count) {
        const UChar32 c = codePointAt(text, position);
        if (c == '\r' && position < text.size() && text[position] == '\n') {
            ++position;
        } else if (c >= firstJoining && !breaksOnBothSides(c)) {
            return segmentedCharacterCount(text);
        }
    }
    return count;
}

std::size_t leadingDigitLength(std::string_view text) {
    std::size_t position = 0;
    return !text.empty() && u_isdigit(codePointAt(text, position)) ? position : 0;
}

std::size_t leadingLetterLength(std::string_view text) {
    std::size_t position = 0;
    return !text.empty() && u_isalpha(codePointAt(text, position)) ? position : 0;
}

bool isWord(std::string_view text) {
    for (std::size_t position = 0; position < text.size();) {
        const UChar32 c = codePointAt(text, position);
        if (c != '_' && !isAlphanumeric(c)) {
            return false;
        }
    }
    return !text.empty();
}

bool standsAloneAmongOthers(std::string_view text, std::size_t position) {
    std::size_t next = position + 1;
    if (next < text.size() && static_cast<unsigned char>(text[next]) >= 0x80) {
        const std::int32_t following = clusterBreak(codePointAt(text, next));
        if (following == U_GCB_EXTEND || following == U_GCB_ZWJ ||
            following == U_GCB_SPACING_MARK) {
            return false;
        }
    }
    std::size_t previous = position;
    return position == 0 || static_cast<unsigned char>(text[position - 1]) < 0x80 ||
           clusterBreak(codePointBefore(text, previous)) != U_GCB_PREPEND;
}

bool isValidUtf8(std::string_view text) {
    constexpr std::size_t stride = 64;
    std::size_t position = 0;
    while (position < text.size()) {
        if (isAscii(text.substr(position, stride))) {
            position += stride;
            continue;
        }
        for (const std::size_t end = std::min(position + stride, text.size()); position < end;) {
            if (codePointAt(text, position) < 0) {
                return false;
            }
        }
    }
    return true;
}

std::string repaired(std::string_view text) {
    if (isValidUtf8(text)) {
        return std::string(text);
    }
    std::string result;
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t begin = position;
        if (codePointAt(text, position) < 0) {
            result.append("\xEF\xBF\xBD");
        } else {
            result.append(text.substr(begin, position - begin));
        }
    }
    return result;
}

bool isAscii(std::string_view text) {
    std::uint64_t bits = 0;
    std::size_t position = 0;
    for (; position + sizeof bits <= text.size(); position += sizeof bits) {
        std::uint64_t word;
        std::memcpy(&word, text.data() + position, sizeof word);
        bits |= word;
    }
    for (; position < text.size(); ++position) {
        bits |= static_cast<unsigned char>(text[position]);
    }
    return (bits & 0x8080808080808080U) == 0;
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
