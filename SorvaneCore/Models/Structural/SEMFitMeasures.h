#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>

#include "SorvaneCore/Models/Structural/StructuralEquationModel.h"

namespace sorvane {

struct RMSEAInterval {
    double lower = 0.0;
    double upper = 0.0;

    bool operator==(const RMSEAInterval&) const = default;
};
BOOST_DESCRIBE_STRUCT(RMSEAInterval, (), (lower, upper))

/// How well a fitted covariance agrees with that of the sample.
namespace SEMFitMeasures {

/// What the indices are formed of.
struct Fit {
    /// The fit function at the fitted model, and at independent variables.
    double discrepancy = 0.0;
    double baselineDiscrepancy = 0.0;
    std::int64_t degreesOfFreedom = 0;
    std::int64_t observedCount = 0;
    std::int64_t n = 0;
};

/// All indices but the SRMR.
///
/// Method     chi-square n F, not below 0; CFI 1 - d / max(d, d of the baseline), d = chi-square -
///            df; TLI by the ratios of chi-square to df; RMSEA sqrt(d / (df n)) with its interval
/// Reference  Bentler (1990); Tucker and Lewis (1973); Steiger (1990)
SEMFitIndices indices(const Fit& fit);

/// The root mean square of the differences of two covariances, each in units of the sample.
///
/// Input      p by p, row-major; variables without variance do not count
double computeSRMR(std::span<const double> implied, std::span<const double> sample, std::size_t p);

/// P(X <= x) of the noncentral chi-square distribution.
///
/// Input      df of 1, or of 2 to 1e9; noncentrality >= 0
/// Method     The chi-square of 1 df that is off centre, given the others, over their chi density.
///            The two roots lie on an arc, along which neither changes faster than the arc: panels
///            of 8-point Gauss-Legendre of length 1, as far as the density reaches
/// Failure    arguments outside the domain -> NaN
/// Accuracy   1e-12 absolute up to 1000 df, 1e-10 up to 1e5
/// Cost       about 16 panels, O(df^(1/4)) at most, whatever x and the noncentrality
double noncentralChiSquareCDF(double x, double df, double noncentrality);

/// The 90% interval of the RMSEA.
///
/// Method     the noncentralities at which the chi-square is the 95th and the 5th percentile, by
///            bisection; 0 where it is below that percentile without any
/// Failure    no degrees of freedom, a chi-square that is not finite -> absent
/// Reference  Browne and Cudeck (1993), Alternative ways of assessing model fit
std::optional<RMSEAInterval> rmseaConfidenceInterval(double chiSquare,
                                                     std::int64_t degreesOfFreedom,
                                                     std::int64_t n);

}  // namespace SEMFitMeasures

}  // namespace sorvane
