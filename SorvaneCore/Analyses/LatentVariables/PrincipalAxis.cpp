#include "SorvaneCore/Analyses/LatentVariables/PrincipalAxis.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane::PrincipalAxis {

namespace {

constexpr std::int64_t passLimit = 100;
constexpr double largestStart = 0.999;

using Matrix = std::vector<double>;

std::optional<std::vector<double>> squaredMultipleCorrelations(std::span<const double> correlation,
                                                               std::size_t k) {
    const std::optional<Matrix> inverse = LinearAlgebra::invert(correlation, k);
    if (!inverse) {
        return std::nullopt;
    }
    std::vector<double> result;
    for (std::size_t j = 0; j < k; ++j) {
        const double diagonal = (*inverse)[j * k + j];
        if (diagonal == 0.0) {
            return std::nullopt;
        }
        result.push_back(std::clamp(1.0 - 1.0 / diagonal, 0.0, largestStart));
    }
    return result;
}

std::vector<double> largestCorrelations(std::span<const double> correlation, std::size_t k) {
    std::vector<double> result(k, 0.0);
    for (std::size_t i = 0; i < k; ++i) {
        for (std::size_t j = 0; j < k; ++j) {
            if (i != j) {
                result[i] = std::max(result[i], std::abs(correlation[i * k + j]));
            }
        }
    }
    return result;
}

std::vector<double> startCommunalities(std::span<const double> correlation, std::size_t k) {
    auto squared = squaredMultipleCorrelations(correlation, k);
    return squared ? *std::move(squared) : largestCorrelations(correlation, k);
}

/// The first factors of an eigenvalue decomposition, item by item.
void setLoadings(Solution& solution, const LinearAlgebra::SymmetricEigen& eigen) {
    for (std::size_t item = 0; item < solution.loadings.size(); ++item) {
        std::vector<double>& row = solution.loadings[item];
        for (std::size_t factor = 0; factor < row.size(); ++factor) {
            row[factor] =
                std::sqrt(std::max(eigen.values[factor], 0.0)) * eigen.vectors[factor][item];
        }
    }
}

/// Takes the communalities from the loadings and tells how far one of them moved at most.
double updateCommunalities(Solution& solution) {
    double largestChange = 0.0;
    for (std::size_t item = 0; item < solution.loadings.size(); ++item) {
        double communality = 0.0;
        for (const double loading : solution.loadings[item]) {
            communality += loading * loading;
        }
        largestChange =
            std::max(largestChange, std::abs(communality - solution.communalities[item]));
        solution.communalities[item] = communality;
    }
    return largestChange;
}

}  // namespace

std::optional<Solution> extract(std::span<const double> correlation,
                                std::size_t itemCount,
                                std::size_t factorCount,
                                double tolerance) {
    Solution solution{.loadings = std::vector(itemCount, std::vector<double>(factorCount)),
                      .communalities = startCommunalities(correlation, itemCount)};
    Matrix reduced(correlation.begin(), correlation.end());
    while (!solution.converged && solution.iterations < passLimit) {
        for (std::size_t j = 0; j < itemCount; ++j) {
            reduced[j * itemCount + j] = solution.communalities[j];
        }
        const auto eigen = LinearAlgebra::symmetricEigen(reduced, itemCount);
        if (!eigen) {
            return std::nullopt;
        }
        setLoadings(solution, *eigen);
        ++solution.iterations;
        solution.converged = updateCommunalities(solution) < tolerance;
    }
    return solution;
}

}  // namespace sorvane::PrincipalAxis
