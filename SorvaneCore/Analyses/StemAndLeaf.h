#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

struct StemAndLeafRow {
    std::int64_t stem = 0;
    /// Single digits, ascending.
    std::vector<std::int64_t> leaves{};

    bool operator==(const StemAndLeafRow&) const = default;
};
BOOST_DESCRIBE_STRUCT(StemAndLeafRow, (), (stem, leaves))

struct StemAndLeafPlot {
    /// One row per whole stem, empty ones included.
    std::vector<StemAndLeafRow> rows{};
    double stemUnit = 1.0;
    double leafUnit = 0.1;
    std::int64_t n = 0;

    bool operator==(const StemAndLeafPlot&) const = default;
};
BOOST_DESCRIBE_STRUCT(StemAndLeafPlot, (), (rows, stemUnit, leafUnit, n))

namespace StemAndLeaf {

/// The text plot of a sample: each value as a leaf on its stem.
///
/// Input      values that are not finite, and absent ones, are left out
/// Method     the stem unit is the power of ten of the largest absolute value, raised tenfold while
///            the range spans more than 16 stems. Stems truncate toward zero, whereas the rows run
///            between floors: values just below zero share stem 0 with those just above it, and
///            have no row when nothing reaches zero
/// Failure    fewer than two values, all equal, or a range that overflows or underflows -> absent
/// Cost       O(n log n)
std::optional<StemAndLeafPlot> plot(std::span<const double> values);
std::optional<StemAndLeafPlot> plot(std::span<const std::optional<double>> values);
std::optional<StemAndLeafPlot> plot(const NumericColumn& values);

}  // namespace StemAndLeaf

}  // namespace sorvane
