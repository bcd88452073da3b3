#include "SorvaneMac/Screens/CompareMeans/GroupComparison.h"

#include <algorithm>
#include <chrono>

#include "SorvaneCore/Analyses/AssumptionAudit/AssumptionAudit.h"
#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonEngine.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/AssumptionChecks.h"
#include "SorvaneMac/Screens/BayesFactorLine.h"
#include "SorvaneMac/Screens/GroupCharts.h"
#include "SorvaneMac/Screens/GroupSelection.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::GroupComparison {

namespace {

constexpr std::string_view caution = "A group difference is association, not causation.";

GroupSummary totalOf(const GroupComparisonAnalysisResult& result) {
    GroupSummary total{.groupLabel = "Total"};
    std::vector<double> values;
    for (const GroupSummary& group : result.groupSummaries) {
        if (group.n < GroupSelection::fewestCases) {
            continue;
        }
        values.insert(values.end(), group.validValues.begin(), group.validValues.end());
        total.missingN += group.missingN;
    }
    total.n = static_cast<std::int64_t>(values.size());
    total.mean = DescriptiveStatistics::mean(values);
    total.standardDeviation = DescriptiveStatistics::standardDeviation(values);
    total.standardError = DescriptiveStatistics::standardError(values);
    if (const auto interval = DescriptiveStatistics::confidenceIntervalForMean(values)) {
        total.confidenceIntervalLower = interval->lower;
        total.confidenceIntervalUpper = interval->upper;
    }
    const auto [least, greatest] = std::minmax_element(values.begin(), values.end());
    total.minimum = *least;
    total.maximum = *greatest;
    return total;
}

/// The mean group size, cut down to a whole number.
std::int64_t casesPerGroup(const ANOVAResult& classic) {
    const std::int64_t groups = classic.dfBetween + 1;
    return (classic.dfWithin + groups) / groups;
}

/// Of the figures of one group: the groups of one outcome can differ in size by powers of ten.
int decimalsOf(const GroupSummary& group) {
    return ReportDecimals::ofSample(group.mean, group.standardDeviation);
}

std::vector<std::string> summaryCells(const GroupSummary& group) {
    const int decimals = decimalsOf(group);
    const int ofError = ReportDecimals::of(group.standardError.value_or(0.0), decimals);
    return {group.groupLabel,
            ResultText::count(group.n),
            svFigure(group.mean, decimals),
            svFigure(group.standardDeviation, decimals),
            svFigure(group.standardError, ofError),
            svFigure(group.confidenceIntervalLower, ofError),
            svFigure(group.confidenceIntervalUpper, ofError),
            svFigure(group.minimum, decimals),
            svFigure(group.maximum, decimals)};
}

ReportTable descriptivesTable(const OneWayRun& run) {
    ReportTable table;
    table.title = "Descriptives";
    table.headers = {run.result->groupName, "N",          "Mean",
                     "Std. Deviation",      "Std. Error", "95% CI Lower",
                     "95% CI Upper",        "Minimum",    "Maximum"};
    for (const GroupSummary& group : run.result->groupSummaries) {
        table.rows.push_back(summaryCells(group));
    }
    table.rows.push_back(summaryCells(run.total));
    return table;
}

std::vector<std::string> testRow(const ANOVAResult& test) {
    return {std::string(displayName(test.variant)),
            "",
            ResultText::degreesOfFreedom(test.dfNumerator),
            test.variant == ANOVAVariant::kruskalWallis
                ? ""
                : ResultText::degreesOfFreedom(test.dfDenominator),
            "",
            svFmt(test.f, 2),
            ResultText::starredPCell(test.pValue)};
}

ReportTable sourceTable(const GroupComparisonAnalysisResult& result) {
    ReportTable table;
    table.title = "Analysis of variance";
    table.headers = {"Test / Source", "Sum of Squares", "df1", "df2",
                     "Mean Square",   "Statistic",      "Sig."};
    if (const std::optional<ANOVAResult>& classic = result.classicANOVA) {
        const double msWithin = classic->ssWithin / static_cast<double>(classic->dfWithin);
        const int decimals = ReportDecimals::of(msWithin, 2);
        table.rows.push_back(
            {"Between Groups", svFigure(classic->ssBetween, decimals),
             ResultText::count(classic->dfBetween), "",
             svFigure(classic->ssBetween / static_cast<double>(classic->dfBetween), decimals),
             svFmt(classic->f, 2), ResultText::starredPCell(classic->pValue)});
        table.rows.push_back({"Within Groups", svFigure(classic->ssWithin, decimals), "",
                              ResultText::count(classic->dfWithin), svFigure(msWithin, decimals),
                              "", ""});
    }
    for (const auto* test :
         {&result.welchANOVA, &result.brownForsytheANOVA, &result.kruskalWallis}) {
        if (*test) {
            table.rows.push_back(testRow(**test));
        }
    }
    table.note = std::string(ResultText::starLegend);
    return table;
}

/// The difference of two means, to the digits of the one that is known to more.
std::string differenceCell(const PairwiseComparisonResult& pair,
                           const std::vector<GroupSummary>& groups) {
    const auto decimalsOfGroup = [&groups](const std::string& label) {
        return decimalsOf(*std::ranges::find(groups, label, &GroupSummary::groupLabel));
    };
    return svFigure(pair.meanDifference,
                    std::max(decimalsOfGroup(pair.groupA), decimalsOfGroup(pair.groupB)));
}

ReportTable pairTable(const GroupComparisonAnalysisResult& result) {
    const bool isOfRanks = result.postHocMethod == PostHocMethod::dunn;
    ReportTable table;
    table.title = "Multiple comparisons: " + std::string(displayName(result.postHocMethod));
    table.headers = {"Group A", "Group B", "Mean Diff. (I-J)", "df", "Raw p", "Adj. p", "Hedges g"};
    for (const PairwiseComparisonResult& pair : result.pairwiseComparisons) {
        table.rows.push_back(
            {pair.groupA, pair.groupB,
             isOfRanks ? svFmt(pair.meanDifference, 2)
                       : differenceCell(pair, result.groupSummaries),
             pair.degreesOfFreedom ? ResultText::degreesOfFreedom(*pair.degreesOfFreedom) : "--",
             ResultText::pCell(pair.rawPValue), ResultText::starredPCell(pair.adjustedPValue),
             svFmt(pair.hedgesG, 2)});
    }
    table.note = std::string(isOfRanks ? "The difference is that of the mean ranks. " : "") +
                 std::string(ResultText::starLegend);
    return table;
}

/// "F(2, 27)", or "H(2)" for the rank test.
std::string statisticName(const ANOVAResult& test) {
    const std::string df1 = ResultText::degreesOfFreedom(test.dfNumerator);
    return test.variant == ANOVAVariant::kruskalWallis
               ? "H(" + df1 + ")"
               : "F(" + df1 + ", " + ResultText::degreesOfFreedom(test.dfDenominator) + ")";
}

std::optional<double> effectOf(const GroupComparisonAnalysisResult& result) {
    return result.effectSizes.etaSquared ? result.effectSizes.etaSquared
                                         : std::optional(result.selectedANOVA.etaSquared);
}

Finding finding(const OneWayRun& run) {
    const GroupComparisonAnalysisResult& result = *run.result;
    const ANOVAResult& test = result.selectedANOVA;
    const std::string variant(displayName(result.selectedVariant));
    ReportItem item;
    item.id = Uuid::fresh();
    item.title = "Analysis of Variance for " + result.outcomeName + " by " + result.groupName;
    item.apaSummary = "A one-way ANOVA (" + variant + ") compared " + result.outcomeName +
                      " across " + result.groupName + ". The effect was " +
                      std::string(ResultText::significanceWords(test.pValue)) + ", " +
                      statisticName(test) + " = " + svFmt(test.f, 2) + ", " +
                      ResultText::pSentence(test.pValue) +
                      ", η² = " + svFmtBounded(effectOf(result), 2) + ".";
    item.table = sourceTable(result);
    item.table->note =
        "η² is eta-squared (" + variant + "). " + std::string(ResultText::starLegend);
    item.extraTables = std::vector{descriptivesTable(run)};
    if (!result.pairwiseComparisons.empty()) {
        item.extraTables->push_back(pairTable(result));
    }
    item.caution = std::string(caution);
    item.figureCaption = "Mean " + result.outcomeName + " by " + result.groupName +
                         " with 95% confidence intervals.";
    return {.item = std::move(item), .figure = run.charts.front()};
}

Card interpretationCard(const GroupComparisonAnalysisResult& result) {
    const GroupComparisonInterpretation& words = result.interpretation;
    return {.title = "In plain words",
            .paragraphs = {words.summary, words.testChoiceReason, words.postHocSummary}};
}

Card effectCard(const GroupComparisonAnalysisResult& result) {
    const EffectSizeResult& sizes = result.effectSizes;
    return {.title = "Effect sizes",
            .paragraphs = {sizes.interpretation},
            .facts = {{"η²", svFmtBounded(sizes.etaSquared, 3)},
                      {"ω²", svFmtBounded(sizes.omegaSquared, 3)},
                      {"ε² (ranks)", svFmtBounded(sizes.epsilonSquared, 3)},
                      {"Rows without a group", ResultText::count(result.missingGroupRows)}}};
}

Card assumptions(const OneWayRun& run) {
    Card card = AssumptionChecks::card(run.assumptions);
    if (AssumptionChecks::hints(run.assumptions, AssumptionChecks::rankHint)) {
        card.links.push_back(AssumptionChecks::rankTestLink(
            "kruskalWallis", run.result->outcomeName, run.result->groupName));
    }
    return card;
}

}  // namespace

