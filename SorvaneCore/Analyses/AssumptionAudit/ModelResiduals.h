#pragma once

#include <optional>
#include <span>
#include <vector>

namespace sorvane::ModelResiduals {

/// The outcome less what ordinary least squares of the predictors makes of it.
///
/// Input      dense columns of one length
/// Method     about the means of all columns, so that a large offset costs no digits; a residual
///            that rounding alone explains is 0
/// Failure    no fit -> absent
std::optional<std::vector<double>> of(std::span<const std::span<const double>> predictors,
                                      std::span<const double> outcome);

}  // namespace sorvane::ModelResiduals
