#pragma once

#include <memory>

/// p-values, cumulative probabilities and critical values.
///
/// Failure    arguments outside a function's domain, NaN included -> NaN
/// Accuracy   series and continued fractions run to a relative 3e-14 or 200 terms, whichever comes
///            first, and do not tell which. Upper tails are formed as 1 minus the lower value, so
///            that they are good to 1e-15 absolute at best and are exactly 0 below about 1e-16
namespace sorvane::MathDistributions {

/// P(Z <= z) of the standard normal distribution.
double standardNormalCDF(double z);

/// P(X >= x) of the chi-square distribution.
///
/// Input      x >= 0, df > 0 (fractional allowed)
/// Method     power series of the lower incomplete gamma function below df/2 + 1, continued
///            fraction of the upper one above
/// Accuracy   1e-12 absolute up to df 1000. Beyond, the 200 terms are too few around x = df: off by
///            4e-5 at df 5000 and 0.02 at df 20000
/// Reference  Abramowitz and Stegun (1972), 6.5.29 and 6.5.31
double chiSquareRightTailPValue(double x, double df);

/// P(F >= f) of the F distribution.
///
/// Input      f >= 0, df1 > 0, df2 > 0; an infinite df2 is the chi-square distribution of f * df1
/// Method     continued fraction of the incomplete beta function
/// Returns    0 for an infinite f
/// Accuracy   1e-12 absolute for df2 up to a few thousand, 1e-8 at df2 1e7
/// Reference  Abramowitz and Stegun (1972), 26.5.8
double fRightTailPValue(double f, double df1, double df2);

/// The two-sided P(|T| >= |t|) of Student's distribution.
///
/// Input      df > 0; an infinite df is the normal distribution
/// Returns    0 for an infinite t
double studentTPValue(double t, double df);

/// P(T <= t) of Student's distribution.
///
/// Input      df > 0, which is not checked; an infinite df is the normal distribution
/// Accuracy   about 1e-13 in the tails up to df 1000, 1e-9 at df 1e6, and worse in proportion
///            beyond, because log gamma values of the size of df cancel. Next to t = 0, where df /
///            (df + t^2) rounds to 1, off by up to 1e-7 at df 1000 and 3e-6 at df 1e6
double studentTCDF(double t, double df);

/// The t that leaves half of alpha above it.
///
/// Input      0 < twoTailedAlpha < 1, df > 0
/// Method     bisection on [0, 100], 120 halvings
/// Accuracy   as `studentTCDF`; a critical value above 100 (df 1 with alpha 0.001) comes out as 100
double studentTCritical(double twoTailedAlpha, double df);

/// P(range of k standard normal values <= q).
///
/// Method     k times the integral of phi(z) (Phi(z) - Phi(z - q))^(k-1) over [-8.5, 8.5], 16
///            panels of 8-point Gauss-Legendre
/// Returns    for k < 2: 1 when q > 0, otherwise 0
/// Accuracy   1e-14 for two groups, 1e-10 for ten, 1e-7 for hundreds, as the integrand narrows
/// Cost       about 2 microseconds
double standardRangeCDF(double q, int k);

/// P(Q <= q) of the studentized range of k means.
///
/// Input      k >= 2, df >= 2 (fractional allowed)
/// Method     the integral of `standardRangeCDF` over the scale of the estimated standard
///            deviation, 20 fixed panels of 8-point Gauss-Legendre; beyond df 25000
///            `standardRangeCDF` itself
/// Returns    1 for a q that is infinite or NaN
/// Accuracy   1e-9 for df from about 5 to 600 and few groups; at df 2 2e-5, and 1e-3 far out with
///            twenty groups. The panels do not follow the density as it narrows: the result is off
///            by about 1e-4 at df 10000 and 5e-3 at df 20000
/// Cost       about 0.1 ms
double studentizedRangeCDF(double q, int k, double df);

/// The q that `studentizedRangeCDF` gives the probability p.
///
/// Input      0 < p < 1, k >= 2, df >= 2
/// Method     bisection on [0.5, 15], 26 halvings, of which those that a chord search has already
///            settled cost nothing
/// Accuracy   2e-7 beside that of the distribution; a quantile outside the bracket comes out next
///            to its end
/// Cost       about 1 ms
double studentizedRangeQuantile(double p, int k, double df);

/// The studentized range of k means, for the many q and df of a family of comparisons.
///
/// Method     as the two functions above; the values of `standardRangeCDF` are found once, at the
///            nodes of Chebyshev polynomials on half units, and are shared by all questions
/// Accuracy   within 1e-13 of the functions
/// Cost       up to half a millisecond in all, then about 5 microseconds a probability and 30 a
///            quantile
class StudentizedRangeFamily {
public:
    explicit StudentizedRangeFamily(int k);
    ~StudentizedRangeFamily();

    double cdf(double q, double df);
    double quantile(double p, double df);

private:
    class Table;

    int k_;
    std::unique_ptr<Table> table_;
};

}  // namespace sorvane::MathDistributions
