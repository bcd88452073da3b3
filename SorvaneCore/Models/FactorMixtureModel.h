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
#include "SorvaneCore/Models/LatentSweepRow.h"

namespace sorvane {

/// One class of a factor mixture.
struct FactorMixtureClass {
    double proportion = 0.0;
    /// The mean of each indicator in the class.
    std::vector<double> intercepts{};
    /// Rows that are most probably of the class.
    std::int64_t assigned = 0;
    /// The mean posterior of these rows; NaN where there are none.
    double meanPosterior = std::numeric_limits<double>::quiet_NaN();

    bool operator==(const FactorMixtureClass&) const = default;
};
BOOST_DESCRIBE_STRUCT(FactorMixtureClass, (), (proportion, intercepts, assigned, meanPosterior))

struct FactorMixtureResult {
    std::int64_t classCount = 0;
    std::vector<std::string> variableNames{};
    /// By the intercept of the first indicator, ascending; none where blocked.
    std::vector<FactorMixtureClass> classes{};
    /// One per indicator, the same in all classes; the factor has variance 1 within a class. Their
    /// sum is not negative.
    std::vector<double> loadings{};
    std::vector<double> residualVariances{};
    /// The correlation of each indicator with the factor within a class.
    std::vector<double> standardizedLoadings{};
    /// The most probable class of each complete row, the first on ties.
    std::vector<std::int64_t> assignments{};
    std::vector<std::vector<double>> assignmentPosterior{};
    /// The expected factor of each complete row: how far it stands from the mean of its class.
    std::vector<double> factorScores{};
    double logLikelihood = std::numeric_limits<double>::quiet_NaN();
    double bic = std::numeric_limits<double>::quiet_NaN();
    double aic = std::numeric_limits<double>::quiet_NaN();
    /// Of the assignments, relative; NaN for one class.
    double entropy = std::numeric_limits<double>::quiet_NaN();
    std::int64_t parameterCount = 0;
    /// Complete rows.
    std::int64_t n = 0;
    bool converged = false;
    /// Of the start that stands.
    std::int64_t iterations = 0;
    AnalysisReadiness readiness{};

    bool operator==(const FactorMixtureResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(FactorMixtureResult,
                      (),
                      (classCount,
                       variableNames,
                       classes,
                       loadings,
                       residualVariances,
                       standardizedLoadings,
                       assignments,
                       assignmentPosterior,
                       factorScores,
                       logLikelihood,
                       bic,
                       aic,
                       entropy,
                       parameterCount,
                       n,
                       converged,
                       iterations,
                       readiness))

struct FactorMixtureOptions {
    /// One name per indicator.
    std::vector<std::string> variableNames{};
    /// 1 to 6; one class is an ordinary factor model, to compare with.
    std::int64_t classCount = 2;
    /// Of each start.
    std::int64_t maxIterations = 200;
    std::int64_t randomStarts = 12;
    /// Data and seed settle the result to the last bit.
    std::uint64_t seed = 1;
    /// Takes the share of the starts that have ended, on the calling thread; may be empty.
    std::function<void(double)> progress{};
};

/// Classes of cases that differ in the levels of their indicators, which one common factor relates
/// within every class.
namespace FactorMixtureModel {

inline constexpr std::int64_t fewestClasses = 1;
inline constexpr std::int64_t mostClasses = 6;

/// x = intercepts of the class + loadings * f + e, with f of variance 1 and e independent; loadings
/// and residual variances are the same in all classes.
///
/// Input      columns of one length; rows that are incomplete or not finite are left out
/// Method     maximum likelihood by EM on standardized indicators from seeded starts. A round takes
///            the posteriors, the class means, and, from the covariance pooled within classes, the
///            loadings and residual variances by EM rounds of factor analysis. The start of highest
///            log likelihood stands, the first of equals, and goes on until a round changes that by
///            less than 1e-11 of itself, at most ten times `maxIterations`. A residual variance is
///            at least 1e-4 of the indicator's
/// Returns    classes by the intercept of the first indicator. Cautions for small classes, for
///            residual variances at their bound, for posteriors that hardly tell the classes apart,
///            and for a fit that one class would serve better by BIC
/// Failure    names or lengths that do not match, no indicator, another number of classes -> absent;
///            fewer than three indicators, too few cases, an indicator that does not vary, no start
///            with a usable end -> blocked
/// Accuracy   the log likelihood of a maximum to about 1e-6; the maximum is the best of the starts
///            and may not be the highest
/// Cost       O(rows * classes * indicators) a round; starts run on all threads
/// Reference  Lubke and Muthen (2005), Investigating population heterogeneity with factor mixture
///            models; McLachlan and Peel (2000), Finite Mixture Models, 8
[[nodiscard]] std::optional<FactorMixtureResult> fit(std::span<const NumericColumn> indicators,
                                                     const FactorMixtureOptions& options);

/// Fits each count of classes from `fewest` to `most`, and keeps a row for each fit that is usable;
/// the options' own count is not read, and the progress is that of the whole.
[[nodiscard]] std::vector<LatentSweepRow> sweep(std::span<const NumericColumn> indicators,
                                                const FactorMixtureOptions& options,
                                                std::int64_t fewest = fewestClasses,
                                                std::int64_t most = mostClasses);

}  // namespace FactorMixtureModel

}  // namespace sorvane
