#pragma once

#include <boost/describe/enum.hpp>

namespace sorvane {

/// What one number is made of a row's values.
enum class AggregateOp { sum, mean, count, minimum, maximum };
BOOST_DESCRIBE_ENUM(AggregateOp, sum, mean, count, minimum, maximum)

/// What one number is made of two.
enum class PairOp { difference, ratio };
BOOST_DESCRIBE_ENUM(PairOp, difference, ratio)

}  // namespace sorvane
