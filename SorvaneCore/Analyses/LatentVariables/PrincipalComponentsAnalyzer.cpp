#include "SorvaneCore/Analyses/LatentVariables/PrincipalComponentsAnalyzer.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Analyses/LatentVariables/LatentVariableSupport.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane::PrincipalComponentsAnalyzer {

namespace {

using LatentVariableSupport::Prepared;
using Vectors = std::vector<std::vector<double>>;

/// Kaiser's rule keeps components that explain more than one item does by itself.
constexpr double kaiserLimit = 1.0;

void setEigenvalues(PrincipalComponentsResult& result, const std::vector<double>& values) {
    double cumulative = 0.0;
    for (const double value : values) {
        const double held = std::max(value, 0.0);
        result.eigenvalues.push_back(held);
        result.proportionExplained.push_back(held / static_cast<double>(values.size()));
        cumulative += result.proportionExplained.back();
        result.cumulativeProportion.push_back(cumulative);
        result.kaiserComponentCount += held > kaiserLimit ? 1 : 0;
    }
    result.screeValues = result.eigenvalues;
}

Vectors loadings(const std::vector<double>& eigenvalues, const Vectors& vectors) {
    const std::size_t k = vectors.size();
    Vectors result(k, std::vector<double>(k));
    for (std::size_t item = 0; item < k; ++item) {
        for (std::size_t component = 0; component < k; ++component) {
            result[item][component] = std::sqrt(eigenvalues[component]) * vectors[component][item];
        }
    }
    return result;
}

/// The products of z scores and vectors, case by case.
Vectors scores(const Prepared& prepared, const Vectors& vectors) {
    const std::size_t k = prepared.itemCount;
    std::vector<double> weights(k * k);
    for (std::size_t component = 0; component < k; ++component) {
        for (std::size_t item = 0; item < k; ++item) {
            weights[item * k + component] = vectors[component][item];
        }
    }
    Vectors result;
    result.reserve(prepared.casesUsed);
    std::vector<double> row(k);
    for (std::size_t i = 0; i < prepared.casesUsed; ++i) {
        for (std::size_t item = 0; item < k; ++item) {
            row[item] = prepared.standardized[item * prepared.casesUsed + i];
        }
        result.push_back(LinearAlgebra::multiply(row, 1, k, weights, k));
    }
    return result;
}

}  // namespace

std::optional<PrincipalComponentsResult> analyze(std::span<const NumericColumn> items,
                                                 const PrincipalComponentsOptions& options) {
    const std::optional<Prepared> prepared = LatentVariableSupport::prepare(items);
    if (!prepared) {
        return std::nullopt;
    }
    const auto eigen = LinearAlgebra::symmetricEigen(prepared->correlation, prepared->itemCount);
    if (!eigen) {
        return std::nullopt;
    }
    PrincipalComponentsResult result{.itemCount = static_cast<std::int64_t>(prepared->itemCount),
                                     .casesUsed = static_cast<std::int64_t>(prepared->casesUsed)};
    setEigenvalues(result, eigen->values);
    result.loadings = loadings(result.eigenvalues, eigen->vectors);
    if (options.computeScores) {
        result.componentScores = scores(*prepared, eigen->vectors);
    }
    result.readiness =
        LatentVariableSupport::readiness("Principal component analysis", items, *prepared);
    return result;
}

}  // namespace sorvane::PrincipalComponentsAnalyzer
