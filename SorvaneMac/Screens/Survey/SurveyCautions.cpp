#include "SorvaneMac/Screens/Survey/SurveyCautions.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SharedSentences.h"
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

bool hasNoError(const WeightedEstimate& estimate) {
    return !isBlocked(estimate) && estimate.standardError == 0.0;
}

/// Whether an estimate of a subgroup is cautioned against where that of all is not: replicates have
/// passed it by.
bool isPassedBy(const WeightedEstimate& estimate, const WeightedEstimate& all) {
    return !isBlocked(estimate) && !hasNoError(estimate) &&
           std::ranges::any_of(estimate.readiness.issues, [&all](const auto& issue) {
               return std::ranges::find(all.readiness.issues, issue) == all.readiness.issues.end();
           });
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
    const auto add = [&cautions, &run](std::string_view what, auto holds) {
        const std::vector<std::string> names = groupsWhere(run, holds);
        if (!names.empty()) {
            cautions.push_back(std::string(what) + SharedSentences::someOf(names) + ".");
        }
    };
    add("No estimate could be made for these subgroups: ", isBlocked);
    add("Fewer than 30 cases stand behind these subgroups, whose intervals are rough: ",
        [](const WeightedEstimate& estimate) {
            return !isBlocked(estimate) && estimate.validN < fewCases;
        });
    add("All cases of these subgroups lie in one PSU, have one value, or come from strata of which "
        "the sample holds all PSUs. Their standard error of zero says nothing of how sure the "
        "estimate is: ",
        hasNoError);
    add("Some replicates give no weight to these subgroups and add nothing to their standard "
        "errors, "
        "which may be too small: ",
        [&run](const WeightedEstimate& estimate) { return isPassedBy(estimate, run.estimate); });
    add("The standard error exceeds 30% of the estimate in these subgroups: ", isUnsure);
}

/// How many cases lack the value, in a sentence; empty where none does.
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

}  // namespace

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
    if (hasNoError(run.estimate)) {
        cautions.emplace_back(
            "The standard error is zero: the values do not vary, or the design leaves no PSUs to "
            "compare or holds all those of the population. It does not mean that the estimate is "
            "exact.");
    }
    addOfGroups(cautions, run);
    return cautions;
}

}  // namespace sorvane::SurveyCautions
