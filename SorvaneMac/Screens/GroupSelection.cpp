#include "SorvaneMac/Screens/GroupSelection.h"

#include <algorithm>

#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane::GroupSelection {

using VariableLists::anovaGroupingVariables;
using VariableLists::numericVariables;

void addControls(SetupForm& form,
                 const ImportedDataset& dataset,
                 GroupSelectionFields fields,
                 std::function<void()> groupChosen) {
    const VariableLists::List groupings =
        VariableLists::without(anovaGroupingVariables(dataset), {fields.outcome->name});
    form.controls.emplace_back(
        FormControls::variablePicker("Outcome", fields.outcome, numericVariables(dataset)));
    ChoiceControl group = FormControls::variablePicker("Grouping", fields.group, groupings);
    form.controls.emplace_back(
        groupChosen ? OptionControls::followedBy(std::move(group), std::move(groupChosen))
                    : std::move(group));
}

std::optional<Gate> gate(const ImportedDataset& dataset, GroupSelectionFields fields) {
    if (fields.outcome->isBlank() || fields.group->isBlank() ||
        fields.outcome.get() == fields.group.get()) {
        return Gate{.title = "Need a numeric outcome and a grouping field",
                    .lead = "",
                    .text = "Confirm them in Variable Roles, then set up the test on the right."};
    }
    if (std::optional<Gate> gone = SelectionGates::goneColumn(
            fields.outcome, numericVariables(dataset), "numeric columns")) {
        return gone;
    }
    return SelectionGates::goneColumn(fields.group, anovaGroupingVariables(dataset),
                                      "grouping columns");
}

bool hasTwoUsableGroups(const ImportedDataset& dataset, GroupSelectionFields fields) {
    const std::vector<Categories::Size> sizes =
        Categories::sizes(dataset, fields.group->name, fields.outcome->name, fewestCases);
    return std::count_if(sizes.begin(), sizes.end(), [](const Categories::Size& size) {
               return size.cases >= fewestCases;
           }) >= 2;
}

std::vector<double> valuesOf(const ImportedDataset& dataset,
                             GroupSelectionFields fields,
                             const std::string& category) {
    const std::optional<std::size_t> index = dataset.columnIndex(fields.group->name);
    const NumericColumn outcome = dataset.numericColumn(fields.outcome->name);
    std::vector<double> values;
    if (!index) {
        return values;
    }
    const TextColumn& groups = dataset.rows.column(*index);
    for (std::size_t row = 0; row < outcome.size(); ++row) {
        const std::optional<double> value = outcome[row];
        if (value && groups[row] == category) {
            values.push_back(*value);
        }
    }
    return values;
}

std::optional<PairCheck> checkPair(const ImportedDataset& dataset,
                                   GroupSelectionFields fields,
                                   const std::string& first,
                                   const std::string& second) {
    const std::vector<Categories::Size> sizes =
        Categories::sizes(dataset, fields.group->name, fields.outcome->name, fewestCases);
    const auto sizeOf = [&sizes](const std::string& category) {
        return std::find_if(sizes.begin(), sizes.end(), [&category](const Categories::Size& size) {
            return size.category == category;
        });
    };
    const auto a = sizeOf(first);
    const auto b = sizeOf(second);
    if (a == sizes.end() || b == sizes.end()) {
        return PairCheck{.problem = PairProblem::notTwoGroups};
    }
    if (a == b) {
        return PairCheck{.problem = PairProblem::same};
    }
    PairCheck check{.problem = PairProblem::tooSmall};
    for (const auto& group : {a, b}) {
        if (group->cases < fewestCases) {
            check.small.emplace_back(group->category, group->cases);
        }
    }
    return check.small.empty() ? std::nullopt : std::optional(check);
}

}  // namespace sorvane::GroupSelection
