#include "SorvaneMac/Screens/NonparametricScreen.h"

namespace sorvane {

namespace {

constexpr std::string_view notMeans =
    "Do not read a rank test as a test of means; where the distributions differ in shape, it is "
    "not one of medians either.";
constexpr std::string_view notCausal =
    "Do not claim that one variable causes the other from an association in observed data.";

Guide mannWhitneyGuide() {
    return {.answers =
                "Whether values in one of two independent groups tend to be larger than in the "
                "other, judged by ranks.",
            .needs =
                "An ordinal or numeric outcome, independent cases, and two or more values in each "
                "of the two groups. The p-value is a normal approximation; it is rough with a "
                "handful of cases.",
            .doNotClaim = {std::string(notMeans), std::string(notCausal)}};
}

Guide wilcoxonGuide() {
    return {.answers =
                "Whether the values of the same cases tend to rise or fall between two "
                "measurements, judged by the ranks of the differences.",
            .needs =
                "Two numeric columns on one scale, measured on the same cases, with differences "
                "spread about evenly around their middle. Cases without a change are left out.",
            .doNotClaim = {"Do not claim that what happened in between caused the change without "
                           "a controlled design.",
                           "Do not report the result without saying how many cases did not "
                           "change."}};
}

Guide kruskalWallisGuide() {
    return {.answers =
                "Whether values tend to be larger in some of several independent groups than in "
                "others, judged by ranks.",
            .needs =
                "An ordinal or numeric outcome and at least two groups with two or more values "
                "each. Each case belongs to one group only.",
            .doNotClaim = {"Do not claim which groups differ from this test alone; that takes "
                           "pairwise comparisons with an adjustment.",
                           std::string(notMeans)}};
}

Guide friedmanGuide() {
    return {.answers =
                "Whether the same cases rank three or more conditions, items or points in time "
                "differently.",
            .needs =
                "Three or more numeric columns on one scale and at least two cases that have a "
                "value in every one of them.",
            .doNotClaim = {"Do not claim which conditions differ from this test alone.",
                           "Do not compare columns that were answered on different scales: their "
                           "ranks would only mirror the scales."}};
}

Guide independenceGuide() {
    return {.answers =
                "Whether two categorical variables are associated, and how strongly (Cramer's V).",
            .needs =
                "Each case counted once, in one row and one column. Expected counts should be 5 "
                "or more in most cells; with fewer, prefer the Fisher exact test.",
            .doNotClaim = {std::string(notCausal),
                           "Do not read a significant table without looking at which cells make "
                           "it so.",
                           "Do not use it for two measurements of the same cases; that is what "
                           "McNemar is for."}};
}

Guide goodnessOfFitGuide() {
    return {.answers = "Whether the counts of one variable's categories depart from equal shares.",
            .needs =
                "A variable with two or more categories, each case counted once, and expected "
                "counts of at least 5 in each category.",
            .doNotClaim = {"Do not read the result as evidence about a population with known "
                           "shares: the expectation here is equal shares.",
                           "Do not claim that the shares are equal because the test is not "
                           "significant."}};
}

Guide fisherGuide() {
    return {.answers =
                "Whether two variables of two categories each are associated, with an exact "
                "p-value at any sample size, and what their odds ratio is.",
            .needs = "Two fields with exactly two categories each, and each case counted once.",
            .doNotClaim = {std::string(notCausal),
                           "Do not read an odds ratio as a ratio of probabilities; they are close "
                           "only where the outcome is rare.",
                           "Do not take an exact p-value for strong evidence: a small table still "
                           "has little power."}};
}

Guide mcnemarGuide() {
    return {.answers =
                "Whether the share of cases in one of two categories changed between two "
                "measurements of the same cases.",
            .needs =
                "Two fields with the same two values, measured on the same cases. Only the cases "
                "that changed carry information; with few of them the exact p-value is the one "
                "to use.",
            .doNotClaim = {"Do not claim a cause of the change without a comparison group.",
                           "Do not report it without saying how many cases changed each way."}};
}

}  // namespace

Guide guideOf(NPTest test) {
    switch (test) {
        case NPTest::mannWhitney:
            return mannWhitneyGuide();
        case NPTest::wilcoxon:
            return wilcoxonGuide();
        case NPTest::kruskalWallis:
            return kruskalWallisGuide();
        case NPTest::friedman:
            return friedmanGuide();
        case NPTest::chiSquare:
            return independenceGuide();
        case NPTest::goodnessOfFit:
            return goodnessOfFitGuide();
        case NPTest::fisher:
            return fisherGuide();
        case NPTest::mcnemar:
            return mcnemarGuide();
    }
    return {};
}

}  // namespace sorvane
