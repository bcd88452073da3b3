#include "SorvaneMac/Screens/Multilevel/MultilevelSelection.h"

#include <algorithm>

#include "SorvaneCore/Models/Multilevel/MultilevelInputs.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/SuitedVariables.h"

namespace sorvane::MultilevelSelection {

namespace {

using VariableLists::List;
using VariableLists::numericVariables;
using VariableLists::without;

constexpr std::string_view hint =
    "Choose Nested, Crossed, Growth, or AR lag; set outcome and grouping; then Run.";

bool isGrowth(const MultilevelFields& fields) {
    return fields.mlStructure.get() == MultilevelStructureKind::growth;
}

bool hasTime(const MultilevelFields& fields) {
    return isGrowth(fields) || fields.mlStructure.get() == MultilevelStructureKind::autoregressive;
}

bool isOrdinal(const MultilevelFields& fields) {
    return fields.mlFamily.get() == MultilevelFamily::ordinal;
}

/// Whether the user chooses the random slope; growth takes the time for it.
bool allowsRandomSlope(const MultilevelFields& fields) {
    return fields.mlStructure.get() == MultilevelStructureKind::nested && !isOrdinal(fields);
}

/// The columns that the structure uses beside the predictors. The time of a lag may be a predictor
/// too.
NameSet placed(const MultilevelFields& fields) {
    NameSet names = {fields.mlOutcome->name, fields.mlCluster->name};
    if (hasSecondGrouping(fields)) {
        names.insert(fields.mlCluster2->name);
    }
    if (isGrowth(fields)) {
        names.insert(fields.mlTime->name);
    }
    names.erase("");
    return names;
}

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

/// A slope that is chosen becomes a predictor.
void addSlope(SetupForm& form, const ImportedDataset& dataset, MultilevelFields& fields) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    if (allowsRandomSlope(fields)) {
        const auto select = [&fields] {
            if (!fields.mlRandomSlope->isBlank()) {
                NameSet predictors = fields.mlPredictors.get();
                predictors.insert(fields.mlRandomSlope->name);
                fields.mlPredictors.set(predictors);
            }
        };
        form.controls.emplace_back(OptionControls::followedBy(
            optionalVariablePicker("Random slope", fields.mlRandomSlope,
                                   without(numericVariables(dataset), placed(fields)),
                                   "Random intercept only"),
            select));
    }
    const bool isGrowthModel = isGrowth(fields) && !isOrdinal(fields);
    if (isGrowthModel || (allowsRandomSlope(fields) && !fields.mlRandomSlope->isBlank())) {
        form.controls.emplace_back(
            OptionControls::toggle("Intercept and slope may correlate", fields.mlCorrelateRandom));
    }
}

std::optional<Gate> blankSelection(const MultilevelFields& fields) {
    if (fields.mlOutcome->isBlank() || fields.mlCluster->isBlank()) {
        return Gate{
            .title = "Set an outcome and a grouping", .lead = "", .text = std::string(hint)};
    }
    if (hasSecondGrouping(fields) &&
        (fields.mlCluster2->isBlank() || fields.mlCluster2.get() == fields.mlCluster.get())) {
        return Gate{.title = "Set a second grouping",
                    .lead = "",
                    .text =
                        "Crossed and three-level models take two different grouping variables. "
                        "Set the second one in the Setup panel, or choose Nested."};
    }
    if (hasTime(fields) && fields.mlTime->isBlank()) {
        return Gate{.title = "Set a time variable",
                    .lead = "",
                    .text =
                        "Growth and AR lag models follow a person or unit over time. Set the "
                        "variable that holds the time in the Setup panel."};
    }
    return std::nullopt;
}

std::optional<Gate> goneSelection(const ImportedDataset& dataset, const MultilevelFields& fields) {
    const List numeric = numericVariables(dataset);
    const List groups = SuitedVariables::clusters(dataset);
    std::optional<Gate> gone =
        SelectionGates::goneColumn(fields.mlOutcome, numeric, "numeric columns");
    if (!gone) {
        gone = SelectionGates::goneColumn(fields.mlCluster, groups, "grouping columns");
    }
    if (!gone && hasSecondGrouping(fields)) {
        gone = SelectionGates::goneColumn(fields.mlCluster2, groups, "grouping columns");
    }
    if (!gone && hasTime(fields)) {
        gone = SelectionGates::goneColumn(fields.mlTime, numeric, "numeric columns");
    }
    if (!gone) {
        gone = SelectionGates::goneColumn(fields.mlPredictors, numeric, "numeric columns");
    }
    if (!gone && allowsRandomSlope(fields)) {
        gone = SelectionGates::goneColumn(fields.mlRandomSlope, numeric, "numeric columns");
    }
    return gone;
}

bool hasColumnTwice(const MultilevelFields& fields) {
    NameSet roles = placed(fields);
    std::size_t count = hasSecondGrouping(fields) ? 3U : 2U;
    if (hasTime(fields)) {
        roles.insert(fields.mlTime->name);
        ++count;
    }
    return roles.size() < count;
}

std::optional<Gate> unsuitedStructure(const MultilevelFields& fields) {
    if (hasColumnTwice(fields)) {
        return Gate{.title = "One column stands in two places",
                    .lead = "",
                    .text =
                        "The outcome, the groupings and the time must be different columns. "
                        "Change one of them in the Setup panel."};
    }
    if (hasSecondGrouping(fields) && !fields.mlRandomSlope->isBlank()) {
        return Gate{.title = "This structure takes no random slope",
                    .lead = fields.mlRandomSlope->name,
                    .text =
                        "Crossed and three-level models have random intercepts alone. Choose "
                        "Nested to keep the slope."};
    }
    if (isOrdinal(fields) && (hasSecondGrouping(fields) || isGrowth(fields))) {
        return Gate{.title = "Ordinal models take one random intercept",
                    .lead = "",
                    .text = "For an ordinal outcome choose Nested or AR lag, or another family."};
    }
    return std::nullopt;
}

std::string lagName(const std::string& outcome) {
    return "lag(" + outcome + ")";
}

}  // namespace

