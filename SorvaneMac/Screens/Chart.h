#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace sorvane {

/// What is drawn, as values; how it looks is the window's affair.

struct HistogramPlot {
    /// One more than counts.
    std::vector<double> edges;
    std::vector<std::int64_t> counts;

    bool operator==(const HistogramPlot&) const = default;
};

struct BoxPlot {
    struct Box {
        std::string label;
        double lowerWhisker = 0.0;
        double firstQuartile = 0.0;
        double median = 0.0;
        double thirdQuartile = 0.0;
        double upperWhisker = 0.0;
        std::vector<double> outliers;

        bool operator==(const Box&) const = default;
    };
    std::vector<Box> boxes;

    bool operator==(const BoxPlot&) const = default;
};

struct ScatterPlot {
    struct Line {
        double intercept = 0.0;
        double slope = 0.0;

        bool operator==(const Line&) const = default;
    };
    std::vector<double> x;
    std::vector<double> y;
    std::optional<Line> line;

    bool operator==(const ScatterPlot&) const = default;
};

/// One horizontal bar per label; bars below the reference are set apart.
struct BarPlot {
    std::vector<std::string> labels;
    /// NaN where there is no value.
    std::vector<double> values;
    std::optional<double> reference;
    int decimals = 2;

    bool operator==(const BarPlot&) const = default;
};

struct Chart {
    std::string title;
    std::string subtitle;
    std::string xLabel;
    std::string yLabel;
    std::variant<HistogramPlot, BoxPlot, ScatterPlot, BarPlot> plot;

    bool operator==(const Chart&) const = default;
};

}  // namespace sorvane
