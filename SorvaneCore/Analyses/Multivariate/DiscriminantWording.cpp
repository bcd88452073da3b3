#include "SorvaneCore/Analyses/Multivariate/DiscriminantWording.h"

#include "SorvaneCore/Analyses/Basics/DesignCautions.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

std::string_view displayName(DiscriminantPriors priors) {
    return priors == DiscriminantPriors::equal ? "Equal for all groups" : "Group shares";
}

}  // namespace sorvane

namespace sorvane::DiscriminantWording {

namespace {

std::string percent(double share) {
    return NumberText::fixed(100.0 * share, 1) + "%";
}

}  // namespace

std::string tooFewGroups(std::int64_t groups) {
    return "Discriminant analysis needs two or more groups; only " + NumberText::integer(groups) +
           " group(s) had complete data.";
}

std::string tooFewCases(std::int64_t n, std::int64_t predictors, std::int64_t groups) {
    return "Too few complete cases (" + NumberText::integer(n) + ") for " +
           NumberText::integer(predictors) + " variables across " + NumberText::integer(groups) +
           " groups. Collect more cases or reduce the number of variables.";
}

std::string singular() {
    return "The within-groups covariance is singular (the variables are perfectly collinear within "
           "groups, or one does not vary there). Drop a redundant variable or collect more cases.";
}

std::string noEigenvalues() {
    return "The discriminant functions could not be computed; the data may be numerically "
           "degenerate.";
}

std::string rowsDropped(std::int64_t rows) {
    return NumberText::integer(rows) +
           " row(s) were dropped because a variable or the group was missing.";
}

std::string thinGroups(std::int64_t smallestGroup) {
    return DesignCautions::onlyCases("group", smallestGroup) +
           " The functions and the classification are unstable with thin groups; treat this as "
           "exploratory.";
}

std::string fewerCasesThanVariables(std::int64_t smallestGroup, std::int64_t predictors) {
    return "The smallest group has " + NumberText::integer(smallestGroup) + " case(s) for " +
           NumberText::integer(predictors) +
           " variables. With no more cases per group than variables, the coefficients fit chance "
           "features of the sample; treat this as exploratory.";
}

std::string noBetterThanLargestGroup(double accuracy, double largestGroupShare) {
    return "The leave-one-out accuracy (" + percent(accuracy) +
           ") does not exceed the share of the largest group (" + percent(largestGroupShare) +
           "); the variables place new cases no better than always naming that group.";
}

std::string summary(const DiscriminantResult& result) {
    if (result.functions.empty()) {
        return "";
    }
    const WilksTest& test = result.tests.front();
    return "A linear discriminant analysis compared " + NumberText::integer(result.numberOfGroups) +
           " groups of " + result.groupFactorName + " on " +
           NumberText::integer(result.numberOfPredictors) +
           " variables (n = " + NumberText::integer(result.n) +
           "), Wilks' lambda = " + NumberText::fixed(test.wilksLambda, 3) + ", F(" +
           NumberText::clean(test.dfNumerator) + ", " + NumberText::clean(test.dfDenominator) +
           ") = " + NumberText::fixed(test.approxF, 2) + ", p " +
           (test.pValue < 0.001 ? "" : "= ") + NumberText::pValue(test.pValue) +
           ". Left out one at a time, " + percent(result.leaveOneOut.accuracy) +
           " of the cases were placed in their own group; the largest group holds " +
           percent(result.largestGroupShare) + ".";
}

std::vector<std::string> cautions() {
    return {
        "The share of cases classified correctly by the functions fitted to them is too "
        "favourable; report the leave-one-out share, and confirm it on new cases.",
        "An accuracy means something only beside the share of the largest group.",
        "The method assumes normal variables with one covariance matrix in all groups; that "
        "is not tested here.",
        "Coefficients of correlated variables do not rank their importance, and separation of "
        "groups is association, not causation."};
}

}  // namespace sorvane::DiscriminantWording
