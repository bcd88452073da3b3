#include "SorvaneCore/Models/Multilevel/MultilevelWording.h"

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::MultilevelWording {

std::string needsTwoClusters() {
    return "Multilevel models need at least two clusters.";
}

std::string needsTwoLevels() {
    return "Cross-classified models need at least two levels on each crossed factor.";
}

std::string tooManyLevels() {
    return "Cross-classified / three-level fitting is limited to 4000 total random-effect levels "
           "in "
           "this build.";
}

std::string notConverged() {
    return "The multilevel model did not converge to a usable solution.";
}

std::string crossedNotConverged() {
    return "The cross-classified model did not converge to a usable solution.";
}

std::string singletons(std::int64_t count) {
    return NumberText::integer(count) +
           " cluster(s) have only one case; variance components are less stable.";
}

std::string fewerThanFiveClusters() {
    return "Fewer than five clusters; treat variance components as descriptive.";
}

std::string fewClusters(std::int64_t count) {
    return "Only " + NumberText::integer(count) +
           " clusters; variance components and cluster-level inferences are unstable with fewer "
           "than 10 groups.";
}

std::string interceptNearZero() {
    return "Cluster intercept variance is near zero (boundary).";
}

std::string slopeNearZero() {
    return "Random-slope variance is near zero (boundary).";
}

std::string noConvergenceSignal() {
    return "Variance-component optimization stopped without a clean convergence signal.";
}

std::string fewerThanFiveLevels() {
    return "Fewer than five levels on a crossed factor; treat variance components as descriptive.";
}

std::string crossedInterceptNearZero() {
    return "One crossed intercept variance is near zero (boundary).";
}

std::string noNestedICC() {
    return "Crossed models do not report a nested ICC; interpret the two intercept variances "
           "separately.";
}

std::string nestedMinimum() {
    return "\u22652 clusters; n > fixed parameters";
}

std::string crossedMinimum() {
    return "\u22652 levels on each crossed factor; n > fixed parameters";
}

std::string allOneShare() {
    return "Outcome has no variation (all 0 or all 1).";
}

std::string noEvents() {
    return "Outcome has no events (all zeros).";
}

std::string noCountVariation() {
    return "Outcome has no variation.";
}

std::string optimizerSignal() {
    return "The likelihood optimizer stopped without a clean convergence signal.";
}

std::string laplaceSignal() {
    return "The Laplace optimizer stopped without a clean convergence signal.";
}

std::string fewInterceptClusters(std::int64_t count) {
    return "Only " + NumberText::integer(count) +
           " clusters; the intercept variance and cluster-level inferences are unstable with fewer "
           "than 10 groups.";
}

std::string fewSlopeClusters(std::int64_t count) {
    return "Only " + NumberText::integer(count) +
           " clusters; variance components are unstable with fewer than 10 groups.";
}

std::string fewFactorLevels(std::int64_t count) {
    return "Only " + NumberText::integer(count) +
           " levels on a factor; variance components are unstable with few groups.";
}

std::string separation() {
    return "One or more coefficients are extreme with very large standard errors, which usually "
           "means the data are (quasi) perfectly separated within clusters. Treat these estimates "
           "as unstable; consider collapsing sparse categories or removing the offending "
           "predictor.";
}

std::string slopeUsesLaplace() {
    return "Random-slope GLMM uses Laplace approximation for the cluster integrals (matching "
           "multi-RE glmer); adaptive Gauss\u2013Hermite is used only for scalar random "
           "intercepts.";
}

std::string factorsUseLaplace() {
    return "Two-factor GLMM uses a dense Laplace approximation over both random-intercept vectors "
           "(matching multi-RE glmer).";
}

std::string shareMinimum() {
    return "Binary 0/1 outcome; \u22652 clusters; n > fixed parameters";
}

std::string countMinimum() {
    return "Non-negative count outcome; \u22652 clusters; n > fixed parameters";
}

std::string shareSlopeMinimum() {
    return "Binary 0/1 outcome; \u22652 clusters; slope in fixed predictors";
}

std::string countSlopeMinimum() {
    return "Non-negative count outcome; \u22652 clusters; slope in fixed predictors";
}

std::string factorsMinimum() {
    return "\u22652 levels per factor; complete cases; n > fixed parameters";
}

std::string tooFewLevels(std::int64_t levels) {
    return "The outcome has only " + NumberText::integer(levels) +
           " level(s) present. Three or more ordered levels must occur to fit an ordinal "
           "multilevel model.";
}

std::string tooFewCases(std::int64_t n, std::int64_t parameters) {
    return "There are not enough complete cases (" + NumberText::integer(n) + ") to estimate " +
           NumberText::integer(parameters) + " parameter(s).";
}

std::string levelsSeparated() {
    return "Unique estimates cannot be found. Remove or combine redundant predictors, or check for "
           "outcome levels that a predictor separates perfectly.";
}

std::string rowsDropped(std::int64_t rows) {
    return NumberText::integer(rows) +
           " row(s) were dropped because the outcome, a predictor or the cluster was missing.";
}

std::string sparseLevel(std::int64_t cases) {
    return "The smallest outcome level has only " + NumberText::integer(cases) +
           " cases. Threshold and slope estimates are unstable with sparse categories; treat this "
           "as exploratory.";
}

std::string proportionalOddsAssumed() {
    return "This model assumes proportional odds: the predictor effect is the same across every "
           "cut point, and so is the cluster's. That assumption is not tested here. Odds ratios "
           "compare cases of one cluster, not the population average.";
}

std::string ordinalMinimum() {
    return "Ordered outcome of \u22653 levels; \u22652 clusters; n > fixed parameters";
}

}  // namespace sorvane::MultilevelWording
