#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <cstdint>
#include <optional>
#include <span>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Numerics/NormalQuantile.h"

namespace sorvane {

struct NormalityTestResult {
    enum class Method { shapiroWilk, lillieforsKS };
    BOOST_DESCRIBE_NESTED_ENUM(Method, shapiroWilk, lillieforsKS)

    Method method = Method::shapiroWilk;
    double statistic = 0.0;
    double pValue = 1.0;
    std::int64_t n = 0;
    AnalysisReadiness readiness{};

    bool operator==(const NormalityTestResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(NormalityTestResult, (), (method, statistic, pValue, n, readiness))

struct NormalityReport {
    std::optional<NormalityTestResult> shapiroWilk{};
    std::optional<NormalityTestResult> lillieforsKS{};

    bool operator==(const NormalityReport&) const = default;
};
BOOST_DESCRIBE_STRUCT(NormalityReport, (), (shapiroWilk, lillieforsKS))

/// Whether values look drawn from a normal distribution.
///
/// Input      values that are not finite, and absent ones, are left out
/// Returns    a readiness that is always a caution: the tests check an assumption and prove nothing
namespace NormalityTests {

using sorvane::inverseStandardNormalCDF;

/// The Shapiro-Wilk W of 3 to 5000 values.
///
/// Failure    fewer or more values, or all equal -> absent
/// Accuracy   the weights agree with the exact ones to about 1e-4; p is formed as 1 minus a normal
///            probability, so that it is 0 below about 1e-16      Cost O(n log n)
/// Reference  Royston (1995), Remark AS R94: A remark on algorithm AS 181
std::optional<NormalityTestResult> shapiroWilk(std::span<const double> values);
std::optional<NormalityTestResult> shapiroWilk(std::span<const std::optional<double>> values);
std::optional<NormalityTestResult> shapiroWilk(const NumericColumn& values);

/// Kolmogorov-Smirnov D against the normal distribution of the sample's own mean and deviation.
///
/// Method     p from polynomials in Z = D ((n + 0.83)/sqrt(n) - 0.01), for every p
/// Failure    fewer than 4 values, or all equal -> absent      Cost O(n log n)
/// Reference  Stephens (1974), EDF statistics for goodness of fit and some comparisons
std::optional<NormalityTestResult> lillieforsKS(std::span<const double> values);
std::optional<NormalityTestResult> lillieforsKS(std::span<const std::optional<double>> values);
std::optional<NormalityTestResult> lillieforsKS(const NumericColumn& values);

/// Both tests on the same values.
NormalityReport report(std::span<const std::optional<double>> values);
NormalityReport report(const NumericColumn& values);

}  // namespace NormalityTests

}  // namespace sorvane
