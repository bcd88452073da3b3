#include "SorvaneMac/Screens/Multilevel/MultilevelSelection.h"

#include <algorithm>
#include <array>

#include "SorvaneCore/Models/Multilevel/MultilevelInputs.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelStructure.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/SuitedVariables.h"

namespace sorvane::MultilevelSelection {

namespace {

using MultilevelStructure::allowsRandomSlope;
using MultilevelStructure::hasSecondGrouping;
using MultilevelStructure::hasTime;
using MultilevelStructure::isGrowth;
using MultilevelStructure::isOrdinal;
using MultilevelStructure::placed;
using VariableLists::List;
using VariableLists::numericVariables;
using VariableLists::without;

/// How the first grouping is called beside what else the structure has.
std::string groupingLabel(MultilevelStructureKind structure) {
    switch (structure) {
        case MultilevelStructureKind::nested:
            return "Grouping (cluster)";
        case MultilevelStructureKind::crossed:
            return "First grouping";
        case MultilevelStructureKind::threeLevel:
            return "Outer grouping (level 3)";
        case MultilevelStructureKind::growth:
        case MultilevelStructureKind::autoregressive:
            return "Person or unit measured repeatedly";
    }
    return "";
}

std::string outcomeNote(MultilevelFamily family) {
    switch (family) {
        case MultilevelFamily::gaussian:
            return "";
        case MultilevelFamily::binomial:
            return "The outcome must be coded 0 and 1.";
        case MultilevelFamily::poisson:
            return "The outcome must hold counts: whole numbers from 0.";
        case MultilevelFamily::ordinal:
            return "The outcome's numbers are read as ordered categories.";
    }
    return "";
}

void addGroupings(SetupForm& form, const ImportedDataset& dataset, MultilevelFields& fields) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List groups = without(SuitedVariables::clusters(dataset), {fields.mlOutcome->name});
    const MultilevelStructureKind structure = fields.mlStructure.get();
    form.controls.emplace_back(OptionControls::followedBy(
        variablePicker(groupingLabel(structure), fields.mlCluster, groups),
        [&fields] { dropForbiddenSlope(fields); }));
    if (hasSecondGrouping(fields)) {
        const bool isCrossed = structure == MultilevelStructureKind::crossed;
        form.controls.emplace_back(
            variablePicker(isCrossed ? "Second grouping" : "Inner grouping (level 2)",
                           fields.mlCluster2, without(groups, {fields.mlCluster->name})));
    }
    if (hasTime(fields)) {
        form.controls.emplace_back(variablePicker(
            "Time", fields.mlTime, without(numericVariables(dataset), {fields.mlOutcome->name})));
    }
}

/// Why a slope cannot stay; empty where it can.
std::string obstacleTo(const std::string& slope, const MultilevelFields& fields) {
    if (!allowsRandomSlope(fields)) {
        return "choose Nested, and a family other than Ordinal, to have one.";
    }
    return placed(fields).contains(slope) ? "it has another place in the model." : "";
}

void dropSlope(MultilevelFields& fields, const std::string& why) {
    const std::string slope = fields.mlRandomSlope->name;
    fields.mlRandomSlope.set({});
    // Growth gives its time a slope of its own.
    if (!(isGrowth(fields) && slope == fields.mlTime->name)) {
        fields.mlMessage.set(slope + " no longer has a random slope: " + why);
    }
}

/// Where a slope is taken out of the predictors.
void dropUnselectedSlope(MultilevelFields& fields) {
    const std::string& slope = fields.mlRandomSlope->name;
    if (!slope.empty() && !fields.mlPredictors->contains(slope)) {
        dropSlope(fields,
                  "it is not among the predictors. Choose it under Random slope to make it both.");
    }
}

void addSlope(SetupForm& form, const ImportedDataset& dataset, MultilevelFields& fields) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    if (allowsRandomSlope(fields)) {
        form.controls.emplace_back(OptionControls::followedBy(
            optionalVariablePicker("Random slope", fields.mlRandomSlope,
                                   without(numericVariables(dataset), placed(fields)),
                                   "Random intercept only"),
            [&dataset, &fields] { selectSlope(dataset, fields); }));
    }
    if (fields.mlMessage.get()) {
        form.controls.emplace_back(NoteControl{**fields.mlMessage, true});
    }
    const bool isGrowthModel = isGrowth(fields) && !isOrdinal(fields);
    if (isGrowthModel || (allowsRandomSlope(fields) && !fields.mlRandomSlope->isBlank())) {
        form.controls.emplace_back(
            OptionControls::toggle("Intercept and slope may correlate", fields.mlCorrelateRandom));
    }
}

