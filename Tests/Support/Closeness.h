#pragma once

#include <cmath>
#include <ostream>

#include <gtest/gtest.h>

namespace sorvane::test {

/// How far a figure may lie from the expected one: |got - expected| <= absolute + relative *
/// |expected|.
struct Tolerance {
    double relative = 1e-12;
    double absolute = 1e-14;
};

/// Whether two figures agree: NaN equals NaN, infinities must be the same.
inline bool isClose(double got, double expected, Tolerance tolerance) {
    if (std::isnan(expected) || std::isnan(got)) {
        return std::isnan(expected) && std::isnan(got);
    }
    if (std::isinf(expected) || std::isinf(got)) {
        return got == expected;
    }
    return std::abs(got - expected) <= tolerance.absolute + tolerance.relative * std::abs(expected);
}

/// Assertion form of `isClose`, for EXPECT_TRUE(closeTo(got, expected)).
inline testing::AssertionResult closeTo(double got, double expected, Tolerance tolerance = {}) {
    if (isClose(got, expected, tolerance)) {
        return testing::AssertionSuccess();
    }
    testing::Message message;
    message << "got " << testing::PrintToString(got) << ", expected "
            << testing::PrintToString(expected) << ", difference " << got - expected;
    return testing::AssertionFailure(message);
}

}  // namespace sorvane::test
