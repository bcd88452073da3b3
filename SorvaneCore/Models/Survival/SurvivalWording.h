#pragma once

#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Models/Survival/SurvivalRows.h"

/// The sentences of survival analysis.
namespace sorvane::SurvivalWording {

std::string noEvents();
std::string smallSample();
std::string tooFewForCox();
std::string singularInformation();
std::string notConverged();
std::string fewEvents();

/// What looks odd about times and events: few distinct times, nothing censored.
void addTimeAndCensoringChecks(std::vector<AnalysisReadinessIssue>& issues,
                               const SurvivalRows& rows);

}  // namespace sorvane::SurvivalWording