std::string lagName(const std::string& outcome) {
    return "lag(" + outcome + ")";
}

}  // namespace

void dropForbiddenSlope(MultilevelFields& fields) {
    const std::string slope = fields.mlRandomSlope->name;
    const std::string obstacle = slope.empty() ? "" : obstacleTo(slope, fields);
    if (!obstacle.empty()) {
        dropSlope(fields, obstacle);
    }
}

Subscription clearMessageOnChange(FieldRegistry& registry, MultilevelFields& fields) {
    return registry.observe([&fields](const AnyField& field) {
        const std::array<const AnyField*, 6> decisive = {
            &fields.mlStructure, &fields.mlFamily,     &fields.mlOutcome,
            &fields.mlCluster,   &fields.mlPredictors, &fields.mlRandomSlope};
        if (std::ranges::find(decisive, &field) != decisive.end()) {
            fields.mlMessage.set(std::nullopt);
        }
    });
}

void selectSlope(const ImportedDataset& dataset, MultilevelFields& fields) {
    const std::string& slope = fields.mlRandomSlope->name;
    const List suited = without(numericVariables(dataset), placed(fields));
    if (allowsRandomSlope(fields) && !fields.mlPredictors->contains(slope) &&
        std::ranges::find(suited, slope, &DataVariable::name) != suited.end()) {
        NameSet predictors = fields.mlPredictors.get();
        predictors.insert(slope);
        fields.mlPredictors.set(predictors);
    }
}

void addVariables(SetupForm& form, const ImportedDataset& dataset, MultilevelFields& fields) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List numeric = numericVariables(dataset);
    form.controls.emplace_back(
        OptionControls::followedBy(variablePicker("Outcome", fields.mlOutcome, numeric),
                                   [&fields] { dropForbiddenSlope(fields); }));
    const std::string note = outcomeNote(fields.mlFamily.get());
    if (!note.empty()) {
        form.controls.emplace_back(NoteControl{note, false});
    }
    addGroupings(form, dataset, fields);
    form.controls.emplace_back(OptionControls::followedBy(
        withUnavailable(
            variableCheckList("Predictors", fields.mlPredictors, without(numeric, placed(fields))),
            fields.mlPredictors.get(), numeric),
        [&fields] { dropUnselectedSlope(fields); }));
    addSlope(form, dataset, fields);
}

MultilevelChoice choice(const ImportedDataset& dataset, const MultilevelFields& fields) {
    MultilevelChoice choice{
        .structure = fields.mlStructure.get(),
        .family = fields.mlFamily.get(),
        .estimator = fields.mlEstimator.get(),
        .dfMethod = fields.mlDFMethod.get(),
        .outcome = fields.mlOutcome->name,
        .cluster = fields.mlCluster->name,
        .cluster2 = hasSecondGrouping(fields) ? fields.mlCluster2->name : "",
        .time = hasTime(fields) ? fields.mlTime->name : "",
        .correlated = fields.mlCorrelateRandom.get(),
        .predictors = FormControls::chosen(fields.mlPredictors.get(),
                                           without(numericVariables(dataset), placed(fields)))};
    if (isGrowth(fields)) {
        choice.slope = choice.time;
    } else if (allowsRandomSlope(fields)) {
        choice.slope = fields.mlRandomSlope->name;
    }
    if (!choice.slope.empty() &&
        std::ranges::find(choice.predictors, choice.slope) == choice.predictors.end()) {
        choice.predictors.push_back(choice.slope);
    }
    if (choice.structure == MultilevelStructureKind::autoregressive) {
        choice.predictors.push_back(lagName(choice.outcome));
    }
    return choice;
}

MultilevelColumns columns(const ImportedDataset& dataset, const MultilevelFields& fields) {
    MultilevelColumns columns{.choice = choice(dataset, fields)};
    const MultilevelChoice& chosen = columns.choice;
    MultilevelData& data = columns.data;
    data.outcome = dataset.numericColumn(chosen.outcome);
    data.cluster = Categories::cells(dataset, chosen.cluster);
    if (!chosen.cluster2.empty()) {
        data.cluster2 = Categories::cells(dataset, chosen.cluster2);
    }
    std::vector<std::string> names = chosen.predictors;
    const bool isLagged = chosen.structure == MultilevelStructureKind::autoregressive;
    if (isLagged) {
        names.pop_back();
    }
    for (const std::string& name : names) {
        data.fixedPredictors.push_back(dataset.numericColumn(name));
    }
    if (isLagged) {
        data.fixedPredictors.emplace_back(MultilevelInputs::lagWithinCluster(
            data.outcome, *data.cluster, dataset.numericColumn(chosen.time)));
    }
    return columns;
}

}  // namespace sorvane::MultilevelSelection
