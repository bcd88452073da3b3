#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// Counts of values between equally spaced edges; one edge more than counts.
struct HistogramBins {
    std::vector<double> edges{};
    std::vector<std::int64_t> counts{};

    bool operator==(const HistogramBins&) const = default;
};
BOOST_DESCRIBE_STRUCT(HistogramBins, (), (edges, counts))

namespace Histogram {

/// The bins of a histogram.
///
/// Input      values that are not finite are left out
/// Method     whole numbers over a short range get a bin each, centred on the number; otherwise
///            Sturges' count of bins, widened to a width of 1, 2 or 5 times a power of ten. A bin
///            holds its lower edge; the last one holds both
/// Failure    no finite value, or a range that overflows or underflows -> absent
/// Cost       O(n), or O(levels) of a column with codes
/// Reference  Sturges (1926)
std::optional<HistogramBins> bins(std::span<const double> values);
std::optional<HistogramBins> bins(const NumericColumn& column);

}  // namespace Histogram

}  // namespace sorvane
