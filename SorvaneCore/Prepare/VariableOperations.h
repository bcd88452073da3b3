#pragma once

#include <boost/describe/enum.hpp>

namespace sorvane {

/// What one number is made of a row's values.
enum class AggregateOp { sum, mean, count, minimum, maximum };
BOOST_DESCRIBE_ENUM(AggregateOp, sum, mean, count, minimum, maximum)

/// What one number is made of two.
enum class PairOp { difference, ratio };
BOOST_DESCRIBE_ENUM(PairOp, difference, ratio)

/// What a score is made of the answers of a row.
enum class ComputedVariableMethod { sum, mean, validCount };
BOOST_DESCRIBE_ENUM(ComputedVariableMethod, sum, mean, validCount)

/// How a number is cut into bands.
enum class BinningMethod { equalWidth, quantile };
BOOST_DESCRIBE_ENUM(BinningMethod, equalWidth, quantile)

}  // namespace sorvane
