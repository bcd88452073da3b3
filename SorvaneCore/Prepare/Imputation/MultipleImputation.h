#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// Columns of one length, a cell absent where it stays missing.
using CompletedColumns = std::vector<std::vector<std::optional<double>>>;

struct MultipleImputationResult {
    std::int64_t m = 0;
    std::int64_t iterations = 0;
    /// One per imputation.
    std::vector<CompletedColumns> imputedDatasets{};
    std::vector<std::string> variableNames{};
    std::uint64_t seed = 0;
    AnalysisReadiness readiness{};

    bool operator==(const MultipleImputationResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(MultipleImputationResult,
                      (),
                      (m, iterations, imputedDatasets, variableNames, seed, readiness))

/// The filled-in cells of a column; NaN where there are none, or one only.
struct ImputedMoments {
    double mean = std::numeric_limits<double>::quiet_NaN();
    double standardDeviation = std::numeric_limits<double>::quiet_NaN();

    bool operator==(const ImputedMoments&) const = default;
};
BOOST_DESCRIBE_STRUCT(ImputedMoments, (), (mean, standardDeviation))

/// How the chains went, to see whether they have settled.
struct ImputationTrace {
    /// By copy, sweep and column.
    std::vector<std::vector<std::vector<ImputedMoments>>> moments{};
    /// Of each column, in how many steps of all copies no prediction was possible, so that its
    /// cells stayed as they were.
    std::vector<std::int64_t> stepsWithoutFit{};

    bool operator==(const ImputationTrace&) const = default;
};
BOOST_DESCRIBE_STRUCT(ImputationTrace, (), (moments, stepsWithoutFit))

struct TracedImputation {
    MultipleImputationResult result{};
    ImputationTrace trace{};
};

/// An estimate over several completed copies of the data.
struct PooledEstimate {
    double estimate = std::numeric_limits<double>::quiet_NaN();
    /// The mean of the copies' own variances, and the variance between their estimates.
    double withinVariance = std::numeric_limits<double>::quiet_NaN();
    double betweenVariance = std::numeric_limits<double>::quiet_NaN();
    double totalVariance = std::numeric_limits<double>::quiet_NaN();
    /// 0 where there is no variance at all.
    double standardError = std::numeric_limits<double>::quiet_NaN();
    /// Infinite where the copies agree.
    double degreesOfFreedom = std::numeric_limits<double>::infinity();
    double confidenceIntervalLower = std::numeric_limits<double>::quiet_NaN();
    double confidenceIntervalUpper = std::numeric_limits<double>::quiet_NaN();
    /// The share of the total variance that missing values add.
    double fractionMissingInfo = std::numeric_limits<double>::quiet_NaN();
    std::int64_t m = 0;

    bool operator==(const PooledEstimate&) const = default;
};
BOOST_DESCRIBE_STRUCT(PooledEstimate,
                      (),
                      (estimate,
                       withinVariance,
                       betweenVariance,
                       totalVariance,
                       standardError,
                       degreesOfFreedom,
                       confidenceIntervalLower,
                       confidenceIntervalUpper,
                       fractionMissingInfo,
                       m))

struct ImputationOptions {
    std::vector<std::string> variableNames{};
    std::int64_t m = 5;
    std::int64_t maxIterations = 10;
    std::uint64_t seed = 0x9e3779b97f4a7c15;
    std::int64_t donorCount = 5;
    /// Asked before each sweep, perhaps from several threads at once; false ends the run.
    std::function<bool()> shouldContinue{};
    /// Told of the share that is done, on the thread that imputes.
    std::function<void(double)> progress{};
};

/// Fills missing numbers from the other columns, in several copies of the data.
namespace MultipleImputation {

/// Chained equations with predictive mean matching.
///
/// Input      columns of one length; one without any number stays as it is and predicts nothing
/// Method     each copy starts from the columns' means; a sweep predicts each column from all the
///            others by least squares and gives a missing cell the value of one of the nearest
///            donors, drawn at random. One generator runs through all copies
/// Returns    the same for the same seed, whatever the number of threads
/// Failure    columns of other lengths, not one name for each, no copy or sweep asked for, a run that
///            was ended -> absent
/// Cost       a least-squares fit and a sort per sweep and incomplete column
/// Reference  van Buuren & Groothuis-Oudshoorn (2011); Little (1988), Missing-data adjustments
std::optional<MultipleImputationResult> impute(std::span<const NumericColumn> columns,
                                               const ImputationOptions& options);

/// The same with the course of its chains.
std::optional<TracedImputation> imputeTraced(std::span<const NumericColumn> columns,
                                             const ImputationOptions& options);

/// Rubin's rules over one estimate and its variance per copy.
///
/// Input      two estimates or more: a single one shows no variance between copies, which counts
///            as 0, and so nothing of what imputation adds
/// Failure    no estimates, or lists of other lengths -> NaN. NaN among the estimates or variances
///            -> NaN figures
/// Reference  Rubin (1987), Multiple Imputation for Nonresponse in Surveys
PooledEstimate pool(std::span<const double> estimates,
                    std::span<const double> variances,
                    double confidenceLevel = 0.95);

/// The mean of a column, pooled over imputed copies.
///
/// Failure    a target that is not among the names, or as `impute` -> absent
std::optional<PooledEstimate> pooledMean(std::span<const NumericColumn> columns,
                                         const ImputationOptions& options,
                                         const std::string& target,
                                         double confidenceLevel = 0.95);

/// One completed copy: every missing cell gets its column's mean, its median, or what least squares
/// predict from the other columns filled with their means. It understates every standard error.
///
/// Failure    columns of other lengths -> absent
std::optional<CompletedColumns> meanImpute(std::span<const NumericColumn> columns);
std::optional<CompletedColumns> medianImpute(std::span<const NumericColumn> columns);
std::optional<CompletedColumns> regressionImpute(std::span<const NumericColumn> columns);

}  // namespace MultipleImputation

}  // namespace sorvane
