#include "SorvaneMac/Screens/Imputation/PooledAnalysis.h"

#include <algorithm>

#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Imputation/ImputationModel.h"
#include "SorvaneMac/Screens/Imputation/PooledReport.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane::PooledAnalysis {

namespace {

using VariableLists::List;
using VariableLists::numericVariables;
using VariableLists::without;

constexpr double confidenceLevel = 0.95;
constexpr std::string_view couldNotPool =
    "The analysis could not be fitted to every copy: a variable is constant, predictors are "
    "collinear, or there are too few cases. Change the selection and run it again.";

/// Targets and predictors of the copies, or of the next imputation where there are none yet.
List offered(const ImportedDataset& dataset, const ImputationFields& fields) {
    NameSet names = fields.impTargets.get();
    names.insert(fields.impPredictors->begin(), fields.impPredictors->end());
    if (const std::optional<ImputationRun>& run = fields.impResult.get()) {
        names = NameSet(run->result.variableNames.begin(), run->result.variableNames.end());
    }
    return among(numericVariables(dataset), names);
}

/// What the selections ask for.
PooledBasis basisOf(const ImputationFields& fields) {
    PooledBasis basis{.analysis = fields.impAnalysis.get()};
    if (basis.analysis == "regression") {
        basis.variable = fields.impRegOutcome->name;
        const NameSet& predictors = fields.impRegPredictors.get();
        for (const std::string& name : fields.impResult.get()->result.variableNames) {
            if (predictors.contains(name) && name != basis.variable) {
                basis.others.push_back(name);
            }
        }
    } else if (basis.analysis == "correlation") {
        basis.variable = fields.impCorrX->name;
        basis.others = {fields.impCorrY->name};
    } else {
        basis.variable = fields.impTarget->name;
    }
    basis.m = fields.impResult.get()->result.m;
    basis.rows = fields.impResult.get()->rows;
    return basis;
}

Gate notReady(std::string text) {
    return {.title = "The pooled analysis cannot run yet", .lead = "", .text = std::move(text)};
}

/// The first of the names that the copies do not hold.
std::optional<std::string> outsideTheCopies(const PooledBasis& basis,
                                            const ImputationFields& fields) {
    NameSet wanted(basis.others.begin(), basis.others.end());
    if (basis.analysis == "regression") {
        wanted = fields.impRegPredictors.get();
    }
    wanted.insert(basis.variable);
    const std::vector<std::string>& names = fields.impResult.get()->result.variableNames;
    for (const std::string& name : wanted) {
        if (std::ranges::find(names, name) == names.end()) {
            return name;
        }
    }
    return std::nullopt;
}

}  // namespace

void addControls(SetupForm& form, StudioState& state, ImputationFields& fields) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List copied = offered(state.dataset(), fields);
    const std::string& analysis = fields.impAnalysis.get();
    form.controls.emplace_back(HeadingControl{"POOLED ANALYSIS"});
    form.controls.emplace_back(wordPicker(
        "Analysis", fields.impAnalysis,
        {{"regression", "Linear regression"}, {"correlation", "Correlation"}, {"mean", "Mean"}}));
    if (analysis == "regression") {
        form.controls.emplace_back(variablePicker("Outcome", fields.impRegOutcome, copied));
        form.controls.emplace_back(
            withUnavailable(variableCheckList("Predictors", fields.impRegPredictors,
                                              without(copied, {fields.impRegOutcome->name})),
                            fields.impRegPredictors.get(), copied));
    } else if (analysis == "correlation") {
        form.controls.emplace_back(variablePicker("First variable", fields.impCorrX, copied));
        form.controls.emplace_back(variablePicker("Second variable", fields.impCorrY, copied));
    } else {
        form.controls.emplace_back(variablePicker("Variable", fields.impTarget, copied));
    }
    const std::optional<Gate> missing = gate(fields);
    form.controls.emplace_back(ButtonControl{.label = "Run pooled analysis",
                                             .isEnabled = !missing,
                                             .isPrimary = !missing,
                                             .press = [&state, &fields] {
                                                 if (!gate(fields)) {
                                                     run(state, fields);
                                                 }
                                             }});
    form.controls.emplace_back(
        NoteControl{missing ? missing->text
                            : "It runs on every copy of the multiple imputation and pools the "
                              "results by Rubin's rules.",
                    false});
}

std::optional<Gate> gate(const ImputationFields& fields) {
    if (!fields.impResult.get()) {
        return notReady(
            "It runs on every copy of a multiple imputation and pools the results by Rubin's "
            "rules. Run the imputation first.");
    }
    const PooledBasis basis = basisOf(fields);
    const bool needsOthers = basis.analysis != "mean";
    if (basis.variable.empty() || (needsOthers && basis.others.empty()) ||
        (needsOthers && basis.others.front().empty())) {
        return notReady(basis.analysis == "regression"    ? "Set an outcome and check predictors."
                        : basis.analysis == "correlation" ? "Set two variables."
                                                          : "Set a variable.");
    }
    if (needsOthers && basis.others.front() == basis.variable) {
        return notReady("Both variables are " + basis.variable + ". Set another one.");
    }
    if (const std::optional<std::string> name = outsideTheCopies(basis, fields)) {
        return notReady("\"" + *name +
                        "\" is not in the imputed copies. Check it among the variables or the "
                        "predictors and run the imputation again.");
    }
    return std::nullopt;
}

void run(StudioState& state, ImputationFields& fields) {
    const PooledBasis basis = basisOf(fields);
    const MultipleImputationResult& copies = fields.impResult.get()->result;
    fields.forgetPooled();
    state.impMessage.reset();
    if (basis.analysis == "regression") {
        fields.impPooledCoefs.set(MICEAnalysis::pooledRegression(copies.imputedDatasets,
                                                                 copies.variableNames,
                                                                 basis.variable, basis.others)
                                      .value_or(std::vector<PooledCoefficient>()));
    } else if (basis.analysis == "correlation") {
        fields.impPooledCorr.set(
            MICEAnalysis::pooledCorrelation(copies.imputedDatasets, copies.variableNames,
                                            basis.variable, basis.others.front(), confidenceLevel));
    } else {
        fields.impPooled.set(MICEAnalysis::pooledMean(copies.imputedDatasets, copies.variableNames,
                                                      basis.variable, confidenceLevel));
    }
    if (fields.impPooledCoefs->empty() && !fields.impPooledCorr.get() && !fields.impPooled.get()) {
        state.impMessage.set(std::string(couldNotPool));
        return;
    }
    fields.impPooledBasis.set(basis);
}

void show(const ImputationFields& fields, ScreenContent& content) {
    const std::optional<PooledBasis>& basis = fields.impPooledBasis.get();
    if (!basis) {
        return;
    }
    const bool hasOthers = !basis->others.empty();
    if (basis->analysis == "regression" && hasOthers) {
        PooledReport::addRegression(*basis, fields.impPooledCoefs.get(), content);
    } else if (basis->analysis == "correlation" && hasOthers && fields.impPooledCorr.get()) {
        PooledReport::addCorrelation(*basis, *fields.impPooledCorr.get(), content);
    } else if (fields.impPooled.get()) {
        PooledReport::addMean(*basis, *fields.impPooled.get(), content);
    }
}

}  // namespace sorvane::PooledAnalysis
