#include "SorvaneCore/Import/DelimiterDetection.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane::DelimiterDetection {

namespace {

constexpr std::string_view candidates = ",\t;";
constexpr std::size_t sampledLines = 8;

using Counts = std::array<std::uint64_t, candidates.size()>;

/// The length in bytes of the newline at a position, or 0: line feed, vertical tab, form feed,
/// carriage return, next line (U+0085), line and paragraph separator (U+2028, U+2029).
std::size_t newlineLength(std::string_view text, std::size_t position) {
    const char c = text[position];
    if (c >= '\n' && c <= '\r') {
        return 1;
    }
    if (c == '\xC2') {
        return text.substr(position, 2) == "\xC2\x85" ? 2 : 0;
    }
    if (c == '\xE2') {
        const std::string_view three = text.substr(position, 3);
        return three == "\xE2\x80\xA8" || three == "\xE2\x80\xA9" ? 3 : 0;
    }
    return 0;
}

bool isQuote(std::string_view text, std::size_t position) {
    return position < text.size() && text[position] == '"' &&
           UnicodeText::standsAlone(text, position);
}

/// Adds the candidates of the line that begins at `position`, and moves to its end.
void countLine(std::string_view text, std::size_t& position, Counts& counts) {
    bool inQuotes = false;
    for (; position < text.size() && newlineLength(text, position) == 0; ++position) {
        if (isQuote(text, position)) {
            if (inQuotes && isQuote(text, position + 1)) {
                ++position;
            } else {
                inQuotes = !inQuotes;
            }
            continue;
        }
        const std::size_t candidate = candidates.find(text[position]);
        if (!inQuotes && candidate != candidates.npos &&
            (text[position] == '\t' || UnicodeText::standsAlone(text, position))) {
            ++counts[candidate];
        }
    }
}

}  // namespace

char delimiter(std::string_view text) {
    Counts counts = {};
    std::size_t lines = 0;
    for (std::size_t position = 0; position < text.size() && lines < sampledLines;) {
        if (const std::size_t length = newlineLength(text, position)) {
            position += length;
            continue;
        }
        countLine(text, position, counts);
        ++lines;
    }
    const auto most = std::max_element(counts.begin(), counts.end());
    return candidates[static_cast<std::size_t>(most - counts.begin())];
}

}  // namespace sorvane::DelimiterDetection
