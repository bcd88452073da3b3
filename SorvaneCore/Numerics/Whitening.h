#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

/// The linear map that makes a matrix of squares and products the identity.
namespace sorvane::Whitening {

/// inv(L) of the symmetric E = LL', lower triangular, p by p.
///
/// Failure    a variable of whose squares a share of 1e-12 or less is its own beside those before
///            it -> absent
/// Cost       O(p^3)
[[nodiscard]] std::optional<std::vector<double>> inverseOf(std::span<const double> e,
                                                           std::size_t p);

/// A B A' of p by p matrices with B symmetric; exactly symmetric.
std::vector<double> sandwich(std::span<const double> a, std::span<const double> b, std::size_t p);

/// A' v of a p by p matrix.
std::vector<double> transposedTimes(std::span<const double> a,
                                    std::span<const double> v,
                                    std::size_t p);

}  // namespace sorvane::Whitening
