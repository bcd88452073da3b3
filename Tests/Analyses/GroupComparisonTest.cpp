#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonEngine.h"
#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonWording.h"
#include "Tests/Analyses/CodedColumns.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {
namespace {

using Groups = std::vector<NamedNumericGroup>;
using Texts = std::vector<std::string>;
using Values = std::vector<double>;

/// The columns of a table with one row per value, group after group.
struct Columns {
    std::shared_ptr<const TextColumn> groups;
    NumericColumn outcomes;

    static Columns of(const Texts& groups, const test::OptionalValues& outcomes) {
        return {TextColumn::of(groups), test::codedColumn(outcomes)};
    }
    static Columns of(const Groups& groups) {
        Texts labels;
        test::OptionalValues values;
        for (const NamedNumericGroup& group : groups) {
            labels.insert(labels.end(), group.values.size(), group.name);
            values.insert(values.end(), group.values.begin(), group.values.end());
        }
        return of(labels, values);
    }
    std::optional<GroupComparisonAnalysisResult> analyzed() const {
        return GroupComparisonEngine::analyze(*groups, outcomes,
                                              {.outcomeName = "score", .groupName = "class"});
    }
};

/// `count` different values about `centre`, `spread` apart.
Values ladder(int count, double centre, double spread) {
    Values values;
    for (int i = 0; i < count; ++i) {
        values.push_back(centre + spread * (i - (count - 1) / 2.0));
    }
    return values;
}

Texts messagesOf(const std::vector<AnalysisReadinessIssue>& issues) {
    Texts texts;
    for (const AnalysisReadinessIssue& issue : issues) {
        texts.push_back(issue.message);
    }
    return texts;
}

Texts messagesOf(const std::vector<AssumptionWarning>& warnings) {
    Texts texts;
    for (const AssumptionWarning& warning : warnings) {
        texts.push_back(warning.message);
    }
    return texts;
}

bool contains(const Texts& texts, std::string_view text) {
    return std::ranges::find(texts, text) != texts.end();
}

TEST(GroupComparisonEngine, OrdersGroupsByLabelWhateverTheirCase) {
    const Columns columns =
        Columns::of({"b", "10", "A", "2", "na", "A", "B", "10", "2", "b", "", "a"},
                    {1, 2, 3, 4, 5, std::nullopt, 6, 7, 8, 9, 1, 3});
    const auto result = columns.analyzed();
    ASSERT_TRUE(result);
    Texts labels;
    for (const GroupSummary& group : result->groupSummaries) {
        labels.push_back(group.groupLabel);
    }
    // Cells that differ in case are different groups, and stay in order of appearance.
    EXPECT_EQ(labels, (Texts{"10", "2", "A", "a", "b", "B"}));
    EXPECT_EQ(result->missingGroupRows, 2);
    EXPECT_EQ(result->groupSummaries[2].n, 1);
    EXPECT_EQ(result->groupSummaries[2].missingN, 1);
    EXPECT_EQ(result->groupSummaries[0].validValues, (Values{2, 7}));
    EXPECT_EQ(result->methodFile.groupsIncluded, (Texts{"10", "2", "b"}));
}

TEST(GroupComparisonEngine, PicksTestAndFamilyByTheRule) {
    const NamedNumericGroup narrow{.name = "a", .values = ladder(12, 10, 0.1)};
    const NamedNumericGroup alike{.name = "b", .values = ladder(12, 11, 0.1)};
    const NamedNumericGroup wide{.name = "c", .values = ladder(12, 14, 3)};
    const NamedNumericGroup constant{.name = "d", .values = Values(12, 10.0)};
    const NamedNumericGroup farApart{.name = "e", .values = {-500, 500}};
    const NamedNumericGroup same{.name = "f", .values = {7, 7}};
    struct Case {
        int line;
        Groups groups;
        ANOVAVariant variant;
        PostHocMethod recommended;
        PostHocMethod used;
        std::size_t pairs;
    };
    using enum ANOVAVariant;
    using enum PostHocMethod;
    const std::vector<Case> cases = {
        {__LINE__, {narrow, alike}, classicOneWay, tukeyHSD, tukeyHSD, 1},
        {__LINE__, {narrow, alike, wide}, welch, gamesHowell, gamesHowell, 3},
        // Welch has one group left.
        {__LINE__, {constant, wide}, classicOneWay, gamesHowell, gamesHowell, 1},
        // The pair has fewer than two degrees of freedom.
        {__LINE__, {narrow, farApart}, welch, gamesHowell, holmPairwiseT, 1},
        {__LINE__, {constant, same}, kruskalWallis, dunn, dunn, 1},
    };
    for (const Case& c : cases) {
        const auto result = Columns::of(c.groups).analyzed();
        ASSERT_TRUE(result) << c.line;
        EXPECT_EQ(result->selectedVariant, c.variant) << c.line;
        EXPECT_EQ(result->selectedANOVA.variant, c.variant) << c.line;
        EXPECT_EQ(result->recommendedPostHocMethod, c.recommended) << c.line;
        EXPECT_EQ(result->postHocMethod, c.used) << c.line;
        ASSERT_EQ(result->pairwiseComparisons.size(), c.pairs) << c.line;
        EXPECT_EQ(result->pairwiseComparisons[0].method, displayName(c.used)) << c.line;
    }
    const auto fallback = Columns::of({narrow, farApart}).analyzed();
    EXPECT_LT(*fallback->pairwiseComparisons[0].degreesOfFreedom, 2.0);
    EXPECT_EQ(fallback->pairwiseComparisons[0].interpretation,
              "a and e do not differ after Holm pairwise t-tests adjustment.");
}

TEST(GroupComparisonEngine, HasNoResultWithoutTwoUsableGroups) {
    struct Case {
        int line;
        Columns columns;
        Texts issues;
    };
    const std::string blocked =
        "ANOVA needs at least two groups with two or more valid outcome values.";
    const std::vector<Case> cases = {
        {__LINE__,
         Columns::of(Texts{}, {}),
         {"No paired outcome/group rows are available.", blocked}},
        {__LINE__,
         Columns::of({"a", "a", "b"}, {1, 2, 3, 4}),
         {"Outcome and group columns have different row counts; extra rows were ignored.", blocked,
          "b has fewer than two valid outcome values and will be excluded.",
          "Total valid N is below 30; treat omnibus and post-hoc results as exploratory.",
          "Group sizes are uneven."}},
        {__LINE__,
         Columns::of({"a", "a", "missing"}, {std::nullopt, std::nullopt, 1}),
         {blocked, "a has fewer than two valid outcome values and will be excluded.",
          "1 rows have missing group values and will be excluded."}},
    };
    for (const Case& c : cases) {
        EXPECT_FALSE(c.columns.analyzed()) << c.line;
        const auto readiness =
            GroupComparisonEngine::readiness(*c.columns.groups, c.columns.outcomes);
        EXPECT_EQ(readiness.status, AnalysisReadinessStatus::blocked) << c.line;
        EXPECT_EQ(messagesOf(readiness.issues), c.issues) << c.line;
    }
}

TEST(GroupComparisonEngine, WarnsFromEachThresholdOn) {
    const std::string uneven = "Group sizes are uneven.";
    const std::string small = "Total valid N is below 30; treat results as exploratory.";
    const std::string ratio =
        "The largest group variance is more than four times the smallest group variance.";
    const std::string skewed =
        "Skew or outlier patterns suggest reviewing Kruskal-Wallis as a sensitivity analysis.";
    Values withOutlier = ladder(20, 0, 1);
    withOutlier.back() = 26;
    Values withinFences = ladder(20, 0, 1);
    withinFences.back() = 20;
    struct Case {
        int line;
        Groups groups;
        std::string message;
        bool isThere;
    };
    const std::vector<Case> cases = {
        {__LINE__, {{"a", ladder(10, 0, 1)}, {"b", ladder(15, 0, 1)}}, uneven, true},
        {__LINE__, {{"a", ladder(10, 0, 1)}, {"b", ladder(14, 0, 1)}}, uneven, false},
        {__LINE__, {{"a", ladder(14, 0, 1)}, {"b", ladder(15, 0, 1)}}, small, true},
        {__LINE__, {{"a", ladder(15, 0, 1)}, {"b", ladder(15, 0, 1)}}, small, false},
        {__LINE__, {{"a", ladder(9, 0, 1)}, {"b", ladder(9, 0, 2)}}, ratio, false},
        {__LINE__, {{"a", ladder(9, 0, 1)}, {"b", ladder(9, 0, 2.01)}}, ratio, true},
        {__LINE__, {{"a", ladder(8, 0, 1)}, {"b", ladder(8, 0, 1)}}, skewed, false},
        {__LINE__, {{"a", ladder(8, 0, 1)}, {"b", ladder(7, 0, 1)}}, skewed, true},
        {__LINE__, {{"a", ladder(8, 0, 1)}, {"b", withinFences}}, skewed, false},
        {__LINE__, {{"a", ladder(8, 0, 1)}, {"b", withOutlier}}, skewed, true},
    };
    for (const Case& c : cases) {
        const auto result = Columns::of(c.groups).analyzed();
        ASSERT_TRUE(result) << c.line;
        EXPECT_EQ(contains(messagesOf(result->warnings), c.message), c.isThere) << c.line;
    }
}

TEST(GroupComparisonEngine, TellsOfWelchAndWhatToHoldBack) {
    Columns columns = Columns::of({{"d", ladder(5, 40, 9)},
                                   {"a", ladder(12, 10, 0.2)},
                                   {"b", ladder(12, 20, 0.2)},
                                   {"c", ladder(12, 30, 0.2)},
                                   {"e", {1}}});
    const auto result = columns.analyzed();
    ASSERT_TRUE(result);
    EXPECT_EQ(messagesOf(result->readiness.issues),
              (Texts{"e has fewer than two valid outcome values and will be excluded.",
                     "Group sizes are uneven.",
                     "The largest group variance is more than four times the smallest group "
                     "variance."}));
    const Texts warnings = {
        "e has fewer than two valid outcome values.",
        "Group sizes are uneven.",
        "The largest group variance is more than four times the smallest group variance.",
        "Brown-Forsythe test flags unequal variances.",
        "Skew or outlier patterns suggest reviewing Kruskal-Wallis as a sensitivity analysis.",
        "A p-value is available, but assumption warnings should be reported with the result."};
    EXPECT_EQ(messagesOf(result->warnings), warnings);
    EXPECT_EQ(result->warnings.front().level, WarningLevel::serious);
    EXPECT_EQ(result->warnings.back().level, WarningLevel::info);
    const GroupComparisonInterpretation& text = result->interpretation;
    EXPECT_EQ(text.summary,
              "Sorvane found evidence that average score differs across class groups using Welch "
              "ANOVA.");
    EXPECT_EQ(text.testChoiceReason,
              "Sorvane used Welch ANOVA because group variances were flagged as unequal and group "
              "sizes were uneven.");
    EXPECT_EQ(text.postHocSummary,
              "a vs b; a vs c; a vs d; b vs c differ after Games-Howell adjustment.");
    Texts limitations = warnings;
    limitations.emplace_back(
        "Kruskal-Wallis should be treated as a sensitivity check when assumptions are weak.");
    EXPECT_EQ(text.limitations, limitations);
    const GroupComparisonMethodFile& file = result->methodFile;
    EXPECT_EQ(file.readinessSummary, "Ready with cautions");
    EXPECT_EQ(file.omnibusTestsComputed,
              (std::vector{ANOVAVariant::classicOneWay, ANOVAVariant::welch,
                           ANOVAVariant::brownForsythe, ANOVAVariant::kruskalWallis}));
    EXPECT_EQ(file.groupsIncluded, (Texts{"a", "b", "c", "d"}));
    EXPECT_EQ(file.effectSizeMethods.size(), 4U);
}

TEST(GroupComparisonEngine, FindsNothingInGroupsAlike) {
    const auto result =
        Columns::of({{"a", ladder(20, 10, 1)}, {"b", ladder(20, 10, 1)}}).analyzed();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->interpretation.summary,
              "Sorvane did not find evidence that average score differs across class groups using "
              "Classic one-way ANOVA.");
    EXPECT_EQ(result->interpretation.postHocSummary, "No Tukey HSD comparison is below p = .05.");
    EXPECT_EQ(result->effectSizes.interpretation,
              "The estimated effect appears very small; context matters.");
    EXPECT_EQ(*result->effectSizes.omegaSquared, 0.0);
    EXPECT_EQ(*result->effectSizes.epsilonSquared, 0.0);
    EXPECT_TRUE(result->warnings.empty());
    EXPECT_EQ(result->methodFile.readinessSummary, "Ready");
}

