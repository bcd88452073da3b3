#include "SorvaneMac/Screens/Structural/StructuralReport.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "SorvaneCore/Models/Structural/SEMWording.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/BayesFactorLine.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Structural/SEMAdmissibility.h"
#include "SorvaneMac/Screens/Structural/StructuralDiagram.h"

namespace sorvane::StructuralReport {

namespace {

constexpr int decimals = 3;
/// Two tables of so many columns stand side by side.
constexpr std::size_t narrowTable = 4;
constexpr std::string_view closing =
    "Fit indices are guidance, not proof; a fitting model is one of many that could fit. "
    "Indicators are treated as continuous.";
constexpr std::string_view figureCaption =
    "Structural equation model path diagram. Standardized loadings and fit indices are in the "
    "parameter tables below.";
constexpr std::string_view didNotConverge = "Did not converge";
constexpr std::string_view nothingToTest =
    "The model has no degrees of freedom: it reproduces any covariances, so that its fit tests "
    "nothing.";
constexpr std::string_view noStandardError =
    "Some free coefficients have no standard error: the data do not settle them. Look for a factor "
    "with too few indicators or for paths that can stand for one another.";
constexpr BayesFactorLine::Sides sides = {
    .alternative = "the fitted model over the saturated model",
    .null = "the saturated model over the fitted model",
    .caption =
        "Approximate: BIC-based Bayes factor (Raftery 1995), not a JZS prior. Values above 1 "
        "support the model's restrictions"};

bool hasRegressions(const SEMResult& result) {
    return std::ranges::any_of(result.parameters, [](const SEMParameter& each) {
        return each.op == rawValue(SEMSyntaxOperator::regression);
    });
}

std::string sentence(const SEMResult& result) {
    return std::string("A ") +
           (hasRegressions(result) ? "structural equation model" : "confirmatory factor analysis") +
           " was estimated by maximum likelihood (N = " + ResultText::count(result.n) +
           "). Model fit: " + fitText(result) + "." +
           (result.converged ? "" : " " + SEMWording::notConverged());
}

std::string whatNotToClaim(const SEMResult& result) {
    return (result.converged ? "" : SEMWording::notConverged() + " ") + std::string(closing);
}

Tile sizeOfMisfit(const SEMFitIndices& fit) {
    return {"RMSEA", svFmtBounded(fit.rmsea, decimals),
            fit.rmseaLower && fit.rmseaUpper
                ? "90% CI [" + svFmtBounded(fit.rmseaLower, decimals) + ", " +
                      svFmtBounded(fit.rmseaUpper, decimals) + "]"
                : "no degrees of freedom"};
}

std::vector<Tile> tiles(const SEMResult& result) {
    const SEMFitIndices& fit = result.fit;
    std::vector<Tile> tiles;
    if (!result.converged) {
        tiles.push_back({"Estimation", std::string(didNotConverge),
                         ResultText::count(result.iterations) + " iterations"});
    }
    const std::int64_t rows = result.readiness->totalRows;
    tiles.insert(
        tiles.end(),
        {{"χ²(" + ResultText::count(fit.degreesOfFreedom) + ")", svFmt(fit.chiSquare, 2),
          std::isfinite(fit.pValue) ? ResultText::pSentence(fit.pValue) : "nothing to test"},
         {"CFI", svFmtBounded(fit.cfi, decimals), "TLI " + svFmtBounded(fit.tli, decimals)},
         sizeOfMisfit(fit),
         {"SRMR", svFmtBounded(fit.srmr, decimals),
          ResultText::count(result.freeParameters) + " free parameters"},
         {"Cases used", ResultText::count(result.n),
          result.n == rows ? "all rows" : "complete, of " + ResultText::count(rows) + " rows"}});
    return tiles;
}

SEMDiagramPayload payload(const SEMResult& result) {
    SEMDiagramPayload diagram{.latent = result.latent, .observed = result.observed};
    for (const SEMParameter& each : result.parameters) {
        diagram.parameters.push_back(
            {.lhs = each.lhs, .op = each.op, .rhs = each.rhs, .std = each.standardized});
    }
    diagram.fit = (result.converged ? "" : std::string(didNotConverge) + ": ") + fitText(result);
    return diagram;
}

/// The tables after the parameters, in their order.
std::vector<ReportTable> furtherTables(const StructuralRun& run) {
    std::vector<ReportTable> tables = {fitTable(*run.result)};
    for (ReportTable& table :
         std::vector{explainedVariance(*run.result), residualCorrelations(run)}) {
        if (!table.rows.empty()) {
            tables.push_back(std::move(table));
        }
    }
    return tables;
}

Finding finding(const StructuralRun& run) {
    const SEMResult& result = *run.result;
    ReportItem item;
    item.id = Uuid::fresh();
    item.title =
        hasRegressions(result) ? "Structural Equation Model" : "Confirmatory Factor Analysis";
    item.apaSummary = sentence(result);
    item.table = parameterTable(result);
    for (const std::string& warning : cautions(result)) {
        *item.table->note += " " + warning;
    }
    item.extraTables = furtherTables(run);
    item.caution = whatNotToClaim(result);
    item.figureCaption = std::string(figureCaption);
    item.semDiagram = payload(result);
    return {.item = std::move(item), .figure = StructuralDiagram::ofResult(result)};
}

Card fitCard(const SEMResult& result) {
    Card card{.title = "Model fit", .tables = {fitTable(result)}, .wide = true};
    if (!result.converged) {
        return card;
    }
    const auto factor =
        BayesFactors::semApproximateBF(result.fit.chiSquare, result.fit.degreesOfFreedom, result.n);
    if (const auto passage = BayesFactorLine::passage(factor, sides)) {
        card.passages.push_back(*passage);
    }
    return card;
}

}  // namespace

std::vector<std::string> cautions(const SEMResult& result) {
    std::vector<std::string> messages = ResultText::messages(*result.readiness);
    if (result.fit.degreesOfFreedom == 0) {
        messages.emplace_back(nothingToTest);
    }
    const auto lacksError = [](const SEMParameter& each) {
        return !each.isFixed && !each.standardError;
    };
    if (std::ranges::any_of(result.parameters, lacksError)) {
        messages.emplace_back(noStandardError);
    }
    std::ranges::move(SEMAdmissibility::cautions(result), std::back_inserter(messages));
    return messages;
}

void show(const StructuralRun& run, ScreenContent& content) {
    const SEMResult& result = *run.result;
    const Chart diagram = StructuralDiagram::ofResult(result);
    content.tiles = tiles(result);
    content.cards.push_back(
        {.title = diagram.title, .subtitle = diagram.subtitle, .charts = {diagram}, .wide = true});
    content.cards.push_back(fitCard(result));
    std::vector<ReportTable> tables = furtherTables(run);
    tables.front() = parameterTable(result);
    for (ReportTable& table : tables) {
        const bool isWide = table.headers.size() > narrowTable;
        content.cards.push_back(
            {.title = *table.title, .tables = {std::move(table)}, .wide = isWide});
    }
    const std::vector<std::string> warnings = cautions(result);
    if (!warnings.empty()) {
        content.cards.push_back({.title = "Cautions", .cautions = warnings, .wide = true});
    }
    content.cards.push_back(
        {.title = "What not to claim", .cautions = {whatNotToClaim(result)}, .wide = true});
    content.cards.push_back(
        {.title = "The model as it was fitted", .preformatted = run.text, .wide = true});
    content.findings.push_back(finding(run));
}

}  // namespace sorvane::StructuralReport