Gate tooFewGroups(const ImportedDataset& dataset,
                  const std::string& outcome,
                  const std::string& grouping) {
    Gate gate{.title = "Cannot run ANOVA", .lead = outcome + " by " + grouping};
    if (const std::optional<std::size_t> column = dataset.columnIndex(grouping)) {
        const AnalysisReadiness readiness = GroupComparisonEngine::readiness(
            dataset.rows.column(*column), dataset.numericColumn(outcome));
        for (const std::string& message : ResultText::messages(readiness)) {
            gate.text += message + " ";
        }
    }
    gate.text += "Pick another outcome or grouping field.";
    return gate;
}

OneWayRun run(const ImportedDataset& dataset,
              const std::string& outcome,
              const std::string& grouping) {
    OneWayRun run;
    const std::optional<std::size_t> column = dataset.columnIndex(grouping);
    if (!column) {
        return run;
    }
    run.result = GroupComparisonEngine::analyze(
        dataset.rows.column(*column), dataset.numericColumn(outcome),
        {.outcomeName = outcome,
         .groupName = grouping,
         .timestamp = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now())});
    if (!run.result) {
        return run;
    }
    run.total = totalOf(*run.result);
    std::vector<NamedNumericGroup> groups;
    for (GroupSummary& group : run.result->groupSummaries) {
        groups.push_back({.name = group.groupLabel, .values = group.validValues});
    }
    if (const std::optional<ANOVAResult>& classic = run.result->classicANOVA) {
        run.bayesFactor = BayesFactors::oneWayAnovaBF(classic->f, classic->dfBetween + 1,
                                                      casesPerGroup(*classic));
    }
    run.assumptions = AssumptionAudit::groupComparisonAudit(groups);
    const GroupCharts::Names names{.outcome = outcome, .grouping = grouping};
    run.charts = {GroupCharts::means(groups, names), GroupCharts::boxes(groups, names)};
    return run;
}

