#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Analyses/Basics/GroupComparisonTests.h"
#include "SorvaneCore/Analyses/Basics/HomogeneityTests.h"
#include "SorvaneCore/SorvaneEngine.h"

namespace sorvane {

enum class PostHocMethod { tukeyHSD, gamesHowell, holmPairwiseT, bonferroniPairwiseT, dunn };
BOOST_DESCRIBE_ENUM(PostHocMethod, tukeyHSD, gamesHowell, holmPairwiseT, bonferroniPairwiseT, dunn)

std::string_view displayName(PostHocMethod method);

/// One group, with its outcomes; a statistic is absent where it is undefined.
struct GroupSummary {
    std::string groupLabel{};
    std::int64_t n = 0;
    std::int64_t missingN = 0;
    std::optional<double> mean{};
    std::optional<double> median{};
    std::optional<double> standardDeviation{};
    std::optional<double> variance{};
    std::optional<double> standardError{};
    std::optional<double> minimum{};
    std::optional<double> maximum{};
    /// Of the mean, at the level 0.95.
    std::optional<double> confidenceIntervalLower{};
    std::optional<double> confidenceIntervalUpper{};
    /// In row order.
    std::vector<double> validValues{};

    bool operator==(const GroupSummary&) const = default;
};
BOOST_DESCRIBE_STRUCT(GroupSummary,
                      (),
                      (groupLabel,
                       n,
                       missingN,
                       mean,
                       median,
                       standardDeviation,
                       variance,
                       standardError,
                       minimum,
                       maximum,
                       confidenceIntervalLower,
                       confidenceIntervalUpper,
                       validValues))

/// Two groups compared within a family of pairs.
struct PairwiseComparisonResult {
    std::string groupA{};
    std::string groupB{};
    /// A less B; of the mean ranks for Dunn's test.
    double meanDifference = 0.0;
    double standardError = 0.0;
    /// q for Tukey and Games-Howell, t for pairwise t-tests, z for Dunn's test.
    double testStatistic = 0.0;
    std::optional<double> degreesOfFreedom{};
    double rawPValue = 1.0;
    double adjustedPValue = 1.0;
    std::optional<double> confidenceIntervalLower{};
    std::optional<double> confidenceIntervalUpper{};
    /// Cohen's d.
    std::optional<double> effectSize{};
    std::optional<double> hedgesG{};
    /// As the user reads it.
    std::string method{};
    std::string interpretation{};

