#include "SorvaneMac/Screens/ComputeForms.h"

#include <map>
#include <set>

#include "SorvaneMac/Screens/DataPreparation.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Seeding.h"

namespace sorvane {

namespace {

using VariableLists::List;
using VariableLists::numericVariables;
using VariableLists::without;

constexpr std::size_t seededSources = 2;
/// Below half its items a person has no score on the scale.
constexpr double lowestItemCompletion = 0.5;

std::optional<Gate> gateOf(const std::optional<std::string>& lacking) {
    if (!lacking) {
        return std::nullopt;
    }
    return Gate{.title = "Nothing to compute yet", .lead = "", .text = *lacking};
}

}  // namespace

void ComputeForm::seed() {
    const List numeric = numericVariables(state_.dataset());
    Seeding::fillFirst(fields_.cvSources, numeric, seededSources);
    Seeding::fillFirst(fields_.cvVarA, numeric);
    Seeding::fillFirst(fields_.cvVarB, without(numeric, {fields_.cvVarA->name}));
}

void ComputeForm::addAggregate(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List numeric = numericVariables(state_.dataset());
    form.controls.emplace_back(enumerationPicker("Operation", fields_.cvAggOp));
    form.controls.emplace_back(
        withUnavailable(variableCheckList("Source variables", fields_.cvSources, numeric),
                        fields_.cvSources.get(), numeric));
    if (fields_.cvAggOp.get() != AggregateOp::count) {
        form.controls.emplace_back(shareSlider("Minimum completion", fields_.cvMinCompletion));
    }
}

void ComputeForm::addPair(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List numeric = numericVariables(state_.dataset());
    form.controls.emplace_back(enumerationPicker("Operation", fields_.cvPairOp));
    form.controls.emplace_back(variablePicker("A", fields_.cvVarA, numeric));
    form.controls.emplace_back(variablePicker("B", fields_.cvVarB, numeric));
}

void ComputeForm::addTo(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    form.controls.emplace_back(
        wordPicker("Compute from", fields_.cvKind,
                   {{"aggregate", "Several variables"}, {"pair", "Two variables"}}));
    if (isPair()) {
        addPair(form);
    } else {
        addAggregate(form);
    }
    form.controls.emplace_back(textField("Name of the new variable", "Computed", fields_.cvName));
    DataPreparation::addRun(
        form, state_,
        {.label = "Compute", .gate = gate(), .message = &fields_.cvMessage, .run = [this] {
             run();
         }});
}

std::optional<Gate> ComputeForm::gate() const {
    return gateOf(state_.computeLacks());
}

void ComputeForm::run() {
    state_.runCompute();
}

void ComputeForm::showPreview(ScreenContent& content) const {
    DataPreparation::addPreview(content, state_.dataset(), state_.computeSources(),
                                state_.computePreview(DataPreparation::previewRows));
}

Guide ComputeForm::guide() const {
    return {.answers =
                "How to make one number a row out of several: a sum, mean, count, smallest or "
                "largest value, or the difference or ratio of two.",
            .needs =
                "Numeric variables on the same scale. The minimum completion is the share of the "
                "sources that a row must have; a ratio over zero is missing.",
            .doNotClaim = {
                "Do not compare sums of rows with different numbers of answers; take the mean, or "
                "ask for full completion.",
                "Do not call a sum a scale before its items have been shown to belong together.",
                "Do not correlate a difference or a ratio with its own parts as if that were a "
                "finding."}};
}

CheckListControl TotalScoreForm::sources() {
    CheckListControl list;
    list.label = "Variables to combine";
    Field<std::set<Uuid>>& selected = state_.derived.selectedComputedVariableIDs;
    std::map<std::string, Uuid> ids;
    for (const DataVariable* variable : VariableLists::computedSourceVariables(state_.dataset())) {
        ids[variable->name] = variable->id;
        list.items.push_back({.name = variable->name,
                              .detail = std::string(displayName(variable->assignedType)),
                              .isChecked = selected->contains(variable->id),
                              .isFlagged = false,
                              .second = std::nullopt});
    }
    list.setAll = [&selected, ids](const std::vector<std::string>& names, bool isChecked) {
        selected.edit([&](std::set<Uuid>& chosen) {
            for (const std::string& name : names) {
                if (isChecked) {
                    chosen.insert(ids.at(name));
                } else {
                    chosen.erase(ids.at(name));
                }
            }
        });
    };
    list.setChecked = [setAll = list.setAll](const std::string& name, bool isChecked) {
        setAll({name}, isChecked);
    };
    return list;
}

void TotalScoreForm::addTo(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    DerivedVariableFields& derived = state_.derived;
    form.controls.emplace_back(enumerationPicker("Score", derived.computedVariableMethod));
    form.controls.emplace_back(sources());
    if (derived.computedVariableMethod.get() != ComputedVariableMethod::validCount) {
        form.controls.emplace_back(
            shareSlider("Minimum completion", derived.computedVariableMinimumCompletion));
    }
    form.controls.emplace_back(
        textField("Name of the new variable", "Computed Variable", derived.computedVariableName));
    DataPreparation::addRun(form, state_,
                            {.label = "Create score",
                             .gate = gate(),
                             .message = &derived.computedVariableMessage,
                             .run = [this] {
                                 run();
                             }});
}

std::optional<Gate> TotalScoreForm::gate() const {
    return gateOf(state_.computedVariableLacks());
}

void TotalScoreForm::run() {
    state_.createComputedVariable();
}

Guide TotalScoreForm::guide() const {
    return {.answers =
                "How to add up, average or count the answers of chosen variables, such as a test "
                "total, as a new outcome for Descriptives and group comparisons.",
            .needs =
                "Two numeric variables or more, coded in one direction; one is enough for a count. "
                "Rows with fewer answers than the minimum completion get no score.",
            .doNotClaim = {
                "Do not read a sum over missing answers as a low score; a missing answer adds "
                "nothing to it.",
                "Do not score before reversed items are turned round.",
                "Do not report a score without saying which variables it is made of."}};
}

void ScaleScoreForm::addTo(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    ScaleFields& scale = state_.scale;
    const auto items = VariableLists::reliabilityVariables(state_.dataset()).size();
    form.controls.emplace_back(
        NoteControl{"Items: " + ResultText::count(static_cast<std::int64_t>(items)) +
                        ". They are chosen, and turned round where marked Rev, on Scale & "
                        "Reliability.",
                    false});
    for (const std::string& item : state_.itemsNotReversed()) {
        form.controls.emplace_back(NoteControl{
            item +
            " is marked Rev, but the ends of its scale are not known, so it is taken as it "
            "stands. Recode it first if it is worded in reverse."});
    }
    form.controls.emplace_back(enumerationPicker("Score method", scale.scaleScoreMethod));
    form.controls.emplace_back(enumerationPicker("Missing data", scale.reliabilityMissingDataRule));
    if (scale.reliabilityMissingDataRule.get() != ReliabilityMissingDataRule::listwiseDeletion) {
        NumberControl completion =
            shareSlider("Minimum item completion", scale.minimumItemCompletion);
        completion.minimum = lowestItemCompletion;
        form.controls.emplace_back(std::move(completion));
    }
    form.controls.emplace_back(
        textField("New score column name", "Scale score", scale.scaleScoreVariableName));
    const std::string suggested = state_.defaultScaleScoreVariableName();
    if (scale.scaleScoreVariableName.get() != suggested) {
        form.controls.emplace_back(
            ButtonControl{.label = "Name it \"" + suggested + "\"", .press = [&scale, suggested] {
                              scale.scaleScoreVariableName.set(suggested);
                          }});
    }
    DataPreparation::addRun(form, state_,
                            {.label = "Create scale score",
                             .gate = gate(),
                             .message = &scale.scaleScoreCreationMessage,
                             .run = [this] {
                                 run();
                             }});
}

std::optional<Gate> ScaleScoreForm::gate() const {
    return gateOf(state_.scaleScoreLacks());
}

void ScaleScoreForm::run() {
    state_.createScaleScoreVariable();
}

Guide ScaleScoreForm::guide() const {
    return {.answers =
                "How to give each person one score on the scale whose items were checked on Scale "
                "& Reliability.",
            .needs =
                "Two items or more, with reversed ones marked. With a completion rule, a person "
                "who left few items out gets the mean of the others; a sum is then prorated.",
            .doNotClaim = {
                "Do not use a score whose items did not hold together under Scale & Reliability.",
                "Do not compare a score with published norms made under another missing-data "
                "rule.",
                "Do not treat a filled-in answer as one that was given."}};
}

}  // namespace sorvane
