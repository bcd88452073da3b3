#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// A sample as its distinct values in ascending order and how often each occurs.
///
/// Whatever does not depend on the order of the rows is computed from this in the number of
/// distinct values, and comes out the same to the last bit from rows and from the levels of a
/// column.
class ValueCounts {
public:
    ValueCounts() = default;
    explicit ValueCounts(std::span<const double> sample);
    /// The present values of a column; absent ones are not counted.
    explicit ValueCounts(const NumericColumn& column);

    std::span<const double> values() const { return values_; }
    std::span<const std::uint64_t> counts() const { return counts_; }
    std::uint64_t total() const { return total_; }

    /// The value at a position of the sorted sample, counted from 0.
    double at(std::uint64_t position) const;
    /// The median of `length` sorted values from `first` on, at least one.
    double medianOf(std::uint64_t first, std::uint64_t length) const;

    /// As `SampleMoments::mean` and `sumOfSquares`, on at least one value.
    double mean() const;
    double sumOfSquares(double mean) const;
    /// The sum of ((x - mean) / scale) cubed, about the mean before it was rounded.
    double sumOfCubes(double mean, double scale) const;

private:
    /// The mean of what is left of the values when the rounded `mean` is taken off.
    double leftOfMean(double mean) const;
    void append(double value, std::uint64_t count);
    void appendSample(std::span<const double> sample);

    std::vector<double> values_;
    std::vector<std::uint64_t> counts_;
    /// How many sorted values come before the end of each distinct one.
    std::vector<std::uint64_t> ends_;
    std::uint64_t total_ = 0;
};

}  // namespace sorvane
