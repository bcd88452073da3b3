#include "SorvaneMac/Screens/Survival/SurvivalSelection.h"

#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane::SurvivalSelection {

namespace {

using VariableLists::numericVariables;
using VariableLists::without;

constexpr std::string_view eventText =
    "Nonzero event values count as events (R lung status==2 works as-is if coded 2 for death).";

Gate notSet(const SurvivalFields& fields) {
    return {.title = fields.survTime->isBlank() ? "Set a time variable" : "Set an event indicator",
            .lead = "",
            .text =
                "Set in the Setup panel the column with the time that each case was followed, and "
                "the column that is 0 where the case was censored."};
}

}  // namespace

void addControls(SetupForm& form,
                 const ImportedDataset& dataset,
                 SurvivalFields& fields,
                 std::string_view method) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const VariableLists::List numeric = numericVariables(dataset);
    form.controls.emplace_back(NoteControl{std::string(method), false});
    form.controls.emplace_back(
        variablePicker("Time to event or to end of observation", fields.survTime, numeric));
    form.controls.emplace_back(variablePicker("Event (0 = censored)", fields.survEvent,
                                              without(numeric, {fields.survTime->name})));
    form.controls.emplace_back(NoteControl{std::string(eventText), false});
}

std::optional<Gate> gate(const ImportedDataset& dataset, const SurvivalFields& fields) {
    if (fields.survTime->isBlank() || fields.survEvent->isBlank()) {
        return notSet(fields);
    }
    for (const Field<VariableName>* field : {&fields.survTime, &fields.survEvent}) {
        if (auto gone =
                SelectionGates::goneColumn(*field, numericVariables(dataset), "numeric columns")) {
            return gone;
        }
    }
    const DataVariable* time = dataset.variable(fields.survTime->name);
    if (fields.survTime.get() == fields.survEvent.get()) {
        return Gate{.title = "Time and event are the same column",
                    .lead = time->name,
                    .text = std::string(whatIsNeeded)};
    }
    if (time->numericSummary->maximum < 0.0) {
        return Gate{.title = "All times are negative",
                    .lead = time->name,
                    .text = std::string(whatIsNeeded)};
    }
    return std::nullopt;
}

std::string words(const std::string& time, const std::string& event) {
    return time + " until " + event;
}

Gate noResult(const std::string& time, const std::string& event) {
    return {.title = "No survival result was returned",
            .lead = words(time, event),
            .text = std::string(whatIsNeeded)};
}

std::optional<Card> passedChecks(const AnalysisReadiness& readiness) {
    if (!readiness.issues.empty()) {
        return std::nullopt;
    }
    return Card{
        .title = "Sample and event checks",
        .evidence = {{.tone = EvidenceTone::met, .title = "Sample and event checks passed."}},
        .wide = true};
}

std::string counts(std::int64_t cases, std::int64_t events) {
    return DatasetText::counted(cases, "case") + ", " + DatasetText::counted(events, "event");
}

}  // namespace sorvane::SurvivalSelection
