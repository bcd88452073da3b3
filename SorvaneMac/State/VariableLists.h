#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneMac/State/Field.h"

/// The lists of variables that screens offer, each in column order and put together at each call.
/// The pointers are into the dataset given.
namespace sorvane::VariableLists {

using List = std::vector<const DataVariable*>;

/// Variables with numbers in them whose role is analysed.
List numericVariables(const ImportedDataset& dataset);
std::vector<std::string> numericNames(const ImportedDataset& dataset);
List descriptiveNumericVariables(const ImportedDataset& dataset);
/// The item set of the scale.
List reliabilityVariables(const ImportedDataset& dataset);
List anovaOutcomeVariables(const ImportedDataset& dataset);
List anovaGroupingVariables(const ImportedDataset& dataset);
/// What a computed variable may be made of.
List computedSourceVariables(const ImportedDataset& dataset);

/// The list less the variables of those names.
List without(List list, const NameSet& taken);

/// Whether a variable has numbers in it and a role that is analysed.
bool isNumericForAnalysis(const DataVariable& variable);

/// The outcome that stands out: by its name first, then by its role. Null without one.
const DataVariable* preferredOutcomeVariable(const ImportedDataset& dataset);
/// The factor that stands out: a grouping variable, else a background variable. Null without one.
const DataVariable* preferredGroupingVariable(const ImportedDataset& dataset);

bool contains(const List& list, std::string_view name);
/// The name where the list has it.
std::optional<std::string> firstExistingName(std::string_view name, const List& list);
std::vector<std::string> names(const List& list);

}  // namespace sorvane::VariableLists
