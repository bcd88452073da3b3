#pragma once

#include <functional>
#include <span>
#include <vector>

/// The two minimizers of linear mixed models, whose rules are fixed so that a fit repeats.
namespace sorvane::VarianceMinimizers {

/// What stands for the value of a setting that has none.
inline constexpr double failedValue = 1e300;

/// The minimum of a function of one variable on an interval.
///
/// Method     parabolic interpolation with golden section steps, at most 80, to 1e-10 relative plus
///            1e-12
/// Reference  Brent (1973), Algorithms for minimization without derivatives, chapter 5
double brent(double low, double high, const std::function<double(double x)>& f);

/// A local minimum near the start, from values alone.
///
/// Method     vertices 5 % off the start (0.05 where it is next to zero); at most 250 rounds of
///            reflection, expansion by 2, contraction to either side by half and shrinking, until
///            the values of the vertices spread by less than 1e-10
/// Returns    the best vertex, also at the limit
/// Reference  Nelder and Mead (1965)
std::vector<double> simplex(std::span<const double> start,
                            const std::function<double(std::span<const double> point)>& f);

}  // namespace sorvane::VarianceMinimizers
