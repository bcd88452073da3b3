#pragma once

#include <memory>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/DataReduction/DataReductionFields.h"

/// The methods of Data Reduction, each in the source file of its name.
namespace sorvane::DataReductionAnalyses {

std::unique_ptr<Analysis> principalComponents(StudioState& state, DataReductionFields& fields);

std::unique_ptr<Analysis> factorAnalysis(StudioState& state, DataReductionFields& fields);

std::unique_ptr<Analysis> omega(StudioState& state, DataReductionFields& fields);

std::unique_ptr<Analysis> kMeansClusters(StudioState& state, DataReductionFields& fields);

std::unique_ptr<Analysis> hierarchicalClusters(StudioState& state, DataReductionFields& fields);

}  // namespace sorvane::DataReductionAnalyses
