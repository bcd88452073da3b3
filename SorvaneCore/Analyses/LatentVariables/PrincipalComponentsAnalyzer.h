#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

struct PrincipalComponentsResult {
    std::int64_t itemCount = 0;
    std::int64_t casesUsed = 0;
    /// Descending, none below 0, as many as items.
    std::vector<double> eigenvalues{};
    /// Shares of the variance of all items, and their running sums.
    std::vector<double> proportionExplained{};
    std::vector<double> cumulativeProportion{};
    /// One row per item, one column per component.
    std::vector<std::vector<double>> loadings{};
    /// Components whose eigenvalue is above 1.
    std::int64_t kaiserComponentCount = 0;
    std::vector<double> screeValues{};
    /// One row per complete case, where they were asked for.
    std::optional<std::vector<std::vector<double>>> componentScores{};
    std::optional<AnalysisReadiness> readiness{};

    bool operator==(const PrincipalComponentsResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(PrincipalComponentsResult,
                      (),
                      (itemCount,
                       casesUsed,
                       eigenvalues,
                       proportionExplained,
                       cumulativeProportion,
                       loadings,
                       kaiserComponentCount,
                       screeValues,
                       componentScores,
                       readiness))

struct PrincipalComponentsOptions {
    /// Whether to keep the score of every case on every component.
    bool computeScores = false;

    bool operator==(const PrincipalComponentsOptions&) const = default;
};
BOOST_DESCRIBE_STRUCT(PrincipalComponentsOptions, (), (computeScores))

/// Principal components of the correlations of items.
namespace PrincipalComponentsAnalyzer {

/// Input      as `LatentVariableSupport::prepare`
/// Method     eigenvalues and unit vectors of the correlation matrix; a loading is the vector's
///            entry times the root of the eigenvalue, a score the product of z scores and vector
/// Returns    all components; each vector's entry of largest absolute value is positive
/// Failure    items that cannot be prepared -> absent
/// Cost       O(n k^2 + k^3)
std::optional<PrincipalComponentsResult> analyze(std::span<const NumericColumn> items,
                                                 const PrincipalComponentsOptions& options = {});

}  // namespace PrincipalComponentsAnalyzer

}  // namespace sorvane
