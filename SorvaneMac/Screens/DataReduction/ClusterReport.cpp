#include "SorvaneMac/Screens/DataReduction/ClusterReport.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::ClusterReport {

namespace {

/// As many as tell the means of one variable apart, or a lone one from 0.
int decimalsOf(const Means& means, std::size_t variable) {
    double lowest = std::numeric_limits<double>::infinity();
    double highest = -lowest;
    for (const std::vector<double>& cluster : means) {
        if (std::isfinite(cluster[variable])) {
            lowest = std::min(lowest, cluster[variable]);
            highest = std::max(highest, cluster[variable]);
        }
    }
    return ReportDecimals::of(lowest < highest ? highest - lowest : std::abs(highest), 2);
}

}  // namespace

std::vector<std::int64_t> sizes(const std::vector<std::int64_t>& assignments,
                                std::size_t clusters) {
    std::vector<std::int64_t> counts(clusters, 0);
    for (const std::int64_t cluster : assignments) {
        ++counts[static_cast<std::size_t>(cluster)];
    }
    return counts;
}

Means means(const CaseRows& rows,
            const std::vector<std::int64_t>& assignments,
            std::size_t clusters) {
    Means result(clusters, std::vector<double>(rows.width, 0.0));
    const std::vector<std::int64_t> counts = sizes(assignments, clusters);
    for (std::size_t i = 0; i < rows.count; ++i) {
        std::vector<double>& sums = result[static_cast<std::size_t>(assignments[i])];
        for (std::size_t j = 0; j < rows.width; ++j) {
            sums[j] += rows.row(i)[j];
        }
    }
    for (std::size_t cluster = 0; cluster < clusters; ++cluster) {
        for (double& value : result[cluster]) {
            value = counts[cluster] > 0 ? value / static_cast<double>(counts[cluster])
                                        : std::numeric_limits<double>::quiet_NaN();
        }
    }
    return result;
}

Means deviations(const CaseRows& rows,
                 const std::vector<std::int64_t>& assignments,
                 const Means& means) {
    std::vector<std::vector<std::vector<double>>> values(
        means.size(), std::vector<std::vector<double>>(rows.width));
    for (std::size_t i = 0; i < rows.count; ++i) {
        const auto cluster = static_cast<std::size_t>(assignments[i]);
        for (std::size_t j = 0; j < rows.width; ++j) {
            values[cluster][j].push_back(rows.row(i)[j]);
        }
    }
    Means result;
    for (const std::vector<std::vector<double>>& cluster : values) {
        std::vector<double>& row = result.emplace_back();
        for (const std::vector<double>& variable : cluster) {
            row.push_back(DescriptiveStatistics::standardDeviation(variable).value_or(
                std::numeric_limits<double>::quiet_NaN()));
        }
    }
    return result;
}

ReportTable meanTable(const std::vector<std::string>& variables,
                      const Means& means,
                      const Means& deviations) {
    ReportTable table;
    table.headers = {"Variable"};
    for (std::size_t cluster = 0; cluster < means.size(); ++cluster) {
        table.headers.push_back(name(cluster));
    }
    for (std::size_t j = 0; j < variables.size(); ++j) {
        std::vector<std::string> row = {variables[j]};
        const int decimals = decimalsOf(means, j);
        for (std::size_t cluster = 0; cluster < means.size(); ++cluster) {
            const double mean = means[cluster][j];
            row.push_back(svFigure(
                mean, deviations.empty() ? decimals
                                         : std::max(decimals, ReportDecimals::ofSample(
                                                                  mean, deviations[cluster][j]))));
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

Chart profiles(const std::vector<std::string>& variables, const Means& means) {
    LinePlot plot{.categories = variables};
    for (std::size_t cluster = 0; cluster < means.size(); ++cluster) {
        LinePlot::Series series{.name = name(cluster), .y = means[cluster]};
        for (std::size_t j = 0; j < variables.size(); ++j) {
            series.x.push_back(static_cast<double>(j));
        }
        plot.series.push_back(std::move(series));
    }
    Chart chart;
    chart.title = "Cluster profiles";
    chart.plot = std::move(plot);
    return chart;
}

std::string name(std::size_t cluster) {
    return "Cluster " + ResultText::count(static_cast<std::int64_t>(cluster + 1));
}

}  // namespace sorvane::ClusterReport
