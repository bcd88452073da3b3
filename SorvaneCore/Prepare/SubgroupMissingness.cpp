#include "SorvaneCore/Prepare/SubgroupMissingness.h"

#include <algorithm>
#include <array>

#include "SorvaneCore/Analyses/Basics/CategoryCodes.h"
#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Dataset/LabelOrder.h"
#include "SorvaneCore/Prepare/Percent.h"

namespace sorvane::SubgroupMissingness {

namespace {

const char* const minimumRequired = "At least two groups and one numeric variable";
const char* const tooFewGroups = "Fewer than two groups have rows, so there is nothing to compare.";
const char* const noVariables = "There is no numeric variable to look at.";

std::vector<std::int64_t> missingByGroup(const NumericColumn& column,
                                         std::span<const std::uint32_t> rows,
                                         const CategoryCodes& groups) {
    std::vector<std::int64_t> counts(groups.labels.size(), 0);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const bool isMissing = rows[i] >= column.size() || !column[rows[i]];
        counts[groups.codes[i]] += isMissing ? 1 : 0;
    }
    return counts;
}

/// The largest less the smallest of what `percentOf` gives for the groups; 0 without any.
template <typename PercentOf>
double spreadOf(const std::vector<GroupMissingness>& groups, PercentOf percentOf) {
    if (groups.empty()) {
        return 0.0;
    }
    std::vector<double> percents;
    for (const GroupMissingness& group : groups) {
        percents.push_back(percentOf(group));
    }
    return std::ranges::max(percents) - std::ranges::min(percents);
}

/// 57 of 100 less 47 of 100 are 10 points, although their quotients differ by a little less.
bool isWide(double spread) {
    constexpr double rounding = 1e-9;
    return spread >= unevenSpread - rounding;
}

std::vector<GroupMissingness> sortedByLabel(std::vector<GroupMissingness> groups,
                                            const std::vector<std::string>& labels) {
    std::vector<GroupMissingness> sorted;
    for (const std::size_t index : LabelOrder::caseInsensitive(labels)) {
        sorted.push_back(std::move(groups[index]));
    }
    return sorted;
}

std::vector<AnalysisReadinessIssue> issues(const SubgroupMissingnessResult& result,
                                           std::size_t variables) {
    std::vector<AnalysisReadinessIssue> found;
    if (result.groups.size() < 2) {
        found.push_back(AnalysisReadinessIssue::blocked(tooFewGroups));
    }
    if (variables == 0) {
        found.push_back(AnalysisReadinessIssue::blocked(noVariables));
    }
    return found;
}

}  // namespace

SubgroupMissingnessResult byGroup(std::span<const NumericColumn> columns,
                                  std::span<const std::string> variableNames,
                                  const TextColumn& groups) {
    const std::array groupColumns = {&groups};
    const std::vector<std::uint32_t> rows = CompleteCases::rows({}, groupColumns);
    const CategoryCodes codes = CategoryCodes::of(groups, rows);
    const std::vector<std::int64_t> sizes = codes.counts();
    SubgroupMissingnessResult result;
    for (std::size_t group = 0; group < sizes.size(); ++group) {
        result.groups.push_back({.group = codes.labels[group], .nRows = sizes[group]});
    }
    for (std::size_t j = 0; j < columns.size(); ++j) {
        const std::vector<std::int64_t> missing = missingByGroup(columns[j], rows, codes);
        for (std::size_t group = 0; group < sizes.size(); ++group) {
            GroupMissingness& each = result.groups[group];
            each.missingCells += missing[group];
            each.perVariable.push_back({.name = j < variableNames.size() ? variableNames[j] : "",
                                        .missingCount = missing[group],
                                        .missingPercent = percent(missing[group], each.nRows)});
        }
    }
    for (GroupMissingness& each : result.groups) {
        each.missingCellPercent =
            percent(each.missingCells, each.nRows * static_cast<std::int64_t>(columns.size()));
    }
    result.groups = sortedByLabel(std::move(result.groups), codes.labels);
    result.spread = spreadOf(result.groups,
                             [](const GroupMissingness& each) { return each.missingCellPercent; });
    result.isUneven = isWide(result.spread);
    for (std::size_t j = 0; j < columns.size(); ++j) {
        const double spread = spreadOf(result.groups, [j](const GroupMissingness& each) {
            return each.perVariable[j].missingPercent;
        });
        result.spreads.push_back({.name = j < variableNames.size() ? variableNames[j] : "",
                                  .spread = spread,
                                  .isUneven = isWide(spread)});
        result.isUneven = result.isUneven || isWide(spread);
    }
    result.readiness = AnalysisReadiness::of(
        minimumRequired, static_cast<std::int64_t>(groups.size()),
        static_cast<std::int64_t>(rows.size()), issues(result, columns.size()),
        static_cast<std::int64_t>(result.groups.size()));
    return result;
}

}  // namespace sorvane::SubgroupMissingness
