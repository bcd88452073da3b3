#pragma once

#include <string>
#include <string_view>

/// What a model wrote, less what is no prose.
namespace sorvane::SanitizedText {

/// The lines of the text, trimmed, without fenced blocks and without lines that call tools or tell
/// of it.
///
/// Method     a line that begins with "```" opens or closes a fence; a fence left open takes all
///            that follows. Lines that begin with "tool_call" or "i have called", in any case, go
std::string sanitized(std::string_view text);

/// The same for text that is still growing: a last line that may yet become one of those is held
/// back.
std::string sanitizedSoFar(std::string_view text);

}  // namespace sorvane::SanitizedText
