#include "SorvaneMac/Screens/Imputation/ImputationForm.h"

#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneMac/Screens/DataPreparation.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Imputation/ImputationModel.h"
#include "SorvaneMac/Screens/Imputation/ImputationReport.h"
#include "SorvaneMac/Screens/Imputation/ImputationRuns.h"
#include "SorvaneMac/Screens/Imputation/PooledAnalysis.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/Seeding.h"

namespace sorvane {

namespace {

using VariableLists::List;
using VariableLists::numericVariables;
using VariableLists::without;

constexpr std::int64_t fewestCopies = 2;
constexpr std::int64_t mostCopies = 100;
constexpr std::size_t seededPredictors = 4;

}  // namespace

void ImputationForm::seed() {
    const List numeric = numericVariables(state_.dataset());
    const List incomplete = lackingNumbers(numeric, state_.dataset());
    Seeding::fillFirst(fields_.impTargets, incomplete, incomplete.size());
    Seeding::fillFirst(fields_.impPredictors, without(numeric, fields_.impTargets.get()),
                       numeric.size());
    Seeding::fillFirst(fields_.impTarget, among(numeric, fields_.impTargets.get()));
    NameSet names = fields_.impTargets.get();
    names.insert(fields_.impPredictors->begin(), fields_.impPredictors->end());
    const List copied = among(numeric, names);
    Seeding::fillFirst(fields_.impRegOutcome, copied);
    Seeding::fillFirst(fields_.impRegPredictors, without(copied, {fields_.impRegOutcome->name}),
                       seededPredictors);
    Seeding::fillFirst(fields_.impCorrX, copied);
    Seeding::fillFirst(fields_.impCorrY, without(copied, {fields_.impCorrX->name}));
}

void ImputationForm::addTo(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List numeric = numericVariables(state_.dataset());
    const List incomplete = lackingNumbers(numeric, state_.dataset());
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
    DataPreparation::addRun(
        form, state_,
        {.label = "Run imputation", .gate = gate(), .message = &state_.impMessage, .run = [this] {
             run();
         }});
    if (isMultiple()) {
        addCopies(form);
        PooledAnalysis::addControls(form, state_, fields_);
    }
}

void ImputationForm::addCopies(SetupForm& form) {
    const std::optional<ImputationRun>& run = fields_.impResult.get();
    if (!run) {
        return;
    }
    const NameSet targets(run->targets.begin(), run->targets.end());
    form.controls.emplace_back(HeadingControl{"IMPUTED COPIES"});
    form.controls.emplace_back(FormControls::optionalVariablePicker(
        "Charts of", fields_.impChart, among(numericVariables(state_.dataset()), targets),
        "The first variable"));
    const bool isCurrent = ImputationRuns::fits(*run, state_.dataset());
    form.controls.emplace_back(ButtonControl{
        .label = "Add exploratory completed columns", .isEnabled = isCurrent, .press = [this] {
            ImputationRuns::addExploratoryCompletedColumns(state_, fields_);
        }});
    form.controls.emplace_back(NoteControl{
        isCurrent ? "One column a variable, with the mean of its copies. It understates standard "
                    "error; do not use it for inference."
                  : "The table has changed since the imputation. Run it again first.",
        false});
}

std::optional<Gate> ImputationForm::gate() const {
    return ImputationModel::gate(state_.dataset(), fields_);
}

void ImputationForm::run() {
    ImputationRuns::run(state_, fields_);
}

void ImputationForm::showPreview(ScreenContent& content) const {
    const std::optional<ImputationRun>& run = fields_.impResult.get();
    if (!run || !isMultiple()) {
        ImputationReport::showMissing(state_.dataset(), fields_, content);
        return;
    }
    PooledAnalysis::show(fields_, content);
    ImputationReport::show(*run, fields_.impChart->name, content);
}

Json ImputationForm::result() const {
    const std::optional<ImputationRun>& run = fields_.impResult.get();
    if (!run || !isMultiple()) {
        return nullptr;
    }
    Json result = Json::object();
    result["m"] = run->result.m;
    result["iterations"] = run->result.iterations;
    result["targets"] = run->targets;
    result["excluded"] = run->excluded;
    result["variables"] = toJson(run->variables);
    result["readiness"] = toJson(run->result.readiness);
    for (const AnyField* pooled :
         std::initializer_list<const AnyField*>{&fields_.impPooledBasis, &fields_.impPooled,
                                                &fields_.impPooledCoefs, &fields_.impPooledCorr}) {
        result[pooled->name()] = pooled->json();
    }
    return result;
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
