#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Screens/Imputation/ImputationFields.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

/// The variables of an imputation, in column order, as the selections stand.
struct ImputationModel {
    /// To be filled in.
    std::vector<std::string> targets;
    /// Targets and predictors.
    std::vector<std::string> names;
    /// Chosen, but left out for lacking more than half of their values.
    std::vector<std::string> excluded;

    static ImputationModel of(const ImportedDataset& dataset, const ImputationFields& fields);
    /// What keeps it from being imputed.
    static std::optional<Gate> gate(const ImportedDataset& dataset, const ImputationFields& fields);

    std::vector<NumericColumn> columns(const ImportedDataset& dataset) const;
    /// " Excluded >50% missing: a, b."; empty where none was.
    std::string exclusionNote() const { return exclusionNote(excluded); }
    static std::string exclusionNote(const std::vector<std::string>& excluded);
};

/// The rows that imputation would have to fill: missing values, and texts that are no numbers.
std::int64_t rowsWithoutNumber(const ImportedDataset& dataset, const std::string& name);

/// Those of the list that have such rows.
VariableLists::List lackingNumbers(const VariableLists::List& list, const ImportedDataset& dataset);

/// Those of the list that the set names.
VariableLists::List among(const VariableLists::List& list, const NameSet& names);

}  // namespace sorvane
