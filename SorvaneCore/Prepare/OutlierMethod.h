#pragma once

#include <boost/describe/enum.hpp>

namespace sorvane {

/// By what a value counts as an outlier: its distance from the quartiles, or from the mean.
enum class OutlierMethod { iqr, zScore };
BOOST_DESCRIBE_ENUM(OutlierMethod, iqr, zScore)

}  // namespace sorvane
