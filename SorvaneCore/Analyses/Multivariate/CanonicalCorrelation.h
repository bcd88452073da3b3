#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Analyses/Basics/WilksTest.h"
#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// What one set of variables adds to a pair of variates; one entry per variable of the set.
struct CanonicalSide {
    std::vector<double> rawCoefficients{};
    /// Per standard deviation of the variable.
    std::vector<double> standardizedCoefficients{};
    /// The correlation of each variable with the variate of its own set.
    std::vector<double> loadings{};
    /// And with the variate of the other set.
    std::vector<double> crossLoadings{};
    /// The mean squared loading: the share of the set's variance that its own variate holds.
    double adequacy = std::numeric_limits<double>::quiet_NaN();
    /// The mean squared cross loading: the share that the other set's variate holds.
    double redundancy = std::numeric_limits<double>::quiet_NaN();

    bool operator==(const CanonicalSide&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    CanonicalSide,
    (),
    (rawCoefficients, standardizedCoefficients, loadings, crossLoadings, adequacy, redundancy))

/// A pair of variates, each with mean 0 and variance 1.
struct CanonicalFunction {
    double correlation = std::numeric_limits<double>::quiet_NaN();
    double squaredCorrelation = std::numeric_limits<double>::quiet_NaN();
    /// r^2 / (1 - r^2).
    double eigenvalue = std::numeric_limits<double>::quiet_NaN();
    CanonicalSide x{};
    CanonicalSide y{};
    /// The scores of the cases on both variates, in row order of the complete rows.
    std::vector<double> xScores{};
    std::vector<double> yScores{};

    bool operator==(const CanonicalFunction&) const = default;
};
BOOST_DESCRIBE_STRUCT(CanonicalFunction,
                      (),
                      (correlation, squaredCorrelation, eigenvalue, x, y, xScores, yScores))

struct CanonicalCorrelationResult {
    std::vector<std::string> setXNames{};
    std::vector<std::string> setYNames{};
    /// As many as the smaller set has variables, the strongest first.
    std::vector<CanonicalFunction> functions{};
    /// From each function onward.
    std::vector<WilksTest> tests{};
    /// The sums of the redundancies: the share of each set's variance that the other set explains.
    double totalRedundancyX = std::numeric_limits<double>::quiet_NaN();
    double totalRedundancyY = std::numeric_limits<double>::quiet_NaN();
    std::int64_t n = 0;
    AnalysisReadiness readiness{};

    bool operator==(const CanonicalCorrelationResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    CanonicalCorrelationResult,
    (),
    (setXNames, setYNames, functions, tests, totalRedundancyX, totalRedundancyY, n, readiness))

struct CanonicalCorrelationOptions {
    /// One name per column of each set.
    std::vector<std::string> setXNames{};
    std::vector<std::string> setYNames{};
};

/// How two sets of variables hang together.
namespace CanonicalCorrelation {

/// Input      columns of one length; rows with a missing cell in either set are left out
/// Method     with Rxx = LL' and Ryy = MM' the correlations within the sets, the eigenvectors of
///            K K' or K' K, whichever is smaller, for K = inv(L) Rxy inv(M)'. Each pair is signed
///            so that the largest standardized coefficient of its first set is positive and its
///            correlation is not negative. Both variates have variance 1 with n - 1
/// Returns    the tests ask whether the correlations from a function onward are all 0. Coefficients
///            of a correlation of 0 are any directions that the functions before leave, and the
///            other set's are then 0. Cautions for fewer than 10 cases per variable
/// Failure    blocked: a variable in both sets, no more cases than variables, a set that is
///            collinear (a share of 1e-12 or less of a variable's variance is its own), a
///            correlation of 1. Absent: lengths or names that do not match, an empty set
/// Accuracy   the squared correlations to about 1e-15 times the condition of the sets; a
///            correlation below 1e-7 is rounding
/// Cost       O(n (p + q)^2)
/// Reference  Hotelling (1936), Relations between two sets of variates; Stewart and Love (1968), A
///            general canonical correlation index
std::optional<CanonicalCorrelationResult> fit(std::span<const NumericColumn> setX,
                                              std::span<const NumericColumn> setY,
                                              const CanonicalCorrelationOptions& options);

}  // namespace CanonicalCorrelation

}  // namespace sorvane
