#include "SorvaneCore/Models/Multilevel/MultilevelInputs.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane::MultilevelInputs {

std::shared_ptr<const TextColumn> innerWithinOuter(const TextColumn& outer,
                                                   const TextColumn& inner) {
    if (outer.size() != inner.size()) {
        return nullptr;
    }
    std::vector<std::string> labels(outer.size());
    for (std::size_t row = 0; row < labels.size(); ++row) {
        const std::string_view first = UnicodeText::trimmed(outer[row]);
        const std::string_view second = UnicodeText::trimmed(inner[row]);
        if (!first.empty() && !second.empty()) {
            labels[row].append(first).append(":").append(second);
        }
    }
    return TextColumn::of(labels);
}

std::vector<std::optional<double>> lagWithinCluster(const NumericColumn& outcome,
                                                    const TextColumn& cluster,
                                                    const NumericColumn& time) {
    std::vector<std::optional<double>> lagged(outcome.size());
    if (cluster.size() != outcome.size() || time.size() != outcome.size()) {
        return lagged;
    }
    std::unordered_map<std::string_view, std::vector<std::size_t>> rowsOfCluster;
    for (std::size_t row = 0; row < lagged.size(); ++row) {
        const std::string_view label = UnicodeText::trimmed(cluster[row]);
        if (!label.empty() && outcome[row] && time[row]) {
            rowsOfCluster[label].push_back(row);
        }
    }
    for (auto& [label, rows] : rowsOfCluster) {
        std::ranges::stable_sort(rows, {}, [&time](std::size_t row) { return *time[row]; });
        for (std::size_t i = 1; i < rows.size(); ++i) {
            lagged[rows[i]] = outcome[rows[i - 1]];
        }
    }
    return lagged;
}

}  // namespace sorvane::MultilevelInputs
