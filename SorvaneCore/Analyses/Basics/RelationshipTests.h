#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

struct CorrelationResult {
    double r = 0.0;
    std::int64_t n = 0;
    double pValue = 1.0;

    bool operator==(const CorrelationResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(CorrelationResult, (), (r, n, pValue))

struct SimpleRegressionResult {
    double slope = 0.0;
    double intercept = 0.0;
    double rSquared = 0.0;
    std::int64_t n = 0;

    bool operator==(const SimpleRegressionResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(SimpleRegressionResult, (), (slope, intercept, rSquared, n))

/// The association of two variables.
///
/// Input      two lists, read up to the end of the shorter; where entries can be absent, the pairs
///            in which both are present
/// Failure    fewer than three pairs, or a variable that does not vary but for rounding -> absent
namespace RelationshipTests {

/// Pearson's r with the p-value of t = r sqrt(df / max(1 - r^2, 1e-15)), df = n - 2, two-sided.
///
/// Accuracy   products of deviations from corrected means: a large offset costs no digits
/// Cost       O(n)
std::optional<CorrelationResult> pearson(std::span<const double> x, std::span<const double> y);
std::optional<CorrelationResult> pearson(std::span<const std::optional<double>> x,
                                         std::span<const std::optional<double>> y);
std::optional<CorrelationResult> pearson(const NumericColumn& x, const NumericColumn& y);

/// S_xy / sqrt(S_xx S_yy), held to [-1, 1] and exactly 1 or -1 within rounding of it; absent unless
/// both sums of squares are above 0.
std::optional<double> correlationFromSums(double sxy, double sxx, double syy);

/// Spearman's rho: Pearson's r of the midranks, with its p-value.
///
/// Cost       two radix sorts; O(n + d log d) for columns with codes and d levels
std::optional<CorrelationResult> spearman(std::span<const double> x, std::span<const double> y);
std::optional<CorrelationResult> spearman(std::span<const std::optional<double>> x,
                                          std::span<const std::optional<double>> y);
std::optional<CorrelationResult> spearman(const NumericColumn& x, const NumericColumn& y);

/// Kendall's tau-b = S / sqrt((n0 - n1)(n0 - n2)).
///
/// Method     p is the two-sided normal tail of z = 3 S / sqrt(n(n-1)(2n+5)/2), which carries no
///            correction for ties, though tau-b does
/// Accuracy   S and the tie counts are exact      Cost O(n log n)
std::optional<CorrelationResult> kendallTauB(std::span<const double> x, std::span<const double> y);
std::optional<CorrelationResult> kendallTauB(std::span<const std::optional<double>> x,
                                             std::span<const std::optional<double>> y);
std::optional<CorrelationResult> kendallTauB(const NumericColumn& x, const NumericColumn& y);

/// The correlation of x and y with the covariates held constant.
///
/// Input      columns of one length; rows with an absent entry are left out
/// Method     from the inverse P of the Pearson matrix of x, y and the covariates:
///            r = -P01 / sqrt(P00 P11), p as for Pearson's r with df = n - 2 - covariates
/// Failure    lengths that differ, n not above covariates + 3, a variable without variance, a
///            matrix that has no inverse -> absent
std::optional<CorrelationResult> partialCorrelation(const NumericColumn& x,
                                                    const NumericColumn& y,
                                                    std::span<const NumericColumn> covariates);

/// The least-squares line of y on x: slope r s_y / s_x.
std::optional<SimpleRegressionResult> simpleLinearRegression(std::span<const double> x,
                                                             std::span<const double> y);
std::optional<SimpleRegressionResult> simpleLinearRegression(
    std::span<const std::optional<double>> x, std::span<const std::optional<double>> y);
std::optional<SimpleRegressionResult> simpleLinearRegression(const NumericColumn& x,
                                                             const NumericColumn& y);

}  // namespace RelationshipTests

}  // namespace sorvane
