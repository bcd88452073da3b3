#pragma once

#include <memory>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansFields.h"

/// The tests of Compare Means, each in the source file of its name.
namespace sorvane::CompareMeansAnalyses {

/// The t-test of one outcome in two groups of different cases.
std::unique_ptr<Analysis> independentTTest(StudioState& state, CompareMeansFields& fields);

/// The t-test of two measurements of the same cases.
std::unique_ptr<Analysis> pairedTTest(StudioState& state, CompareMeansFields& fields);

/// The one-way comparison of all groups of a column.
std::unique_ptr<Analysis> oneWayAnova(StudioState& state, CompareMeansFields& fields);

/// Analysis of variance by several factors and their interactions.
std::unique_ptr<Analysis> factorialAnova(StudioState& state, CompareMeansFields& fields);

/// Analysis of variance of conditions that every case went through.
std::unique_ptr<Analysis> repeatedMeasures(StudioState& state, CompareMeansFields& fields);

/// The comparison of groups with covariates held constant.
std::unique_ptr<Analysis> ancova(StudioState& state, CompareMeansFields& fields);

}  // namespace sorvane::CompareMeansAnalyses
