#pragma once

namespace sorvane {

/// The z below which a standard normal value falls with probability p.
///
/// Method     Acklam's rational approximation and one Halley step
/// Returns    negative infinity for p <= 0, infinity for p >= 1, exactly 0 for p = 0.5
/// Accuracy   1e-14 for p from 0.001 to 0.999, 1e-8 at 1e-9. Below, the step works with a normal
///            distribution function formed as (1 + erf)/2, good to 1e-16 absolute only: off by up
///            to 0.1 under 1e-16, and NaN for p under about 1e-310
/// Reference  Acklam (2003), An algorithm for computing the inverse normal cumulative distribution
///            function
double inverseStandardNormalCDF(double p);

}  // namespace sorvane
