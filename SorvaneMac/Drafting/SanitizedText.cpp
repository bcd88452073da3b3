#include "SorvaneMac/Drafting/SanitizedText.h"

#include <algorithm>
#include <array>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane::SanitizedText {

namespace {

constexpr std::string_view fence = "```";
constexpr std::array<std::string_view, 2> droppedStarts = {"tool_call", "i have called"};

/// Whether the text stands at the start of something that is dropped, or the reverse.
bool mayBecomeDropped(std::string_view lower) {
    return fence.starts_with(lower) ||
           std::ranges::any_of(
               droppedStarts, [lower](std::string_view start) { return start.starts_with(lower); });
}

bool isDropped(std::string_view lower) {
    return std::ranges::any_of(
        droppedStarts, [lower](std::string_view start) { return lower.starts_with(start); });
}

}  // namespace

std::string sanitized(std::string_view text) {
    std::string kept;
    bool isFirst = true;
    bool isFenced = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = UnicodeText::trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.starts_with(fence)) {
            isFenced = !isFenced;
        } else if (!isFenced && !isDropped(UnicodeText::lowerCased(line))) {
            kept += isFirst ? "" : "\n";
            kept += line;
            isFirst = false;
        }
    }
    return kept;
}

std::string sanitizedSoFar(std::string_view text) {
    const std::size_t lineStart = text.rfind('\n') + 1;
    const std::string last = UnicodeText::lowerCased(UnicodeText::trimmed(text.substr(lineStart)));
    return sanitized(mayBecomeDropped(last) ? text.substr(0, lineStart) : text);
}

}  // namespace sorvane::SanitizedText
