#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace sorvane {

/// Whether anything relates two sets of variables from one dimension onward.
struct WilksTest {
    /// Counted from 1: this function and those after it are tested together.
    std::int64_t fromFunction = 1;
    double wilksLambda = std::numeric_limits<double>::quiet_NaN();
    /// Rao's approximation.
    double approxF = std::numeric_limits<double>::quiet_NaN();
    double dfNumerator = std::numeric_limits<double>::quiet_NaN();
    double dfDenominator = std::numeric_limits<double>::quiet_NaN();
    double pValue = std::numeric_limits<double>::quiet_NaN();
    /// Bartlett's approximation of the same lambda.
    double chiSquare = std::numeric_limits<double>::quiet_NaN();
    double chiSquareDF = std::numeric_limits<double>::quiet_NaN();
    double chiSquarePValue = std::numeric_limits<double>::quiet_NaN();

    bool operator==(const WilksTest&) const = default;
};
BOOST_DESCRIBE_STRUCT(WilksTest,
                      (),
                      (fromFunction,
                       wilksLambda,
                       approxF,
                       dfNumerator,
                       dfDenominator,
                       pValue,
                       chiSquare,
                       chiSquareDF,
                       chiSquarePValue))

namespace WilksTests {

/// How lambda is carried over to F.
struct FApproximation {
    double f = 0.0;
    double df1 = 0.0;
    double df2 = 0.0;
};

/// Rao's approximation.
///
/// Input      lambda in (0, 1]; the numbers of variables p and q; Bartlett's multiplier m, which is
///            n - 1 - (p + q + 1) / 2 of the whole sets
/// Method     t = sqrt((p^2 q^2 - 4) / (p^2 + q^2 - 5)), 1 where that denominator is not above 0;
///            exact when p or q is at most 2
/// Reference  Rao (1951), An asymptotic expansion of the distribution of Wilks' criterion
FApproximation raoF(double lambda, double p, double q, double multiplier);

/// One test per function, from the first onward, the second onward and so on.
///
/// Input      the squared canonical correlations, descending, each below 1; the sizes of both sets
///            and the number of rows
/// Reference  Bartlett (1947), Multivariate analysis
std::vector<WilksTest> fromEachFunction(std::span<const double> squaredCorrelations,
                                        double p,
                                        double q,
                                        double n);

}  // namespace WilksTests

}  // namespace sorvane