void show(const OneWayRun& run, ScreenContent& content) {
    const GroupComparisonAnalysisResult& result = *run.result;
    const ANOVAResult& test = result.selectedANOVA;
    content.subtitle = result.outcomeName + " by " + result.groupName;
    content.tiles = {
        {"Selected test", std::string(displayName(result.selectedVariant)), ""},
        {statisticName(test), svFmt(test.f, 2), ""},
        {"p-value", ResultText::pTile(test.pValue),
         std::string(ResultText::significanceWords(test.pValue))},
        {"Cases used", ResultText::count(run.total.n), "in groups of two or more values"}};
    content.cards.push_back(
        {.title = "Descriptives", .tables = {descriptivesTable(run)}, .wide = true});
    Card source{.title = "Analysis of variance", .tables = {sourceTable(result)}, .wide = true};
    if (auto line = BayesFactorLine::passage(run.bayesFactor,
                                             {.alternative = "differences between the groups",
                                              .null = "equal group means",
                                              .caption = BayesFactorLine::anovaCaption})) {
        source.passages.push_back(std::move(*line));
    }
    content.cards.push_back(std::move(source));
    if (!result.pairwiseComparisons.empty()) {
        const ReportTable pairs = pairTable(result);
        content.cards.push_back({.title = *pairs.title, .tables = {pairs}, .wide = true});
    }
    ResultText::addCharts(content, run.charts);
    content.cards.push_back(interpretationCard(result));
    content.cards.push_back(effectCard(result));
    content.cards.push_back(assumptions(run));
    if (!result.interpretation.limitations.empty()) {
        content.cards.push_back(
            {.title = "Cautions", .cautions = result.interpretation.limitations});
    }
    content.cards.push_back(
        {.title = "What not to claim", .cautions = result.interpretation.whatNotToClaim});
    content.findings.push_back(finding(run));
}

}  // namespace sorvane::GroupComparison
