#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonWording.h"

#include <string_view>
#include <utility>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

std::string_view displayName(PostHocMethod method) {
    switch (method) {
        case PostHocMethod::tukeyHSD:
            return "Tukey HSD";
        case PostHocMethod::gamesHowell:
            return "Games-Howell";
        case PostHocMethod::holmPairwiseT:
            return "Holm pairwise t-tests";
        case PostHocMethod::bonferroniPairwiseT:
            return "Bonferroni pairwise t-tests";
        case PostHocMethod::dunn:
            break;
    }
    return "Dunn test";
}

namespace GroupComparisonWording {

namespace {

constexpr double significance = 0.05;
constexpr std::int64_t fewValidRows = 30;
constexpr double largeVarianceRatio = 4.0;
constexpr std::size_t mostPairsNamed = 4;

constexpr std::string_view unevenSizes = "Group sizes are uneven.";
constexpr std::string_view missingImbalance = "Missing outcome data are imbalanced across groups.";
constexpr std::string_view unequalVariances =
    "The largest group variance is more than four times the smallest group variance.";

std::string postHocSummary(const GroupComparisonAnalysisResult& result) {
    const std::string method(displayName(result.postHocMethod));
    std::string pairs;
    std::size_t named = 0;
    for (const PairwiseComparisonResult& pair : result.pairwiseComparisons) {
        if (pair.adjustedPValue < significance && named < mostPairsNamed) {
            pairs += (named == 0 ? "" : "; ") + pair.groupA + " vs " + pair.groupB;
            ++named;
        }
    }
    return named == 0 ? "No " + method + " comparison is below p = .05."
                      : pairs + " differ after " + method + " adjustment.";
}

std::string testChoiceReason(bool welchBecauseFlagged, bool unevenSizesToo) {
    if (!welchBecauseFlagged) {
        return "Sorvane used classic one-way ANOVA because the default homogeneity check did not "
               "flag unequal variances.";
    }
    return std::string("Sorvane used Welch ANOVA because group variances were flagged as unequal") +
           (unevenSizesToo ? " and group sizes were uneven" : "") + ".";
}

std::string summary(const GroupComparisonAnalysisResult& result) {
    const bool found = result.selectedANOVA.pValue < significance;
    return std::string(found ? "Sorvane found evidence that average "
                             : "Sorvane did not find evidence that average ") +
           result.outcomeName + " differs across " + result.groupName + " groups using " +
           std::string(displayName(result.selectedVariant)) + ".";
}

}  // namespace

AnalysisReadiness readiness(const GroupFacts& facts) {
    std::vector<AnalysisReadinessIssue> issues;
    const auto caution = [&issues](std::string_view message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::string(message)));
    };
    if (facts.rows == 0) {
        issues.push_back(
            AnalysisReadinessIssue::blocked("No paired outcome/group rows are available."));
    }
    if (facts.lengthsDiffer) {
        caution("Outcome and group columns have different row counts; extra rows were ignored.");
    }
    if (facts.usableGroups < 2) {
        issues.push_back(AnalysisReadinessIssue::blocked(
            "ANOVA needs at least two groups with two or more valid outcome values."));
    }
    for (const std::string& label : facts.smallGroups) {
        caution(label + " has fewer than two valid outcome values and will be excluded.");
    }
    if (facts.validN >= 1 && facts.validN < fewValidRows) {
        caution("Total valid N is below 30; treat omnibus and post-hoc results as exploratory.");
    }
    if (facts.missingGroupRows >= 1) {
        caution(NumberText::integer(facts.missingGroupRows) +
                " rows have missing group values and will be excluded.");
    }
    if (facts.hasMissingImbalance) {
        caution(missingImbalance);
    }
    if (facts.hasUnevenSizes) {
        caution(unevenSizes);
    }
    if (facts.varianceRatio > largeVarianceRatio) {
        caution(unequalVariances);
    }
    return AnalysisReadiness::of("at least two groups with at least two valid outcome values each",
                                 facts.rows, facts.validN, std::move(issues), facts.usableGroups);
}

std::string readinessSummary(AnalysisReadinessStatus status) {
    switch (status) {
        case AnalysisReadinessStatus::ready:
            return "Ready";
        case AnalysisReadinessStatus::caution:
            return "Ready with cautions";
        case AnalysisReadinessStatus::blocked:
            break;
    }
    return "Blocked";
}

