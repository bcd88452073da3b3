#include "SorvaneMac/Screens/DataReduction/LoadingsReport.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::LoadingsReport {

std::vector<std::size_t> groupedOrder(const Loadings& loadings, std::size_t columns) {
    std::vector<std::size_t> group;
    std::vector<double> height;
    for (const std::vector<double>& row : loadings) {
        std::size_t highest = 0;
        for (std::size_t at = 1; at < columns; ++at) {
            highest = std::abs(row[at]) > std::abs(row[highest]) ? at : highest;
        }
        group.push_back(highest);
        height.push_back(std::abs(row[highest]));
    }
    std::vector<std::size_t> order(loadings.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, [&](std::size_t one, std::size_t other) {
        return group[one] != group[other] ? group[one] < group[other] : height[one] > height[other];
    });
    return order;
}

ReportTable table(const std::vector<std::string>& items,
                  const Loadings& loadings,
                  const std::vector<std::size_t>& order,
                  std::size_t columns,
                  const std::string& columnName) {
    ReportTable table;
    table.headers = {"Item"};
    table.boldMask.emplace();
    for (std::size_t at = 1; at <= columns; ++at) {
        table.headers.push_back(columnName + ResultText::count(static_cast<std::int64_t>(at)));
    }
    for (const std::size_t item : order) {
        std::vector<std::string> cells = {items[item]};
        std::vector<bool> bold = {false};
        for (std::size_t at = 0; at < columns; ++at) {
            cells.push_back(svFmt(loadings[item][at], 2));
            bold.push_back(std::abs(loadings[item][at]) >= salient);
        }
        table.rows.push_back(std::move(cells));
        table.boldMask->push_back(std::move(bold));
    }
    return table;
}

Chart scree(const std::vector<double>& eigenvalues, const std::string& number) {
    LinePlot plot{.reference = 1.0, .referenceName = "Kaiser criterion"};
    plot.series.push_back({.name = "Eigenvalue", .y = eigenvalues});
    for (std::size_t at = 1; at <= eigenvalues.size(); ++at) {
        plot.series.front().x.push_back(static_cast<double>(at));
    }
    Chart chart;
    chart.title = "Scree plot";
    chart.subtitle = "Look for the bend: what follows it adds little.";
    chart.xLabel = number;
    chart.yLabel = "Eigenvalue";
    chart.plot = std::move(plot);
    return chart;
}

}  // namespace sorvane::LoadingsReport
