#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextColumn.h"
#include "SorvaneCore/Prepare/MissingDataAnalysis.h"

namespace sorvane {

/// Missing values within one group.
struct GroupMissingness {
    std::string group{};
    std::int64_t nRows = 0;
    std::int64_t missingCells = 0;
    double missingCellPercent = 0.0;
    std::vector<VariableMissingness> perVariable{};

    bool operator==(const GroupMissingness&) const = default;
};
BOOST_DESCRIBE_STRUCT(GroupMissingness,
                      (),
                      (group, nRows, missingCells, missingCellPercent, perVariable))

/// How far the groups lie apart in what they lack of one variable.
struct MissingnessSpread {
    std::string name{};
    /// The largest percent of a group less the smallest, in percentage points.
    double spread = 0.0;
    bool isUneven = false;

    bool operator==(const MissingnessSpread&) const = default;
};
BOOST_DESCRIBE_STRUCT(MissingnessSpread, (), (name, spread, isUneven))

struct SubgroupMissingnessResult {
    /// By label.
    std::vector<GroupMissingness> groups{};
    std::vector<MissingnessSpread> spreads{};
    /// Over all cells together.
    double spread = 0.0;
    /// Whether the cells together or any variable spread by 10 points or more.
    bool isUneven = false;
    AnalysisReadiness readiness{};

    bool operator==(const SubgroupMissingnessResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(SubgroupMissingnessResult, (), (groups, spreads, spread, isUneven, readiness))

/// Percent missing by group.
namespace SubgroupMissingness {

/// From this many percentage points on, groups are said to differ.
constexpr double unevenSpread = 10.0;

/// Input      columns and group cells of one length; rows without a group are left out
/// Method     the percent of missing values in each group, and the largest less the smallest
/// Failure    fewer than two groups, or no columns -> blocked
/// Cost       O(rows * columns)
SubgroupMissingnessResult byGroup(std::span<const NumericColumn> columns,
                                  std::span<const std::string> variableNames,
                                  const TextColumn& groups);

}  // namespace SubgroupMissingness

}  // namespace sorvane
