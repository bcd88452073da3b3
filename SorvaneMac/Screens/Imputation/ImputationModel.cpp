#include "SorvaneMac/Screens/Imputation/ImputationModel.h"

#include <algorithm>

#include "SorvaneCore/Dataset/ColumnProfile.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/State/JoinedText.h"

namespace sorvane {

namespace {

using VariableLists::List;
using VariableLists::numericVariables;

/// A variable that lacks more than this share of its values is not imputed.
constexpr double mostMissing = 0.5;

bool lacksMost(const DataVariable& variable, const ImportedDataset& dataset) {
    return static_cast<double>(rowsWithoutNumber(dataset, variable.name)) >
           mostMissing * static_cast<double>(dataset.rowCount());
}

Gate notReady(std::string text) {
    return {.title = "Nothing to impute yet", .lead = "", .text = std::move(text)};
}

bool hasMissing(const ImportedDataset& dataset, const std::vector<std::string>& names) {
    return std::ranges::any_of(names, [&dataset](const std::string& name) {
        return rowsWithoutNumber(dataset, name) > 0;
    });
}

}  // namespace

std::int64_t rowsWithoutNumber(const ImportedDataset& dataset, const std::string& name) {
    const std::optional<std::size_t> at = dataset.columnIndex(name);
    return at ? dataset.rowCount() - dataset.rows.column(*at).profile().numericCount : 0;
}

List lackingNumbers(const List& list, const ImportedDataset& dataset) {
    List result;
    std::ranges::copy_if(list, std::back_inserter(result), [&dataset](const DataVariable* each) {
        return rowsWithoutNumber(dataset, each->name) > 0;
    });
    return result;
}

List among(const List& list, const NameSet& names) {
    List result;
    std::ranges::copy_if(list, std::back_inserter(result), [&names](const DataVariable* variable) {
        return names.contains(variable->name);
    });
    return result;
}

ImputationModel ImputationModel::of(const ImportedDataset& dataset,
                                    const ImputationFields& fields) {
    const NameSet& targets = fields.impTargets.get();
    const NameSet& predictors = fields.impPredictors.get();
    ImputationModel model;
    for (const DataVariable* variable : numericVariables(dataset)) {
        const bool isTarget = targets.contains(variable->name);
        if (!isTarget && !predictors.contains(variable->name)) {
            continue;
        }
        if (lacksMost(*variable, dataset)) {
            model.excluded.push_back(variable->name);
            continue;
        }
        model.names.push_back(variable->name);
        if (isTarget) {
            model.targets.push_back(variable->name);
        }
    }
    return model;
}

std::optional<Gate> ImputationModel::gate(const ImportedDataset& dataset,
                                          const ImputationFields& fields) {
    const List numeric = numericVariables(dataset);
    if (numeric.empty()) {
        return notReady("No numeric variables.");
    }
    for (const Field<NameSet>* field : {&fields.impTargets, &fields.impPredictors}) {
        if (auto gone = SelectionGates::goneColumn(*field, numeric, "numeric columns")) {
            return gone;
        }
    }
    const ImputationModel model = of(dataset, fields);
    if (model.targets.empty()) {
        return notReady(among(numeric, fields.impTargets.get()).empty()
                            ? "Select at least one variable to impute."
                            : "Chosen targets have >50% missing; imputation excludes those. Pick "
                              "others.");
    }
    if (!hasMissing(dataset, model.targets)) {
        return notReady("No missing values in the selected variables.");
    }
    return std::nullopt;
}

std::vector<NumericColumn> ImputationModel::columns(const ImportedDataset& dataset) const {
    std::vector<NumericColumn> columns;
    for (const std::string& name : names) {
        columns.push_back(dataset.numericColumn(name));
    }
    return columns;
}

std::string ImputationModel::exclusionNote(const std::vector<std::string>& excluded) {
    return excluded.empty() ? "" : " Excluded >50% missing: " + joinedText(excluded) + ".";
}

}  // namespace sorvane
