#include "SorvaneMac/Screens/Survey/SurveyWeights.h"

#include <algorithm>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SurveyCautions.h"
#include "SorvaneMac/Screens/Survey/SurveyCells.h"
#include "SorvaneMac/Screens/Survey/SurveyColumns.h"
#include "SorvaneMac/Screens/Survey/SurveyDesignTable.h"
#include "SorvaneMac/Screens/Survey/SurveySelection.h"

namespace sorvane::SurveyWeights {

namespace {

bool isZeroOrOne(const NumericColumn& values) {
    return std::ranges::all_of(values.levels(), [](const std::optional<double>& level) {
        return !level || *level == 0.0 || *level == 1.0;
    });
}

ReportTable table(const Descriptives& descriptives) {
    const SurveyRun& run = descriptives.run;
    ReportTable table;
    table.title = "Weighted descriptives: " + run.variable;
    SurveyCells::addHeaders(table, "Figure", run.estimate.confidenceLevel);
    for (const auto& [label, estimate] : labelled(descriptives)) {
        table.rows.push_back(SurveyCells::cells(estimate));
        table.rows.back().insert(table.rows.back().begin(), label);
    }
    table.note =
        "Design-based estimates with sampling weights; variance: " +
        std::string(SurveyDesignTable::methodName(run.design, run.estimate.varianceMethod)) + ".";
    return table;
}

Finding finding(const Descriptives& descriptives) {
    const SurveyRun& run = descriptives.run;
    const WeightedEstimate& estimate = run.estimate;
    ReportItem item;
    item.id = Uuid::fresh();
    item.title = "Weighted Descriptives: " + run.variable;
    item.apaSummary = "Weighted descriptive statistics for " + run.variable + ": " +
                      std::string(SurveyCells::capitalWord(run.estimand)) + " = " +
                      SurveyCells::figure(estimate, estimate.estimate) + ", 95% CI [" +
                      SurveyCells::figure(estimate, estimate.confidenceIntervalLower) + ", " +
                      SurveyCells::figure(estimate, estimate.confidenceIntervalUpper) +
                      "], n = " + ResultText::count(estimate.validN) +
                      ", design effect = " + svFmt(estimate.designEffect, 2) + ".";
    item.table = table(descriptives);
    for (const std::string& each : SurveyCautions::warnings(run)) {
        *item.table->note += " " + each;
    }
    item.caution = std::string(SurveyCautions::notToClaim);
    return {.item = std::move(item), .figure = std::nullopt};
}

}  // namespace

void sayUnweighted(ScreenContent& content) {
    if (content.findings.empty()) {
        return;
    }
    content.cards.insert(
        content.cards.begin(),
        Card{.title = "Survey weights", .cautions = {std::string(unweightedNotice)}, .wide = true});
    for (Finding& finding : content.findings) {
        ReportItem& item = finding.item;
        std::optional<std::string>& said = item.table ? item.table->note : item.caution;
        said = said && !said->empty() ? *said + " " + std::string(unweightedNotice)
                                      : std::string(unweightedNotice);
    }
}

const SurveyDesign& KeptDesign::of(const ChosenDesign& chosen) {
    if (!chosen_ || !(*chosen_ == chosen)) {
        chosen_ = chosen;
        design_ = chosen.design();
    }
    return design_;
}

Descriptives descriptives(const ImportedDataset& dataset,
                          const SurveyFields& fields,
                          const Described& described,
                          KeptDesign& kept) {
    const auto& [variable, values, group] = described;
    Descriptives result{.run = {.variable = variable}};
    if (const std::optional<Gate> missing = SurveySelection::designGate(dataset, fields)) {
        result.obstacle = ResultText::sentence(*missing);
        return result;
    }
    constexpr double usualLevel = 0.95;
    ChosenDesign chosen = ChosenDesign::of(dataset, fields);
    chosen.confidenceLevel = usualLevel;
    const SurveyDesign& design = kept.of(chosen);
    const bool isShare = isZeroOrOne(values);
    SurveyRun& run = result.run;
    run.estimand = isShare ? WeightedEstimand::proportion : WeightedEstimand::mean;
    run.design = chosen.used(design);
    run.estimate = isShare ? WeightedEstimators::proportion(values, design, variable)
                           : WeightedEstimators::mean(values, design, variable);
    if (SurveyCells::isBlocked(run.estimate)) {
        result.obstacle = ResultText::obstacle(run.estimate.readiness);
        return result;
    }
    run.cautions = SurveyColumns::cautions(design);
    result.total = WeightedEstimators::total(values, design, variable);
    if (!group.empty() && dataset.columnIndex(group)) {
        run.group = group;
        run.groups = WeightedEstimators::byGroup(
            run.estimand, values, *Categories::cells(dataset, group), design, variable);
    }
    return result;
}

std::vector<std::pair<std::string, WeightedEstimate>> labelled(const Descriptives& descriptives) {
    if (!descriptives.obstacle.empty()) {
        return {};
    }
    const SurveyRun& run = descriptives.run;
    const std::string what(SurveyCells::capitalWord(run.estimand));
    std::vector<std::pair<std::string, WeightedEstimate>> all = {{what, run.estimate},
                                                                 {"Total", descriptives.total}};
    for (const DomainEstimate& each : run.groups) {
        all.emplace_back(what + ", " + run.group + " = " + each.group, each.estimate);
    }
    return all;
}

void add(const Descriptives& descriptives, ScreenContent& content) {
    Card card{.title = "Weighted descriptives: " + descriptives.run.variable, .wide = true};
    if (descriptives.obstacle.empty()) {
        card.subtitle =
            "Of the population, under the design of Survey Design. All other figures "
            "of this page are of the sample, unweighted.";
        card.tables = {table(descriptives)};
        card.tables.front().title.reset();
        card.cautions = SurveyCautions::warnings(descriptives.run);
        content.findings.push_back(finding(descriptives));
    } else {
        card.cautions = {
            "Survey weights are on, but their design cannot be used here, so that "
            "all figures are unweighted. " +
            descriptives.obstacle};
    }
    content.cards.insert(content.cards.begin(), std::move(card));
}

}  // namespace sorvane::SurveyWeights
