#include "SorvaneMac/Screens/Survey/SurveyCorrelationReport.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Survey/SurveyWording.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Report/SignificanceFormatting.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SharedSentences.h"
#include "SorvaneMac/Screens/Survey/SurveyCells.h"
#include "SorvaneMac/Screens/Survey/SurveyDesignTable.h"

namespace sorvane::SurveyCorrelationReport {

namespace {

using SurveyCells::levelText;

/// A table, and a chart of intervals, of more pairs is not read any more.
constexpr std::size_t mostPairsInTable = 45;
constexpr std::size_t mostPairsInChart = 15;

bool isBlocked(const SurveyCorrelationResult& pair) {
    return pair.readiness.status == AnalysisReadinessStatus::blocked;
}

std::string nameOf(const SurveyCorrelationResult& pair) {
    return pair.xName + " – " + pair.yName;
}

std::vector<std::string> names(const SurveyCorrelationRun& run) {
    std::vector<std::string> all;
    for (const SurveyVariable& each : run.variables) {
        all.push_back(each.name);
    }
    return all;
}

/// The pair of the variables at these positions, the first being the smaller.
const SurveyCorrelationResult& pairAt(const SurveyCorrelationRun& run,
                                      std::size_t first,
                                      std::size_t second) {
    const std::size_t before = first * (2 * run.variables.size() - first - 1) / 2;
    return run.pairs[before + second - first - 1];
}

/// The first pair that could be estimated: its method is that of all.
const SurveyCorrelationResult& leading(const SurveyCorrelationRun& run) {
    return *std::ranges::find(run.pairs, false, &isBlocked);
}

const SurveyCorrelationResult& strongest(const SurveyCorrelationRun& run) {
    const auto strength = [](const SurveyCorrelationResult& pair) {
        return isBlocked(pair) ? -1.0 : std::abs(pair.r);
    };
    return *std::ranges::max_element(run.pairs, {}, strength);
}

std::string starred(const SurveyCorrelationResult& pair) {
    return isBlocked(pair)
               ? "--"
               : svFmt(pair.r, 2) + std::string(SignificanceFormatting::stars(pair.pValue));
}

ReportTable matrixTable(const SurveyCorrelationRun& run) {
    ReportTable table;
    table.title = "Weighted means, standard deviations and correlations";
    table.headers = {"Variable", "M", "SD"};
    for (std::size_t i = 0; i < run.variables.size(); ++i) {
        const std::string number = ResultText::count(static_cast<std::int64_t>(i) + 1);
        table.headers.push_back(number);
        const SurveyVariable& variable = run.variables[i];
        const int decimals = ReportDecimals::ofSample(variable.mean, variable.standardDeviation);
        std::vector<std::string> row = {number + ". " + variable.name,
                                        svFigure(variable.mean, decimals),
                                        svFigure(variable.standardDeviation, decimals)};
        for (std::size_t j = 0; j < run.variables.size(); ++j) {
            row.push_back(j < i ? starred(pairAt(run, j, i)) : j == i ? "—" : "");
        }
        table.rows.push_back(std::move(row));
    }
    table.note =
        "All figures are weighted. Each correlation is of the cases that hold both variables; M "
        "and SD are of all that hold the variable. " +
        std::string(ResultText::starLegend);
    return table;
}

ReportTable pairTable(const SurveyCorrelationRun& run) {
    ReportTable table;
    table.title = "Correlations under the design";
    table.headers = {"Pair", "r", "SE", "LL", "UL", "t", "df", "p", "n", "Unweighted r"};
    table.groupHeaders = {{.label = "", .span = 3},
                          {.label = levelText(leading(run).confidenceLevel), .span = 2},
                          {.label = "", .span = 5}};
    const std::size_t shown = std::min(run.pairs.size(), mostPairsInTable);
    for (std::size_t at = 0; at < shown; ++at) {
        const SurveyCorrelationResult& pair = run.pairs[at];
        const std::string n = ResultText::count(pair.validN);
        const std::string plain = svFmtBounded(run.unweighted[at], 3);
        if (isBlocked(pair)) {
            table.rows.push_back(
                {nameOf(pair), "--", "--", "--", "--", "--", "--", "--", n, plain});
            continue;
        }
        table.rows.push_back({nameOf(pair), svFmtBounded(pair.r, 3),
                              svFmtBounded(pair.standardError, 3),
                              svFmtBounded(pair.confidenceIntervalLower, 3),
                              svFmtBounded(pair.confidenceIntervalUpper, 3), svFmt(pair.t, 2),
                              ResultText::count(pair.designDegreesOfFreedom),
                              ResultText::pCell(pair.pValue), n, plain});
    }
    table.note = "Standard errors: " +
                 SurveyDesignTable::methodWords(run.design, leading(run).varianceMethod) +
                 ". Tests by t on the design's df; intervals by Fisher's z.";
    if (shown < run.pairs.size()) {
        *table.note += " Showing first " + ResultText::count(static_cast<std::int64_t>(shown)) +
                       " of " + ResultText::count(std::ssize(run.pairs)) + ".";
    }
    return table;
}

ReportTable designTable(const SurveyCorrelationRun& run) {
    std::vector<SurveyDesignTable::Figures> figures;
    for (const SurveyCorrelationResult& pair : run.pairs) {
        if (!isBlocked(pair)) {
            figures.push_back(SurveyDesignTable::Figures::of(pair));
        }
    }
    return SurveyDesignTable::table(run.design, figures);
}

std::string sentence(const SurveyCorrelationRun& run) {
    if (run.pairs.size() == 1) {
        return SurveyWording::summary(run.pairs.front());
    }
    return "Correlations of " + ResultText::listed(names(run)) +
           " were estimated for the population with sampling weights (" + run.design.weight + "; " +
           SurveyDesignTable::methodWords(run.design, leading(run).varianceMethod) +
           "). The strongest is that of " + strongest(run).xName + " and " + strongest(run).yName +
           ". " + SurveyWording::summary(strongest(run));
}

std::vector<Tile> tiles(const SurveyCorrelationRun& run) {
    const SurveyCorrelationResult& pair = strongest(run);
    return {{run.pairs.size() == 1 ? "Pearson r" : "Strongest r", svFmtBounded(pair.r, 3),
             pair.xName + " and " + pair.yName},
            {"SE", svFmtBounded(pair.standardError, 3),
             std::string(SurveyDesignTable::methodName(run.design, pair.varianceMethod))},
            {levelText(pair.confidenceLevel),
             svFmtBounded(pair.confidenceIntervalLower, 3) + " to " +
                 svFmtBounded(pair.confidenceIntervalUpper, 3),
             ResultText::pSentence(pair.pValue)},
            {"Cases used", ResultText::count(pair.validN),
             "t with " + ResultText::count(pair.designDegreesOfFreedom) + " df"}};
}

Chart intervalChart(const SurveyCorrelationRun& run) {
    IntervalPlot plot{.reference = 0.0};
    for (const SurveyCorrelationResult& pair : run.pairs) {
        if (!isBlocked(pair)) {
            plot.rows.push_back(
                {nameOf(pair), pair.r, pair.confidenceIntervalLower, pair.confidenceIntervalUpper});
        }
    }
    Chart chart;
    chart.title = "Correlations and intervals";
    chart.subtitle = levelText(leading(run).confidenceLevel) + " under the design";
    chart.xLabel = "Correlation in the population";
    chart.plot = std::move(plot);
    return chart;
}

Chart matrixChart(const SurveyCorrelationRun& run) {
    HeatMap map{.rows = names(run), .columns = names(run), .range = ValueRange{-1.0, 1.0}};
    for (std::size_t i = 0; i < run.variables.size(); ++i) {
        for (std::size_t j = 0; j < run.variables.size(); ++j) {
            map.values.push_back(i == j ? 1.0 : pairAt(run, std::min(i, j), std::max(i, j)).r);
        }
    }
    Chart chart;
    chart.title = "Correlations";
    chart.subtitle = "Weighted, in the population";
    chart.plot = std::move(map);
    return chart;
}

std::int64_t leftOut(const SurveyCorrelationResult& pair) {
    return pair.totalN - pair.validN;
}

/// One sentence for all pairs, each of which leaves out rows of its own.
std::string rowsLeftOut(const SurveyCorrelationRun& run) {
    const auto [least, most] = std::ranges::minmax(run.pairs, {}, &leftOut);
    if (leftOut(most) == 0) {
        return "";
    }
    return leftOut(least) == leftOut(most)
               ? SurveyWording::rowsDropped(leftOut(most))
               : "Each pair leaves out the rows that lack one of its values, from " +
                     ResultText::count(leftOut(least)) + " to " + ResultText::count(leftOut(most)) +
                     " of them; they are treated as if they had not been sampled.";
}

std::vector<std::string> warnings(const SurveyCorrelationRun& run) {
    std::vector<SharedSentences::Saying> sayings;
    std::vector<std::string> blocked;
    for (const SurveyCorrelationResult& pair : run.pairs) {
        if (isBlocked(pair)) {
            blocked.push_back(nameOf(pair));
            continue;
        }
        std::vector<std::string> messages = ResultText::messages(pair.readiness);
        std::erase(messages, SurveyWording::rowsDropped(leftOut(pair)));
        sayings.push_back({.name = nameOf(pair), .sentences = std::move(messages)});
    }
    std::vector<std::string> all = SharedSentences::told(sayings);
    if (std::string missing = rowsLeftOut(run); !missing.empty()) {
        all.push_back(std::move(missing));
    }
    all.insert(all.end(), run.cautions.begin(), run.cautions.end());
    if (!blocked.empty()) {
        all.push_back("No correlation could be estimated of these pairs: " +
                      ResultText::listed(blocked) + ".");
    }
    if (run.pairs.size() > 1) {
        all.push_back("The " + ResultText::count(std::ssize(run.pairs)) +
                      " tests are not corrected for their number; some may be significant by "
                      "chance alone.");
    }
    return all;
}

}  // namespace

TestReport report(const SurveyCorrelationRun& run) {
    return {
        .title = "Survey Correlation: " + ResultText::listed(names(run)),
        .sentence = sentence(run),
        .tiles = tiles(run),
        .tables = {matrixTable(run), pairTable(run), designTable(run)},
        .charts = {run.pairs.size() <= mostPairsInChart ? intervalChart(run) : matrixChart(run)},
        .figureCaption = "Correlations under the sampling design.",
        .caution = ResultText::running(SurveyWording::correlationCautions()),
        .warnings = warnings(run)};
}

std::optional<Gate> refusal(const SurveyCorrelationRun& run) {
    if (!std::ranges::all_of(run.pairs, &isBlocked)) {
        return std::nullopt;
    }
    return Gate{.title = "The correlations could not be estimated",
                .lead = ResultText::listed(names(run)) + " under " + run.design.weight,
                .text = ResultText::obstacle(run.pairs.front().readiness)};
}

}  // namespace sorvane::SurveyCorrelationReport
