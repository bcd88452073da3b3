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

/// Number of user-perceived characters (extended grapheme clusters).
std::size_t characterCount(std::string_view text);

/// Whether every byte is ASCII.
bool isAscii(std::string_view text);

/// The pieces between characters that are neither letters, marks nor digits in the Unicode sense;
/// empty pieces are dropped.
std::vector<std::string> alphanumericPieces(std::string_view text);

}  // namespace sorvane::UnicodeText
