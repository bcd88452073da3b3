#include "SorvaneCore/Analyses/AssumptionAudit/AssumptionAudit.h"

#include <cmath>

#include <gtest/gtest.h>

#include "SorvaneCore/Analyses/AssumptionAudit/AssumptionWording.h"
#include "SorvaneCore/Analyses/AssumptionAudit/BreuschPagan.h"
#include "SorvaneCore/Analyses/AssumptionAudit/VarianceInflation.h"
#include "Tests/Analyses/CodedColumns.h"

namespace sorvane {
namespace {

using Findings = std::vector<AssumptionFinding>;
using Texts = std::vector<std::string>;
using Values = std::vector<double>;

const NamedNumericGroup even{.name = "a", .values = {1, 2, 3, 4, 5, 6, 7, 8}};
const NamedNumericGroup wide{.name = "b", .values = {-40, -20, -3, 1, 2, 30, 50, 70}};

NumericColumn numberColumn(const Values& values) {
    return test::plainColumn({values.begin(), values.end()});
}

/// Values without order, each in (-1, 1).
Values noise(int count, double rate) {
    Values values;
    for (int i = 0; i < count; ++i) {
        values.push_back(std::sin(rate * i * i + i));
    }
    return values;
}

Texts checksOf(const Findings& findings) {
    Texts checks;
    for (const AssumptionFinding& finding : findings) {
        checks.push_back(finding.check);
    }
    return checks;
}

TEST(AssumptionAudit, PutsViolationsFirstAndKeepsTheOrderOfEquals) {
    const Findings findings = AssumptionAudit::groupComparisonAudit(
        std::vector{even, wide, NamedNumericGroup{.name = "c", .values = {3, 4}}});
    // Two values have no normality.
    ASSERT_EQ(checksOf(findings), (Texts{"Equal variances", "Normality", "Normality"}));
    EXPECT_EQ(findings[0].severity, AssumptionSeverity::violation);
    EXPECT_EQ(findings[0].statisticLabel, "Levene F(2, 15)");
    ASSERT_EQ(findings[0].remedies.size(), 2U);
    EXPECT_EQ(findings[0].remedies[0].procedureHint, "welch");
    EXPECT_EQ(findings[1].target, "Group a");
    EXPECT_EQ(findings[2].target, "Group b");
    EXPECT_TRUE(findings[1].remedies.empty());
    EXPECT_TRUE(AssumptionAudit::groupComparisonAudit(std::vector<NamedNumericGroup>{}).empty());
}

TEST(AssumptionAudit, ExplainsANonNormalVariable) {
    Values skewed;
    for (int i = 0; i < 50; ++i) {
        skewed.push_back(std::exp(i / 8.0));
    }
    const std::vector<Values> variables = {even.values, skewed, {1, 2}};
    const Texts names = {"calm", "income", "pair"};
    const Findings findings = AssumptionAudit::correlationAudit(variables, names);
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings[0].target, "income");
    EXPECT_EQ(findings[0].explanation,
              "Shapiro-Wilk W = 0.705, p = < .001; the values depart from normality. With n = 50, "
              "the test is sensitive to small departures and the analysis is fairly robust to "
              "them; weigh this alongside the size of the departure.");
    EXPECT_EQ(findings[0].remedies[0].procedureHint, "nonparametric");
    EXPECT_EQ(findings[1].explanation,
              "Shapiro-Wilk W = 0.975, p = .933; no evidence of non-normality.");
    EXPECT_TRUE(AssumptionAudit::correlationAudit(variables, Texts{"one"}).empty());
    skewed.resize(49);
    const Findings paired = AssumptionAudit::pairedAudit(skewed);
    ASSERT_EQ(paired.size(), 1U);
    EXPECT_TRUE(paired[0].explanation.ends_with("; the paired differences depart from normality."));
    EXPECT_EQ(paired[0].remedies[0].procedureHint, "wilcoxonSignedRank");
}

TEST(AssumptionAudit, FlagsErrorsThatSpread) {
    Values x;
    Values y;
    for (int i = 1; i <= 60; ++i) {
        x.push_back(i);
        y.push_back(2.0 * i + i * std::sin(37.0 * i * i));
    }
    const std::vector columns = {numberColumn(x)};
    const Findings findings =
        AssumptionAudit::regressionAudit(columns, Texts{"time"}, numberColumn(y));
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings[0].check, "Constant error variance");
    EXPECT_EQ(findings[0].severity, AssumptionSeverity::violation);
    EXPECT_EQ(findings[0].statisticLabel, "Breusch-Pagan (Koenker) LM(1)");
    EXPECT_EQ(findings[0].remedies[0].title, "Use HC3 robust standard errors");
    EXPECT_FALSE(findings[0].remedies[0].procedureHint);
}

