#include "SorvaneMac/Screens/SurveyScreen.h"

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

/// Numbers that can be weights by their values; their role may well set them aside from analysis.
List possibleWeights(const ImportedDataset& dataset) {
    List list;
    for (const DataVariable& variable : dataset.variables) {
        if (variable.numericSummary && variable.assignedType != VariableKind::exclude) {
            list.push_back(&variable);
        }
    }
    return list;
}

/// Strata and clusters are mere labels, numbers and identifiers among them.
List possibleLabels(const ImportedDataset& dataset) {
    List list;
    for (const DataVariable& variable : dataset.variables) {
        if (variable.assignedType != VariableKind::exclude && variable.uniqueCount > 0) {
            list.push_back(&variable);
        }
    }
    return list;
}

bool isPositive(const DataVariable* variable) {
    return variable->numericSummary->minimum > 0.0;
}

}  // namespace

void SurveyScreen::seed() {
    const ImportedDataset& dataset = state_.dataset();
    List weights = SuitedVariables::named(
        possibleWeights(dataset),
        {"weight", "weights", "wt", "wgt", "pweight", "sampweight", "svyweight"});
    std::erase_if(weights, [](const DataVariable* variable) { return !isPositive(variable); });
    Seeding::fillFirst(fields_.svWeight, weights);
    NameSet taken = {fields_.svWeight->name};
    Seeding::fillFirst(fields_.svVar, without(numericVariables(dataset), taken));
    taken.insert(fields_.svVar->name);
    const List labels = possibleLabels(dataset);
    Seeding::fillFirst(fields_.svStrata,
                       SuitedVariables::named(without(labels, taken), {"stratum", "strata"}));
    taken.insert(fields_.svStrata->name);
    Seeding::fillFirst(fields_.svCluster,
                       SuitedVariables::named(without(labels, taken), {"psu", "cluster"}));
}

std::string SurveyScreen::designNote() const {
    const bool hasStrata = !fields_.svStrata->isBlank();
    const bool hasClusters = !fields_.svCluster->isBlank();
    if (!hasStrata && !hasClusters) {
        return "No strata or clusters were supplied. Standard errors assume simple random sampling "
               "with weights; supply strata and cluster (PSU) ids for design-based variance.";
    }
    if (!hasStrata) {
        return "No strata were supplied; the sample is treated as a single stratum.";
    }
    if (!hasClusters) {
        return "No clusters (PSUs) were supplied; sampling is treated as element level within "
               "strata.";
    }
    return "";
}

SetupForm SurveyScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List labels = possibleLabels(state_.dataset());
    SetupForm form;
    form.title = "Survey Design";
    form.controls = {
        HeadingControl{"DESIGN"},
        variablePicker("Weight", fields_.svWeight, possibleWeights(state_.dataset())),
        optionalVariablePicker("Strata", fields_.svStrata, labels, "No strata"),
        optionalVariablePicker("Clusters (PSUs)", fields_.svCluster, labels, "No clusters"),
    };
    const std::string note = designNote();
    if (state_.hasData() && !note.empty()) {
        form.controls.emplace_back(NoteControl{note, false});
    }
    form.controls.emplace_back(HeadingControl{"ESTIMATE"});
    form.controls.emplace_back(
        variablePicker("Variable", fields_.svVar,
                       without(numericVariables(state_.dataset()), {fields_.svWeight->name})));
    form.controls.emplace_back(wordPicker(
        "Estimand", fields_.svEstimand,
        {{"mean", "Mean"}, {"total", "Total"}, {"proportion", "Proportion (variable coded 0/1)"}}));
    OptionControls::addRun(form, "Estimate", gate(), [this] { run(); });
    return form;
}

std::optional<Gate> SurveyScreen::missingSelection() const {
    if (fields_.svWeight->isBlank()) {
        return Gate{.title = "Set the sampling weight",
                    .lead = "",
                    .text =
                        "Set the column that holds each case's sampling weight in the Setup "
                        "panel. The documentation of the survey names it."};
    }
    if (fields_.svVar->isBlank()) {
        return Gate{.title = "Set a variable to estimate",
                    .lead = "",
                    .text = "Set the numeric column whose mean, total or proportion you want."};
    }
    const ImportedDataset& dataset = state_.dataset();
    if (auto gone = SelectionGates::goneColumn(fields_.svWeight, possibleWeights(dataset),
                                               "columns with numbers")) {
        return gone;
    }
    const List labels = possibleLabels(dataset);
    for (const Field<VariableName>* label : {&fields_.svStrata, &fields_.svCluster}) {
        if (auto gone = SelectionGates::goneColumn(*label, labels, "columns")) {
            return gone;
        }
    }
    return SelectionGates::goneColumn(fields_.svVar, numericVariables(dataset), "numeric columns");
}

std::optional<Gate> SurveyScreen::unsuitedDesign() const {
    if (fields_.svWeight.get() == fields_.svVar.get()) {
        return Gate{.title = "The weight cannot be estimated under itself",
                    .lead = fields_.svVar->name,
                    .text = "Set another variable to estimate in the Setup panel."};
    }
    if (!fields_.svStrata->isBlank() && fields_.svStrata.get() == fields_.svCluster.get()) {
        return Gate{.title = "Strata and clusters are the same column",
                    .lead = fields_.svStrata->name,
                    .text =
                        "Clusters are drawn within strata, so they need columns of their own. "
                        "Clear one of them in the Setup panel."};
    }
    const DataVariable* weight = state_.dataset().variable(fields_.svWeight->name);
    if (!isPositive(weight)) {
        return Gate{.title = "The weight has values that are no weights",
                    .lead = weight->name,
                    .text = "Sampling weights must all be finite and positive."};
    }
    return std::nullopt;
}

std::optional<Gate> SurveyScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (const std::optional<Gate> missing = missingSelection()) {
        return *missing;
    }
    if (const std::optional<Gate> unsuited = unsuitedDesign()) {
        return *unsuited;
    }
    return ResultText::notYetGate("Survey estimation");
}

std::string SurveyScreen::subtitle() const {
    return "Means, totals and proportions under weights, strata and clusters, with "
           "design-based standard errors.";
}

Guide SurveyScreen::guide() const {
    return {.answers =
                "What a mean, a total or a proportion is in the population that a complex sample "
                "was drawn from, and how precisely the design lets it be known.",
            .needs =
                "The sampling weights that came with the survey, all positive, and the strata and "
                "primary sampling units of its design. A precision weight, a frequency count or "
                "a body weight is not a sampling weight.",
            .doNotClaim = {
                "Do not speak of the population from unweighted figures.",
                "Do not trust standard errors that leave out the clusters; they are usually too "
                "small.",
                "Do not drop cases to look at a subgroup; the design belongs to the whole sample.",
                "Do not expect weights to repair answers that were refused for reasons the weights "
                "do not know."}};
}

}  // namespace sorvane
