#include "SorvaneCore/Survey/WeightedEstimators.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "SorvaneCore/Survey/SurveyVariance.h"

namespace sorvane {
namespace {

using Texts = std::vector<std::string>;

NumericColumn column(std::vector<std::optional<double>> values) {
    return NumericColumn(std::move(values));
}

/// Two strata of two units each, of two rows each.
SurveyDesign smallDesign() {
    SurveyDesign design{.weights = {1, 2, 1, 2, 3, 1, 1, 1}};
    design.strata = TextColumn::of(Texts{"a", "a", "a", "a", "b", "b", "b", "b"});
    design.clusters = TextColumn::of(Texts{"1", "1", "2", "2", "1", "1", "2", "2"});
    return design;
}

std::vector<std::string> messages(const AnalysisReadiness& readiness) {
    std::vector<std::string> texts;
    for (const AnalysisReadinessIssue& issue : readiness.issues) {
        texts.push_back(issue.message);
    }
    return texts;
}

TEST(SurveyDesign, CountsUnitsWithinTheirStrata) {
    const SurveyDesign design = smallDesign();
    EXPECT_EQ(design.stratumCount(), 2);
    EXPECT_EQ(design.sampledPSUCount(), 4) << "unit 1 of stratum a is not unit 1 of stratum b";
    EXPECT_EQ(design.designDegreesOfFreedom(), 2);
    EXPECT_EQ(design.resolvedClusters(), (std::vector<std::uint32_t>{0, 0, 1, 1, 2, 2, 3, 3}));
    EXPECT_TRUE(design.singlePSUStrata().empty());
    EXPECT_EQ((SurveyDesign{.weights = {1, 1, 1}}).designDegreesOfFreedom(), 2);

    SurveyDesign replicated = smallDesign();
    replicated.replicateWeights = ReplicateWeights{.weights = {3, replicated.weights}};
    EXPECT_EQ(replicated.designDegreesOfFreedom(), 2) << "strata and units still tell";
    replicated.strata.reset();
    replicated.clusters.reset();
    replicated.replicateWeights->weights.resize(1);
    EXPECT_EQ(replicated.designDegreesOfFreedom(), 1);
}

TEST(SurveyDesign, SaysWhatIsWrongInOrder) {
    EXPECT_EQ((SurveyDesign{}).structuralErrors(), Texts{"No observations were supplied."});
    SurveyDesign design{.weights = {1, 0}, .confidenceLevel = 1.0};
    design.strata = TextColumn::of(Texts{"a"});
    design.clusters = TextColumn::of(Texts{"a", "b", "c"});
    design.fpc = {5, std::numeric_limits<double>::infinity(), 5};
    design.replicateWeights = ReplicateWeights{
        .weights = {{1}}, .type = ReplicateType::fayBRR, .fayRho = 1.0, .replicateScale = {{}}};
    EXPECT_EQ(design.structuralErrors(),
              (Texts{"Sampling weights must all be finite and positive.",
                     "Stratum count (1) does not match the number of weights (2).",
                     "Cluster/PSU count (3) does not match the number of weights (2).",
                     "Finite population correction count (3) does not match the number of weights "
                     "(2).",
                     "Finite population correction values must be finite and positive.",
                     "Confidence level must be between 0 and 1.",
                     "Each replicate weight vector must match the number of observations (2).",
                     "Replicate scale count must match the number of replicates.",
                     "Fay perturbation factor must be between 0 and 1."}));
    const WeightedEstimate estimate = WeightedEstimators::mean(column({1.0, 2.0}), design);
    EXPECT_EQ(messages(estimate.readiness), design.structuralErrors());
    EXPECT_TRUE(std::isnan(estimate.estimate));
}

TEST(WeightedEstimators, TellOfUnitsThatSayNothingOfTheirVariance) {
    SurveyDesign design{.weights = {1, 1, 1}};
    design.strata = TextColumn::of(Texts{"a", "b", "b"});
    design.clusters = TextColumn::of(Texts{"1", "1", "1"});
    const WeightedEstimate estimate =
        WeightedEstimators::mean(column({1.0, 2.0, 6.0}), design, "income");
    EXPECT_EQ(estimate.variableName, "income");
    EXPECT_EQ(estimate.standardError, 0.0);
    EXPECT_EQ(estimate.confidenceIntervalLower, 3.0);
    EXPECT_EQ(messages(estimate.readiness),
              (Texts{"2 stratum/strata contain a single sampled PSU; those strata contribute no "
                     "between-PSU variance and may understate the standard error.",
                     "Design degrees of freedom is 1; confidence intervals rely on a small-df t "
                     "reference and are wide."}));
}

TEST(WeightedEstimators, TellOfStrataInWhichOneUnitHasAnswered) {
    SurveyDesign design{.weights = std::vector(12, 1.0)};
    design.strata =
        TextColumn::of(Texts{"a", "a", "a", "a", "a", "a", "b", "b", "b", "b", "b", "b"});
    design.clusters =
        TextColumn::of(Texts{"1", "1", "2", "2", "3", "3", "1", "1", "2", "2", "3", "3"});
    const NumericColumn values = column({1, 2, {}, {}, {}, {}, 5, 8, 13, 1, 3, 4});
    const auto groups = TextColumn::of(Texts(12, "all"));
    const Texts expected = {
        "1 stratum/strata contain a single sampled PSU; those strata contribute no between-PSU "
        "variance and may understate the standard error.",
        "Design degrees of freedom is 4; confidence intervals rely on a small-df t reference and "
        "are wide."};
    EXPECT_EQ(messages(WeightedEstimators::mean(values, design).readiness), expected);
    EXPECT_EQ(messages(WeightedEstimators::total(values, design).readiness), expected);
    EXPECT_EQ(messages(WeightedEstimators::ratio(values, values, design).readiness), expected);
    EXPECT_EQ(messages(WeightedEstimators::byGroup(WeightedEstimand::mean, values, *groups, design)
                           .front()
                           .estimate.readiness),
              expected);
    const WeightedEstimate alone =
        WeightedEstimators::mean(column({1, 2, {}, {}, {}, {}, 5, 8, {}, {}, {}, {}}), design);
    EXPECT_EQ(alone.standardError, 0.0);
    EXPECT_EQ(alone.designDegreesOfFreedom, 4);
    EXPECT_TRUE(messages(alone.readiness).front().starts_with("2 stratum/strata contain a single"));
}

TEST(WeightedEstimators, CountOnlyRowsWithValues) {
    const SurveyDesign design = smallDesign();
    const WeightedEstimate estimate = WeightedEstimators::mean(
        column({1.0, std::nullopt, 2.0, 3.0, 4.0, INFINITY, 5.0, 6.0}), design);
    EXPECT_EQ(estimate.validN, 6);
    EXPECT_EQ(estimate.totalN, 8);
    EXPECT_EQ(estimate.sumOfWeights, 9.0);
    EXPECT_DOUBLE_EQ(estimate.estimate, 32.0 / 9.0);
    EXPECT_NEAR(*estimate.effectiveSampleSize, 81.0 / 17.0, 1e-14);

    const struct {
        const char* what;
        WeightedEstimate estimate;
        const char* message;
    } cases[] = {
        {"one row", WeightedEstimators::mean(column({1.0, {}, {}, {}, {}, {}, {}, {}}), design),
         "Only 1 row(s) hold the value and a weight; at least 2 are needed. Choose a variable with "
         "more answers."},
        {"other length", WeightedEstimators::total(column({1.0}), design),
         "The variable has 1 rows, but the survey design has 8. Set up the design for the table "
         "that holds the variable."},
        {"no denominator",
         WeightedEstimators::ratio(column({1, 1, 1, 1, 1, 1, 1, 1}),
                                   column({0, 0, 0, 0, 0, 0, 0, 0}), design),
         "The denominator adds up to zero, so no ratio can be formed. Choose another denominator."},
        {"a denominator of rounding",
         WeightedEstimators::ratio(column({1, 2, 3, 4}), column({0.1, 0.2, -0.3, 0}),
                                   {.weights = std::vector(4, 1.0)}),
         "The denominator adds up to zero, so no ratio can be formed. Choose another denominator."},
        {"a two among ones",
         WeightedEstimators::proportion(column({1, 0, 2, 1, 0, 1, 0, 1}), design),
         "A proportion needs a variable coded 0 and 1; 1 row(s) hold another value. Recode the "
         "variable, or estimate its mean."},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(messages(each.estimate.readiness), Texts{each.message}) << each.what;
        EXPECT_TRUE(std::isnan(each.estimate.standardError)) << each.what;
    }
}

TEST(WeightedEstimators, CorrectForAFinitePopulationButNeverBelowZero) {
    const NumericColumn values = column({1, 2, 3, 5, 8, 13, 21, 34});
    SurveyDesign design = smallDesign();
    const double whole = WeightedEstimators::total(values, design).standardError;
    design.fpc = {2, 2, 2, 2, 1, 1, 1, 1};
    EXPECT_EQ(WeightedEstimators::total(values, design).standardError, 0.0);
    design.fpc = {4, 4, 4, 4, 4, 4, 4, 4};
    EXPECT_NEAR(WeightedEstimators::total(values, design).standardError, whole / std::sqrt(2.0),
                1e-12 * whole);
}

TEST(WeightedEstimators, SkipReplicatesThatGiveNoWeight) {
    SurveyDesign design{.weights = {1, 1, 1, 1}};
    design.replicateWeights =
        ReplicateWeights{.weights = {{2, 0, 1, 1}, {0, 2, 1, 1}, {0, 0, 0, 0}},
                         .type = ReplicateType::balancedRepeatedReplication};
    const NumericColumn values = column({0, 4, 2, 2});
    EXPECT_DOUBLE_EQ(WeightedEstimators::mean(values, design).standardError, std::sqrt(2.0 / 3.0))
        << "of three replicates";
    EXPECT_EQ(messages(WeightedEstimators::mean(values, design).readiness).back(),
              "1 replicate(s) gave no estimates and add nothing to the standard errors, which may "
              "be too small.");
    EXPECT_EQ(messages(WeightedEstimators::total(values, design).readiness).size(), 1U)
        << "a total of nothing is 0";
    design.replicateWeights->type = ReplicateType::fayBRR;
    design.replicateWeights->fayRho = 0.5;
    EXPECT_DOUBLE_EQ(WeightedEstimators::mean(values, design).standardError, std::sqrt(8.0 / 3.0));
    design.replicateWeights->replicateScale = {{3.0, 1.0, 9.0}};
    EXPECT_DOUBLE_EQ(WeightedEstimators::mean(values, design).standardError, 2.0);
    design.replicateWeights->weights[0][1] = std::nan("");
    EXPECT_EQ(WeightedEstimators::mean(values, design).readiness.status,
              AnalysisReadinessStatus::blocked)
        << "a missing replicate weight is not passed over";
}

TEST(WeightedEstimators, TakeNoRoundingForAnError) {
    SurveyDesign design{.weights = {1.1, 2.3, 3.7, 4.9, 5.3, 6.1}};
    const NumericColumn values = column({0.1, 0.1, 0.1, 0.1, 0.1, 0.1});
    EXPECT_EQ(WeightedEstimators::mean(values, design).standardError, 0.0);
    EXPECT_FALSE(WeightedEstimators::mean(values, design).designEffect);
    design.replicateWeights = ReplicateWeights{.weights = {{0, 2.9, 4.4, 5.8, 6.3, 7.7},
                                                           {1.7, 0, 4.1, 5.3, 6.9, 7.1},
                                                           {1.3, 2.7, 0, 5.9, 6.1, 7.3}}};
    EXPECT_EQ(WeightedEstimators::mean(values, design).standardError, 0.0);
    design.replicateWeights.reset();
    const NumericColumn late = column({1e12, 1e12 + 1, 1e12 + 7, 1e12 + 2, 1e12 + 40, 1e12 + 9});
    EXPECT_GT(WeightedEstimators::mean(late, design).standardError, 1.0) << "digits that are there";
}

TEST(SurveyDesign, AsksNothingOfColumnsOfAnotherLength) {
    SurveyDesign design{.weights = {1, 1, 1}};
    design.strata = TextColumn::of(Texts{"a"});
    design.clusters = TextColumn::of(Texts{"a", "b", "c", "d"});
    EXPECT_EQ(design.structuralErrors().size(), 2U);
    EXPECT_EQ(design.designDegreesOfFreedom(), 2);
    EXPECT_TRUE(design.singlePSUStrata().empty());
    EXPECT_TRUE(design.readinessIssues().empty());
}

TEST(WeightedEstimators, KeepTheWholeDesignForASubgroup) {
    const SurveyDesign design = smallDesign();
    const NumericColumn values = column({1, 2, 3, 5, 8, 13, 21, 34});
    const auto groups = TextColumn::of(Texts{"x", "y", "x", "", "x", "y", "x", "y"});
    const std::vector<DomainEstimate> estimates =
        WeightedEstimators::byGroup(WeightedEstimand::mean, values, *groups, design);
    ASSERT_EQ(estimates.size(), 2U);
    EXPECT_EQ(estimates[0].group, "x");
    // A mean over a subgroup is the ratio of two totals over the whole sample.
    const WeightedEstimate ratio = WeightedEstimators::ratio(
        column({1, 0, 3, 0, 8, 0, 21, 0}), column({1, 0, 1, 0, 1, 0, 1, 0}), design);
    EXPECT_DOUBLE_EQ(estimates[0].estimate.estimate, ratio.estimate);
    EXPECT_NEAR(estimates[0].estimate.standardError, ratio.standardError, 1e-14);
    EXPECT_EQ(estimates[0].estimate.validN, 4);

    const std::vector<DomainEstimate> ratios =
        WeightedEstimators::ratioByGroup(values, column({2, 1, 2, 1, 2, 1, 2, 1}), *groups, design);
    const WeightedEstimate other = WeightedEstimators::ratio(
        column({0, 2, 0, 0, 0, 13, 0, 34}), column({0, 1, 0, 0, 0, 1, 0, 1}), design);
    EXPECT_DOUBLE_EQ(ratios[1].estimate.estimate, other.estimate);
    EXPECT_NEAR(ratios[1].estimate.standardError, other.standardError, 1e-14);
    EXPECT_EQ(WeightedEstimators::ratioByGroup(values, column({1}), *groups, design)
                  .front()
                  .estimate.readiness.status,
              AnalysisReadinessStatus::blocked);
}

TEST(SurveyVariance, GivesVariancesOnItsDiagonal) {
    const SurveyDesign design = smallDesign();
    const std::vector<double> u = {1, 2, 2, 0, 3, 1, 5, 4, 8, 1, 3, 2, 2, 7, 4, 4};
    const std::vector<double> covariance = SurveyVariance::scoreCovariance(u, design, 2);
    const std::vector<std::size_t> rows = {0, 1, 2, 3, 4, 5, 6, 7};
    const std::vector<double> second = {2, 0, 1, 4, 1, 2, 7, 4};
    EXPECT_NEAR(covariance[3], WeightedEstimators::linearizedTotalVariance(second, design, rows),
                1e-12);
    EXPECT_EQ(covariance[1], covariance[2]);
    const std::vector<double> identity = {1, 0, 0, 1};
    EXPECT_EQ(SurveyVariance::sandwich(identity, covariance, 2), covariance);
}

}  // namespace
}  // namespace sorvane
