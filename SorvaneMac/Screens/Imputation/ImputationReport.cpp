#include "SorvaneMac/Screens/Imputation/ImputationReport.h"

#include <algorithm>
#include <cmath>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/Imputation/ImputationModel.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/State/JoinedText.h"

namespace sorvane::ImputationReport {

namespace {

/// Filled-in values whose mean lies farther from the observed one, in SD, want a reason.
constexpr double farApart = 0.5;
constexpr std::string_view caution =
    "Imputed values are not answers. They assume that values are missing at random given the "
    "variables of the model, which the data cannot show; infer only from pooled analyses.";

std::vector<std::string> names(const ImputationRun& run, bool (*holds)(const ImputedVariable&)) {
    std::vector<std::string> names;
    for (const ImputedVariable& each : run.variables) {
        if (holds(each)) {
            names.push_back(each.name);
        }
    }
    return names;
}

double distance(const ImputedVariable& variable) {
    return (variable.imputedMoments.mean - variable.observedMoments.mean) /
           variable.observedMoments.standardDeviation;
}

std::vector<std::string> warnings(const ImputationRun& run) {
    std::vector<std::string> cautions = ResultText::messages(run.result.readiness);
    if (!run.excluded.empty()) {
        cautions.push_back(ImputationModel::exclusionNote(run.excluded).substr(1));
    }
    if (run.result.variableNames.size() == 1) {
        cautions.emplace_back(
            "There are no predictors, so that the imputed values know nothing of their cases. "
            "Check variables that go with the one to impute and run it again.");
    }
    if (!run.unpredicted.empty()) {
        cautions.push_back("Values of " + ResultText::listed(run.unpredicted) +
                           " could not be predicted in some or all steps and then kept what they "
                           "held, at the start the mean: predictors are collinear or constant, or "
                           "there are too few cases. Take predictors out and run it again.");
    }
    const std::vector<std::string> apart =
        names(run, [](const ImputedVariable& each) { return std::abs(distance(each)) > farApart; });
    if (!apart.empty()) {
        cautions.push_back("The imputed values of " + ResultText::listed(apart) +
                           " lie more than half an SD from the observed ones. That may be right "
                           "where other cases are missing; see whether it can be explained.");
    }
    return cautions;
}

ReportTable table(const ImputationRun& run) {
    ReportTable table;
    table.title = "Observed and imputed values";
    table.groupHeaders = {{.label = "", .span = 3},
                          {.label = "Observed", .span = 2},
                          {.label = "Imputed", .span = 2},
                          {.label = ""}};
    table.headers = {"Variable", "Missing", "%", "M", "SD", "M", "SD", "Difference in SD"};
    for (const ImputedVariable& each : run.variables) {
        const auto& observed = each.observedMoments;
        const auto& imputed = each.imputedMoments;
        const int decimals = ReportDecimals::ofSample(observed.mean, observed.standardDeviation);
        table.rows.push_back(
            {each.name, ResultText::count(each.missing),
             svFmt(100.0 * static_cast<double>(each.missing) / static_cast<double>(run.rows), 1),
             svFigure(observed.mean, decimals), svFigure(observed.standardDeviation, decimals),
             svFigure(imputed.mean, decimals), svFigure(imputed.standardDeviation, decimals),
             svFmt(distance(each), 2)});
    }
    return table;
}

std::string modelNote(const ImputationRun& run) {
    return "Chained equations with predictive mean matching (" +
           ResultText::count(ImputationOptions().donorCount) + " donors), " +
           ResultText::count(run.result.m) + " copies of " + ResultText::count(run.rows) +
           " cases, " + ResultText::count(run.result.iterations) +
           " sweeps each, with these variables: " + joinedText(run.result.variableNames) +
           ". The difference is that of the means in SD of the observed values.";
}

std::int64_t missingCells(const ImputationRun& run) {
    std::int64_t count = 0;
    for (const ImputedVariable& each : run.variables) {
        count += each.missing;
    }
    return count;
}

std::string sentence(const ImputationRun& run) {
    return "Missing values of " + ResultText::listed(run.targets) + " (" +
           DatasetText::counted(missingCells(run), "cell") +
           ") were imputed by chained equations with predictive mean matching, in " +
           ResultText::count(run.result.m) + " copies after " +
           ResultText::count(run.result.iterations) + " sweeps each.";
}

const ImputedVariable* shownVariable(const ImputationRun& run, const std::string& chosen) {
    const auto found = std::ranges::find(run.variables, chosen, &ImputedVariable::name);
    if (found != run.variables.end() && !found->charts.empty()) {
        return &*found;
    }
    const auto first = std::ranges::find_if(
        run.variables, [](const ImputedVariable& each) { return !each.charts.empty(); });
    return first == run.variables.end() ? nullptr : &*first;
}

}  // namespace

void show(const ImputationRun& run, const std::string& chart, ScreenContent& content) {
    const std::int64_t cells = missingCells(run);
    content.tiles = {
        {"Copies", ResultText::count(run.result.m), "completed datasets"},
        {"Sweeps", ResultText::count(run.result.iterations), "of each copy"},
        {"Cells imputed", ResultText::count(cells),
         DatasetText::share(cells, run.rows * std::ssize(run.targets)) + " of the targets"},
        {"Model", ResultText::count(std::ssize(run.result.variableNames)), "variables"}};
    ReportItem item;
    item.id = Uuid::fresh();
    item.title = "Multiple Imputation";
    item.apaSummary = sentence(run);
    item.table = table(run);
    item.table->note = modelNote(run);
    content.cards.push_back({.title = *item.table->title, .tables = {*item.table}, .wide = true});
    const std::vector<std::string> cautions = warnings(run);
    for (const std::string& each : cautions) {
        *item.table->note += " " + each;
    }
    item.caution = std::string(caution);
    Finding finding{.item = std::move(item), .figure = std::nullopt};
    if (const ImputedVariable* variable = shownVariable(run, chart)) {
        ResultText::addCharts(content, variable->charts);
        finding.figure = variable->charts.front();
        finding.item.figureCaption = finding.figure->title + ".";
    }
    if (!cautions.empty()) {
        content.cards.push_back({.title = "Cautions", .cautions = cautions, .wide = true});
    }
    content.cards.push_back(
        {.title = "What not to claim", .cautions = {std::string(caution)}, .wide = true});
    content.findings.push_back(std::move(finding));
}

void showMissing(const ImportedDataset& dataset,
                 const ImputationFields& fields,
                 ScreenContent& content) {
    const ImputationModel model = ImputationModel::of(dataset, fields);
    ReportTable table;
    table.headers = {"Variable", "Use", "Missing", "%"};
    for (const std::string& name : model.names) {
        const bool isTarget = std::ranges::find(model.targets, name) != model.targets.end();
        const std::int64_t missing = rowsWithoutNumber(dataset, name);
        table.rows.push_back(
            {name, isTarget ? "imputed" : "predictor", ResultText::count(missing),
             svFmt(100.0 * static_cast<double>(missing) / static_cast<double>(dataset.rowCount()),
                   1)});
    }
    Card card{.title = "What would be imputed",
              .subtitle = "Nothing is changed yet.",
              .tables = {std::move(table)},
              .wide = true};
    if (!model.excluded.empty()) {
        card.cautions = {model.exclusionNote().substr(1)};
    }
    content.cards.push_back(std::move(card));
}

}  // namespace sorvane::ImputationReport
