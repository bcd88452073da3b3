#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// A coefficient of one of the regressions.
struct MediationPath {
    std::string label{};
    double estimate = std::numeric_limits<double>::quiet_NaN();
    double standardError = std::numeric_limits<double>::quiet_NaN();
    /// NaN where there is no standard error above 0, and the p-value with it.
    double t = std::numeric_limits<double>::quiet_NaN();
    double pValue = std::numeric_limits<double>::quiet_NaN();

    bool operator==(const MediationPath&) const = default;
};
BOOST_DESCRIBE_STRUCT(MediationPath, (), (label, estimate, standardError, t, pValue))

struct MediationResult {
    /// X to M.
    MediationPath a{};
    /// M to Y beside X.
    MediationPath b{};
    /// X to Y beside M.
    MediationPath cPrime{};
    /// X to Y without M.
    MediationPath cTotal{};
    /// a times b.
    double indirect = std::numeric_limits<double>::quiet_NaN();
    double sobelZ = std::numeric_limits<double>::quiet_NaN();
    double sobelP = std::numeric_limits<double>::quiet_NaN();
    double bootLower = std::numeric_limits<double>::quiet_NaN();
    double bootUpper = std::numeric_limits<double>::quiet_NaN();
    /// Those that could be fitted.
    std::int64_t bootstrapSamples = 0;
    /// Absent where there is next to no total effect.
    std::optional<double> proportionMediated{};
    /// Complete rows.
    std::int64_t n = 0;
    AnalysisReadiness readiness{};

    bool operator==(const MediationResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(MediationResult,
                      (),
                      (a,
                       b,
                       cPrime,
                       cTotal,
                       indirect,
                       sobelZ,
                       sobelP,
                       bootLower,
                       bootUpper,
                       bootstrapSamples,
                       proportionMediated,
                       n,
                       readiness))

/// The effect of X at one level of the moderator.
struct SimpleSlope {
    std::string label{};
    double moderatorValue = std::numeric_limits<double>::quiet_NaN();
    double slope = std::numeric_limits<double>::quiet_NaN();
    double standardError = std::numeric_limits<double>::quiet_NaN();
    double t = std::numeric_limits<double>::quiet_NaN();
    double pValue = std::numeric_limits<double>::quiet_NaN();

    bool operator==(const SimpleSlope&) const = default;
};
BOOST_DESCRIBE_STRUCT(SimpleSlope, (), (label, moderatorValue, slope, standardError, t, pValue))

struct ModerationResult {
    /// The intercept, X, W, their product, the covariates.
    std::vector<MediationPath> coefficients{};
    /// The product once more.
    MediationPath interaction{};
    /// One standard deviation below the moderator's mean, at it, and one above.
    std::vector<SimpleSlope> simpleSlopes{};
    double rSquared = std::numeric_limits<double>::quiet_NaN();
    /// Complete rows.
    std::int64_t n = 0;
    AnalysisReadiness readiness{};

    bool operator==(const ModerationResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(ModerationResult,
                      (),
                      (coefficients, interaction, simpleSlopes, rSquared, n, readiness))

struct MediationOptions {
    /// At least 200 are drawn.
    std::int64_t bootstrapSamples = 5000;
    double confidenceLevel = 0.95;
    /// Data and seed settle the interval to the last bit.
    std::uint64_t seed = 20260803;
};

/// How the columns of a moderation are called in labels.
struct ModerationNames {
    std::string x{};
    std::string moderator{};
    /// One per covariate.
    std::vector<std::string> covariates{};
};

/// Regressions that ask how, or for whom, X acts on Y.
///
/// Input      columns of one length; rows that lack a value in any of them are left out
namespace MediationAnalysis {

/// Complete rows that either analysis needs beside one for each covariate.
inline constexpr std::int64_t casesBeyondCovariates = 5;

/// The effect of X on Y by way of M, with a percentile bootstrap interval.
///
/// Method     least squares of M on X, of Y on M and X, and of Y on X, each with the covariates;
///            Sobel's z for the product a b. Each of the resamples draws n rows with replacement,
///            a draw modulo n giving the row, all from one sequence; one in which a model cannot
///            be fitted is left out
/// Failure    lengths that differ, fewer than covariates + 5 complete rows, collinear or constant
///            predictors, fewer than 100 usable resamples -> absent
/// Accuracy   paths 1e-9 relative
/// Cost       O(resamples * rows * predictors^2) on all threads, about 0.06 s for 5,000 resamples
///            of 5,000 rows; the same bits whatever their number
/// Reference  Sobel (1982); Preacher and Hayes (2004), SPSS and SAS procedures for estimating
///            indirect effects
[[nodiscard]] std::optional<MediationResult> simpleMediation(
    const NumericColumn& x,
    const NumericColumn& mediator,
    const NumericColumn& outcome,
    std::span<const NumericColumn> covariates,
    const MediationOptions& options);

/// The effect of X on Y at the levels of a moderator W.
///
/// Method     least squares of Y on X, W, their product and the covariates, none centred; simple
///            slopes with the standard errors of the combination
/// Failure    lengths or names that differ, fewer than covariates + 5 complete rows, a collinear
///            or constant column -> absent
/// Accuracy   1e-9 relative      Cost O(rows * columns^2)
/// Reference  Aiken and West (1991), Multiple Regression
[[nodiscard]] std::optional<ModerationResult> moderation(const NumericColumn& x,
                                                         const NumericColumn& moderator,
                                                         const NumericColumn& outcome,
                                                         std::span<const NumericColumn> covariates,
                                                         const ModerationNames& names);

}  // namespace MediationAnalysis

}  // namespace sorvane
