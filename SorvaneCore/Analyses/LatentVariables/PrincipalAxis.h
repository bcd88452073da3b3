#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// Iterated principal axes of a correlation matrix.
namespace sorvane::PrincipalAxis {

struct Solution {
    /// One row per item, one column per factor, unrotated.
    std::vector<std::vector<double>> loadings{};
    /// The sums of squared loadings of the items.
    std::vector<double> communalities{};
    std::int64_t iterations = 0;
    bool converged = false;
};

/// The factors of the last pass.
///
/// Input      a correlation matrix of `itemCount` items, at least as many as factors
/// Method     the diagonal starts at squared multiple correlations, or at each item's largest
///            absolute correlation where the matrix cannot be inverted; then it takes the
///            communalities of the last pass until none of them changes by `tolerance`, for at most
///            100 passes
/// Failure    an eigenvalue decomposition that fails -> absent
/// Cost       O(k^3) a pass
std::optional<Solution> extract(std::span<const double> correlation,
                                std::size_t itemCount,
                                std::size_t factorCount,
                                double tolerance);

}  // namespace sorvane::PrincipalAxis
