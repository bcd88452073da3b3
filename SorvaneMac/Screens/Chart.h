#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace sorvane {

/// What is drawn, as values; how it looks is the window's affair. A value that is not finite leaves
/// a gap.

struct ValueRange {
    double minimum = 0.0;
    double maximum = 1.0;

    bool operator==(const ValueRange&) const = default;
};

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

/// For each category one bar per series.
struct GroupedBarPlot {
    /// Upright bars side by side, or one lying bar per category, cut into the series.
    enum class Arrangement { beside, stacked };
    enum class Scale {
        number,
        /// Parts of 1, written in per cent.
        share,
    };
    struct Series {
        std::string name;
        /// One per category.
        std::vector<double> values;

        bool operator==(const Series&) const = default;
    };
    std::vector<std::string> categories;
    std::vector<Series> series;
    Arrangement arrangement = Arrangement::beside;
    Scale scale = Scale::number;
    int decimals = 0;

    bool operator==(const GroupedBarPlot&) const = default;
};

/// A point with its interval per row, from above to below: means, coefficients, and, with the rows
/// sorted by estimate and a reference of 0, deviations of clusters.
struct IntervalPlot {
    struct Row {
        std::string label;
        double estimate = 0.0;
        double lower = 0.0;
        double upper = 0.0;

        bool operator==(const Row&) const = default;
    };
    std::vector<Row> rows;
    std::optional<double> reference;

    bool operator==(const IntervalPlot&) const = default;
};

/// Named series over numbers or categories: profile plots, predictions with their band, survival
/// curves, scree and elbow plots.
struct LinePlot {
    enum class Join { straight, steps, none };
    enum class Interval { bars, band };
    struct Series {
        std::string name;
        std::vector<double> x;
        std::vector<double> y;
        /// One per point each, or empty where there are no intervals.
        std::vector<double> lower;
        std::vector<double> upper;
        /// Values of x at which the curve carries a small upright stroke: censored cases.
        std::vector<double> strokes;

        bool operator==(const Series&) const = default;
    };
    std::vector<Series> series;
    /// Where there are some, x counts them from 0.
    std::vector<std::string> categories;
    Join join = Join::straight;
    Interval interval = Interval::bars;
    bool markers = true;
    /// A level line, and what it stands for.
    std::optional<double> reference;
    std::string referenceName;
    /// The x of a point to be marked, such as the elbow, and what is written at it.
    std::optional<double> marked;
    std::string markedName;
    /// Absent takes the range of the values.
    std::optional<ValueRange> yRange;

    bool operator==(const LinePlot&) const = default;
};

/// A matrix as coloured cells; values are written into the cells where there is room.
struct HeatMap {
    enum class Palette {
        /// From low over a quiet middle to high; the middle stands for 0.
        diverging,
        /// From nothing to much.
        sequential,
    };
    std::vector<std::string> rows;
    std::vector<std::string> columns;
    /// Row by row.
    std::vector<double> values;
    Palette palette = Palette::diverging;
    /// The values of the palette's ends; absent takes them from the values.
    std::optional<ValueRange> range;
    int decimals = 2;

    bool operator==(const HeatMap&) const = default;
};

struct Dendrogram {
    /// Leaves are numbered from 0, and each merge takes the next number.
    struct Merge {
        std::int64_t first = 0;
        std::int64_t second = 0;
        double height = 0.0;

        bool operator==(const Merge&) const = default;
    };
    std::vector<std::string> leaves;
    std::vector<Merge> merges;
    /// The height at which the tree is cut into clusters.
    std::optional<double> cut;

    bool operator==(const Dendrogram&) const = default;
};

/// A model as boxes, ellipses and arrows.
struct PathDiagram {
    enum class Shape { latent, observed };
    enum class Arrow { directed, bidirected };
    struct Node {
        std::string label;
        Shape shape = Shape::observed;

        bool operator==(const Node&) const = default;
    };
    struct Path {
        /// Indices of nodes.
        std::size_t from = 0;
        std::size_t to = 0;
        Arrow arrow = Arrow::directed;
        std::string label;

        bool operator==(const Path&) const = default;
    };
    std::vector<Node> nodes;
    std::vector<Path> paths;

    bool operator==(const PathDiagram&) const = default;
};

using AnyPlot = std::variant<HistogramPlot,
                             BoxPlot,
                             ScatterPlot,
                             BarPlot,
                             GroupedBarPlot,
                             IntervalPlot,
                             LinePlot,
                             HeatMap,
                             Dendrogram,
                             PathDiagram>;

/// One of them. How a plot is copied stands in one source: every file that holds charts would otherwise compile it
/// anew for each kind.
struct Plot : AnyPlot {
    using AnyPlot::AnyPlot;
    Plot();
    Plot(const Plot& other);
    Plot(Plot&& other) noexcept;
    Plot& operator=(const Plot& other);
    Plot& operator=(Plot&& other) noexcept;
    ~Plot();

    bool operator==(const Plot& other) const;
};

struct Chart {
    std::string title;
    std::string subtitle;
    std::string xLabel;
    std::string yLabel;
    Plot plot;

    bool operator==(const Chart&) const = default;
};

}  // namespace sorvane