TEST(GroupComparisonEngine, NamesEffectsByTheirSize) {
    using GroupComparisonWording::effectInterpretation;
    for (const auto& [effect, word] : std::vector<std::pair<double, std::string>>{
             {0.0099, "very small;"}, {0.01, "small;"}, {0.06, "moderate;"}, {0.14, "large by"}}) {
        EXPECT_NE(effectInterpretation(effect).find(" appears " + word), std::string::npos)
            << effect;
    }
}

TEST(GroupComparisonEngine, LeavesOutWhatCannotBeTested) {
    using namespace GroupComparisonEngine;
    const Groups one = {{"a", {1, 2, 3}}, {"b", {4}}, {"c", {}}};
    EXPECT_FALSE(GroupComparisonTests::oneWayANOVA(one));
    EXPECT_FALSE(welchANOVA(one));
    EXPECT_FALSE(brownForsytheANOVA(one));
    EXPECT_TRUE(homogeneityTests(one).empty());
    EXPECT_TRUE(gamesHowell(one).empty());
    EXPECT_TRUE(
        pairwiseTTests(one, PostHocMethod::holmPairwiseT, VarianceAssumption::equal).empty());
    EXPECT_FALSE(kruskalWallis(Groups{{"a", {1, 2, 3}}, {"c", {}}}));
    EXPECT_TRUE(std::isnan(kruskalWallis(Groups{{"a", {1}}, {"b", {2}}})->etaSquared));
    EXPECT_TRUE(tukeyHSD(one, 1.0, 1).empty());
    EXPECT_TRUE(tukeyHSD(one, 0.0, 9).empty());
    const Groups tied = {{"a", {5, 5}}, {"b", {5, 5, 5}}};
    EXPECT_EQ(kruskalWallis(tied)->f, 0.0);
    EXPECT_EQ(kruskalWallis(tied)->pValue, 1.0);
    EXPECT_TRUE(dunnTest(tied).empty());
    // Both values of a pair are equally far from its middle, but for rounding.
    EXPECT_TRUE(
        homogeneityTests(Groups{{"a", {0.1, 0.4}}, {"b", {0.3, 0.7}}, {"c", {1.1, 9.3}}}).empty());
}

