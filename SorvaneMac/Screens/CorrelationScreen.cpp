#include "SorvaneMac/Screens/CorrelationScreen.h"

#include <cmath>

#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Report/SignificanceFormatting.h"
#include "SorvaneMac/Screens/BayesFactorLine.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

using VariableLists::numericVariables;

constexpr std::string_view caution =
    "Correlation is association, not causation; check for outliers and nonlinearity.";
constexpr std::size_t seededMatrixVariables = 4;

std::vector<std::string> measureRow(std::string name,
                                    const std::optional<CorrelationResult>& result) {
    if (!result) {
        return {std::move(name), "--", "--", "--"};
    }
    return {std::move(name), svFmt(result->r, 3), ResultText::count(result->n),
            ResultText::pCell(result->pValue)};
}

std::string starred(const std::optional<CorrelationResult>& result) {
    if (!result) {
        return "--";
    }
    return svFmt(result->r, 2) + std::string(SignificanceFormatting::stars(result->pValue));
}

Gate needTwoVariables() {
    return {.title = "Need two numeric variables",
            .lead = "Pick two different variables",
            .text =
                "Choose them in the Setup panel. Numeric columns are offered; set a column "
                "numeric in Variable Types if it is missing."};
}

std::string strengthWord(double r) {
    const double size = std::abs(r);
    return size < 0.1 ? "negligible" : size < 0.3 ? "small" : size < 0.5 ? "moderate" : "large";
}

}  // namespace

void corrSeed(CorrelationFields& fields, const ImportedDataset& dataset) {
    const VariableLists::List numeric = numericVariables(dataset);
    Seeding::fillFirst(fields.corrX, numeric);
    Seeding::fillFirst(fields.corrY, VariableLists::without(numeric, {fields.corrX->name}));
    Seeding::fillFirst(fields.corrMatrixVars, numeric, seededMatrixVariables);
}

SetupForm CorrelationScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const VariableLists::List numeric = numericVariables(state_.dataset());
    SetupForm form;
    form.title = "Correlation";
    form.controls = {
        HeadingControl{"PAIR"},
        variablePicker("First variable", fields_.corrX, numeric),
        variablePicker("Second variable", fields_.corrY, numeric),
        optionalVariablePicker("Control for", fields_.corrControl, numeric, "No control variable"),
        HeadingControl{"MATRIX"},
        withUnavailable(variableCheckList("Study variables", fields_.corrMatrixVars, numeric),
                        fields_.corrMatrixVars.get(), numeric),
    };
    return form;
}

std::optional<Gate> CorrelationScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    const VariableLists::List numeric = numericVariables(state_.dataset());
    for (const Field<VariableName>* field :
         {&fields_.corrX, &fields_.corrY, &fields_.corrControl}) {
        if (std::optional<Gate> gone =
                SelectionGates::goneColumn(*field, numeric, "numeric columns")) {
            return gone;
        }
    }
    if (fields_.corrX->isBlank() || fields_.corrY->isBlank() ||
        fields_.corrX.get() == fields_.corrY.get()) {
        return needTwoVariables();
    }
    return SelectionGates::goneColumn(fields_.corrMatrixVars, numeric, "numeric columns");
}

ChartVariable CorrelationScreen::variable(const Field<VariableName>& field) const {
    return {.name = field->name, .values = state_.dataset().numericColumn(field->name)};
}

PairCorrelations CorrelationScreen::pairCorrelations(const NumericColumn& x,
                                                     const NumericColumn& y) const {
    PairCorrelations pair{.pearson = RelationshipTests::pearson(x, y),
                          .spearman = RelationshipTests::spearman(x, y),
                          .kendallTauB = RelationshipTests::kendallTauB(x, y),
                          .partial = std::nullopt};
    if (!fields_.corrControl->isBlank()) {
        const std::vector<NumericColumn> control = {
            state_.dataset().numericColumn(fields_.corrControl->name)};
        pair.partial = RelationshipTests::partialCorrelation(x, y, control);
    }
    return pair;
}

ScreenContent CorrelationScreen::content() const {
    ScreenContent content;
    content.title = "Correlation";
    content.subtitle = "Association between pairs of numeric variables.";
    content.gate = gate();
    if (content.gate) {
        return content;
    }
    const ChartVariable x = variable(fields_.corrX);
    const ChartVariable y = variable(fields_.corrY);
    const PairCorrelations pair = pairCorrelations(x.values, y.values);
    const auto& pearson = pair.pearson;
    content.tiles = {
        {"Pearson r", pearson ? svFmtBounded(pearson->r, 3) : "--",
         pearson ? strengthWord(pearson->r) + " association" : "could not be computed"},
        {"p-value", pearson ? ResultText::pTile(pearson->pValue) : "--", "two-tailed"},
        {"Cases used", pearson ? ResultText::count(pearson->n) : "--", "complete pairs"}};
    content.cards.push_back(pairCard(pair));
    const Chart drawn = scatterChart(x, y);
    content.cards.push_back({.title = drawn.title, .subtitle = drawn.subtitle, .charts = {drawn}});
    if (pearson) {
        content.findings.push_back(pairFinding(pair, drawn));
    }
    const std::vector<std::string> names =
        FormControls::chosen(fields_.corrMatrixVars.get(), numericVariables(state_.dataset()));
    if (names.size() >= 2) {
        Finding finding = matrixFinding(names);
        content.cards.push_back({.title = "Correlation matrix",
                                 .subtitle = "Means, standard deviations and Pearson correlations",
                                 .tables = {*finding.item.table},
                                 .wide = true});
        content.findings.push_back(std::move(finding));
    }
    content.cards.push_back(
        {.title = "What not to claim", .cautions = {std::string(caution)}, .wide = true});
    return content;
}

