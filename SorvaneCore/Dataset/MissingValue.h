#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// Which cells count as missing. A cell is compared trimmed and lower-cased, as a whole.
namespace sorvane::MissingValue {

/// The 17 lower-case markers, the empty text among them. Built once, then read only.
const std::set<std::string, std::less<>>& knownMarkers();

bool isMissing(std::string_view text);

/// The normalised text of a missing cell ("na" for " NA "); absent for any other cell.
std::optional<std::string> normalizedMarker(std::string_view text);

/// As `normalizedMarker`, with the empty marker written "(blank)".
std::optional<std::string> displayMarker(std::string_view text);

/// All markers as they are shown, in code-point order.
std::vector<std::string> displayMarkers();

}  // namespace sorvane::MissingValue
