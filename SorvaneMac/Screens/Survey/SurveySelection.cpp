#include "SorvaneMac/Screens/Survey/SurveySelection.h"

#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/Survey/SurveyColumns.h"

namespace sorvane::SurveySelection {

namespace {

using SurveyColumns::estimandOf;
using SurveyColumns::isPositive;
using SurveyColumns::possibleGroups;
using SurveyColumns::possibleLabels;
using SurveyColumns::possibleWeights;
using VariableLists::List;
using VariableLists::numericVariables;
using VariableLists::without;

std::optional<Gate> missingWeight(const ImportedDataset& dataset, const SurveyFields& fields) {
    if (fields.svWeight->isBlank()) {
        return Gate{.title = "Set the sampling weight",
                    .lead = "",
                    .text =
                        "Set the column that holds each case's sampling weight in the Setup "
                        "panel. The documentation of the survey names it."};
    }
    return SelectionGates::goneColumn(fields.svWeight, possibleWeights(dataset),
                                      "columns with numbers");
}

std::optional<Gate> goneDesignColumn(const ImportedDataset& dataset, const SurveyFields& fields) {
    const List labels = possibleLabels(dataset);
    for (const Field<VariableName>* label : {&fields.svStrata, &fields.svCluster}) {
        if (auto gone = SelectionGates::goneColumn(*label, labels, "columns")) {
            return gone;
        }
    }
    const List weights = possibleWeights(dataset);
    if (auto gone = SelectionGates::goneColumn(fields.svFpc, weights, "columns with numbers")) {
        return gone;
    }
    return SelectionGates::goneColumn(fields.svReplicates, weights, "columns with numbers");
}

std::optional<Gate> unsoundWeight(const ImportedDataset& dataset, const SurveyFields& fields) {
    const DataVariable& weight = *dataset.variable(fields.svWeight->name);
    if (isPositive(weight) && weight.missingCount == 0) {
        return std::nullopt;
    }
    std::string text = "Sampling weights must all be finite and positive.";
    if (weight.missingCount > 0) {
        text += " " + DatasetText::counted(weight.missingCount, "case") +
                (weight.missingCount == 1 ? " has" : " have") + " none.";
    }
    return Gate{.title = "The weight has values that are no weights",
                .lead = weight.name,
                .text = std::move(text)};
}

std::optional<Gate> unsoundCorrection(const ImportedDataset& dataset, const SurveyFields& fields) {
    if (fields.svFpc->isBlank()) {
        return std::nullopt;
    }
    const DataVariable& fpc = *dataset.variable(fields.svFpc->name);
    if (!isPositive(fpc) || fpc.missingCount > 0) {
        return Gate{.title = "The finite population correction has values that are no counts",
                    .lead = fpc.name,
                    .text = "Finite population correction values must be finite and positive."};
    }
    if (fpc.numericSummary->maximum < 1.0) {
        return Gate{.title = "The finite population correction is a share",
                    .lead = fpc.name,
                    .text =
                        "Set a column with the number of PSUs that the population has in the "
                        "stratum, not the share of them that was sampled."};
    }
    return std::nullopt;
}

std::optional<Gate> columnsInTwoPlaces(const SurveyFields& fields) {
    if (!fields.svStrata->isBlank() && fields.svStrata.get() == fields.svCluster.get()) {
        return Gate{.title = "Strata and clusters are the same column",
                    .lead = fields.svStrata->name,
                    .text =
                        "Clusters are drawn within strata, so they need columns of their own. "
                        "Clear one of them in the Setup panel."};
    }
    if (fields.svReplicates->contains(fields.svWeight->name)) {
        return Gate{.title = "The weight is among its own replicates",
                    .lead = fields.svWeight->name,
                    .text =
                        "Replicate weights are columns beside the sampling weight. Uncheck it in "
                        "the Setup panel."};
    }
    if (!SurveyColumns::replicateScales(fields.svReplicateScale.get())) {
        return Gate{.title = "The scales of the replicates are no numbers",
                    .lead = fields.svReplicateScale.get(),
                    .text =
                        "Write one number that is not negative, or one for each replicate with "
                        "commas between them."};
    }
    return std::nullopt;
}

std::optional<Gate> missingVariable(const ImportedDataset& dataset, const SurveyFields& fields) {
    if (fields.svVar->isBlank()) {
        return Gate{.title = "Set a variable to estimate",
                    .lead = "",
                    .text = "Set the numeric column whose mean, total or proportion you want."};
    }
    if (auto gone = SelectionGates::goneColumn(fields.svVar, numericVariables(dataset),
                                               "numeric columns")) {
        return gone;
    }
    if (fields.svWeight.get() == fields.svVar.get()) {
        return Gate{.title = "The weight cannot be estimated under itself",
                    .lead = fields.svVar->name,
                    .text = "Set another variable to estimate in the Setup panel."};
    }
    return std::nullopt;
}

std::optional<Gate> missingDenominator(const ImportedDataset& dataset, const SurveyFields& fields) {
    if (fields.svDenominator->isBlank()) {
        return Gate{.title = "Set the denominator of the ratio",
                    .lead = fields.svVar->name,
                    .text =
                        "A ratio divides the total of one variable by the total of another. Set "
                        "the other one in the Setup panel."};
    }
    if (fields.svDenominator.get() == fields.svVar.get()) {
        return Gate{.title = "Numerator and denominator are the same column",
                    .lead = fields.svVar->name,
                    .text = "Their ratio is 1. Set another denominator in the Setup panel."};
    }
    return SelectionGates::goneColumn(fields.svDenominator, numericVariables(dataset),
                                      "numeric columns");
}

/// The replicate weights, of which a survey may have hundreds.
void addReplicates(SetupForm& form, const ImportedDataset& dataset, SurveyFields& fields) {
    const List weights = possibleWeights(dataset);
    form.controls.emplace_back(HeadingControl{"REPLICATE WEIGHTS"});
    form.controls.emplace_back(FormControls::withUnavailable(
        FormControls::variableCheckList("In place of strata and clusters", fields.svReplicates,
                                        without(weights, {fields.svWeight->name})),
        fields.svReplicates.get(), weights));
    if (fields.svReplicates->empty()) {
        return;
    }
    form.controls.emplace_back(
        FormControls::enumerationPicker("Replication", fields.svReplicateType));
    if (fields.svReplicateType.get() == ReplicateType::fayBRR) {
        form.controls.emplace_back(FormControls::shareSlider("Fay factor", fields.svFayRho));
    }
    form.controls.emplace_back(FormControls::textField(
        "Scales of the replicates", "blank: those of the replication", fields.svReplicateScale));
}

}  // namespace

void addDesign(SetupForm& form, const ImportedDataset& dataset, SurveyFields& fields) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List labels = possibleLabels(dataset);
    form.controls.emplace_back(variablePicker("Weight", fields.svWeight, possibleWeights(dataset)));
    form.controls.emplace_back(
        optionalVariablePicker("Strata", fields.svStrata, labels, "No strata"));
    form.controls.emplace_back(
        optionalVariablePicker("Clusters (PSUs)", fields.svCluster, labels, "No clusters"));
    form.controls.emplace_back(optionalVariablePicker(
        "PSUs in the population (fpc)", fields.svFpc,
        without(possibleWeights(dataset), {fields.svWeight->name}), "No correction"));
    for (std::string& note : SurveyColumns::designNotes(dataset, fields)) {
        form.controls.emplace_back(NoteControl{std::move(note), false});
    }
}