TEST(GroupComparisonTests, KeepTheirDigitsUnderAnOffset) {
    Groups groups = {{"a", {1, 4, 2, 8}}, {"b", {5, 7, 11}}, {"c", {3, 3, 6, 10, 9}}};
    const auto anova = GroupComparisonTests::oneWayANOVA(groups);
    const auto welch = GroupComparisonEngine::welchANOVA(groups);
    const auto t = GroupComparisonTests::independentSamplesTTest(groups[0].values, groups[1].values,
                                                                 VarianceAssumption::unequal);
    for (NamedNumericGroup& group : groups) {
        for (double& value : group.values) {
            value += 1e12;
        }
    }
    EXPECT_TRUE(
        test::closeTo(GroupComparisonTests::oneWayANOVA(groups)->f, anova->f, {.relative = 1e-4}));
    EXPECT_TRUE(
        test::closeTo(GroupComparisonEngine::welchANOVA(groups)->f, welch->f, {.relative = 1e-4}));
    const auto shifted = GroupComparisonTests::independentSamplesTTest(
        groups[0].values, groups[1].values, VarianceAssumption::unequal);
    EXPECT_TRUE(test::closeTo(shifted->t, t->t, {.relative = 1e-4}));
    EXPECT_TRUE(test::closeTo(shifted->degreesOfFreedom, t->degreesOfFreedom));
}

