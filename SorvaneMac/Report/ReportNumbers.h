#pragma once

#include <optional>
#include <string>

namespace sorvane {

/// A number of a result as display text.
///
/// Input      absent or not finite is allowed; decimals at least 0
/// Returns    "%.Nf" of the C routine, rounding and negative zero included; otherwise "--"
std::string svFmt(std::optional<double> value, int decimals);

/// The same for a value that cannot exceed 1 in magnitude: ".456", "-.20", "1.000", "--".
std::string svFmtBounded(std::optional<double> value, int decimals);

/// The name under which the screens use the rule of `svFmt`.
std::string statText(std::optional<double> value, int decimals);

}  // namespace sorvane
