#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Categorical/SampleComposition.h"
#include "SorvaneCore/Prepare/DataCleaning.h"
#include "SorvaneCore/Prepare/MissingDataAnalysis.h"
#include "SorvaneCore/Prepare/SubgroupMissingness.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// The cards of Data Quality, each made of the report that it shows.
namespace sorvane::DataQualityCards {

/// What is missing, and what Little's test says of it.
struct Missingness {
    std::vector<std::string> names;
    MissingDataSummary summary;
    std::optional<LittleMCARResult> test;
};
Card missingness(const Missingness& found);
/// What stands there without numeric columns.
Card withoutNumbers();
Card subgroups(const SubgroupMissingnessResult& result, const std::string& group);
Finding missingnessFinding(const Missingness& found);

Card outOfRange(const OutOfRangeReport& report,
                const std::string& variable,
                const TextColumn& cells);
Card outliers(const OutlierReport& report, const std::string& variable, const TextColumn& cells);
/// Input      `keys`: the columns by which rows are compared; none for all
Card duplicates(const DuplicateReport& report, const std::vector<std::string>& keys);

Card composition(const CompositionResult& result, const std::string& variable);
Finding compositionFinding(const CompositionResult& result, const std::string& variable);

}  // namespace sorvane::DataQualityCards
