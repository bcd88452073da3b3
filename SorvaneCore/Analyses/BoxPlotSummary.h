#pragma once

#include <boost/describe/class.hpp>
#include <optional>
#include <span>
#include <vector>

namespace sorvane {

/// What a box plot shows of one group of values.
struct BoxPlotSummary {
    /// The furthest values within 1.5 interquartile ranges of the box.
    double lowerWhisker = 0.0;
    double firstQuartile = 0.0;
    double median = 0.0;
    double thirdQuartile = 0.0;
    double upperWhisker = 0.0;
    /// The values beyond the whiskers, ascending.
    std::vector<double> outliers{};

    bool operator==(const BoxPlotSummary&) const = default;

    /// The box plot of the values, with the quartiles of `DescriptiveStatistics`.
    ///
    /// Input      values that are not finite are left out
    /// Failure    no finite value -> absent; a single one is its own box
    /// Cost       one sort
    /// Reference  Tukey (1977)
    static std::optional<BoxPlotSummary> of(std::span<const double> values);
};
BOOST_DESCRIBE_STRUCT(BoxPlotSummary,
                      (),
                      (lowerWhisker, firstQuartile, median, thirdQuartile, upperWhisker, outliers))

}  // namespace sorvane
