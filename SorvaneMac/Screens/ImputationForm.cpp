#include "SorvaneMac/Screens/ImputationForm.h"

#include <algorithm>

#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/SuitedVariables.h"

namespace sorvane {

namespace {

using VariableLists::List;
using VariableLists::numericVariables;
using VariableLists::without;

constexpr std::int64_t fewestCopies = 2;
constexpr std::int64_t mostCopies = 100;
constexpr std::size_t seededPredictors = 4;
/// A variable that lacks more than this share of its values is not imputed.
constexpr double mostMissing = 0.5;

List among(const List& list, const NameSet& names) {
    List result;
    std::copy_if(list.begin(), list.end(), std::back_inserter(result),
                 [&names](const DataVariable* variable) { return names.contains(variable->name); });
    return result;
}

Gate notReady(std::string text) {
    return {.title = "Nothing to impute yet", .lead = "", .text = std::move(text)};
}

}  // namespace

List ImputationForm::imputed() const {
    NameSet names = fields_.impTargets.get();
    names.insert(fields_.impPredictors->begin(), fields_.impPredictors->end());
    return among(numericVariables(state_.dataset()), names);
}

void ImputationForm::seed() {
    const List numeric = numericVariables(state_.dataset());
    const List incomplete = SuitedVariables::withMissingValues(numeric);
    Seeding::fillFirst(fields_.impTargets, incomplete, incomplete.size());
    Seeding::fillFirst(fields_.impPredictors, without(numeric, fields_.impTargets.get()),
                       numeric.size());
    Seeding::fillFirst(fields_.impTarget, among(numeric, fields_.impTargets.get()));
    const List copied = imputed();
    Seeding::fillFirst(fields_.impRegOutcome, copied);
    Seeding::fillFirst(fields_.impRegPredictors, without(copied, {fields_.impRegOutcome->name}),
                       seededPredictors);
    Seeding::fillFirst(fields_.impCorrX, copied);
    Seeding::fillFirst(fields_.impCorrY, without(copied, {fields_.impCorrX->name}));
}

void ImputationForm::addTo(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List numeric = numericVariables(state_.dataset());
    const List incomplete = SuitedVariables::withMissingValues(numeric);
    form.controls.emplace_back(wordPicker("Method", fields_.impMethod,
                                          {{"mice", "Multiple imputation (chained equations)"},
                                           {"mean", "Mean, once"},
                                           {"median", "Median, once"},
                                           {"regression", "Regression prediction, once"}}));
    if (isMultiple()) {
        form.controls.emplace_back(
            OptionControls::stepper("Imputed copies", fields_.impM, fewestCopies, mostCopies));
    } else {
        form.controls.emplace_back(
            NoteControl{"Single imputation understates standard error; use MICE + a pooled "
                        "analysis for inference.",
                        true});
    }
    form.controls.emplace_back(
        withUnavailable(variableCheckList("Variables to impute", fields_.impTargets, incomplete),
                        fields_.impTargets.get(), incomplete));
    form.controls.emplace_back(
        withUnavailable(variableCheckList("Predictors of the missing values", fields_.impPredictors,
                                          without(numeric, fields_.impTargets.get())),
                        fields_.impPredictors.get(), numeric));
    OptionControls::addRun(form, "Run imputation", gate(), {});
    if (isMultiple()) {
        addPooled(form);
    }
}

void ImputationForm::addPooled(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List copied = imputed();
    const std::string& analysis = fields_.impAnalysis.get();
    form.controls.emplace_back(HeadingControl{"POOLED ANALYSIS"});
    form.controls.emplace_back(wordPicker(
        "Analysis", fields_.impAnalysis,
        {{"regression", "Linear regression"}, {"correlation", "Correlation"}, {"mean", "Mean"}}));
    if (analysis == "regression") {
        form.controls.emplace_back(variablePicker("Outcome", fields_.impRegOutcome, copied));
        form.controls.emplace_back(
            withUnavailable(variableCheckList("Predictors", fields_.impRegPredictors,
                                              without(copied, {fields_.impRegOutcome->name})),
                            fields_.impRegPredictors.get(), copied));
    } else if (analysis == "correlation") {
        form.controls.emplace_back(variablePicker("First variable", fields_.impCorrX, copied));
        form.controls.emplace_back(variablePicker("Second variable", fields_.impCorrY, copied));
    } else {
        form.controls.emplace_back(
            variablePicker("Variable", fields_.impTarget,
                           among(numericVariables(state_.dataset()), fields_.impTargets.get())));
    }
    form.controls.emplace_back(
        ButtonControl{.label = "Run pooled analysis", .isEnabled = false, .press = {}});
    form.controls.emplace_back(
        NoteControl{"It runs on every copy of a multiple imputation and pools the results by "
                    "Rubin's rules.",
                    false});
}

std::optional<Gate> ImputationForm::gate() const {
    const List numeric = numericVariables(state_.dataset());
    if (numeric.empty()) {
        return notReady("No numeric variables.");
    }
    if (const auto gone =
            SelectionGates::goneColumn(fields_.impTargets, numeric, "numeric columns")) {
        return *gone;
    }
    List targets = among(numeric, fields_.impTargets.get());
    if (targets.empty()) {
        return notReady("Select at least one variable to impute.");
    }
    const double limit = mostMissing * static_cast<double>(state_.dataset().rowCount());
    std::erase_if(targets, [limit](const DataVariable* variable) {
        return static_cast<double>(variable->missingCount) > limit;
    });
    if (targets.empty()) {
        return notReady(
            "Chosen targets have >50% missing; imputation excludes those. Pick others.");
    }
    if (SuitedVariables::withMissingValues(targets).empty()) {
        return notReady("No missing values in the selected variables.");
    }
    return ResultText::notYetGate(isMultiple() ? "Multiple imputation" : "Single imputation");
}

Guide ImputationForm::guide() const {
    return {.answers =
                "What an analysis would find with the missing numbers filled in from what else is "
                "known of each case, and how much less sure it is for having to guess them.",
            .needs =
                "Numeric variables that lack at most half of their values, 30 rows or more, and "
                "predictors that go with the values or with their being missing, the outcome of "
                "the later analysis among them. Five copies or more; twenty are better where much "
                "is missing.",
            .doNotClaim = {
                "Do not treat an imputed value as an answer of that person.",
                "Do not report standard errors from one filled-in copy; only pooled ones say how "
                "unsure the imputation is.",
                "Do not claim that imputation repairs values that are missing because of what "
                "they would have been.",
                "Do not leave out how many copies were made, from which variables, and how much "
                "was missing."}};
}

}  // namespace sorvane
