#pragma once

#include <string>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansRuns.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// The one-way comparison of groups, as Compare Means runs it and as Group Patterns shows it at
/// once.
namespace sorvane::GroupComparison {

/// What stands in the way of a comparison: the issues of its readiness.
Gate tooFewGroups(const ImportedDataset& dataset,
                  const std::string& outcome,
                  const std::string& grouping);

OneWayRun run(const ImportedDataset& dataset,
              const std::string& outcome,
              const std::string& grouping);

/// Shows a run that has a result.
void show(const OneWayRun& run, ScreenContent& content);

}  // namespace sorvane::GroupComparison
