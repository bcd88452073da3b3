#include "SorvaneCore/Models/Multilevel/MultilevelRows.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <string_view>
#include <unordered_map>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane {

namespace {

/// Whether each level of a grouping is a label.
std::vector<std::uint8_t> labelledLevels(const TextColumn& column) {
    std::vector<std::uint8_t> result(column.levelCount());
    for (std::size_t level = 0; level < result.size(); ++level) {
        result[level] = UnicodeText::trimmed(column.level(level)).empty() ? 0 : 1;
    }
    return result;
}

void dropUnlabelled(std::vector<std::uint32_t>& rows, const TextColumn& column) {
    const std::vector<std::uint8_t> isLabelled = labelledLevels(column);
    column.withCodes([&](const auto& codes) {
        std::erase_if(rows, [&](std::uint32_t row) { return isLabelled[codes[row]] == 0; });
    });
}

ClusterCodes clusterCodes(const TextColumn& column, const std::vector<std::uint32_t>& rows) {
    constexpr std::uint32_t unseen = std::numeric_limits<std::uint32_t>::max();
    ClusterCodes result;
    result.codes.reserve(rows.size());
    std::vector<std::uint32_t> clusterOfLevel(column.levelCount(), unseen);
    std::unordered_map<std::string_view, std::uint32_t> known;
    column.withCodes([&](const auto& codes) {
        for (const std::uint32_t row : rows) {
            std::uint32_t& cluster = clusterOfLevel[codes[row]];
            if (cluster == unseen) {
                const std::string_view label = UnicodeText::trimmed(column.level(codes[row]));
                const auto [entry, isNew] =
                    known.try_emplace(label, static_cast<std::uint32_t>(result.labels.size()));
                if (isNew) {
                    result.labels.emplace_back(label);
                }
                cluster = entry->second;
            }
            result.codes.push_back(cluster);
        }
    });
    return result;
}

bool haveOneShape(const MultilevelData& data, const MultilevelOptions& options) {
    const std::size_t length = data.outcome.size();
    return data.cluster && data.cluster->size() == length &&
           (!data.cluster2 || data.cluster2->size() == length) &&
           options.fixedNames.size() == data.fixedPredictors.size() &&
           std::ranges::all_of(data.fixedPredictors, [length](const NumericColumn& predictor) {
               return predictor.size() == length;
           });
}

std::vector<std::uint32_t> usedRows(const MultilevelData& data) {
    std::vector<const NumericColumn*> columns = {&data.outcome};
    for (const NumericColumn& predictor : data.fixedPredictors) {
        columns.push_back(&predictor);
    }
    std::vector<std::uint32_t> rows = CompleteCases::rows(columns);
    dropUnlabelled(rows, *data.cluster);
    if (data.cluster2) {
        dropUnlabelled(rows, *data.cluster2);
    }
    return rows;
}

}  // namespace

std::vector<std::size_t> ClusterCodes::sizes() const {
    std::vector<std::size_t> result(count(), 0);
    for (const std::uint32_t code : codes) {
        ++result[code];
    }
    return result;
}

MultilevelRows MultilevelRows::sortedByCluster() const {
    std::vector<std::uint32_t> order(count());
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::stable_sort(order, {}, [this](std::uint32_t row) { return cluster.codes[row]; });
    const auto arranged = [&order](const auto& values) {
        auto result = values;
        for (std::size_t i = 0; i < order.size(); ++i) {
            result[i] = values[order[i]];
        }
        return result;
    };
    MultilevelRows result = *this;
    result.outcome = arranged(outcome);
    for (std::vector<double>& predictor : result.predictors) {
        predictor = arranged(predictor);
    }
    result.cluster.codes = arranged(cluster.codes);
    if (cluster2.count() > 0) {
        result.cluster2.codes = arranged(cluster2.codes);
    }
    return result;
}

std::optional<MultilevelRows> MultilevelRows::of(const MultilevelData& data,
                                                 const MultilevelOptions& options) {
    if (!haveOneShape(data, options)) {
        return std::nullopt;
    }
    MultilevelRows result;
    if (options.randomSlopeName && !options.randomSlopeName->empty()) {
        const auto found = std::ranges::find(options.fixedNames, *options.randomSlopeName);
        if (found == options.fixedNames.end()) {
            return std::nullopt;
        }
        // Two factors have intercepts alone.
        if (!data.cluster2) {
            result.slope = static_cast<std::size_t>(found - options.fixedNames.begin());
        }
    }
    const std::vector<std::uint32_t> rows = usedRows(data);
    if (rows.size() <= data.fixedPredictors.size() + 1) {
        return std::nullopt;
    }
    result.outcome = CompleteCases::gathered(data.outcome, rows);
    for (const NumericColumn& predictor : data.fixedPredictors) {
        result.predictors.push_back(CompleteCases::gathered(predictor, rows));
    }
    result.cluster = clusterCodes(*data.cluster, rows);
    if (data.cluster2) {
        result.cluster2 = clusterCodes(*data.cluster2, rows);
    }
    return result;
}

}  // namespace sorvane
