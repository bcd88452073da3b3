#include "SorvaneMac/Screens/ChartDescription.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

constexpr std::size_t mostNamed = 6;

std::string number(double value) {
    return std::isfinite(value) ? NumberText::general(value, 4) : "no value";
}

/// "1 point", "3 points".
std::string counted(std::size_t count, const std::string& singular, const std::string& plural) {
    return NumberText::integer(static_cast<std::int64_t>(count)) + " " +
           (count == 1 ? singular : plural);
}

std::string after(const std::string& words, const std::string& name) {
    return name.empty() ? "" : words + name;
}

std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (std::size_t at = 0; at < std::min(parts.size(), mostNamed); ++at) {
        text += (at == 0 ? "" : "; ") + parts[at];
    }
    return parts.size() > mostNamed
               ? text + "; and " + counted(parts.size() - mostNamed, "other", "others")
               : text;
}

struct Extremes {
    /// Positions of the finite values; absent where there are none.
    std::optional<std::size_t> lowest;
    std::optional<std::size_t> highest;
};

Extremes extremesOf(const std::vector<double>& values) {
    Extremes found;
    for (std::size_t at = 0; at < values.size(); ++at) {
        if (std::isfinite(values[at])) {
            found.lowest = found.lowest && values[*found.lowest] <= values[at] ? found.lowest : at;
            found.highest =
                found.highest && values[*found.highest] >= values[at] ? found.highest : at;
        }
    }
    return found;
}

/// ", lowest Control (2.1) and highest Online (3.4)"
std::string fromTo(const std::vector<std::string>& labels, const std::vector<double>& values) {
    const Extremes extremes = extremesOf(values);
    if (!extremes.lowest || values[*extremes.lowest] == values[*extremes.highest]) {
        return extremes.lowest ? ", all at " + number(values[*extremes.lowest]) : "";
    }
    const auto named = [&](std::size_t at) {
        return (at < labels.size() ? labels[at] + " " : "") + "(" + number(values[at]) + ")";
    };
    return ", lowest " + named(*extremes.lowest) + " and highest " + named(*extremes.highest);
}

struct Description {
    const Chart& chart;

    std::string operator()(const HistogramPlot& plot) const {
        std::string text = "Histogram" + after(" of ", chart.xLabel) + " with " +
                           counted(plot.counts.size(), "bar", "bars");
        const auto highest = std::ranges::max_element(plot.counts);
        if (highest != plot.counts.end() && plot.edges.size() == plot.counts.size() + 1) {
            const auto at = static_cast<std::size_t>(highest - plot.counts.begin());
            text += ", highest between " + number(plot.edges[at]) + " and " +
                    number(plot.edges[at + 1]);
        }
        return text + ".";
    }

    std::string operator()(const BoxPlot& plot) const {
        std::vector<std::string> parts;
        for (const BoxPlot::Box& box : plot.boxes) {
            parts.push_back((box.label.empty() ? "" : box.label + " with ") + "median " +
                            number(box.median) + ", quartiles " + number(box.firstQuartile) +
                            " and " + number(box.thirdQuartile) + " and " +
                            counted(box.outliers.size(), "outlier", "outliers"));
        }
        return "Box plot" + after(" of ", chart.yLabel) + after(" by ", chart.xLabel) +
               after(": ", joined(parts)) + ".";
    }

    std::string operator()(const ScatterPlot& plot) const {
        std::string text = "Scatter plot" + after(" of ", chart.yLabel) +
                           after(" against ", chart.xLabel) + " with " +
                           counted(std::min(plot.x.size(), plot.y.size()), "point", "points");
        if (plot.line) {
            const double slope = plot.line->slope;
            text += slope > 0.0   ? " and a rising line"
                    : slope < 0.0 ? " and a falling line"
                                  : " and a level line";
        }
        return text + ".";
    }

    std::string operator()(const BarPlot& plot) const {
        std::string text = "Bar chart" + after(" of ", chart.xLabel) + " with " +
                           counted(plot.values.size(), "bar", "bars") +
                           fromTo(plot.labels, plot.values);
        if (plot.reference) {
            const auto below = std::ranges::count_if(
                plot.values, [&](double value) { return value < *plot.reference; });
            text += "; " + NumberText::integer(below) + " below " + number(*plot.reference);
        }
        return text + ".";
    }

