#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Prepare/Imputation/MultipleImputation.h"

namespace sorvane {

struct PooledCoefficient {
    std::string name{};
    double estimate = 0.0;
    double standardError = 0.0;
    double t = 0.0;
    double pValue = 1.0;
    double ciLower = 0.0;
    double ciUpper = 0.0;
    double fractionMissingInfo = 0.0;
    double degreesOfFreedom = 0.0;

    bool operator==(const PooledCoefficient&) const = default;
};
BOOST_DESCRIBE_STRUCT(PooledCoefficient,
                      (),
                      (name,
                       estimate,
                       standardError,
                       t,
                       pValue,
                       ciLower,
                       ciUpper,
                       fractionMissingInfo,
                       degreesOfFreedom))

struct PooledCorrelation {
    double r = 0.0;
    double ciLower = 0.0;
    double ciUpper = 0.0;
    double fractionMissingInfo = 0.0;
    std::int64_t m = 0;

    bool operator==(const PooledCorrelation&) const = default;
};
BOOST_DESCRIBE_STRUCT(PooledCorrelation, (), (r, ciLower, ciUpper, fractionMissingInfo, m))

/// Models fitted to each imputed copy and pooled by Rubin's rules.
///
/// Failure    no copies, a name that is not there, a fit that fails in a copy -> absent
namespace MICEAnalysis {

/// The mean of a column.
///
/// Failure    fewer than two cases as well; a cell that stayed missing -> NaN
std::optional<PooledEstimate> pooledMean(std::span<const CompletedColumns> imputedDatasets,
                                         const std::vector<std::string>& variableNames,
                                         const std::string& target,
                                         double confidenceLevel = 0.95);

/// Least squares of the outcome on "(Intercept)" and the predictors.
std::optional<std::vector<PooledCoefficient>> pooledRegression(
    std::span<const CompletedColumns> imputedDatasets,
    const std::vector<std::string>& variableNames,
    const std::string& outcome,
    const std::vector<std::string>& predictors);

/// Pearson's correlation, pooled after Fisher's transformation.
std::optional<PooledCorrelation> pooledCorrelation(
    std::span<const CompletedColumns> imputedDatasets,
    const std::vector<std::string>& variableNames,
    const std::string& x,
    const std::string& y,
    double confidenceLevel = 0.95);

/// The same from the copies' correlations over n cases each.
///
/// Failure    fewer than four cases -> absent as well
std::optional<PooledCorrelation> pooledCorrelation(std::span<const double> correlations,
                                                   std::int64_t n,
                                                   double confidenceLevel = 0.95);

}  // namespace MICEAnalysis

}  // namespace sorvane
