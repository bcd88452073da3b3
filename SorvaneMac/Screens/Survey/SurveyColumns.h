#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneMac/Screens/Survey/SurveyFields.h"
#include "SorvaneMac/State/VariableLists.h"

/// The columns of a sampling design, offered and chosen.
namespace sorvane::SurveyColumns {

/// Numbers that can be weights by their values; their role may well set them aside from analysis.
VariableLists::List possibleWeights(const ImportedDataset& dataset);
/// Strata and clusters are mere labels, numbers and identifiers among them.
VariableLists::List possibleLabels(const ImportedDataset& dataset);
/// Columns of few distinct values, by which estimates can be given one by one.
VariableLists::List possibleGroups(const ImportedDataset& dataset);
/// Whether all numbers of the variable are above 0.
bool isPositive(const DataVariable& variable);

/// What the field names; absent for an unknown word.
std::optional<WeightedEstimand> estimandOf(const SurveyFields& fields);

/// The multipliers of replicates as written: none where the text is blank; absent where it is no
/// list of numbers.
std::optional<std::vector<double>> replicateScales(std::string_view text);

/// Whether the design adds anything to its weights.
bool isMoreThanWeights(const SurveyDesign& design);
/// The weights of a design without the rest of it.
SurveyDesign weightsAlone(const SurveyDesign& design);
/// Every row with the weight 1.
SurveyDesign unweighted(const SurveyDesign& design);
/// What strata and clusters as chosen leave out or lack, before anything is estimated.
///
/// Cost       O(rows)
std::vector<std::string> designNotes(const ImportedDataset& dataset, const SurveyFields& fields);
/// What the design's columns hold that its figures alone do not tell.
std::vector<std::string> cautions(const SurveyDesign& design);

}  // namespace sorvane::SurveyColumns
