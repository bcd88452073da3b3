#pragma once

#include <string>
#include <string_view>

#include "SorvaneMac/Report/ReportItem.h"

/// The rule of APA style that a number which cannot exceed 1 is printed without its leading zero.
namespace sorvane::APAFormat {

/// Whether the numbers under this head are bounded by 1: p-values, correlations, fit indices,
/// loadings.
///
/// Method     the head without surrounding blanks, by pattern, exact name, initial letter, then
///            lower-cased by name and part; the part "eta" also catches "Beta" and "Theta"
bool dropsLeadingZero(std::string_view header);

/// The table as the reader sees it: cells under a bounded head lose their leading zero.
///
/// Returns    all else unchanged; applying it twice changes nothing      Cost one copy of the table
ReportTable normalize(const ReportTable& table);

}  // namespace sorvane::APAFormat
