#pragma once

#include <string>
#include <string_view>

#include "SorvaneMac/Report/RichDocument.h"

/// Text as it is laid out, never as it is stored, copied or exported.
///
/// The toolkit breaks lines between a leading decimal point and its digits. The invisible word
/// joiners that keep them together have no width and leave no trace in a PDF.
namespace sorvane::UnbrokenText {

/// The text with every number in one piece.
std::string numbersHeld(std::string_view text);
/// As above, and hyphenated words in one piece as well.
std::string wordsHeld(std::string_view text);

/// The document with the numbers of all its runs in one piece.
RichDocument numbersHeld(RichDocument document);

}  // namespace sorvane::UnbrokenText
