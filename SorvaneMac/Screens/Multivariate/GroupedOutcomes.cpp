#include "SorvaneMac/Screens/Multivariate/GroupedOutcomes.h"

#include <array>

#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/SelectionGates.h"

namespace sorvane::GroupedOutcomes {

namespace {

using SelectionGates::goneColumn;
using VariableLists::anovaGroupingVariables;
using VariableLists::numericVariables;

constexpr std::size_t fewestVariables = 2;

}  // namespace

VariableLists::List candidates(const ImportedDataset& dataset, const MultivariateFields& fields) {
    return VariableLists::without(numericVariables(dataset), {fields.mvGroup->name});
}

std::vector<std::string> chosen(const ImportedDataset& dataset, const MultivariateFields& fields) {
    return FormControls::chosen(fields.mvVars.get(), candidates(dataset, fields));
}

void addControls(SetupForm& form,
                 const ImportedDataset& dataset,
                 MultivariateFields& fields,
                 std::string label) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    form.controls.emplace_back(
        variablePicker("Grouping factor", fields.mvGroup, anovaGroupingVariables(dataset)));
    form.controls.emplace_back(withUnavailable(
        variableCheckList(std::move(label), fields.mvVars, candidates(dataset, fields)),
        fields.mvVars.get(), numericVariables(dataset)));
}

std::optional<Gate> gate(const ImportedDataset& dataset,
                         const MultivariateFields& fields,
                         const Gate& unsuitable) {
    if (std::optional<Gate> gone =
            goneColumn(fields.mvGroup, anovaGroupingVariables(dataset), "grouping columns")) {
        return gone;
    }
    if (std::optional<Gate> gone =
            goneColumn(fields.mvVars, numericVariables(dataset), "numeric columns")) {
        return gone;
    }
    const std::vector<std::string> names = chosen(dataset, fields);
    const std::array<std::string, 1> group = {fields.mvGroup->name};
    const Categories::CompleteRows complete = Categories::completeRows(dataset, names, group);
    const auto terms = static_cast<std::int64_t>(complete.categories.size() + names.size());
    if (names.size() < fewestVariables || complete.categories.size() < 2 ||
        complete.rows <= terms) {
        return unsuitable;
    }
    return std::nullopt;
}

}  // namespace sorvane::GroupedOutcomes
