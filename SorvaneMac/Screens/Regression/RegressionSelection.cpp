#include "SorvaneMac/Screens/Regression/RegressionSelection.h"

#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Regression/RegressionOutcomes.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane::RegressionSelection {

namespace {

using VariableLists::numericVariables;

Gate missingPredictor(const std::string& name) {
    return {.title = "A predictor is missing",
            .lead = name,
            .text =
                "There is no numeric column of that name. Take it out of the predictors, or "
                "change its role in Variable Types."};
}

}  // namespace

std::vector<std::string> predictors(const StudioState& state, const RegressionFields& fields) {
    std::vector<std::string> names =
        FormControls::chosen(fields.regPredictors.get(), numericVariables(state.dataset()));
    std::erase(names, fields.regOutcome->name);
    return names;
}

std::vector<NumericColumn> predictorColumns(const StudioState& state,
                                            const std::vector<std::string>& predictors) {
    std::vector<NumericColumn> columns;
    for (const std::string& name : predictors) {
        columns.push_back(state.dataset().numericColumn(name));
    }
    return columns;
}

std::string selection(const StudioState& state, const RegressionFields& fields) {
    return fields.regOutcome->name + " on " + ResultText::listed(predictors(state, fields));
}

void addControls(SetupForm& form,
                 const StudioState& state,
                 RegressionFields& fields,
                 RegressionModel model) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const ImportedDataset& dataset = state.dataset();
    const VariableLists::List numeric = numericVariables(dataset);
    const VariableLists::List others = VariableLists::without(numeric, {fields.regOutcome->name});
    form.controls.emplace_back(variablePicker("Outcome", fields.regOutcome,
                                              RegressionOutcomes::candidates(dataset, model)));
    if (model != RegressionModel::linear) {
        form.controls.emplace_back(
            NoteControl{std::string(RegressionOutcomes::requirement(model))});
    }
    form.controls.emplace_back(
        withUnavailable(variableCheckList("Predictors", fields.regPredictors, others),
                        fields.regPredictors.get(), numeric));
}

std::optional<Gate> gate(const StudioState& state,
                         const RegressionFields& fields,
                         RegressionModel model) {
    const VariableLists::List numeric = numericVariables(state.dataset());
    // Of a single numeric column there is no outcome with a predictor.
    const bool canHaveOutcome = model != RegressionModel::linear || numeric.size() >= 2;
    if (std::optional<Gate> unsuitable = RegressionOutcomes::unsuitable(
            state.dataset(), model, canHaveOutcome ? fields.regOutcome->name : "")) {
        return unsuitable;
    }
    for (const std::string& name : fields.regPredictors.get()) {
        if (!VariableLists::contains(numeric, name)) {
            return missingPredictor(name);
        }
    }
    if (predictors(state, fields).empty()) {
        return SelectionGates::noPredictors();
    }
    return std::nullopt;
}

}  // namespace sorvane::RegressionSelection
