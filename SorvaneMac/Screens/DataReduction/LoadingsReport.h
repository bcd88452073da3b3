#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/Chart.h"

/// Loadings and eigenvalues as tables and charts.
namespace sorvane::LoadingsReport {

/// One row per item, one column per component or factor.
using Loadings = std::vector<std::vector<double>>;

/// Loadings of this size or more are in bold.
inline constexpr double salient = 0.40;

/// The items grouped by the column on which each loads highest in absolute value, the first of
/// equals, and in a group from the highest loading down.
std::vector<std::size_t> groupedOrder(const Loadings& loadings, std::size_t columns);

/// The loadings on the first columns as rows of a table, salient ones in bold.
///
/// Input      `order`: the items in the order of the rows; `columnName`: what the head of each
///            column begins with, such as "F" for "F1"
ReportTable table(const std::vector<std::string>& items,
                  const Loadings& loadings,
                  const std::vector<std::size_t>& order,
                  std::size_t columns,
                  const std::string& columnName);

/// The eigenvalues in their order, with a level line at 1.
Chart scree(const std::vector<double>& eigenvalues, const std::string& number);

}  // namespace sorvane::LoadingsReport
