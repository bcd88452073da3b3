#pragma once

#include <optional>
#include <string_view>

#include "SorvaneMac/Report/RichDocument.h"

namespace sorvane::RTFReader {

/// The document that Rich Text holds.
///
/// Method     text with font role, size, bold, italic, underline; alignment and spacing; tables
///            with spans and horizontal rules; PNG pictures. Anything else is passed over, as are
///            unknown controls. Bytes beyond ASCII count as Windows-1252
/// Failure    the text does not begin as Rich Text does -> absent; a text cut short gives what
///            stands before the cut
/// Cost       linear
std::optional<RichDocument> document(std::string_view rtf);

}  // namespace sorvane::RTFReader
