#pragma once

#include <string>
#include <string_view>

#include "SorvaneMac/Report/RichDocument.h"

/// Text as it is laid out, never as it is stored, copied or exported.
///
/// The toolkit breaks lines between a leading decimal point and its digits, and on both sides of a
/// sign of equality. The invisible word joiners that keep them together have no width and leave no
/// trace in a PDF.
namespace sorvane::UnbrokenText {

inline constexpr char16_t wordJoiner = 0x2060;

/// The text with every number in one piece, and a statistic with its number, as in "p = .03".
std::string numbersHeld(std::string_view text);
/// As above, and hyphenated words in one piece as well.
std::string wordsHeld(std::string_view text);

/// The document with the numbers of all its runs in one piece, and as it was before that.
RichDocument numbersHeld(RichDocument document);
RichDocument released(RichDocument document);

}  // namespace sorvane::UnbrokenText
