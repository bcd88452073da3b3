#include "SorvaneMac/Screens/Survey/SurveyWeights.h"

#include <algorithm>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SurveyCautions.h"
#include "SorvaneMac/Screens/Survey/SurveyCells.h"
#include "SorvaneMac/Screens/Survey/SurveyColumns.h"
#include "SorvaneMac/Screens/Survey/SurveySelection.h"

namespace sorvane::SurveyWeights {

namespace {

bool isZeroOrOne(const NumericColumn& values) {
    return std::ranges::all_of(values.levels(), [](const std::optional<double>& level) {
        return !level || *level == 0.0 || *level == 1.0;
    });
}

ReportTable table(const Descriptives& descriptives) {
    ReportTable table;
    table.title = "Weighted descriptives: " + descriptives.variable;
    SurveyCells::addHeaders(table, "Figure", descriptives.estimates.front().second.confidenceLevel);
    for (const auto& [label, estimate] : descriptives.estimates) {
        table.rows.push_back(SurveyCells::cells(estimate));
        table.rows.back().insert(table.rows.back().begin(), label);
    }
    table.note =
        "Design-based estimates with sampling weights; variance: " +
        std::string(SurveyCells::methodName(descriptives.estimates.front().second.varianceMethod)) +
        ".";
    return table;
}

std::vector<std::string> warnings(const Descriptives& descriptives) {
    const WeightedEstimate& first = descriptives.estimates.front().second;
    std::vector<std::string> cautions = ResultText::messages(first.readiness);
    cautions.insert(cautions.end(), descriptives.cautions.begin(), descriptives.cautions.end());
    const std::string missing = SurveyCautions::leftOut(first);
    if (!missing.empty()) {
        cautions.push_back(missing);
    }
    return cautions;
}

Finding finding(const Descriptives& descriptives) {
    const auto& [label, estimate] = descriptives.estimates.front();
    ReportItem item;
    item.id = Uuid::fresh();
    item.title = "Weighted Descriptives: " + descriptives.variable;
    item.apaSummary = "Weighted descriptive statistics for " + descriptives.variable + ": " +
                      label + " = " + SurveyCells::figure(estimate, estimate.estimate) +
                      ", 95% CI [" +
                      SurveyCells::figure(estimate, estimate.confidenceIntervalLower) + ", " +
                      SurveyCells::figure(estimate, estimate.confidenceIntervalUpper) +
                      "], n = " + ResultText::count(estimate.validN) +
                      ", design effect = " + svFmt(estimate.designEffect, 2) + ".";
    item.table = table(descriptives);
    for (const std::string& each : warnings(descriptives)) {
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
    Descriptives result{.variable = variable};
    if (const std::optional<Gate> missing = SurveySelection::designGate(dataset, fields)) {
        result.obstacle = ResultText::sentence(*missing);
        return result;
    }
    constexpr double usualLevel = 0.95;
    ChosenDesign chosen = ChosenDesign::of(dataset, fields);
    chosen.confidenceLevel = usualLevel;
    const SurveyDesign& design = kept.of(chosen);
    const bool isShare = isZeroOrOne(values);
    const std::string what = isShare ? "Proportion" : "Mean";
    const WeightedEstimate first = isShare
                                       ? WeightedEstimators::proportion(values, design, variable)
                                       : WeightedEstimators::mean(values, design, variable);
    if (SurveyCells::isBlocked(first)) {
        result.obstacle = ResultText::obstacle(first.readiness);
        return result;
    }
    result.cautions = SurveyColumns::cautions(design);
    result.estimates = {{what, first},
                        {"Total", WeightedEstimators::total(values, design, variable)}};
    if (!group.empty() && dataset.columnIndex(group)) {
        for (DomainEstimate& each : WeightedEstimators::byGroup(
                 first.estimand, values, *Categories::cells(dataset, group), design, variable)) {
            result.estimates.emplace_back(what + ", " + group + " = " + each.group,
                                          std::move(each.estimate));
        }
    }
    return result;
}

void add(const Descriptives& descriptives, ScreenContent& content) {
    Card card{.title = "Weighted descriptives: " + descriptives.variable, .wide = true};
    if (descriptives.obstacle.empty()) {
        card.subtitle =
            "Of the population, under the design of Survey Design. All other figures "
            "of this page are of the sample, unweighted.";
        card.tables = {table(descriptives)};
        card.tables.front().title.reset();
        card.cautions = warnings(descriptives);
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
