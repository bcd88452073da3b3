#include "SorvaneCore/Analyses/Reliability/ReliabilityScaleTables.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"

namespace sorvane::ReliabilityScaleTables {

namespace {

std::optional<double> finite(std::optional<double> value) {
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<double> squared(std::optional<double> value) {
    return value ? std::optional(*value * *value) : std::nullopt;
}

SummaryItemStatistic summaryOf(std::string label, std::span<const double> values) {
    SummaryItemStatistic row{.label = std::move(label)};
    if (values.empty()) {
        return row;
    }
    const double minimum = *std::ranges::min_element(values);
    const double maximum = *std::ranges::max_element(values);
    row.mean = finite(DescriptiveStatistics::mean(values));
    row.minimum = finite(minimum);
    row.maximum = finite(maximum);
    row.range = finite(maximum - minimum);
    row.maximumOverMinimum = minimum == 0.0 ? std::nullopt : finite(maximum / minimum);
    row.variance = values.size() == 1 ? 0.0 : finite(DescriptiveStatistics::variance(values));
    return row;
}

std::optional<double> meanWithout(const ReliabilityResult& result, std::size_t deleted) {
    double sum = 0.0;
    for (const ReliabilityItemStatistic& item : result.itemStatistics) {
        if (!item.mean) {
            return std::nullopt;
        }
        sum += *item.mean;
    }
    return sum - *result.itemStatistics[deleted].mean;
}

bool matrixFits(const ReliabilityResult& result) {
    const std::size_t count = result.itemStatistics.size();
    return result.interItemCorrelationMatrix.size() == count &&
           std::ranges::all_of(result.interItemCorrelationMatrix,
                               [count](const auto& row) { return row.size() == count; });
}

std::optional<double> varianceWithout(const ReliabilityResult& result, std::size_t deleted) {
    const std::vector<ReliabilityItemStatistic>& items = result.itemStatistics;
    double sum = 0.0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i == deleted) {
            continue;
        }
        const std::optional<double> deviation = items[i].standardDeviation;
        if (!deviation) {
            return std::nullopt;
        }
        sum += *deviation * *deviation;
        for (std::size_t j = i + 1; j < items.size(); ++j) {
            const std::optional<double> r = result.interItemCorrelationMatrix[i][j];
            if (j == deleted) {
                continue;
            }
            if (!r || !items[j].standardDeviation) {
                return std::nullopt;
            }
            sum += 2.0 * *r * *deviation * *items[j].standardDeviation;
        }
    }
    return sum;
}

}  // namespace

ScaleStatistics scaleStatistics(const ReliabilityResult& result) {
    return {.n = result.casesUsed,
            .mean = finite(result.scaleScoreMean),
            .variance = finite(squared(result.scaleScoreStandardDeviation)),
            .standardDeviation = finite(result.scaleScoreStandardDeviation)};
}

std::vector<SummaryItemStatistic> summaryItemStatistics(const ReliabilityResult& result) {
    std::vector<double> means;
    std::vector<double> variances;
    std::vector<double> correlations;
    for (const ReliabilityItemStatistic& item : result.itemStatistics) {
        if (item.mean) {
            means.push_back(*item.mean);
        }
        if (const std::optional<double> variance = squared(item.standardDeviation)) {
            variances.push_back(*variance);
        }
    }
    for (std::size_t i = 0; i < result.interItemCorrelationMatrix.size(); ++i) {
        const std::vector<std::optional<double>>& row = result.interItemCorrelationMatrix[i];
        for (std::size_t j = i + 1; j < row.size(); ++j) {
            if (row[j]) {
                correlations.push_back(*row[j]);
            }
        }
    }
    return {summaryOf("Item means", means), summaryOf("Item variances", variances),
            summaryOf("Inter-item correlations", correlations)};
}

std::vector<ItemTotalStatistic> itemTotalStatistics(const ReliabilityResult& result) {
    const bool fits = matrixFits(result);
    std::vector<ItemTotalStatistic> rows;
    for (std::size_t j = 0; j < result.itemStatistics.size(); ++j) {
        const ReliabilityItemStatistic& item = result.itemStatistics[j];
        rows.push_back(
            {.itemName = item.itemName,
             .scaleMeanIfDeleted = finite(meanWithout(result, j)),
             .scaleVarianceIfDeleted = fits ? finite(varianceWithout(result, j)) : std::nullopt,
             .correctedItemTotalCorrelation = finite(item.correctedItemTotalCorrelation),
             .alphaIfDeleted = finite(item.alphaIfDeleted)});
    }
    return rows;
}

}  // namespace sorvane::ReliabilityScaleTables
