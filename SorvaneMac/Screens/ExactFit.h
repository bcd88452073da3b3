#pragma once

#include <optional>
#include <string>
#include <vector>

/// Linear regressions that leave nothing but rounding.
namespace sorvane::ExactFit {

/// What the reader must be told of such a fit; absent for one with residuals to speak of.
///
/// Input      the test statistics of the slopes
/// Method     a statistic beyond 1e10: rounding of the outcome gives about 1e16, fewer where all
///            values lie far from 0, and residuals that a person could have measured none so large
std::optional<std::string> caution(const std::vector<double>& t);

}  // namespace sorvane::ExactFit
