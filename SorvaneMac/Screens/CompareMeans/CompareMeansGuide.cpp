#include "SorvaneMac/Screens/CompareMeansScreen.h"

namespace sorvane {

namespace {

constexpr std::string_view notCausal =
    "Do not claim that the group caused the difference unless cases were assigned to groups at "
    "random.";
constexpr std::string_view nonSignificant =
    "Do not read a non-significant result as proof of equal means; look at the interval of the "
    "difference.";

Guide tTestGuide() {
    return {
        .answers =
            "Whether the means of a numeric outcome differ between two groups of different "
            "people, and by how many standard deviations.",
        .needs =
            "Independent cases, each in one group only, and two or more values in each group. "
            "The values should be roughly normal within each group, or the groups large. Welch's "
            "test does not need equal variances; Student's does.",
        .doNotClaim = {std::string(notCausal), std::string(nonSignificant),
                       "Do not run one t-test for each pair of many groups; use ANOVA with "
                       "post-hoc comparisons."}};
}

Guide pairedGuide() {
    return {.answers =
                "Whether the mean of the same cases changed between two measurements, such as "
                "before and after.",
            .needs =
                "Two numeric columns on one scale, measured on the same cases. Only cases with "
                "both values count. The differences should be roughly normal; the two columns "
                "need not be.",
            .doNotClaim = {"Do not claim that what happened in between caused the change: without "
                           "a comparison group it may be practice, time, or a return to the mean.",
                           std::string(nonSignificant),
                           "Do not generalise to the cases that dropped out before the second "
                           "measurement."}};
}

Guide anovaGuide() {
    return {
        .answers =
            "Whether the means of a numeric outcome differ anywhere among two or more groups, and "
            "then, by post-hoc comparisons, between which.",
        .needs =
            "Independent cases, each in one group, with two or more values in at least two "
            "groups. The values should be roughly normal within groups. Where the variances "
            "differ, Welch's form is the safer one.",
        .doNotClaim = {"Do not claim causation from this group comparison alone.",
                       "Do not claim which groups differ from the omnibus test without post-hoc "
                       "evidence.",
                       "Do not ignore assumption warnings when reporting statistical "
                       "significance."}};
}

Guide repeatedMeasuresGuide() {
    return {.answers =
                "Whether the mean of the same cases differs between two or more conditions or "
                "points in time.",
            .needs =
                "One numeric column for each condition, all on one scale, and cases that have a "
                "value in every one of them. With three or more conditions the differences "
                "between conditions should vary alike (sphericity); where they do not, a "
                "corrected p-value is reported.",
            .doNotClaim = {"Do not treat a change over time as an effect without a controlled "
                           "design.",
                           "Do not report the uncorrected p-value where sphericity is violated.",
                           "Do not use items of one questionnaire as conditions only because they "
                           "share a response scale."}};
}

Guide ancovaGuide() {
    return {
        .answers =
            "Whether the group means of an outcome differ once differences in measured "
            "covariates are held constant, and what the adjusted means are.",
        .needs =
            "A numeric outcome, groups, and covariates that were measured before the groups could "
            "influence them. The covariate's slope should be the same in every group, and there "
            "must be more complete cases than model terms.",
        .doNotClaim = {"Do not claim causation: the adjustment controls for what you measured, "
                       "not for everything that differs between groups.",
                       "Do not adjust for a covariate that the group itself changed; that removes "
                       "part of the effect.",
                       "Do not report adjusted means without the unadjusted ones beside them."}};
}

}  // namespace

Guide guideOf(InferentialTest test) {
    switch (test) {
        case InferentialTest::tTest:
            return tTestGuide();
        case InferentialTest::pairedTTest:
            return pairedGuide();
        case InferentialTest::anova:
            return anovaGuide();
        case InferentialTest::repeatedMeasures:
            return repeatedMeasuresGuide();
        case InferentialTest::ancova:
            return ancovaGuide();
    }
    return {};
}

}  // namespace sorvane
