#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/CaseRows.h"
#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/Chart.h"

/// Clusters of cases as tables and charts.
namespace sorvane::ClusterReport {

/// One row per cluster, one column per variable.
using Means = std::vector<std::vector<double>>;

/// How many cases each cluster has.
///
/// Input      the cluster of each case, from 0 to below `clusters`
std::vector<std::int64_t> sizes(const std::vector<std::int64_t>& assignments, std::size_t clusters);

/// The means of the cases of each cluster; NaN for one that is empty.
Means means(const CaseRows& rows,
            const std::vector<std::int64_t>& assignments,
            std::size_t clusters);

/// The standard deviations of the cases of each cluster; NaN for one of fewer than two cases.
Means deviations(const CaseRows& rows,
                 const std::vector<std::int64_t>& assignments,
                 const Means& means);

/// A row per variable, a column per cluster, with as many decimals as tell the means of a variable
/// apart, and for each cluster as many as its own deviation asks for.
///
/// Input      no deviations of standard scores, which all clusters have in one unit
ReportTable meanTable(const std::vector<std::string>& variables,
                      const Means& means,
                      const Means& deviations = {});

/// A line per cluster over the variables.
Chart profiles(const std::vector<std::string>& variables, const Means& means);

/// "Cluster 2", counted from 0
std::string name(std::size_t cluster);

}  // namespace sorvane::ClusterReport
