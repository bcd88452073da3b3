#include "SorvaneMac/Screens/CategoryTables.h"

#include <numeric>

#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::CategoryTables {

namespace {

std::int64_t sum(const std::vector<std::int64_t>& counts) {
    return std::accumulate(counts.begin(), counts.end(), std::int64_t{0});
}

std::vector<std::string> rowCells(std::string label, const std::vector<std::int64_t>& counts) {
    std::vector<std::string> cells = {std::move(label)};
    for (const std::int64_t count : counts) {
        cells.push_back(ResultText::count(count));
    }
    cells.push_back(ResultText::count(sum(counts)));
    return cells;
}

}  // namespace

ReportTable countTable(const CategoryCounts& counts) {
    ReportTable table;
    table.title = "Counts of " + counts.rowName + " by " + counts.columnName;
    table.groupHeaders = {
        {.label = "", .span = 1},
        {.label = counts.columnName, .span = static_cast<int>(counts.columnLabels.size())},
        {.label = "", .span = 1}};
    table.headers = {counts.rowName};
    table.headers.insert(table.headers.end(), counts.columnLabels.begin(),
                         counts.columnLabels.end());
    table.headers.emplace_back("Total");
    std::vector<std::int64_t> totals(counts.columnLabels.size(), 0);
    for (std::size_t row = 0; row < counts.counts.size(); ++row) {
        table.rows.push_back(rowCells(counts.rowLabels[row], counts.counts[row]));
        for (std::size_t column = 0; column < totals.size(); ++column) {
            totals[column] += counts.counts[row][column];
        }
    }
    table.rows.push_back(rowCells("Total", totals));
    return table;
}

Chart shareChart(const CategoryCounts& counts) {
    GroupedBarPlot plot{.categories = counts.rowLabels,
                        .arrangement = GroupedBarPlot::Arrangement::stacked,
                        .scale = GroupedBarPlot::Scale::share};
    for (std::size_t column = 0; column < counts.columnLabels.size(); ++column) {
        GroupedBarPlot::Series series{.name = counts.columnLabels[column]};
        for (const std::vector<std::int64_t>& row : counts.counts) {
            const auto total = static_cast<double>(sum(row));
            series.values.push_back(total > 0.0 ? static_cast<double>(row[column]) / total : 0.0);
        }
        plot.series.push_back(std::move(series));
    }
    Chart chart;
    chart.title = "Shares of " + counts.columnName + " within " + counts.rowName;
    chart.yLabel = counts.rowName;
    chart.xLabel = "Share";
    chart.plot = std::move(plot);
    return chart;
}

}  // namespace sorvane::CategoryTables
