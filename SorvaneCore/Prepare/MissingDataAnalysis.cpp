#include "SorvaneCore/Prepare/MissingDataAnalysis.h"

#include <algorithm>

#include "SorvaneCore/Prepare/MissingPatterns.h"
#include "SorvaneCore/Prepare/Percent.h"

namespace sorvane::MissingDataAnalysis {

namespace {

std::vector<MissingPattern> byCount(const MissingPatterns& patterns) {
    std::vector<MissingPattern> sorted;
    for (std::size_t pattern = 0; pattern < patterns.counts.size(); ++pattern) {
        sorted.push_back({.present = patterns.present[pattern], .count = patterns.counts[pattern]});
    }
    std::ranges::stable_sort(sorted, std::ranges::greater(), &MissingPattern::count);
    return sorted;
}

bool isComplete(const MissingPattern& pattern) {
    return std::ranges::find(pattern.present, false) == pattern.present.end();
}

}  // namespace

MissingDataSummary summary(std::span<const NumericColumn> columns,
                           std::span<const std::string> variableNames) {
    const MissingPatterns patterns = MissingPatterns::of(columns);
    MissingDataSummary result{.nRows = static_cast<std::int64_t>(patterns.patternOfRow.size()),
                              .nVariables = static_cast<std::int64_t>(columns.size()),
                              .patterns = byCount(patterns)};
    result.distinctPatternCount = static_cast<std::int64_t>(result.patterns.size());
    result.totalCells = result.nRows * result.nVariables;
    for (std::size_t j = 0; j < columns.size(); ++j) {
        VariableMissingness variable{.name = j < variableNames.size() ? variableNames[j] : ""};
        for (const MissingPattern& pattern : result.patterns) {
            variable.missingCount += pattern.present[j] ? 0 : pattern.count;
        }
        variable.missingPercent = percent(variable.missingCount, result.nRows);
        result.missingCells += variable.missingCount;
        result.perVariable.push_back(std::move(variable));
    }
    for (const MissingPattern& pattern : result.patterns) {
        result.completeCases += isComplete(pattern) ? pattern.count : 0;
    }
    result.missingCellPercent = percent(result.missingCells, result.totalCells);
    result.completeCasePercent = percent(result.completeCases, result.nRows);
    return result;
}

}  // namespace sorvane::MissingDataAnalysis
