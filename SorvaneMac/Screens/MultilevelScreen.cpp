#include "SorvaneMac/Screens/MultilevelScreen.h"

#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/SuitedVariables.h"

namespace sorvane {

namespace {

using VariableLists::anovaGroupingVariables;
using VariableLists::List;
using VariableLists::numericVariables;
using VariableLists::without;

constexpr std::string_view hint =
    "Choose Nested, Crossed, Growth, or AR lag; set outcome and grouping; then Run.";

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

}  // namespace

bool MultilevelScreen::hasSecondGrouping() const {
    const MultilevelStructureKind structure = fields_.mlStructure.get();
    return structure == MultilevelStructureKind::crossed ||
           structure == MultilevelStructureKind::threeLevel;
}

bool MultilevelScreen::hasTime() const {
    const MultilevelStructureKind structure = fields_.mlStructure.get();
    return structure == MultilevelStructureKind::growth ||
           structure == MultilevelStructureKind::autoregressive;
}

bool MultilevelScreen::allowsRandomSlope() const {
    return fields_.mlStructure.get() == MultilevelStructureKind::nested &&
           fields_.mlFamily.get() != MultilevelFamily::ordinal;
}

void MultilevelScreen::dropForbiddenSlope() {
    const std::string& slope = fields_.mlRandomSlope->name;
    if (!allowsRandomSlope() || !fields_.mlPredictors->contains(slope) ||
        placed().contains(slope)) {
        fields_.mlRandomSlope.set({});
    }
}

void MultilevelScreen::seed() {
    const List numeric = numericVariables(state_.dataset());
    Seeding::fillFirst(fields_.mlOutcome, numeric);
    NameSet taken = {fields_.mlOutcome->name};
    const List groups = anovaGroupingVariables(state_.dataset());
    Seeding::fillFirst(fields_.mlCluster, without(groups, taken));
    taken.insert(fields_.mlCluster->name);
    Seeding::fillFirst(fields_.mlCluster2, without(groups, taken));
    taken.insert(fields_.mlCluster2->name);
    Seeding::fillFirst(fields_.mlTime, SuitedVariables::named(
                                           without(numeric, taken),
                                           {"time", "timepoint", "wave", "occasion", "visit",
                                            "week", "month", "year", "day", "session", "trial"}));
    taken.insert(fields_.mlTime->name);
    Seeding::fillFirst(fields_.mlPredictors, without(numeric, taken), numeric.size());
    dropForbiddenSlope();
}

NameSet MultilevelScreen::placed() const {
    NameSet names = {fields_.mlOutcome->name, fields_.mlCluster->name};
    if (hasSecondGrouping()) {
        names.insert(fields_.mlCluster2->name);
    }
    if (hasTime()) {
        names.insert(fields_.mlTime->name);
    }
    names.erase("");
    return names;
}

void MultilevelScreen::addVariables(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List numeric = numericVariables(state_.dataset());
    const List groups =
        without(SuitedVariables::clusters(state_.dataset()), {fields_.mlOutcome->name});
    form.controls.emplace_back(HeadingControl{"VARIABLES"});
    const auto drop = [this] {
        dropForbiddenSlope();
    };
    form.controls.emplace_back(
        OptionControls::followedBy(variablePicker("Outcome", fields_.mlOutcome, numeric), drop));
    const std::string note = outcomeNote(fields_.mlFamily.get());
    if (!note.empty()) {
        form.controls.emplace_back(NoteControl{note, false});
    }
    form.controls.emplace_back(OptionControls::followedBy(
        variablePicker(groupingLabel(fields_.mlStructure.get()), fields_.mlCluster, groups), drop));
    if (hasSecondGrouping()) {
        const bool isCrossed = fields_.mlStructure.get() == MultilevelStructureKind::crossed;
        form.controls.emplace_back(
            variablePicker(isCrossed ? "Second grouping" : "Inner grouping (level 2)",
                           fields_.mlCluster2, without(groups, {fields_.mlCluster->name})));
    }
    if (hasTime()) {
        form.controls.emplace_back(
            variablePicker("Time", fields_.mlTime, without(numeric, {fields_.mlOutcome->name})));
    }
    form.controls.emplace_back(OptionControls::followedBy(
        withUnavailable(
            variableCheckList("Predictors", fields_.mlPredictors, without(numeric, placed())),
            fields_.mlPredictors.get(), numeric),
        drop));
}

void MultilevelScreen::addSlope(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    List predictors;
    for (const DataVariable* variable : without(numericVariables(state_.dataset()), placed())) {
        if (fields_.mlPredictors->contains(variable->name)) {
            predictors.push_back(variable);
        }
    }
    if (allowsRandomSlope()) {
        form.controls.emplace_back(optionalVariablePicker("Random slope", fields_.mlRandomSlope,
                                                          predictors, "Random intercept only"));
    }
    const bool isGrowth = fields_.mlStructure.get() == MultilevelStructureKind::growth &&
                          fields_.mlFamily.get() != MultilevelFamily::ordinal;
    if (isGrowth || (allowsRandomSlope() && !fields_.mlRandomSlope->isBlank())) {
        form.controls.emplace_back(
            OptionControls::toggle("Intercept and slope may correlate", fields_.mlCorrelateRandom));
    }
}

SetupForm MultilevelScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    SetupForm form;
    form.title = "Multilevel";
    const auto drop = [this] {
        dropForbiddenSlope();
    };
    form.controls = {
        HeadingControl{"MODEL"},
        OptionControls::followedBy(enumerationPicker("Structure", fields_.mlStructure), drop),
        OptionControls::followedBy(enumerationPicker("Outcome family", fields_.mlFamily), drop),
    };
    addVariables(form);
    addSlope(form);
    if (fields_.mlFamily.get() == MultilevelFamily::gaussian) {
        form.controls.emplace_back(HeadingControl{"ESTIMATION"});
        form.controls.emplace_back(enumerationPicker("Estimator", fields_.mlEstimator));
        form.controls.emplace_back(enumerationPicker("p values from", fields_.mlDFMethod));
    }
    OptionControls::addRun(form, "Run multilevel model", gate(), [this] { run(); });
    return form;
}