    std::string operator()(const GroupedBarPlot& plot) const {
        std::vector<std::string> parts;
        for (const GroupedBarPlot::Series& series : plot.series) {
            parts.push_back(series.name + fromTo(plot.categories, series.values));
        }
        const bool isStacked = plot.arrangement == GroupedBarPlot::Arrangement::stacked;
        return std::string(isStacked ? "Stacked" : "Grouped") + " bars" +
               after(" of ", isStacked ? chart.xLabel : chart.yLabel) + " for " +
               counted(plot.categories.size(), "category", "categories") + ": " + joined(parts) +
               ".";
    }

    std::string operator()(const IntervalPlot& plot) const {
        std::vector<std::string> labels;
        std::vector<double> estimates;
        std::int64_t apart = 0;
        for (const IntervalPlot::Row& row : plot.rows) {
            labels.push_back(row.label);
            estimates.push_back(row.estimate);
            const double reference = plot.reference.value_or(row.lower);
            apart += row.lower > reference || row.upper < reference ? 1 : 0;
        }
        std::string text = "Points with intervals" + after(" of ", chart.xLabel) + " for " +
                           counted(plot.rows.size(), "row", "rows") + fromTo(labels, estimates);
        if (plot.reference) {
            text += "; " + NumberText::integer(apart) + " of the intervals do not reach " +
                    number(*plot.reference);
        }
        return text + ".";
    }

    std::string operator()(const LinePlot& plot) const {
        std::vector<std::string> parts;
        for (const LinePlot::Series& series : plot.series) {
            if (!series.y.empty()) {
                parts.push_back((series.name.empty() ? "" : series.name + " ") + "from " +
                                number(series.y.front()) + " to " + number(series.y.back()));
            }
        }
        const std::string kind = plot.join == LinePlot::Join::steps  ? "Step curve"
                                 : plot.join == LinePlot::Join::none ? "Points"
                                                                     : "Line chart";
        std::string text = kind + after(" of ", chart.yLabel) + after(" over ", chart.xLabel) +
                           after(": ", joined(parts));
        if (plot.marked) {
            text += "; marked at " + number(*plot.marked) + after(", ", plot.markedName);
        }
        return text + ".";
    }

    std::string operator()(const HeatMap& plot) const {
        std::vector<std::string> cells;
        for (const std::string& row : plot.rows) {
            for (const std::string& column : plot.columns) {
                cells.push_back(row + " with " + column);
            }
        }
        return "Heat map of " + counted(plot.rows.size(), "row", "rows") + " and " +
               counted(plot.columns.size(), "column", "columns") + fromTo(cells, plot.values) + ".";
    }

    std::string operator()(const Dendrogram& plot) const {
        std::string text =
            "Tree of " + counted(plot.leaves.size(), "case or variable", "cases or variables");
        std::vector<double> heights;
        std::ranges::transform(plot.merges, std::back_inserter(heights),
                               &Dendrogram::Merge::height);
        const Extremes extremes = extremesOf(heights);
        if (extremes.lowest) {
            text += ", joined between the heights " + number(heights[*extremes.lowest]) + " and " +
                    number(heights[*extremes.highest]);
        }
        if (plot.cut) {
            const auto above = static_cast<std::size_t>(
                std::ranges::count_if(heights, [&](double height) { return height > *plot.cut; }));
            text += ", cut at " + number(*plot.cut) + " into " +
                    counted(above + 1, "cluster", "clusters");
        }
        return text + ".";
    }

    std::string operator()(const PathDiagram& plot) const {
        const auto latent = static_cast<std::size_t>(
            std::ranges::count(plot.nodes, PathDiagram::Shape::latent, &PathDiagram::Node::shape));
        std::vector<std::string> parts;
        for (const PathDiagram::Path& path : plot.paths) {
            if (path.from < plot.nodes.size() && path.to < plot.nodes.size()) {
                const bool isDirected = path.arrow == PathDiagram::Arrow::directed;
                parts.push_back(plot.nodes[path.from].label + (isDirected ? " to " : " with ") +
                                plot.nodes[path.to].label + after(" ", path.label));
            }
        }
        return "Path diagram of " + counted(latent, "latent variable", "latent variables") +
               " and " +
               counted(plot.nodes.size() - latent, "observed variable", "observed variables") +
               after(": ", joined(parts)) + ".";
    }
};

}  // namespace

std::string chartDescription(const Chart& chart) {
    return std::visit(Description{chart}, chart.plot);
}

}  // namespace sorvane
