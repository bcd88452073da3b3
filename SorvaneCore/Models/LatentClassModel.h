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
#include "SorvaneCore/Dataset/TextColumn.h"
#include "SorvaneCore/Models/LatentMixtureMode.h"

namespace sorvane {

/// One class of a mixture.
struct LatentClassProfile {
    double proportion = 0.0;
    /// One per indicator, of numbers.
    std::optional<std::vector<double>> means{};
    std::optional<std::vector<double>> standardDeviations{};
    /// One list per indicator, of categories: a probability for each.
    std::optional<std::vector<std::vector<double>>> responseProbs{};

    bool operator==(const LatentClassProfile&) const = default;
};
BOOST_DESCRIBE_STRUCT(LatentClassProfile,
                      (),
                      (proportion, means, standardDeviations, responseProbs))

struct LatentClassResult {
    LatentMixtureMode mode = LatentMixtureMode::profile;
    std::int64_t classCount = 0;
    /// By the mean of the first indicator, ascending, or by proportion, descending.
    std::vector<LatentClassProfile> profiles{};
    /// The most probable class of each complete row, the first on ties.
    std::vector<std::int64_t> assignments{};
    /// The probabilities of the classes, for each complete row.
    std::vector<std::vector<double>> assignmentPosterior{};
    std::vector<std::string> variableNames{};
    /// The categories of each indicator in order of first appearance.
    std::optional<std::vector<std::vector<std::string>>> categoryLabels{};
    double logLikelihood = std::numeric_limits<double>::quiet_NaN();
    double bic = std::numeric_limits<double>::quiet_NaN();
    double aic = std::numeric_limits<double>::quiet_NaN();
    /// Of the assignments, relative: 1 when every row is certain of its class, 0 when none knows.
    double entropy = std::numeric_limits<double>::quiet_NaN();
    /// Complete rows.
    std::int64_t n = 0;
    bool converged = false;
    /// Of the start that stands.
    std::int64_t iterations = 0;
    AnalysisReadiness readiness{};

    bool operator==(const LatentClassResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(LatentClassResult,
                      (),
                      (mode,
                       classCount,
                       profiles,
                       assignments,
                       assignmentPosterior,
                       variableNames,
                       categoryLabels,
                       logLikelihood,
                       bic,
                       aic,
                       entropy,
                       n,
                       converged,
                       iterations,
                       readiness))

struct LatentClassOptions {
    /// One name per indicator.
    std::vector<std::string> variableNames{};
    /// 2 to 6.
    std::int64_t classCount = 2;
    /// Of each start.
    std::int64_t maxIterations = 200;
    std::int64_t randomStarts = 12;
    /// Data and seed settle the result to the last bit.
    std::uint64_t seed = 1;
    /// Takes the share of the starts that have ended, on the calling thread; may be empty.
    std::function<void(double)> progress{};
};

namespace LatentClassModel {

inline constexpr std::int64_t fewestClasses = 2;
inline constexpr std::int64_t mostClasses = 6;

/// Latent profile analysis: a mixture of normal distributions whose indicators are independent
/// within a class, with variances of its own in each.
///
/// Input      2 or more columns of one length; rows that are incomplete or not finite are left out
/// Method     EM from seeded starts, the highest log likelihood stands, the first of equals. It
///            ends when a round changes the log likelihood by less than 1e-8 of itself. A variance
///            is at least 1e-6 of the indicator's, and that counts as 1e-8 at least
/// Failure    names or lengths that do not match, another number of classes -> absent; fewer than
///            three cases per class, or no start with a usable end -> blocked
/// Accuracy   the stop can leave the log likelihood 1e-3 short of its maximum. The floor hides
///            the classes of indicators whose standard deviations are 1e-7 or less: such units
///            should be changed first
/// Cost       O(rows * classes * indicators) a round; starts run on all threads
/// Reference  McLachlan and Peel (2000), Finite Mixture Models
[[nodiscard]] std::optional<LatentClassResult> fitProfile(std::span<const NumericColumn> indicators,
                                                          const LatentClassOptions& options);

/// Latent class analysis: a mixture of tables of categories whose indicators are independent within
/// a class.
///
/// Input      2 or more columns of one length; rows with a blank cell are left out
/// Method     as `fitProfile`, on the distinct patterns of answers. A probability of an answer is
///            at least 0.001 before a class's add up to 1
/// Failure    as `fitProfile`, with five cases per class; an indicator with a single category ->
///            blocked
/// Cost       O(patterns * classes * indicators) a round; starts run on all threads
/// Reference  Lazarsfeld and Henry (1968), Latent Structure Analysis
[[nodiscard]] std::optional<LatentClassResult> fitClass(
    std::span<const TextColumn* const> indicators, const LatentClassOptions& options);

}  // namespace LatentClassModel

}  // namespace sorvane
