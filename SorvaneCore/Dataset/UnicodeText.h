#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Unicode operations on UTF-8 text, with a fast path for ASCII. Malformed bytes are left as they
/// stand.
namespace sorvane::UnicodeText {

/// The text without white space and newlines at both ends (Unicode's White_Space property).
std::string_view trimmed(std::string_view text);

/// Full Unicode lower-casing of the whole text, the same under every locale.
std::string lowerCased(std::string_view text);

/// As above; the result is the text itself where nothing changes, else it stands in `storage`.
std::string_view lowerCased(std::string_view text, std::string& storage);

/// Full Unicode upper-casing of the whole text, the same under every locale.
std::string upperCased(std::string_view text);

/// Number of user-perceived characters (extended grapheme clusters).
std::size_t characterCount(std::string_view text);

/// Whether the text begins with a decimal digit of any script; its length in bytes, or 0.
std::size_t leadingDigitLength(std::string_view text);

/// Whether the text begins with a letter of any script; its length in bytes, or 0.
std::size_t leadingLetterLength(std::string_view text);

/// Whether the text is not empty and holds nothing but letters, marks, numbers and "_".
bool isWord(std::string_view text);

/// Whether every byte is ASCII.
bool isAscii(std::string_view text);

/// Whether the ASCII character at `position` is a user-perceived character by itself: no mark or
/// joiner after it extends it and no prepended character before it takes it in. Line breaks and
/// tabs, being controls, always stand alone.
inline bool standsAlone(std::string_view text, std::size_t position);
/// The same, where a neighbour is not ASCII.
bool standsAloneAmongOthers(std::string_view text, std::size_t position);

/// Whether the bytes are UTF-8 by the letter: no surrogates, no overlong forms, nothing beyond
/// U+10FFFF.
bool isValidUtf8(std::string_view text);

/// The text with U+FFFD in the place of every malformed stretch.
std::string repaired(std::string_view text);

/// The pieces between characters that are neither letters, marks nor digits in the Unicode sense;
/// empty pieces are dropped.
std::vector<std::string> alphanumericPieces(std::string_view text);

inline bool standsAlone(std::string_view text, std::size_t position) {
    const auto isAsciiAt = [text](std::size_t index) {
        return index >= text.size() || static_cast<unsigned char>(text[index]) < 0x80;
    };
    // Below position 0 the index wraps beyond the text.
    return (isAsciiAt(position - 1) && isAsciiAt(position + 1)) ||
           standsAloneAmongOthers(text, position);
}

}  // namespace sorvane::UnicodeText
