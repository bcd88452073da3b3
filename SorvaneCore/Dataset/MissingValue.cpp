#include "SorvaneCore/Dataset/MissingValue.h"

#include <algorithm>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane::MissingValue {

namespace {

constexpr std::string_view blankMarker = "(blank)";
/// "not applicable" and "not available" are the longest markers.
constexpr std::size_t longestMarker = 14;

/// Whether a missing cell can begin with this byte: the first of a marker in either case, white
/// space, or a byte outside ASCII.
bool canBeginMissing(char c) {
    constexpr std::string_view firsts = " \t\n\v\f\r#-.BMNbmn";
    return static_cast<unsigned char>(c) >= 0x80 || firsts.find(c) != firsts.npos;
}

std::string shown(const std::string& marker) {
    return marker.empty() ? std::string(blankMarker) : marker;
}

}  // namespace

const std::set<std::string, std::less<>>& knownMarkers() {
    static const std::set<std::string, std::less<>> markers = {"",
                                                               "#n/a",
                                                               ".",
                                                               "-",
                                                               "--",
                                                               "blank",
                                                               "missing",
                                                               "n.a.",
                                                               "na",
                                                               "nan",
                                                               "n/a",
                                                               "nil",
                                                               "no response",
                                                               "not answered",
                                                               "not applicable",
                                                               "not available",
                                                               "null"};
    return markers;
}

std::optional<std::string> normalizedMarker(std::string_view text) {
    const std::string_view trimmed = UnicodeText::trimmed(text);
    // Lower-casing can shorten a text in bytes, never to a quarter.
    if (trimmed.size() > 4 * longestMarker) {
        return std::nullopt;
    }
    std::string normalized = UnicodeText::lowerCased(trimmed);
    if (!knownMarkers().contains(normalized)) {
        return std::nullopt;
    }
    return normalized;
}

bool isMissing(std::string_view text) {
    if (text.empty()) {
        return true;
    }
    if (!canBeginMissing(text.front())) {
        return false;
    }
    const std::string_view trimmed = UnicodeText::trimmed(text);
    if (trimmed.empty()) {
        return true;
    }
    // Most cells that begin with a dash are negative numbers.
    return trimmed.front() == '-' ? trimmed == "-" || trimmed == "--"
                                  : normalizedMarker(trimmed).has_value();
}

std::optional<std::string> displayMarker(std::string_view text) {
    std::optional<std::string> marker = normalizedMarker(text);
    if (marker) {
        marker = shown(*marker);
    }
    return marker;
}

std::vector<std::string> displayMarkers() {
    std::vector<std::string> markers;
    for (const std::string& marker : knownMarkers()) {
        markers.push_back(shown(marker));
    }
    std::sort(markers.begin(), markers.end());
    return markers;
}

}  // namespace sorvane::MissingValue
