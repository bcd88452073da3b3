#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/Screens/Survival/SurvivalFields.h"
#include "SorvaneMac/State/StudioState.h"

/// The time and the event, which both analyses of Survival share.
namespace sorvane::SurvivalSelection {

/// What an analysis of survival needs, in a sentence or two.
inline constexpr std::string_view whatIsNeeded =
    "Confirm nonnegative times, a 0/1 (or nonzero) event indicator, and complete cases. Cox needs "
    "at least one predictor.";

/// Input      `method`: what the analysis is and how events are coded
void addControls(SetupForm& form,
                 const ImportedDataset& dataset,
                 SurvivalFields& fields,
                 std::string_view method);

/// What is missing of time and event.
std::optional<Gate> gate(const ImportedDataset& dataset, const SurvivalFields& fields);

/// "days until dead"
std::string words(const std::string& time, const std::string& event);

/// What is shown where a run has no result.
Gate noResult(const std::string& time, const std::string& event);

/// What was looked at in times and events, where nothing was found; absent with an issue.
std::optional<Card> passedChecks(const AnalysisReadiness& readiness);

/// "228 cases, 165 events"
std::string counts(std::int64_t cases, std::int64_t events);

}  // namespace sorvane::SurvivalSelection
