#pragma once

#include <limits>

namespace sorvane::test {

inline constexpr double infinity = std::numeric_limits<double>::infinity();
inline constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

}  // namespace sorvane::test
