#include "SorvaneCore/Survey/SurveyWaldTest.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

#include "SorvaneCore/Numerics/BlockedCholesky.h"

namespace sorvane::SurveyWaldTest {

namespace {

using Numbers = std::vector<double>;

/// inv(L) V inv(L)' of a symmetric V.
Numbers inCoordinates(std::span<const double> lower, std::size_t q, Numbers v) {
    for (int side = 0; side < 2; ++side) {
        BlockedCholesky::solveLower(lower, q, v, q);
        for (std::size_t i = 0; i < q; ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                std::swap(v[i * q + j], v[j * q + i]);
            }
        }
    }
    return v;
}

double largestOnDiagonal(const Numbers& matrix, std::size_t q) {
    double largest = 0.0;
    for (std::size_t k = 0; k < q; ++k) {
        largest = std::max(largest, matrix[k * q + k]);
    }
    return largest;
}

double smallestPivot(const Numbers& factor, std::size_t q) {
    double smallest = factor.front();
    for (std::size_t k = 0; k < q; ++k) {
        smallest = std::min(smallest, factor[k * q + k]);
    }
    return smallest * smallest;
}

}  // namespace

std::optional<double> statistic(std::span<const double> estimates,
                                std::span<const double> covariance,
                                std::span<const double> bread,
                                double varianceOfRounding) {
    constexpr double leastShare = 1e-13;
    const std::size_t q = estimates.size();
    Numbers information(bread.begin(), bread.end());
    if (q == 0 || !BlockedCholesky::factor(information, q)) {
        return std::nullopt;
    }
    Numbers spread = inCoordinates(information, q, {covariance.begin(), covariance.end()});
    const double largest = largestOnDiagonal(spread, q);
    for (double& each : spread) {
        each /= largest;
    }
    if (!(largest > 0.0) || !BlockedCholesky::factor(spread, q) ||
        smallestPivot(spread, q) < std::max(leastShare, varianceOfRounding / largest)) {
        return std::nullopt;
    }
    Numbers turned(estimates.begin(), estimates.end());
    BlockedCholesky::solveLower(information, q, turned, 1);
    BlockedCholesky::solveLower(spread, q, turned, 1);
    return std::inner_product(turned.begin(), turned.end(), turned.begin(), 0.0) /
           (largest * static_cast<double>(q));
}

}  // namespace sorvane::SurveyWaldTest
