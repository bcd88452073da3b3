#pragma once

namespace sorvane {

/// Student's t for pooled estimates, whose degrees of freedom grow beyond all bounds as the copies
/// agree.
///
/// Method     above a million degrees of freedom the normal distribution with the first term of
///            Fisher's expansion in 1/df, since the integral of t loses its digits there; an
///            infinite df is the normal distribution itself
/// Reference  Fisher (1926), Expansion of "Student's" integral in powers of 1/n
namespace PooledT {

/// The two-tailed critical value.
double critical(double twoTailedAlpha, double df);

/// The two-tailed p-value of t.
double pValue(double t, double df);

}  // namespace PooledT

}  // namespace sorvane