Card CorrelationScreen::pairCard(const PairCorrelations& pair) const {
    ReportTable table;
    table.headers = {"Measure", "r", "n", "p"};
    table.rows = {measureRow("Pearson r", pair.pearson), measureRow("Spearman rho", pair.spearman),
                  measureRow("Kendall tau-b", pair.kendallTauB)};
    if (!fields_.corrControl->isBlank()) {
        table.rows.push_back(
            measureRow("Partial r, controlling " + fields_.corrControl->name, pair.partial));
    }
    Card card{.title = fields_.corrX->name + " and " + fields_.corrY->name,
              .subtitle = "Pairs with both values present",
              .tables = {std::move(table)}};
    if (pair.pearson) {
        if (auto line = BayesFactorLine::passage(
                BayesFactors::correlationBF(pair.pearson->r, pair.pearson->n),
                {.alternative = "an association",
                 .null = "no association",
                 .caption = BayesFactorLine::correlationCaption})) {
            card.passages.push_back(std::move(*line));
        }
    }
    return card;
}

Finding CorrelationScreen::pairFinding(const PairCorrelations& pair, const Chart& scatter) const {
    const CorrelationResult& pearson = *pair.pearson;
    const std::string& x = fields_.corrX->name;
    const std::string& y = fields_.corrY->name;
    ReportItem item;
    item.id = Uuid::fresh();
    item.title = "Correlation: " + x + " and " + y;
    item.apaSummary = "A Pearson correlation between " + x + " and " + y + " was " +
                      std::string(ResultText::significanceWords(pearson.pValue)) + ", r(" +
                      ResultText::count(pearson.n - 2) + ") = " + svFmtBounded(pearson.r, 2) +
                      ", " + ResultText::pSentence(pearson.pValue) + ".";
    item.table = pairCard(pair).tables.front();
    item.table->note =
        "Pairs with a missing value are left out. Spearman and Kendall are rank "
        "correlations; p is two-tailed.";
    item.caution = std::string(caution);
    item.figureCaption = "Scatter plot of " + y + " by " + x + " with the least-squares line.";
    return {.item = std::move(item), .figure = scatter};
}

ReportTable CorrelationScreen::matrixTable(const std::vector<std::string>& names) const {
    std::vector<NumericColumn> columns;
    ReportTable table;
    table.headers = {"Variable", "M", "SD"};
    for (std::size_t j = 0; j < names.size(); ++j) {
        columns.push_back(state_.dataset().numericColumn(names[j]));
        table.headers.push_back(ResultText::count(static_cast<std::int64_t>(j) + 1));
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        const DescriptiveSummary summary = DescriptiveStatistics::summary(columns[i]);
        const int decimals = ReportDecimals::ofSample(summary.mean, summary.standardDeviation);
        std::vector<std::string> row = {
            ResultText::count(static_cast<std::int64_t>(i) + 1) + ". " + names[i],
            svFigure(summary.mean, decimals), svFigure(summary.standardDeviation, decimals)};
        for (std::size_t j = 0; j < names.size(); ++j) {
            row.push_back(j < i    ? starred(RelationshipTests::pearson(columns[i], columns[j]))
                          : j == i ? "—"
                                   : "");
        }
        table.rows.push_back(std::move(row));
    }
    table.note = std::string("Pairwise deletion. ") + std::string(ResultText::starLegend);
    return table;
}

Finding CorrelationScreen::matrixFinding(const std::vector<std::string>& names) const {
    ReportItem item;
    item.id = Uuid::fresh();
    item.title = "Descriptive Statistics and Correlations for Study Variables";
    item.apaSummary = "Descriptive statistics and Pearson correlations for " +
                      ResultText::count(static_cast<std::int64_t>(names.size())) +
                      " variables. See the table for means, standard deviations, and pairwise "
                      "correlations with significance markers.";
    item.table = matrixTable(names);
    item.caution = std::string(caution);
    return {.item = std::move(item), .figure = std::nullopt};
}

Guide CorrelationScreen::guide() const {
    return {.answers =
                "How closely two numeric variables move together, as a straight line "
                "(Pearson) or in rank order (Spearman, Kendall).",
            .needs =
                "At least three cases with both values. Pearson suits roughly linear "
                "relations without far outliers: look at the scatter plot first.",
            .doNotClaim = {"Do not claim that one variable causes the other.",
                           "Do not read a correlation near zero as no relation: it may be curved.",
                           "Do not pick out single significant cells of a large matrix without "
                           "saying how many were looked at."}};
}

Json CorrelationScreen::record() const {
    return toJson(pairCorrelations(variable(fields_.corrX).values, variable(fields_.corrY).values));
}

}  // namespace sorvane