bool hasSecondGrouping(const MultilevelFields& fields) {
    const MultilevelStructureKind structure = fields.mlStructure.get();
    return structure == MultilevelStructureKind::crossed ||
           structure == MultilevelStructureKind::threeLevel;
}

void dropForbiddenSlope(MultilevelFields& fields) {
    const std::string& slope = fields.mlRandomSlope->name;
    if (!allowsRandomSlope(fields) || !fields.mlPredictors->contains(slope) ||
        placed(fields).contains(slope)) {
        fields.mlRandomSlope.set({});
    }
}

void addVariables(SetupForm& form, const ImportedDataset& dataset, MultilevelFields& fields) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List numeric = numericVariables(dataset);
    const auto drop = [&fields] {
        dropForbiddenSlope(fields);
    };
    form.controls.emplace_back(
        OptionControls::followedBy(variablePicker("Outcome", fields.mlOutcome, numeric), drop));
    const std::string note = outcomeNote(fields.mlFamily.get());
    if (!note.empty()) {
        form.controls.emplace_back(NoteControl{note, false});
    }
    addGroupings(form, dataset, fields);
    form.controls.emplace_back(OptionControls::followedBy(
        withUnavailable(
            variableCheckList("Predictors", fields.mlPredictors, without(numeric, placed(fields))),
            fields.mlPredictors.get(), numeric),
        drop));
    addSlope(form, dataset, fields);
}

std::optional<Gate> gate(const ImportedDataset& dataset, const MultilevelFields& fields) {
    std::optional<Gate> missing = blankSelection(fields);
    if (!missing) {
        missing = goneSelection(dataset, fields);
    }
    return missing ? missing : unsuitedStructure(fields);
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
