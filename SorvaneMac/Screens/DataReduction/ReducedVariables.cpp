#include "SorvaneMac/Screens/DataReduction/ReducedVariables.h"

#include <algorithm>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane::ReducedVariables {

namespace {

using VariableLists::numericVariables;

constexpr std::int64_t fewestClusters = 2;
/// More are rarely told apart; a larger number that stands in the field can still be stepped down.
constexpr std::int64_t mostClusters = 12;

}  // namespace

std::vector<std::string> names(const ImportedDataset& dataset, const DataReductionFields& fields) {
    return FormControls::chosen(fields.drItems.get(), numericVariables(dataset));
}

std::vector<NumericColumn> columns(const ImportedDataset& dataset,
                                   const std::vector<std::string>& names) {
    std::vector<NumericColumn> result;
    for (const std::string& name : names) {
        result.push_back(dataset.numericColumn(name));
    }
    return result;
}

void addControls(SetupForm& form,
                 const ImportedDataset& dataset,
                 DataReductionFields& fields,
                 std::string label) {
    const VariableLists::List numeric = numericVariables(dataset);
    form.controls.emplace_back(FormControls::withUnavailable(
        FormControls::variableCheckList(std::move(label), fields.drItems, numeric),
        fields.drItems.get(), numeric));
}

void addClusterControls(SetupForm& form, DataReductionFields& fields, std::string countLabel) {
    form.controls.emplace_back(
        OptionControls::stepper(std::move(countLabel), fields.drK, fewestClusters, mostClusters));
    form.controls.emplace_back(
        OptionControls::toggle("Standardize variables", fields.drStandardize));
}

std::optional<Gate> gone(const ImportedDataset& dataset, const DataReductionFields& fields) {
    return SelectionGates::goneColumn(fields.drItems, numericVariables(dataset), "numeric columns");
}

bool vary(const ImportedDataset& dataset,
          const DataReductionFields& fields,
          std::size_t fewestVariables) {
    const std::vector<std::string> chosen = names(dataset, fields);
    const auto isConstant = [&dataset](const std::string& name) {
        const auto& summary = dataset.variable(name)->numericSummary;
        return summary->minimum == summary->maximum;
    };
    return chosen.size() >= fewestVariables && std::ranges::none_of(chosen, isConstant) &&
           Categories::hasCompleteRows(dataset, fewestCases, chosen);
}

bool canCluster(const ImportedDataset& dataset, const DataReductionFields& fields) {
    const std::vector<std::string> chosen = names(dataset, fields);
    const std::int64_t clusters = fields.drK.get();
    return !chosen.empty() && clusters >= 1 &&
           Categories::hasCompleteRows(dataset, clusters, chosen);
}

Gate cannotCluster() {
    return {.title = "Cannot run clustering",
            .lead = "",
            .text = "Need at least k complete cases across the selected variables."};
}

std::string percent(double share) {
    return svFmt(100.0 * share, 1) + "%";
}

}  // namespace sorvane::ReducedVariables
