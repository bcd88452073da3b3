#pragma once

#include <boost/describe/enum.hpp>

namespace sorvane {

/// How far and how finely `normalCritical` searches.
enum class NormalCriticalSetting {
    wide,    ///< bracket [0, 40], 200 halvings, NaN unless 0 < alpha < 1
    narrow,  ///< bracket [0, 8], 80 halvings, any alpha: 8 for alpha <= 0, 0 for alpha >= 1
};
BOOST_DESCRIBE_ENUM(NormalCriticalSetting, wide, narrow)

/// The z that leaves half of alpha above it.
///
/// Method     bisection on the standard normal distribution function
/// Accuracy   1e-13 for common alpha; where 1 - alpha/2 rounds to 1, about 8.3 (wide) or 8 (narrow)
double normalCritical(double twoTailedAlpha, NormalCriticalSetting setting);

}  // namespace sorvane
