#include "SorvaneMac/Screens/RelationshipsScreen.h"

#include <array>

#include "SorvaneCore/Analyses/AssumptionAudit/AssumptionAudit.h"
#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/AssumptionChecks.h"
#include "SorvaneMac/Screens/BayesFactorLine.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/CorrelationScreen.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

constexpr std::int64_t fewestPairs = 3;
constexpr BayesFactorLine::Sides sides = {.alternative = "an association",
                                          .null = "no association",
                                          .caption = BayesFactorLine::correlationCaption};

constexpr std::string_view caution =
    "Correlation is association, not causation; check for outliers and nonlinearity.";

ReportTable checkTable(const std::vector<AssumptionFinding>& findings) {
    ReportTable table;
    table.title = "Assumption checks";
    table.headers = {"Check", "Target", "Statistic", "Value", "p", "Result"};
    for (const AssumptionFinding& finding : findings) {
        table.rows.push_back({finding.check, finding.target, finding.statisticLabel,
                              svFmt(finding.statistic, 3),
                              finding.pValue ? ResultText::pCell(*finding.pValue) : "--",
                              std::string(displayName(finding.severity))});
    }
    return table;
}

Finding finding(const PairEvidence& evidence, const std::string& x, const std::string& y) {
    const CorrelationResult& pearson = *evidence.pearson;
    ReportItem item;
    item.id = Uuid::fresh();
    item.title = "Assumptions and evidence: " + x + " and " + y;
    item.apaSummary = "The Pearson correlation of " + x + " and " + y + " was r(" +
                      ResultText::count(pearson.n - 2) + ") = " + svFmtBounded(pearson.r, 2) +
                      ", " + ResultText::pSentence(pearson.pValue) + ".";
    if (const auto line = BayesFactorLine::passage(evidence.bayesFactor, sides)) {
        item.apaSummary += " " + line->text;
    }
    item.table = checkTable(evidence.assumptions);
    item.table->note =
        "Of the cases with both values. " + std::string(BayesFactorLine::correlationCaption) + ".";
    item.caution = std::string(caution);
    return {.item = std::move(item), .figure = std::nullopt};
}

PairEvidence evidenceOf(const ChartVariable& x, const ChartVariable& y) {
    const std::vector<std::string> names = {x.name, y.name};
    const auto rows = CompleteCases::rows(std::array{&x.values, &y.values});
    const std::vector<std::vector<double>> values = {CompleteCases::gathered(x.values, rows),
                                                     CompleteCases::gathered(y.values, rows)};
    PairEvidence evidence{.pearson = RelationshipTests::pearson(x.values, y.values),
                          .bayesFactor = std::nullopt,
                          .assumptions = AssumptionAudit::correlationAudit(values, names)};
    if (evidence.pearson) {
        evidence.bayesFactor =
            BayesFactors::correlationBF(evidence.pearson->r, evidence.pearson->n);
    }
    return evidence;
}

Gate needTwoVariables() {
    return {.title = "Need two numeric variables",
            .lead = "Pick two different variables",
            .text =
                "Choose them in the Setup panel. Numeric columns are offered; set a column "
                "numeric in Variable Types if it is missing."};
}

Gate tooFewPairs() {
    return {.title = "Too few complete pairs",
            .lead = "",
            .text =
                "Fewer than three cases have a number in both columns. Choose columns that were "
                "measured on the same cases."};
}

}  // namespace

void RelationshipsScreen::seed() {
    corrSeed(fields_, state_.dataset());
}

SetupForm RelationshipsScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const VariableLists::List numeric = VariableLists::numericVariables(state_.dataset());
    SetupForm form;
    form.title = "Relationships";
    form.controls = {HeadingControl{"PAIR"},
                     variablePicker("First variable", fields_.corrX, numeric),
                     variablePicker("Second variable", fields_.corrY, numeric)};
    OptionControls::addNote(form, gate());
    return form;
}

std::optional<Gate> RelationshipsScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    const VariableLists::List numeric = VariableLists::numericVariables(state_.dataset());
    for (const Field<VariableName>* field : {&fields_.corrX, &fields_.corrY}) {
        if (std::optional<Gate> gone =
                SelectionGates::goneColumn(*field, numeric, "numeric columns")) {
            return gone;
        }
    }
    if (fields_.corrX->isBlank() || fields_.corrY->isBlank() ||
        fields_.corrX.get() == fields_.corrY.get()) {
        return needTwoVariables();
    }
    const std::array<std::string, 2> names = {fields_.corrX->name, fields_.corrY->name};
    if (!Categories::hasCompleteRows(state_.dataset(), fewestPairs, names)) {
        return tooFewPairs();
    }
    return std::nullopt;
}

ChartVariable RelationshipsScreen::variable(const Field<VariableName>& field) const {
    return {.name = field->name, .values = state_.dataset().numericColumn(field->name)};
}

ScreenContent RelationshipsScreen::content() const {
    ScreenContent content;
    content.title = std::string(title(id()));
    content.subtitle = "Assumptions and evidence for the association of two variables.";
    content.gate = gate();
    if (!content.gate) {
        addEvidence(variable(fields_.corrX), variable(fields_.corrY), content);
    }
    return content;
}

void RelationshipsScreen::addEvidence(const ChartVariable& x,
                                      const ChartVariable& y,
                                      ScreenContent& content) {
    const PairEvidence evidence = evidenceOf(x, y);
    const std::optional<CorrelationResult>& pearson = evidence.pearson;
    content.tiles = {
        {"Pearson r", pearson ? svFmtBounded(pearson->r, 3) : "--",
         pearson ? "n = " + ResultText::count(pearson->n) : "could not be computed"},
        {"p-value", pearson ? ResultText::pTile(pearson->pValue) : "--", "two-tailed"}};
    const Chart drawn = scatterChart(x, y);
    Card pair{.title = drawn.title};
    if (auto line = BayesFactorLine::passage(evidence.bayesFactor, sides)) {
        pair.passages.push_back(std::move(*line));
    }
    pair.charts = {drawn};
    content.cards.push_back(std::move(pair));
    content.cards.push_back(AssumptionChecks::card(evidence.assumptions));
    if (pearson) {
        content.findings.push_back(finding(evidence, x.name, y.name));
    }
    content.cards.push_back(
        {.title = "What not to claim",
         .cautions = {std::string(caution)},
         .links = {{.label = "Go to Correlation", .screen = StudioScreen::correlation}},
         .wide = true});
}

Json RelationshipsScreen::record() const {
    return toJson(evidenceOf(variable(fields_.corrX), variable(fields_.corrY)));
}

Guide RelationshipsScreen::guide() const {
    return {.answers =
                "Whether the association of two numeric variables can be summed up by one "
                "coefficient: is it a straight line, are there far outliers, how are the values "
                "of each distributed.",
            .needs =
                "Two numeric variables and at least three cases with both values; with fewer than "
                "about thirty, a few cases decide what the plot looks like.",
            .doNotClaim = {"Do not claim causation from association.",
                           "Do not take a passed check as proof that an assumption holds; with "
                           "few cases hardly any departure is found.",
                           "Do not carry the association beyond the range of values observed."}};
}

}  // namespace sorvane
