#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/Chart.h"

namespace sorvane {

/// Counts by two categorical columns.
struct CategoryCounts {
    std::string rowName;
    std::string columnName;
    std::vector<std::string> rowLabels;
    std::vector<std::string> columnLabels;
    /// By row, then by column.
    std::vector<std::vector<std::int64_t>> counts;
};

/// Tables of categories as screens show them.
namespace CategoryTables {

/// The counts with their totals, the columns' labels under their name.
ReportTable countTable(const CategoryCounts& counts);
/// For each row a bar, cut into the shares of the columns.
Chart shareChart(const CategoryCounts& counts);

}  // namespace CategoryTables

}  // namespace sorvane