std::optional<Gate> MultilevelScreen::missingSelection() const {
    const List numeric = numericVariables(state_.dataset());
    const List groups = SuitedVariables::clusters(state_.dataset());
    if (fields_.mlOutcome->isBlank() || fields_.mlCluster->isBlank()) {
        return Gate{
            .title = "Set an outcome and a grouping", .lead = "", .text = std::string(hint)};
    }
    if (hasSecondGrouping() &&
        (fields_.mlCluster2->isBlank() || fields_.mlCluster2.get() == fields_.mlCluster.get())) {
        return Gate{.title = "Set a second grouping",
                    .lead = "",
                    .text =
                        "Crossed and three-level models take two different grouping variables. "
                        "Set the second one in the Setup panel, or choose Nested."};
    }
    if (hasTime() && fields_.mlTime->isBlank()) {
        return Gate{.title = "Set a time variable",
                    .lead = "",
                    .text =
                        "Growth and AR lag models follow a person or unit over time. Set the "
                        "variable that holds the time in the Setup panel."};
    }
    if (auto gone = SelectionGates::goneColumn(fields_.mlOutcome, numeric, "numeric columns")) {
        return gone;
    }
    if (auto gone = SelectionGates::goneColumn(fields_.mlCluster, groups, "grouping columns")) {
        return gone;
    }
    if (hasSecondGrouping()) {
        if (auto gone =
                SelectionGates::goneColumn(fields_.mlCluster2, groups, "grouping columns")) {
            return gone;
        }
    }
    if (hasTime()) {
        if (auto gone = SelectionGates::goneColumn(fields_.mlTime, numeric, "numeric columns")) {
            return gone;
        }
    }
    return SelectionGates::goneColumn(fields_.mlPredictors, numeric, "numeric columns");
}

std::optional<Gate> MultilevelScreen::unsuitedStructure() const {
    const std::size_t roles = 2U + (hasSecondGrouping() ? 1U : 0U) + (hasTime() ? 1U : 0U);
    if (placed().size() < roles) {
        return Gate{.title = "One column stands in two places",
                    .lead = "",
                    .text =
                        "The outcome, the groupings and the time must be different columns. "
                        "Change one of them in the Setup panel."};
    }
    if (hasSecondGrouping() && !fields_.mlRandomSlope->isBlank()) {
        return Gate{.title = "This structure takes no random slope",
                    .lead = fields_.mlRandomSlope->name,
                    .text =
                        "Crossed and three-level models have random intercepts alone. Choose "
                        "Nested to keep the slope."};
    }
    const bool isOrdinal = fields_.mlFamily.get() == MultilevelFamily::ordinal;
    if (isOrdinal &&
        (hasSecondGrouping() || fields_.mlStructure.get() == MultilevelStructureKind::growth)) {
        return Gate{.title = "Ordinal models take one random intercept",
                    .lead = "",
                    .text = "For an ordinal outcome choose Nested or AR lag, or another family."};
    }
    return std::nullopt;
}

std::optional<Gate> MultilevelScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (const std::optional<Gate> missing = missingSelection()) {
        return *missing;
    }
    if (const std::optional<Gate> unsuited = unsuitedStructure()) {
        return *unsuited;
    }
    return ResultText::notYetGate("Multilevel modeling");
}

std::string MultilevelScreen::heading() const {
    return "Multilevel models";
}

std::string MultilevelScreen::subtitle() const {
    return "Nested, crossed, growth, and within-cluster AR lag linear mixed models.";
}

Guide MultilevelScreen::guide() const {
    return {.answers =
                "How an outcome depends on predictors when cases share a cluster (pupils in a "
                "school, measurements of a person), and how much of its variance lies between "
                "clusters.",
            .needs =
                "A numeric outcome and the variable that says which cluster a case belongs to. "
                "Ten clusters or more, better thirty: with fewer, the variance between clusters "
                "is hardly known. Growth and AR lag need a time variable and repeated rows per "
                "person.",
            .doNotClaim = {
                "Do not read one coefficient as both an effect within clusters and one between "
                "them; center the predictor within clusters to tell them apart.",
                "Do not compare models with different predictors by their REML criterion; fit "
                "both by ML.",
                "Do not claim that clusters do not matter because their variance is small or its "
                "test is not significant.",
                "Do not read coefficients as causal; they are associations in a clustered "
                "design."}};
}

}  // namespace sorvane
