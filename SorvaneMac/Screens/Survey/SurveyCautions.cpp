#include "SorvaneMac/Screens/Survey/SurveyCautions.h"

#include <cmath>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SurveyCells.h"

namespace sorvane::SurveyCautions {

namespace {

/// Statistical offices commonly hold back estimates that are less sure than this.
constexpr double largeRelativeError = 0.3;
constexpr std::int64_t fewCases = 30;

using SurveyCells::isBlocked;

bool isUnsure(const WeightedEstimate& estimate) {
    return !isBlocked(estimate) && estimate.estimate != 0.0 &&
           estimate.standardError > largeRelativeError * std::abs(estimate.estimate);
}

bool leavesTheUnitInterval(const WeightedEstimate& estimate) {
    return estimate.estimand == WeightedEstimand::proportion && !isBlocked(estimate) &&
           (estimate.confidenceIntervalLower < 0.0 || estimate.confidenceIntervalUpper > 1.0);
}

template <typename Holds>
std::vector<std::string> groupsWhere(const SurveyRun& run, Holds holds) {
    std::vector<std::string> names;
    for (const DomainEstimate& each : run.groups) {
        if (holds(each.estimate)) {
            names.push_back(each.group);
        }
    }
    return names;
}

void addOfGroups(std::vector<std::string>& cautions, const SurveyRun& run) {
    const std::vector<std::string> blocked = groupsWhere(run, isBlocked);
    if (!blocked.empty()) {
        cautions.push_back(
            "No estimate could be made for these subgroups: " + ResultText::listed(blocked) + ".");
    }
    const std::vector<std::string> small = groupsWhere(run, [](const WeightedEstimate& estimate) {
        return !isBlocked(estimate) && estimate.validN < fewCases;
    });
    if (!small.empty()) {
        cautions.push_back(
            "Fewer than 30 cases stand behind these subgroups, whose intervals are "
            "rough: " +
            ResultText::listed(small) + ".");
    }
    const std::vector<std::string> unsure = groupsWhere(run, isUnsure);
    if (!unsure.empty()) {
        cautions.push_back("The standard error exceeds 30% of the estimate in these subgroups: " +
                           ResultText::listed(unsure) + ".");
    }
}

}  // namespace

std::string leftOut(const WeightedEstimate& estimate) {
    const std::int64_t count = estimate.totalN - estimate.validN;
    if (count == 0) {
        return "";
    }
    return DatasetText::counted(count, "case") + " of " + ResultText::count(estimate.totalN) +
           " (" + DatasetText::share(count, estimate.totalN) + ")" +
           (count == 1 ? " lacks the value and is left out with its weight"
                       : " lack the value and are left out with their weights") +
           "; the others are not weighted up for that.";
}

std::vector<std::string> warnings(const SurveyRun& run) {
    std::vector<std::string> cautions = ResultText::messages(run.estimate.readiness);
    cautions.insert(cautions.end(), run.cautions.begin(), run.cautions.end());
    const std::string missing = leftOut(run.estimate);
    if (!missing.empty()) {
        cautions.push_back(missing);
    }
    if (isUnsure(run.estimate)) {
        cautions.push_back(
            "The standard error is " +
            NumberText::fixed(100.0 * run.estimate.standardError / std::abs(run.estimate.estimate),
                              0) +
            "% of the estimate; it is too unsure to be reported without saying so.");
    }
    const bool leaves =
        leavesTheUnitInterval(run.estimate) || !groupsWhere(run, leavesTheUnitInterval).empty();
    if (leaves) {
        cautions.emplace_back(
            "An interval of a proportion reaches beyond 0 or 1, as it does near these ends with "
            "few cases; read it as reaching to the end.");
    }
    if (run.estimate.standardError == 0.0) {
        cautions.emplace_back(
            "The standard error is zero: the values do not vary, or the design leaves no PSUs to "
            "compare. It does not mean that the estimate is exact.");
    }
    addOfGroups(cautions, run);
    return cautions;
}

}  // namespace sorvane::SurveyCautions
