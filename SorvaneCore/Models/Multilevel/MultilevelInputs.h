#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextColumn.h"

/// Groupings and predictors that other columns give rise to.
namespace sorvane::MultilevelInputs {

/// "outer:inner" of each row, so that equal inner labels in different outer groups stay apart;
/// empty where either is white space.
///
/// Failure    columns of different length -> null
std::shared_ptr<const TextColumn> innerWithinOuter(const TextColumn& outer,
                                                   const TextColumn& inner);

/// The outcome of the row before, in order of time within the cluster, whatever the gap.
///
/// Input      rows without a cluster, an outcome or a time stay absent; ties in time keep row order
/// Returns    one entry per row; the first row of each cluster has none
/// Failure    lengths that differ -> all absent
std::vector<std::optional<double>> lagWithinCluster(const NumericColumn& outcome,
                                                    const TextColumn& cluster,
                                                    const NumericColumn& time);

}  // namespace sorvane::MultilevelInputs