std::vector<AssumptionWarning> warnings(const GroupFacts& facts, const Findings& findings) {
    std::vector<AssumptionWarning> list;
    const auto add = [&list](WarningLevel level, std::string_view message) {
        list.push_back({.level = level, .message = std::string(message)});
    };
    if (facts.usableGroups < 2) {
        add(WarningLevel::serious, "Fewer than two valid groups are available.");
    }
    for (const std::string& label : facts.smallGroups) {
        add(WarningLevel::serious, label + " has fewer than two valid outcome values.");
    }
    if (facts.validN < fewValidRows) {
        add(WarningLevel::caution, "Total valid N is below 30; treat results as exploratory.");
    }
    if (facts.hasUnevenSizes) {
        add(WarningLevel::caution, unevenSizes);
    }
    if (facts.missingGroupRows >= 1) {
        add(WarningLevel::caution, NumberText::integer(facts.missingGroupRows) +
                                       " rows were excluded because the group value was missing.");
    }
    if (facts.hasMissingImbalance) {
        add(WarningLevel::caution, missingImbalance);
    }
    if (facts.varianceRatio > largeVarianceRatio) {
        add(WarningLevel::caution, unequalVariances);
    }
    if (!findings.flaggingTest.empty()) {
        add(WarningLevel::serious, findings.flaggingTest + " test flags unequal variances.");
    }
    if (findings.isOrdinalOrSkewed) {
        add(WarningLevel::caution,
            "Skew or outlier patterns suggest reviewing Kruskal-Wallis as a sensitivity "
            "analysis.");
    }
    if (!list.empty()) {
        add(WarningLevel::info,
            "A p-value is available, but assumption warnings should be reported with the "
            "result.");
    }
    return list;
}

std::string pairInterpretation(const PairwiseComparisonResult& pair, bool differs) {
    const std::string ending = pair.method == displayName(PostHocMethod::dunn)
                                   ? "Dunn's test (Holm-adjusted)"
                                   : pair.method + " adjustment";
    return pair.groupA + " and " + pair.groupB +
           (differs ? " differ after " : " do not differ after ") + ending + ".";
}

std::string effectInterpretation(double referenceEffect) {
    if (referenceEffect < 0.01) {
        return "The estimated effect appears very small; context matters.";
    }
    if (referenceEffect < 0.06) {
        return "The estimated effect appears small; context matters.";
    }
    if (referenceEffect < 0.14) {
        return "The estimated effect appears moderate; context matters.";
    }
    return "The estimated effect appears large by conventional rules of thumb; context still "
           "matters.";
}

std::vector<std::string> effectSizeMethods(const EffectSizeResult& effects) {
    std::vector<std::string> methods;
    if (effects.etaSquared) {
        methods.emplace_back("eta squared from classic one-way ANOVA sums of squares");
    }
    if (effects.omegaSquared) {
        methods.emplace_back("omega squared from classic one-way ANOVA mean square error");
    }
    if (effects.epsilonSquared) {
        methods.emplace_back("epsilon squared from Kruskal-Wallis H");
    }
    methods.emplace_back("pairwise Cohen's d and Hedges g for two-group contrasts");
    return methods;
}

GroupComparisonInterpretation interpretation(const GroupComparisonAnalysisResult& result,
                                             const GroupFacts& facts,
                                             const Findings& findings) {
    const bool welchBecauseFlagged =
        result.selectedVariant == ANOVAVariant::welch && !findings.flaggingTest.empty();
    GroupComparisonInterpretation text{
        .summary = summary(result),
        .testChoiceReason = testChoiceReason(welchBecauseFlagged, facts.hasUnevenSizes),
        .postHocSummary = postHocSummary(result),
        .whatNotToClaim = {
            "Do not claim causation from this group comparison alone.",
            "Do not claim which groups differ from the omnibus test without post-hoc evidence.",
            "Do not ignore assumption warnings when reporting statistical significance."}};
    for (const AssumptionWarning& warning : result.warnings) {
        text.limitations.push_back(warning.message);
    }
    if (findings.isOrdinalOrSkewed) {
        text.limitations.emplace_back(
            "Kruskal-Wallis should be treated as a sensitivity check when assumptions are weak.");
    }
    return text;
}

}  // namespace GroupComparisonWording

}  // namespace sorvane
