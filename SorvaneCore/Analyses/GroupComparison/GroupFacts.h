#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/DescriptiveSummary.h"
#include "SorvaneCore/Analyses/Basics/GroupedRows.h"

namespace sorvane {

/// What the readiness and the warnings of a comparison rest on.
struct GroupFacts {
    /// The rows read.
    std::int64_t rows = 0;
    bool lengthsDiffer = false;
    std::int64_t missingGroupRows = 0;
    /// Rows with a group and an outcome.
    std::int64_t validN = 0;
    /// Groups of two outcomes or more, and the labels of the others.
    std::int64_t usableGroups = 0;
    std::vector<std::string> smallGroups{};
    /// The largest group is one and a half times the smallest, or more.
    bool hasUnevenSizes = false;
    /// The shares of missing outcomes lie a tenth apart or more.
    bool hasMissingImbalance = false;
    /// The largest over the smallest positive variance of a group; 1 when there is none.
    double varianceRatio = 1.0;

    static GroupFacts of(const GroupedRows& rows);
};

/// Whether one of the groups of three values or more has fewer than eight distinct ones, an
/// adjusted skewness beyond 2, or a value more than one and a half interquartile ranges outside
/// the quartiles.
///
/// Input      a group of rows and its summary, for each group
bool hasOrdinalOrSkewFlag(std::span<const GroupedRows::Group> groups,
                          std::span<const DescriptiveSummary> summaries);

}  // namespace sorvane
