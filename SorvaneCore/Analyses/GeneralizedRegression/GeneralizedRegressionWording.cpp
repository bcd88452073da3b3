#include "SorvaneCore/Analyses/GeneralizedRegression/GeneralizedRegressionWording.h"

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::GeneralizedRegressionWording {

using NumberText::integer;

std::string tooFewCases(std::int64_t n, std::int64_t coefficients) {
    return "There are not enough complete cases (" + integer(n) + ") to estimate " +
           integer(coefficients) + " coefficient(s).";
}

std::string rowsDropped(std::int64_t dropped) {
    return integer(dropped) +
           " row(s) were dropped by listwise deletion because the outcome or a predictor was "
           "missing.";
}

std::string oneLevelOnly(std::int64_t events) {
    return "The outcome has only one level present (events: " + integer(events) +
           "). Both 0 and 1 must occur to fit a logistic model.";
}

std::string separated() {
    return "The data are (quasi) perfectly separated, so the maximum likelihood estimates diverge "
           "to infinity. Logistic coefficients cannot be estimated. This often happens when a "
           "predictor perfectly predicts the outcome.";
}

std::string logisticNonFinite() {
    return "The fit produced non-finite values and could not converge. Check the data for extreme "
           "values or separation.";
}

std::string logisticSingular() {
    return "The information matrix is singular, so unique coefficients cannot be estimated. Remove "
           "or combine redundant predictors, or check for separation.";
}

std::string logisticBudget() {
    return "The fit did not converge within the iteration budget. The estimates are not reliable; "
           "this often signals separation or near-collinear predictors.";
}

std::string fewEvents(std::int64_t rarer, std::int64_t predictors) {
    return "There are fewer than 10 events per predictor (" + integer(rarer) +
           " in the rarer outcome class, " + integer(predictors) +
           " predictor(s)). Logistic estimates may be biased and unstable; treat this as "
           "exploratory.";
}

std::string poissonDiverged() {
    return "The fit diverged (a linear combination of predictors drives the fitted rate to "
           "extremes). Poisson coefficients cannot be estimated.";
}

std::string poissonNonFinite() {
    return "The fit produced non-finite values and could not converge. Check the data for extreme "
           "values.";
}

std::string poissonSingular() {
    return "The information matrix is singular, so unique coefficients cannot be estimated. Remove "
           "or combine redundant predictors.";
}

std::string poissonBudget() {
    return "The fit did not converge within the iteration budget. The estimates are not reliable; "
           "check for near-collinear predictors or extreme values.";
}

std::string fewCasesPerPredictor(std::int64_t n, std::int64_t predictors) {
    return "There are fewer than 10 cases per predictor (" + integer(n) + " cases, " +
           integer(predictors) +
           " predictor(s)). Estimates may be unstable; treat this as exploratory.";
}

std::string overdispersed(double dispersion) {
    return "The residual deviance per degree of freedom is " + NumberText::fixed(dispersion, 2) +
           ", which is well above 1. This signals overdispersion (the variance exceeds the mean). "
           "Poisson standard errors are likely too small here; consider a negative binomial or "
           "quasi-Poisson model.";
}

std::string tooFewLevels(std::int64_t levels) {
    return "The outcome has only " + integer(levels) +
           " level(s) present. Three or more ordered levels must occur to fit a proportional-odds "
           "model.";
}

std::string ordinalNonFinite() {
    return logisticNonFinite();
}

std::string ordinalSingular() {
    return "The information matrix is singular, so unique estimates cannot be found. Remove or "
           "combine redundant predictors, or check for outcome levels that a predictor separates "
           "perfectly.";
}

std::string ordinalBudget() {
    return logisticBudget();
}

std::string thresholdsDisordered() {
    return "The estimated thresholds are not in increasing order, so the proportional-odds model "
           "is not identified on this data. Check for sparse or separated outcome levels.";
}

std::string sparseLevel(std::int64_t cases) {
    return "The smallest outcome level has only " + integer(cases) +
           " cases. Threshold and slope estimates are unstable with sparse categories; treat this "
           "as exploratory.";
}

std::string fewCasesPerParameter(std::int64_t n, std::int64_t parameters) {
    return "There are fewer than 10 cases per estimated parameter (" + integer(n) + " cases, " +
           integer(parameters) +
           " parameters). Estimates may be unstable; treat this as exploratory.";
}

std::string proportionalOddsAssumed() {
    return "This model assumes proportional odds: the predictor effect is the same across every "
           "cut point. That assumption is not tested here. If effects plausibly differ across "
           "thresholds, interpret the single odds ratio with care.";
}

}  // namespace sorvane::GeneralizedRegressionWording
