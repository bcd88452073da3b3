#include "SorvaneCore/Analyses/Basics/GroupedRows.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "SorvaneCore/Dataset/LabelOrder.h"
#include "SorvaneCore/Dataset/MissingValue.h"

namespace sorvane {

namespace {

constexpr std::uint32_t unseen = 0xFFFFFFFF;
constexpr std::uint32_t missing = unseen - 1;

/// Finds the group of each level when a row first asks for it.
class GroupOfLevel {
public:
    GroupOfLevel(const TextColumn& cells, std::vector<GroupedRows::Group>& groups)
        : cells_(cells), groups_(groups), found_(cells.levelCount(), unseen) {}

    std::uint32_t operator[](std::size_t level) {
        if (found_[level] == unseen) {
            found_[level] = find(cells_.level(level));
        }
        return found_[level];
    }

private:
    std::uint32_t find(std::string_view cell) {
        if (MissingValue::isMissing(cell)) {
            return missing;
        }
        const auto next = static_cast<std::uint32_t>(groups_.size());
        const auto [entry, isNew] = byLabel_.try_emplace(cell, next);
        if (isNew) {
            groups_.push_back({.label = std::string(cell)});
        }
        return entry->second;
    }

    const TextColumn& cells_;
    std::vector<GroupedRows::Group>& groups_;
    std::vector<std::uint32_t> found_;
    std::unordered_map<std::string_view, std::uint32_t> byLabel_;
};

void addRow(GroupedRows& rows, std::uint32_t group, const std::optional<double>& outcome) {
    if (group == missing) {
        ++rows.missingGroupRows;
    } else if (outcome) {
        rows.groups[group].values.push_back(*outcome);
    } else {
        ++rows.groups[group].missingN;
    }
}

}  // namespace

GroupedRows GroupedRows::of(const TextColumn& groupCells, const NumericColumn& outcomes) {
    GroupedRows result;
    const std::size_t count = std::min(groupCells.size(), outcomes.size());
    result.rows = static_cast<std::int64_t>(count);
    GroupOfLevel groupOfLevel(groupCells, result.groups);
    const std::span<const std::optional<double>> numbers = outcomes.levels();
    groupCells.withCodes([&](const auto& groupCodes) {
        outcomes.withCodes([&](const auto& outcomeCodes) {
            for (std::size_t row = 0; row < count; ++row) {
                addRow(result, groupOfLevel[groupCodes[row]], numbers[outcomeCodes[row]]);
            }
        });
    });
    return result;
}

void GroupedRows::sortByLabel() {
    std::vector<std::string> labels;
    for (const Group& group : groups) {
        labels.push_back(group.label);
    }
    std::vector<Group> sorted;
    for (const std::size_t index : LabelOrder::caseInsensitive(labels)) {
        sorted.push_back(std::move(groups[index]));
    }
    groups = std::move(sorted);
}

std::vector<NamedNumericGroup> GroupedRows::takeGroups(std::size_t fewest) {
    std::vector<NamedNumericGroup> taken;
    for (Group& group : groups) {
        if (group.values.size() >= fewest) {
            taken.push_back({.name = group.label, .values = std::move(group.values)});
        }
    }
    return taken;
}

}  // namespace sorvane
