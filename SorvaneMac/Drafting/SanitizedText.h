#pragma once

#include <string>
#include <string_view>

/// What a model wrote, less what is no prose.
namespace sorvane::SanitizedText {

/// The lines of the text, trimmed and parted by line feeds, without fenced blocks, without lines
/// that call tools or tell of it, and without blank ends.
///
/// Method     every line break of Unicode ends a line. A line that begins with "```" opens or closes
///            a fence; a fence left open takes all that follows, and one that is closed on its own
///            line takes that line. Lines that begin with "tool_call" or "i have called", in any
///            case, go, and so does what stands between the tags tool_call or think
std::string sanitized(std::string_view text);

/// The same for text that is still growing: a last line that may yet become one of those is held
/// back.
std::string sanitizedSoFar(std::string_view text);

}  // namespace sorvane::SanitizedText
