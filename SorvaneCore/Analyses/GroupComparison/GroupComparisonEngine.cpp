#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonEngine.h"

#include <algorithm>
#include <string>

#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneCore/Analyses/Basics/GroupedRows.h"
#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonWording.h"
#include "SorvaneCore/Analyses/GroupComparison/GroupFacts.h"

namespace sorvane::GroupComparisonEngine {

namespace {

using Groups = std::span<const NamedNumericGroup>;

constexpr double significance = 0.05;
constexpr std::size_t fewestValues = 2;

/// The test about the median, whatever the analysis of variance of the same name says.
constexpr std::string_view decidingTest = "Brown-Forsythe";

GroupSummary summaryOf(const GroupedRows::Group& group, const DescriptiveSummary& values) {
    return {.groupLabel = group.label,
            .n = values.validN,
            .missingN = group.missingN,
            .mean = values.mean,
            .median = values.median,
            .standardDeviation = values.standardDeviation,
            .variance = values.variance,
            .standardError = values.standardError,
            .minimum = values.minimum,
            .maximum = values.maximum,
            .confidenceIntervalLower = values.confidenceIntervalLower,
            .confidenceIntervalUpper = values.confidenceIntervalUpper,
            .validValues = group.values};
}

void computeOmnibusTests(GroupComparisonAnalysisResult& result, Groups groups) {
    result.homogeneityTests = homogeneityTests(groups);
    result.classicANOVA = GroupComparisonTests::oneWayANOVA(groups);
    result.welchANOVA = welchANOVA(groups);
    result.brownForsytheANOVA = brownForsytheANOVA(groups);
    result.kruskalWallis = kruskalWallis(groups);
}

bool flagsUnequalVariances(const GroupComparisonAnalysisResult& result) {
    const auto found =
        std::ranges::find(result.homogeneityTests, decidingTest, &HomogeneityTestResult::testName);
    return found != result.homogeneityTests.end() && found->pValue < significance;
}

/// Picks one omnibus test and runs its post-hoc family; false where there is no test at all.
bool selectTest(GroupComparisonAnalysisResult& result, Groups groups, bool flagged) {
    std::optional<ANOVAResult> selected;
    result.recommendedPostHocMethod = PostHocMethod::tukeyHSD;
    if (flagged && result.welchANOVA) {
        selected = result.welchANOVA;
        result.recommendedPostHocMethod = PostHocMethod::gamesHowell;
        result.pairwiseComparisons = gamesHowell(groups);
    } else if (result.classicANOVA) {
        selected = result.classicANOVA;
        if (flagged) {
            result.recommendedPostHocMethod = PostHocMethod::gamesHowell;
            result.pairwiseComparisons = gamesHowell(groups);
        } else {
            const auto df = static_cast<double>(selected->dfWithin);
            result.pairwiseComparisons =
                tukeyHSD(groups, selected->ssWithin / df, selected->dfWithin);
        }
    } else if (result.welchANOVA) {
        selected = result.welchANOVA;
    } else if (result.kruskalWallis) {
        selected = result.kruskalWallis;
        result.recommendedPostHocMethod = PostHocMethod::dunn;
        result.pairwiseComparisons = dunnTest(groups);
    }
    if (!selected) {
        return false;
    }
    result.selectedVariant = selected->variant;
    result.selectedANOVA = *selected;
    return true;
}

void completePostHocFamilies(GroupComparisonAnalysisResult& result, Groups groups, bool flagged) {
    const VarianceAssumption variances =
        flagged ? VarianceAssumption::unequal : VarianceAssumption::equal;
    result.postHocMethod = result.recommendedPostHocMethod;
    if (result.pairwiseComparisons.empty()) {
        result.postHocMethod = PostHocMethod::holmPairwiseT;
        result.pairwiseComparisons = pairwiseTTests(groups, result.postHocMethod, variances);
    }
    result.bonferroniComparisons =
        pairwiseTTests(groups, PostHocMethod::bonferroniPairwiseT, variances);
}

EffectSizeResult effectSizes(const std::optional<ANOVAResult>& classic,
                             const std::optional<ANOVAResult>& kruskal,
                             const ANOVAResult& selected) {
    EffectSizeResult effects;
    if (classic) {
        effects.etaSquared = classic->etaSquared;
        const double meanSquare = classic->ssWithin / static_cast<double>(classic->dfWithin);
        const double total = classic->ssBetween + classic->ssWithin;
        if (total > 0.0) {
            const double above =
                classic->ssBetween - static_cast<double>(classic->dfBetween) * meanSquare;
            effects.omegaSquared = std::max(0.0, above / (total + meanSquare));
        }
    }
    if (kruskal) {
        effects.epsilonSquared = kruskal->etaSquared;
    }
    const double reference =
        effects.etaSquared.value_or(effects.epsilonSquared.value_or(selected.etaSquared));
    effects.interpretation = GroupComparisonWording::effectInterpretation(reference);
    return effects;
}

GroupComparisonMethodFile methodFile(const GroupComparisonAnalysisResult& result,
                                     Groups groups,
                                     const GroupComparisonOptions& options) {
    GroupComparisonMethodFile file{
        .outcomeVariable = result.outcomeName,
        .groupingVariable = result.groupName,
        .missingDataRule = options.missingDataRule,
        .anovaVariantUsed = result.selectedVariant,
        .postHocMethodUsed = std::string(displayName(result.postHocMethod)),
        .recommendedPostHocMethod = std::string(displayName(result.recommendedPostHocMethod)),
        .effectSizeMethods = GroupComparisonWording::effectSizeMethods(result.effectSizes),
        .readinessSummary = GroupComparisonWording::readinessSummary(result.readiness.status),
        .timestamp = options.timestamp,
        .warnings = result.warnings};
    for (const NamedNumericGroup& group : groups) {
        file.groupsIncluded.push_back(group.name);
    }
    for (const auto* test : {&result.classicANOVA, &result.welchANOVA, &result.brownForsytheANOVA,
                             &result.kruskalWallis}) {
        if (*test) {
            file.omnibusTestsComputed.push_back((*test)->variant);
        }
    }
    return file;
}

GroupFacts factsOf(const GroupedRows& rows,
                   const TextColumn& groupValues,
                   const NumericColumn& outcomeValues) {
    GroupFacts facts = GroupFacts::of(rows);
    facts.lengthsDiffer = groupValues.size() != outcomeValues.size();
    return facts;
}

GroupedRows sortedRows(const TextColumn& groupValues, const NumericColumn& outcomeValues) {
    GroupedRows rows = GroupedRows::of(groupValues, outcomeValues);
    rows.sortByLabel();
    return rows;
}

}  // namespace

AnalysisReadiness readiness(const TextColumn& groupValues, const NumericColumn& outcomeValues) {
    const GroupedRows rows = sortedRows(groupValues, outcomeValues);
    return GroupComparisonWording::readiness(factsOf(rows, groupValues, outcomeValues));
}

std::optional<GroupComparisonAnalysisResult> analyze(const TextColumn& groupValues,
                                                     const NumericColumn& outcomeValues,
                                                     const GroupComparisonOptions& options) {
    GroupedRows rows = sortedRows(groupValues, outcomeValues);
    const GroupFacts facts = factsOf(rows, groupValues, outcomeValues);
    if (facts.usableGroups < 2) {
        return std::nullopt;
    }
    GroupComparisonAnalysisResult result{.outcomeName = options.outcomeName,
                                         .groupName = options.groupName,
                                         .readiness = GroupComparisonWording::readiness(facts),
                                         .missingGroupRows = facts.missingGroupRows};
    std::vector<DescriptiveSummary> summaries;
    for (const GroupedRows::Group& group : rows.groups) {
        summaries.push_back(DescriptiveStatistics::summary(group.values));
        result.groupSummaries.push_back(summaryOf(group, summaries.back()));
    }
    GroupComparisonWording::Findings findings{.isOrdinalOrSkewed =
                                                  hasOrdinalOrSkewFlag(rows.groups, summaries)};
    const std::vector<NamedNumericGroup> groups = rows.takeGroups(fewestValues);
    computeOmnibusTests(result, groups);
    const bool flagged = flagsUnequalVariances(result);
    if (!selectTest(result, groups, flagged)) {
        return std::nullopt;
    }
    completePostHocFamilies(result, groups, flagged);
    findings.flaggingTest = flagged ? decidingTest : std::string_view();
    result.effectSizes =
        effectSizes(result.classicANOVA, result.kruskalWallis, result.selectedANOVA);
    result.warnings = GroupComparisonWording::warnings(facts, findings);
    result.interpretation = GroupComparisonWording::interpretation(result, facts, findings);
    result.methodFile = methodFile(result, groups, options);
    return result;
}

}  // namespace sorvane::GroupComparisonEngine