TEST(AssumptionAudit, LeavesOutWhatAModelCannotShow) {
    const Values x = noise(40, 0.7);
    Values line;
    Values doubled;
    for (const double value : x) {
        line.push_back(0.1 + 0.3 * value);
        doubled.push_back(2.0 * value);
    }
    const Values y = noise(40, 1.9);
    const std::vector one = {numberColumn(x)};
    const std::vector collinear = {numberColumn(x), numberColumn(doubled),
                                   numberColumn(noise(40, 0.3))};
    const Texts names = {"x", "z", "w"};
    // A perfect fit has no residuals but rounding.
    EXPECT_TRUE(AssumptionAudit::regressionAudit(one, Texts{"x"}, numberColumn(line)).empty());
    EXPECT_FALSE(BreuschPagan::test(one, numberColumn(line)));
    EXPECT_TRUE(AssumptionAudit::regressionAudit(collinear, names, numberColumn(y)).empty());
    EXPECT_FALSE(VarianceInflation::factors(collinear, names));
    EXPECT_FALSE(VarianceInflation::factors(one, Texts{"x"}));
    EXPECT_TRUE(AssumptionAudit::regressionAudit(one, Texts{}, numberColumn(y)).empty());
    EXPECT_TRUE(AssumptionAudit::regressionAudit(one, Texts{"x"}, numberColumn({1, 2})).empty());
    EXPECT_FALSE(BreuschPagan::test(std::vector{numberColumn({1, 2, 4})}, numberColumn({1, 0, 3})));
    const std::vector large = {numberColumn(noise(5001, 0.7))};
    EXPECT_EQ(checksOf(AssumptionAudit::regressionAudit(large, Texts{"x"},
                                                        numberColumn(noise(5001, 1.9)))),
              Texts{"Constant error variance"});
}

TEST(AssumptionAudit, CallsAPredictorThatAnotherRepeatsInfinitelyInflated) {
    const std::vector columns = {numberColumn({1, 2, 4, 7, 9}),
                                 numberColumn({0.3, 0.6, 1.2, 2.1, 2.7})};
    const Findings findings =
        AssumptionAudit::regressionAudit(columns, Texts{"x", "z"}, numberColumn({3, 1, 4, 1, 5}));
    ASSERT_EQ(checksOf(findings), (Texts{"Multicollinearity", "Multicollinearity"}));
    EXPECT_EQ(findings[0].severity, AssumptionSeverity::violation);
    EXPECT_EQ(findings[0].statistic, HUGE_VAL);
    EXPECT_EQ(VarianceInflation::factors(columns, Texts{"x", "z"})->front().tolerance, 0.0);
}

TEST(AssumptionAudit, ReadsTheCompleteRows) {
    Values x = noise(30, 0.7);
    Values z = noise(30, 0.9);
    Values y = noise(30, 1.9);
    const std::vector complete = {numberColumn(x), numberColumn(z)};
    const Findings expected =
        AssumptionAudit::regressionAudit(complete, Texts{"x", "z"}, numberColumn(y));
    test::OptionalValues xs(x.begin(), x.end());
    test::OptionalValues zs(z.begin(), z.end());
    test::OptionalValues ys(y.begin(), y.end());
    for (test::OptionalValues* gaps : {&xs, &zs, &ys}) {
        for (test::OptionalValues* each : {&xs, &zs, &ys}) {
            each->push_back(each == gaps ? std::nullopt : std::optional(99.0));
        }
    }
    const std::vector withGaps = {test::plainColumn(xs), test::plainColumn(zs)};
    EXPECT_EQ(AssumptionAudit::regressionAudit(withGaps, Texts{"x", "z"}, test::plainColumn(ys)),
              expected);
    EXPECT_EQ(expected.size(), 4U);
}

TEST(AssumptionWording, TellsHowMuchPredictorsShare) {
    using enum AssumptionSeverity;
    EXPECT_EQ(AssumptionWording::multicollinearity(12.345, "age", violation),
              "VIF = 12.35; age is nearly redundant with the other predictors. Its individual "
              "coefficient is unreliable even when the overall model predicts well.");
    EXPECT_EQ(AssumptionWording::multicollinearity(5.0, "age", caution),
              "VIF = 5.00; age shares substantial variance with the other predictors. Its "
              "coefficient and standard error are less stable than the overall model fit "
              "suggests.");
}

}  // namespace
}  // namespace sorvane
