#include "SorvaneCore/Models/Survival/SurvivalWording.h"

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::SurvivalWording {

namespace {

/// A sample in which so few times or no censoring at all is no accident.
constexpr std::size_t casesForTimes = 20;
constexpr std::size_t fewTimes = 10;
constexpr std::size_t casesForCensoring = 10;

std::string counted(std::size_t count) {
    return NumberText::integer(static_cast<std::int64_t>(count));
}

std::string fewDistinctTimes(std::size_t distinct, std::size_t cases) {
    return "Follow-up time has only " + counted(distinct) + " distinct values across " +
           counted(cases) +
           " cases. Check that the time variable really measures time to event (a rating-scale "
           "item here produces a meaningless curve).";
}

std::string nothingCensored() {
    return "Every case counts as an event; no observation is censored. If the event variable is "
           "not coded 0 = censored / nonzero = event, the results are wrong.";
}

}  // namespace

std::string noEvents() {
    return "No events were observed; the survival curve stays at 1.";
}

std::string smallSample() {
    return "Small sample for survival estimation.";
}

std::string tooFewForCox() {
    return "Need more complete cases and at least two events for Cox regression.";
}

std::string singularInformation() {
    return "Cox information matrix was singular.";
}

std::string notConverged() {
    return "Newton\u2013Raphson stopped without a clean convergence signal.";
}

std::string fewEvents() {
    return "Few events; hazard ratios may be unstable.";
}

void addTimeAndCensoringChecks(std::vector<AnalysisReadinessIssue>& issues,
                               const SurvivalRows& rows) {
    const std::size_t cases = rows.count();
    const std::size_t distinct = rows.distinctTimes();
    if (cases >= casesForTimes && distinct <= fewTimes) {
        issues.push_back(AnalysisReadinessIssue::caution(fewDistinctTimes(distinct, cases)));
    }
    if (cases >= casesForCensoring && rows.eventCount() == cases) {
        issues.push_back(AnalysisReadinessIssue::caution(nothingCensored()));
    }
}

}  // namespace sorvane::SurvivalWording
