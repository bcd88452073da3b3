#pragma once

#include <optional>
#include <span>

/// Whether several estimates are 0, tested together.
namespace sorvane::SurveyWaldTest {

/// b' inv(V) b / q of q estimates b.
///
/// Input      the estimates, their covariance V and the inverse of their information, q by q; the
///            variance that rounding may leave of an estimate whose information is 1
/// Method     by Cholesky factors, in coordinates in which the information is the identity: there V
///            holds design effects, whose sizes are comparable whatever the units of the estimates
/// Returns    not below 0, the same for any other coordinates of the estimates where it is not close
///            to failing
/// Failure    a combination of the estimates with less than 1e-13 of the largest variance in these
///            coordinates, or than rounding leaves, which can be all of it -> absent
/// Accuracy   rounding over that share      Cost O(q^3)
std::optional<double> statistic(std::span<const double> estimates,
                                std::span<const double> covariance,
                                std::span<const double> bread,
                                double varianceOfRounding);

}  // namespace sorvane::SurveyWaldTest
