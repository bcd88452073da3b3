#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/TextColumn.h"
#include "SorvaneCore/Survey/WeightedEstimators.h"

namespace sorvane {

/// One cell of a table of two variables in the population.
struct SurveyCell {
    std::string row{};
    std::string column{};
    /// Rows of the sample, and the sum of their weights.
    std::int64_t count = 0;
    double weightedCount = 0.0;
    /// Of the whole, with its error and bounds, which are held to [0, 1].
    double proportion = 0.0;
    double standardError = 0.0;
    double lowerBound = 0.0;
    double upperBound = 0.0;
    /// Of the row, in the same way; no error is had of a row of a single case or without weight in
    /// any replicate.
    double rowProportion = 0.0;
    double rowStandardError = std::numeric_limits<double>::quiet_NaN();
    double rowLowerBound = std::numeric_limits<double>::quiet_NaN();
    double rowUpperBound = std::numeric_limits<double>::quiet_NaN();

    bool operator==(const SurveyCell&) const = default;
};
BOOST_DESCRIBE_STRUCT(SurveyCell,
                      (),
                      (row,
                       column,
                       count,
                       weightedCount,
                       proportion,
                       standardError,
                       lowerBound,
                       upperBound,
                       rowProportion,
                       rowStandardError,
                       rowLowerBound,
                       rowUpperBound))

/// Whether two categorical variables hang together in the population.
struct SurveyCategoricalResult {
    std::string rowName{};
    std::string columnName{};
    /// In the order in which people read labels.
    std::vector<std::string> rowLabels{};
    std::vector<std::string> columnLabels{};
    /// Row by row.
    std::vector<SurveyCell> cells{};
    /// Pearson's, of the weighted shares times the rows of the sample.
    double chiSquare = std::numeric_limits<double>::quiet_NaN();
    double chiSquareDF = std::numeric_limits<double>::quiet_NaN();
    /// Second-order corrected.
    double fStatistic = std::numeric_limits<double>::quiet_NaN();
    double dfNumerator = std::numeric_limits<double>::quiet_NaN();
    double dfDenominator = std::numeric_limits<double>::quiet_NaN();
    double pValue = std::numeric_limits<double>::quiet_NaN();
    /// The mean of the generalized design effects: what the first-order correction divides by.
    double meanDesignEffect = std::numeric_limits<double>::quiet_NaN();
    double cramersV = std::numeric_limits<double>::quiet_NaN();
    /// Strata and primary sampling units of the rows that count.
    std::int64_t stratumCount = 0;
    std::int64_t psuCount = 0;
    std::int64_t designDegreesOfFreedom = 1;
    double confidenceLevel = 0.95;
    DesignVarianceMethod varianceMethod = DesignVarianceMethod::naiveWeighted;
    double sumOfWeights = 0.0;
    /// Cases of equal weight that would tell as much (Kish).
    std::optional<double> effectiveSampleSize{};
    std::int64_t validN = 0;
    std::int64_t totalN = 0;
    AnalysisReadiness readiness{};

    bool operator==(const SurveyCategoricalResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(SurveyCategoricalResult,
                      (),
                      (rowName,
                       columnName,
                       rowLabels,
                       columnLabels,
                       cells,
                       chiSquare,
                       chiSquareDF,
                       fStatistic,
                       dfNumerator,
                       dfDenominator,
                       pValue,
                       meanDesignEffect,
                       cramersV,
                       stratumCount,
                       psuCount,
                       designDegreesOfFreedom,
                       confidenceLevel,
                       varianceMethod,
                       sumOfWeights,
                       effectiveSampleSize,
                       validN,
                       totalN,
                       readiness))

namespace SurveyCategorical {

/// Pearson's test of independence with Rao and Scott's second-order correction.
///
/// Input      columns of one entry per row of the design; rows with a missing label do not count
/// Method     the covariance of the cells' shares by linearization or replicates; from it the
///            generalized design effects D of the contrasts of rows with columns. F = chi-square /
///            tr D on d and d times the design's degrees of freedom, d = (tr D)^2 / tr D^2. A share
///            of its row is a ratio of two of these shares, with an error by linearization of it
///            or by the ratio under each replicate
/// Failure    a structural error of the design, columns of another length, a variable with fewer
///            than two categories, contrasts that no weight supports, a design that gives the cells
///            no variance, a replicate weight that is missing -> blocked; the cells stand where
///            they can be had
/// Cost       O(rows + units (cells)^2), and as much a replicate
/// Reference  Rao and Scott (1984), On chi-squared tests for multiway contingency tables with cell
///            proportions estimated from survey data
SurveyCategoricalResult test(const TextColumn& rows,
                             const TextColumn& columns,
                             const SurveyDesign& design,
                             const std::string& rowName = {},
                             const std::string& columnName = {});

}  // namespace SurveyCategorical

}  // namespace sorvane
