#include "SorvaneMac/Screens/ScatterChart.h"

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/RelationshipTests.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

/// More points than this cover each other and slow the drawing.
constexpr std::size_t mostPoints = 100000;

std::optional<ScatterPlot::Line> leastSquares(const NumericColumn& x, const NumericColumn& y) {
    const auto line = RelationshipTests::simpleLinearRegression(x, y);
    return line ? std::optional(
                      ScatterPlot::Line{.intercept = line->intercept, .slope = line->slope})
                : std::nullopt;
}

}  // namespace

Chart scatterChart(const ChartVariable& x, const ChartVariable& y, ScatterLine line) {
    const NumericColumn* const both[] = {&x.values, &y.values};
    const std::vector<std::uint32_t> rows = CompleteCases::rows(both);
    const std::size_t step = rows.empty() ? 1 : (rows.size() - 1) / mostPoints + 1;
    ScatterPlot plot;
    for (std::size_t i = 0; i < rows.size(); i += step) {
        plot.x.push_back(*x.values[rows[i]]);
        plot.y.push_back(*y.values[rows[i]]);
    }
    if (line == ScatterLine::leastSquares) {
        plot.line = leastSquares(x.values, y.values);
    }
    Chart chart;
    chart.title = y.name + " by " + x.name;
    if (step > 1) {
        chart.subtitle = "One in " + NumberText::integer(static_cast<std::int64_t>(step)) +
                         " of the " + NumberText::integer(static_cast<std::int64_t>(rows.size())) +
                         " cases is drawn" + (plot.line ? "; the line is that of all." : ".");
    }
    chart.xLabel = x.name;
    chart.yLabel = y.name;
    chart.plot = std::move(plot);
    return chart;
}

}  // namespace sorvane