TEST(GroupComparisonTests, AreAbsentWithoutSpreadOrPairs) {
    using namespace GroupComparisonTests;
    const Values constant = {0.1, 0.1, 0.1};
    const Values two = {1, 2};
    EXPECT_FALSE(oneSampleTTest(constant, 0.0));
    EXPECT_FALSE(oneSampleTTest(Values{1}, 0.0));
    EXPECT_FALSE(pairedSamplesTTest(constant, two));
    EXPECT_FALSE(pairedSamplesTTest(two, Values{2, 3}));
    EXPECT_FALSE(pairedSamplesTTest(test::OptionalValues{1.0, 2.0, std::nullopt},
                                    test::OptionalValues{3.0, std::nullopt, 1.0}));
    for (const VarianceAssumption variances :
         {VarianceAssumption::equal, VarianceAssumption::unequal}) {
        EXPECT_FALSE(independentSamplesTTest(constant, constant, variances));
        EXPECT_FALSE(independentSamplesTTest(two, Values{1}, variances));
        EXPECT_TRUE(independentSamplesTTest(two, constant, variances));
    }
    EXPECT_TRUE(pairwiseComparisons(Groups{{"a", two}, {"b", two}}, ANOVAResult(), 1.0).empty());
}

TEST(GroupComparisonTests, TakeValuesThatOnlyRoundingTellsApartForEqual) {
    using namespace GroupComparisonTests;
    for (const double shift : {0.1, 0.7, 1000.1, 1e-9}) {
        Values before;
        Values after;
        for (int i = 0; i < 30; ++i) {
            before.push_back(i / 10.0);
            after.push_back(before.back() + shift);
        }
        EXPECT_FALSE(pairedSamplesTTest(before, after)) << shift;
        after[7] += 1e-11;
        EXPECT_TRUE(pairedSamplesTTest(before, after)) << shift;
    }
    const Values nearly = {0.3, 0.1 + 0.2, 0.3, 0.1 + 0.2};
    const Values minus = {-0.3, -0.3, -0.1 - 0.2};
    EXPECT_FALSE(oneSampleTTest(nearly, 0.0));
    EXPECT_FALSE(independentSamplesTTest(nearly, minus, VarianceAssumption::equal));
    EXPECT_FALSE(independentSamplesTTest(nearly, minus, VarianceAssumption::unequal));
    const Groups groups = {{"a", nearly}, {"b", minus}};
    EXPECT_FALSE(oneWayANOVA(groups));
    EXPECT_FALSE(GroupComparisonEngine::welchANOVA(groups));
    EXPECT_FALSE(GroupComparisonEngine::brownForsytheANOVA(groups));
    EXPECT_TRUE(HomogeneityTests::homogeneityTests(groups).empty());
    EXPECT_TRUE(GroupComparisonEngine::gamesHowell(groups).empty());
    EXPECT_EQ(Columns::of(groups).analyzed()->selectedVariant, ANOVAVariant::kruskalWallis);
    const Groups alike = {{"a", Values(10, 0.3)}, {"b", Values(10, 0.1 + 0.2)}};
    EXPECT_EQ(GroupComparisonEngine::kruskalWallis(alike)->f, 0.0);
    EXPECT_TRUE(GroupComparisonEngine::dunnTest(alike).empty());
    // As good as nothing beside the values, and yet more than rounding.
    EXPECT_TRUE(oneSampleTTest(Values{1e9, 1e9 + 1e-5}, 0.0));
}

}  // namespace
}  // namespace sorvane
