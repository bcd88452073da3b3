#include "SorvaneMac/Screens/SurvivalScreen.h"

#include <algorithm>

#include "SorvaneCore/Dataset/UnicodeText.h"
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

constexpr std::string_view eventText =
    "Nonzero event values count as events (R lung status==2 works as-is if coded 2 for death).";
constexpr std::string_view kaplanMeierText =
    "Nonparametric survival curves with optional strata. Event coding: 0 = censored, nonzero = "
    "event.";
constexpr std::string_view coxText =
    "Breslow-ties Cox regression. Event coding: 0 = censored, nonzero = event.";
constexpr std::string_view whatIsNeeded =
    "Confirm nonnegative times, a 0/1 (or nonzero) event indicator, and complete cases. Cox needs "
    "at least one predictor.";

/// The two-valued numbers, those that name a death first.
List eventCandidates(const List& numeric) {
    List events = SuitedVariables::twoValued(numeric);
    std::stable_partition(events.begin(), events.end(), [](const DataVariable* variable) {
        return UnicodeText::lowerCased(variable->name).find("dead") != std::string::npos;
    });
    return events;
}

}  // namespace

void SurvivalScreen::seed() {
    const List numeric = numericVariables(state_.dataset());
    Seeding::fillFirst(fields_.survTime,
                       SuitedVariables::named(
                           numeric, {"time", "futime", "survtime", "survival", "duration", "tenure",
                                     "followup", "days", "weeks", "months", "years"}));
    NameSet taken = {fields_.survTime->name};
    Seeding::fillFirst(fields_.survEvent, eventCandidates(without(numeric, taken)));
    taken.insert(fields_.survEvent->name);
    Seeding::fillFirst(fields_.survPredictors, without(numeric, taken), numeric.size());
    const List groups = without(anovaGroupingVariables(state_.dataset()), taken);
    Seeding::fillFirst(fields_.survGroup, without(groups, fields_.survPredictors.get()));
}

std::vector<std::string> SurvivalScreen::predictors() const {
    std::vector<std::string> names =
        FormControls::chosen(fields_.survPredictors.get(), numericVariables(state_.dataset()));
    std::erase(names, fields_.survTime->name);
    std::erase(names, fields_.survEvent->name);
    return names;
}

SetupForm SurvivalScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List numeric = numericVariables(state_.dataset());
    const NameSet taken = {fields_.survTime->name, fields_.survEvent->name};
    SetupForm form;
    form.title = "Survival";
    form.controls = {
        HeadingControl{"ANALYSIS"},
        enumerationPicker("Analysis", fields_.survMode),
        NoteControl{std::string(isCox() ? coxText : kaplanMeierText), false},
        HeadingControl{"VARIABLES"},
        variablePicker("Time to event or to end of observation", fields_.survTime, numeric),
        variablePicker("Event (0 = censored)", fields_.survEvent,
                       without(numeric, {fields_.survTime->name})),
        NoteControl{std::string(eventText), false},
    };
    if (isCox()) {
        form.controls.emplace_back(withUnavailable(
            variableCheckList("Predictors", fields_.survPredictors, without(numeric, taken)),
            fields_.survPredictors.get(), numeric));
    } else {
        form.controls.emplace_back(optionalVariablePicker(
            "Strata", fields_.survGroup, without(anovaGroupingVariables(state_.dataset()), taken),
            "One curve for all cases"));
    }
    OptionControls::addRun(form, isCox() ? "Fit Cox model" : "Estimate Kaplan–Meier", gate(),
                           [this] { run(); });
    return form;
}

std::optional<Gate> SurvivalScreen::missingSelection() const {
    if (fields_.survTime->isBlank() || fields_.survEvent->isBlank()) {
        return Gate{
            .title = fields_.survTime->isBlank() ? "Set a time variable" : "Set an event indicator",
            .lead = "",
            .text =
                "Set in the Setup panel the column with the time that each case was "
                "followed, and the column that is 0 where the case was censored."};
    }
    const List numeric = numericVariables(state_.dataset());
    for (const Field<VariableName>* field : {&fields_.survTime, &fields_.survEvent}) {
        if (auto gone = SelectionGates::goneColumn(*field, numeric, "numeric columns")) {
            return gone;
        }
    }
    if (isCox()) {
        return SelectionGates::goneColumn(fields_.survPredictors, numeric, "numeric columns");
    }
    return SelectionGates::goneColumn(fields_.survGroup, anovaGroupingVariables(state_.dataset()),
                                      "grouping columns");
}

std::optional<Gate> SurvivalScreen::unsuitedColumns() const {
    const DataVariable* time = state_.dataset().variable(fields_.survTime->name);
    if (fields_.survTime.get() == fields_.survEvent.get()) {
        return Gate{.title = "Time and event are the same column",
                    .lead = time->name,
                    .text = std::string(whatIsNeeded)};
    }
    if (!isCox() && (fields_.survGroup.get() == fields_.survTime.get() ||
                     fields_.survGroup.get() == fields_.survEvent.get())) {
        return Gate{.title = "The strata are the time or the event",
                    .lead = fields_.survGroup->name,
                    .text = "Set other strata in the Setup panel, or one curve for all cases."};
    }
    if (time->numericSummary->maximum < 0.0) {
        return Gate{.title = "All times are negative",
                    .lead = time->name,
                    .text = std::string(whatIsNeeded)};
    }
    if (isCox() && predictors().empty()) {
        return Gate{.title = "No predictors selected",
                    .lead = "",
                    .text = "Cox needs at least one predictor. Check one in the Setup panel."};
    }
    return std::nullopt;
}

std::optional<Gate> SurvivalScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (const std::optional<Gate> missing = missingSelection()) {
        return *missing;
    }
    if (const std::optional<Gate> unsuited = unsuitedColumns()) {
        return *unsuited;
    }
    return ResultText::notYetGate(isCox() ? "Cox regression" : "Kaplan–Meier estimation");
}

std::string SurvivalScreen::subtitle() const {
    return "Time to an event, with cases that were not followed up to it.";
}

Guide SurvivalScreen::guide() const {
    return {.answers =
                "How long it takes until an event happens when some cases were not followed to "
                "it: the share still without the event over time, and how predictors raise or "
                "lower the hazard.",
            .needs =
                "The time of each case from one well-defined start, not negative, and whether the "
                "event was seen (0 = censored). A case must be censored for reasons that have "
                "nothing to do with its risk. Cox regression needs two events at the least, and "
                "some ten per predictor to be stable.",
            .doNotClaim = {
                "Do not read the curve beyond the last observed time, nor its tail where few cases "
                "are left.",
                "Do not call curves different by looking at them; no log-rank test is made here.",
                "Do not read a hazard ratio as a ratio of probabilities or of times; and it is one "
                "number only if the hazards stay proportional, which is not checked here.",
                "Do not treat a rating scale or a score as a time to event."}};
}

}  // namespace sorvane
