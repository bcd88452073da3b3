#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// A sample as the position of each value among the distinct values, ascending from 0.
struct OrderedClasses {
    /// One per value, in the order of the sample.
    std::vector<std::uint32_t> classOf{};
    /// How often each distinct value occurs.
    std::vector<std::uint32_t> counts{};

    /// Input      fewer than 2^32 values
    /// Cost       one radix sort of the values
    static OrderedClasses of(std::span<const double> values);

    /// The given rows of a column, in all of which it has a number.
    ///
    /// Cost       O(n + d log d) for a column with codes and d levels
    static OrderedClasses of(const NumericColumn& column, std::span<const std::uint32_t> rows);

    std::size_t size() const { return classOf.size(); }
    /// The mean of the 1-based sorted positions that each class covers.
    std::vector<double> midranks() const;
    /// The number of pairs of equal values: the sum of t(t-1)/2 over the classes.
    double tiedPairs() const;
};

}  // namespace sorvane