void addEstimate(SetupForm& form, const ImportedDataset& dataset, SurveyFields& fields) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List values = without(numericVariables(dataset), {fields.svWeight->name});
    form.controls.emplace_back(variablePicker("Variable", fields.svVar, values));
    form.controls.emplace_back(wordPicker("Estimand", fields.svEstimand,
                                          {{"mean", "Mean"},
                                           {"total", "Total"},
                                           {"proportion", "Proportion (variable coded 0/1)"},
                                           {"ratio", "Ratio of two totals"}}));
    if (estimandOf(fields) == WeightedEstimand::ratio) {
        form.controls.emplace_back(variablePicker("Denominator", fields.svDenominator,
                                                  without(values, {fields.svVar->name})));
    }
    form.controls.emplace_back(optionalVariablePicker(
        "By subgroup", fields.svGroup, possibleGroups(dataset), "The whole population"));
    form.controls.emplace_back(OptionControls::confidencePicker(fields.svConfidence));
}

void addAnalysis(SetupForm& form, SurveyFields& fields) {
    form.controls.emplace_back(HeadingControl{"ANALYSIS"});
    form.controls.emplace_back(
        FormControls::enumerationPicker("Analysis", fields.models.svAnalysis));
}

void addFurther(SetupForm& form, const ImportedDataset& dataset, SurveyFields& fields) {
    form.controls.emplace_back(HeadingControl{"OTHER SCREENS"});
    form.controls.emplace_back(
        OptionControls::toggle("Use these weights elsewhere", fields.surveyWeightsActive));
    form.controls.emplace_back(
        NoteControl{"Descriptives & Explore then gives weighted figures under this design as "
                    "well. Other analyses stay unweighted and say so.",
                    false});
    addReplicates(form, dataset, fields);
}

std::optional<Gate> designGate(const ImportedDataset& dataset, const SurveyFields& fields) {
    if (auto missing = missingWeight(dataset, fields)) {
        return missing;
    }
    if (auto gone = goneDesignColumn(dataset, fields)) {
        return gone;
    }
    if (auto twice = columnsInTwoPlaces(fields)) {
        return twice;
    }
    if (auto unsound = unsoundWeight(dataset, fields)) {
        return unsound;
    }
    return unsoundCorrection(dataset, fields);
}

std::optional<Gate> estimateGate(const ImportedDataset& dataset, const SurveyFields& fields) {
    if (auto missing = missingVariable(dataset, fields)) {
        return missing;
    }
    const std::optional<WeightedEstimand> estimand = estimandOf(fields);
    if (!estimand) {
        return Gate{.title = "Choose what to estimate",
                    .lead = fields.svVar->name,
                    .text = "Choose a mean, total, proportion or ratio in the Setup panel."};
    }
    if (estimand == WeightedEstimand::ratio) {
        if (auto missing = missingDenominator(dataset, fields)) {
            return missing;
        }
    }
    if (!fields.svGroup->isBlank() && fields.svGroup.get() == fields.svVar.get()) {
        return Gate{.title = "The subgroups are the variable itself",
                    .lead = fields.svVar->name,
                    .text = "Set other subgroups in the Setup panel, or none."};
    }
    return SelectionGates::goneColumn(fields.svGroup, possibleGroups(dataset),
                                      "columns with 2 to 60 categories");
}

}  // namespace sorvane::SurveySelection
