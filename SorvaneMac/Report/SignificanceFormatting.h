#pragma once

#include <string>
#include <string_view>

/// The text of p-values in table cells.
namespace sorvane::SignificanceFormatting {

/// "< .001" below 0.001, otherwise three decimals with the leading zero, which the table layer
/// drops.
///
/// Returns    the stars follow directly when wanted: "0.050*"
std::string pValueText(double p, bool includeStars);

/// "***" for p at most 0.001, "**" at most 0.01, "*" at most 0.05, else empty.
///
/// Failure    p not finite -> empty
std::string_view stars(double p);

}  // namespace sorvane::SignificanceFormatting