    bool operator==(const PairwiseComparisonResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(PairwiseComparisonResult,
                      (),
                      (groupA,
                       groupB,
                       meanDifference,
                       standardError,
                       testStatistic,
                       degreesOfFreedom,
                       rawPValue,
                       adjustedPValue,
                       confidenceIntervalLower,
                       confidenceIntervalUpper,
                       effectSize,
                       hedgesG,
                       method,
                       interpretation))

struct EffectSizeResult {
    std::optional<double> etaSquared{};
    std::optional<double> omegaSquared{};
    std::optional<double> epsilonSquared{};
    std::string interpretation{};

    bool operator==(const EffectSizeResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(EffectSizeResult,
                      (),
                      (etaSquared, omegaSquared, epsilonSquared, interpretation))

struct AssumptionWarning {
    WarningLevel level = WarningLevel::caution;
    std::string message{};

    bool operator==(const AssumptionWarning&) const = default;
};
BOOST_DESCRIBE_STRUCT(AssumptionWarning, (), (level, message))

/// A comparison in plain words.
struct GroupComparisonInterpretation {
    std::string summary{};
    std::string testChoiceReason{};
    std::string postHocSummary{};
    std::vector<std::string> limitations{};
    std::vector<std::string> whatNotToClaim{};

    bool operator==(const GroupComparisonInterpretation&) const = default;
};
BOOST_DESCRIBE_STRUCT(GroupComparisonInterpretation,
                      (),
                      (summary, testChoiceReason, postHocSummary, limitations, whatNotToClaim))

/// How a comparison was made.
struct GroupComparisonMethodFile {
    std::string analysisType = "one-way group comparison";
    std::string outcomeVariable{};
    std::string groupingVariable{};
    /// The groups that were tested, in order.
    std::vector<std::string> groupsIncluded{};
    std::string missingDataRule{};
    double alphaLevel = 0.05;
    double confidenceLevel = 0.95;
    std::string varianceTestUsed = "Brown-Forsythe";
    std::string assumptionDecisionRule =
        "Brown-Forsythe p < .05 selects Welch ANOVA as the primary omnibus test; otherwise classic "
        "one-way ANOVA is selected when available.";
    ANOVAVariant anovaVariantUsed = ANOVAVariant::classicOneWay;
    std::vector<ANOVAVariant> omnibusTestsComputed{};
    std::string postHocMethodUsed{};
    std::string recommendedPostHocMethod{};
    std::string postHocImplementationNote =
        "Tukey HSD (Tukey-Kramer for unequal n) is used when variances are equal, Games-Howell "
        "when they are not, and Dunn's test (Holm-adjusted) for the rank-based Kruskal-Wallis "
        "path. Tukey and Games-Howell use the studentized range distribution; all three are "
        "validated against R. Holm and Bonferroni pairwise t-tests remain available.";
    std::string effectSizeMethod =
        "eta squared; omega squared; Kruskal-Wallis epsilon squared; pairwise Cohen's d/Hedges g";
    std::vector<std::string> effectSizeMethods{};
    /// "Ready", "Ready with cautions" or "Blocked".
    std::string readinessSummary{};
    std::chrono::sys_seconds timestamp{};
    std::string engineVersion{SorvaneEngine::version};
    std::vector<AssumptionWarning> warnings{};

    bool operator==(const GroupComparisonMethodFile&) const = default;
};
BOOST_DESCRIBE_STRUCT(GroupComparisonMethodFile,
                      (),
                      (analysisType,
                       outcomeVariable,
                       groupingVariable,
                       groupsIncluded,
                       missingDataRule,
                       alphaLevel,
                       confidenceLevel,
                       varianceTestUsed,
                       assumptionDecisionRule,
                       anovaVariantUsed,
                       omnibusTestsComputed,
                       postHocMethodUsed,
                       recommendedPostHocMethod,
                       postHocImplementationNote,
                       effectSizeMethod,
                       effectSizeMethods,
                       readinessSummary,
                       timestamp,
                       engineVersion,
                       warnings))

/// A numeric outcome compared across the levels of a grouping variable.
struct GroupComparisonAnalysisResult {
    std::string outcomeName{};
    std::string groupName{};
    AnalysisReadiness readiness{};
    /// Every group, by label, those that are too small for the tests among them.
    std::vector<GroupSummary> groupSummaries{};
    std::int64_t missingGroupRows = 0;
    std::vector<HomogeneityTestResult> homogeneityTests{};
    ANOVAVariant selectedVariant = ANOVAVariant::classicOneWay;
    ANOVAResult selectedANOVA{};
    std::optional<ANOVAResult> classicANOVA{};
    std::optional<ANOVAResult> welchANOVA{};
    std::optional<ANOVAResult> brownForsytheANOVA{};
    std::optional<ANOVAResult> kruskalWallis{};
    /// The family of `pairwiseComparisons`, and the one that the data call for.
    PostHocMethod postHocMethod = PostHocMethod::tukeyHSD;
    PostHocMethod recommendedPostHocMethod = PostHocMethod::tukeyHSD;
    std::vector<PairwiseComparisonResult> pairwiseComparisons{};
    std::vector<PairwiseComparisonResult> bonferroniComparisons{};
    EffectSizeResult effectSizes{};
    std::vector<AssumptionWarning> warnings{};
    GroupComparisonInterpretation interpretation{};
    GroupComparisonMethodFile methodFile{};

    bool operator==(const GroupComparisonAnalysisResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(GroupComparisonAnalysisResult,
                      (),
                      (outcomeName,
                       groupName,
                       readiness,
                       groupSummaries,
                       missingGroupRows,
                       homogeneityTests,
                       selectedVariant,
                       selectedANOVA,
                       classicANOVA,
                       welchANOVA,
                       brownForsytheANOVA,
                       kruskalWallis,
                       postHocMethod,
                       recommendedPostHocMethod,
                       pairwiseComparisons,
                       bonferroniComparisons,
                       effectSizes,
                       warnings,
                       interpretation,
                       methodFile))

struct GroupComparisonOptions {
    /// Names of the columns, as results and sentences quote them.
    std::string outcomeName{};
    std::string groupName{};
    /// Quoted in the method record; rows without a group or an outcome are left out whatever it
    /// says.
    std::string missingDataRule = "available-case deletion";
    /// When the analysis is run, for the method record.
    std::chrono::sys_seconds timestamp{};
};
BOOST_DESCRIBE_STRUCT(GroupComparisonOptions,
                      (),
                      (outcomeName, groupName, missingDataRule, timestamp))

}  // namespace sorvane
