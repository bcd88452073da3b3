#pragma once

#include <optional>
#include <string>

namespace sorvane {

/// A number of a result as display text.
///
/// Input      absent or not finite is allowed; decimals at least 0
/// Returns    "%.Nf" of the C routine, rounding and negative zero included; otherwise "--"
std::string svFmt(std::optional<double> value, int decimals);

/// The decimals that a figure is written with at most; more ask for a power of ten.
inline constexpr int mostDecimals = 12;

/// A figure in a unit of the user's, as small or large as that makes it.
///
/// Input      how many decimals are known of it; below 0 where not even the units are
/// Method     as `svFmt` where a reader can take that in. A figure below 0.0001 that needs more
///            decimals than `mostDecimals`, and one from 10^15 up or whose last digits are not
///            known from 10^12 up, are written with a power of ten: "2.9 × 10⁻¹²". No more
///            decimals than that limit, and no more digits than a number holds
std::string svFigure(std::optional<double> value, int decimals);

/// As `svFmt` for a value that cannot exceed 1 in magnitude: ".456", "-.20", "1.000", "--".
std::string svFmtBounded(std::optional<double> value, int decimals);

/// The name under which the screens use the rule of `svFmt`.
std::string statText(std::optional<double> value, int decimals);

}  // namespace sorvane
