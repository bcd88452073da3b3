#pragma once

#include <boost/describe/class.hpp>
#include <optional>
#include <vector>

#include "SorvaneCore/Dataset/Uuid.h"

namespace sorvane {

/// Replaces some values by another.
struct ValueRecodeRule {
    Uuid id;
    /// The values to match.
    std::vector<double> sources;
    /// Absent: recode to missing.
    std::optional<double> output;

    bool operator==(const ValueRecodeRule&) const = default;
};
BOOST_DESCRIBE_STRUCT(ValueRecodeRule, (), (id, sources, output))

/// Replaces the values of a band by another.
struct RangeRecodeRule {
    Uuid id;
    double lower = 0.0;
    double upper = 0.0;
    bool lowerInclusive = true;
    bool upperInclusive = true;
    /// Absent: recode to missing.
    std::optional<double> output;

    bool operator==(const RangeRecodeRule&) const = default;
};
BOOST_DESCRIBE_STRUCT(RangeRecodeRule,
                      (),
                      (id, lower, upper, lowerInclusive, upperInclusive, output))

}  // namespace sorvane
