#include "SorvaneMac/Screens/Survey/SurveyModelReport.h"

#include <algorithm>

#include "SorvaneCore/Survey/SurveyWording.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SurveyCells.h"
#include "SorvaneMac/Screens/Survey/SurveyDesignTable.h"
#include "SorvaneMac/Screens/Survey/SurveyModelTables.h"
#include "SorvaneMac/Screens/Survey/SurveyModelWords.h"

namespace sorvane::SurveyModelReport {

namespace {

using SurveyCells::levelText;
using SurveyModelTables::slopes;

std::string effectSentence(const SurveyCoefficient& each, const SurveyModelResult& result) {
    const std::string level = levelText(result.confidenceLevel);
    const int decimals = ReportDecimals::inSentence(each.standardError);
    const std::string figures =
        each.ratio ? ResultText::ratioSentence(SurveyModelWords::of(result.model).ratioSymbol,
                                               *each.ratio, decimals) +
                         ", " + level + " [" + ResultText::ratio(*each.ratioLowerBound, decimals) +
                         ", " + ResultText::ratio(*each.ratioUpperBound, decimals) + "]"
                   : "B = " + svFigure(each.estimate, decimals) + ", " + level + " [" +
                         svFigure(each.lowerBound, decimals) + ", " +
                         svFigure(each.upperBound, decimals) + "]";
    const std::string test = result.degreesOfFreedom < 1
                                 ? ""
                                 : ", t(" + ResultText::count(result.degreesOfFreedom) +
                                       ") = " + svFmt(each.t, 2) + ", " +
                                       ResultText::pSentence(each.pValue);
    return " The effect of " + each.name + " was " +
           std::string(ResultText::significanceWords(each.pValue)) + ", " + figures + test + ".";
}

std::string waldLabel(const SurveyModelResult& result) {
    if (!(result.waldDFNumerator > 0.0)) {
        return "Wald F";
    }
    return "F(" + ResultText::degreesOfFreedom(result.waldDFNumerator) + ", " +
           ResultText::degreesOfFreedom(result.waldDFDenominator) + ")";
}

std::string sentence(const SurveyModelRun& run) {
    const SurveyModelResult& result = *run.result;
    std::string text =
        "Design-based " + std::string(SurveyModelWords::of(run.model).name) + " regression of " +
        run.outcome + (run.event.empty() ? "" : " (" + run.event + ")") + " on " +
        ResultText::listed(run.predictors) + " with sampling weights (" + run.design.weight + "; " +
        SurveyDesignTable::methodWords(run.design, result.varianceMethod) +
        "): " + waldLabel(result) + " = " + svFmt(result.waldF, 2) + ", " +
        ResultText::pSentence(result.waldPValue);
    if (result.rSquared) {
        text += ", R² = " + svFmtBounded(*result.rSquared, 2);
    }
    text += ", n = " + ResultText::count(result.validN) + ".";
    for (const SurveyCoefficient& each : slopes(result)) {
        text += effectSentence(each, result);
    }
    return text;
}

std::vector<Tile> tiles(const SurveyModelRun& run) {
    const SurveyModelResult& result = *run.result;
    std::vector<Tile> tiles = {{waldLabel(result), svFmt(result.waldF, 2),
                                "all predictors, " + ResultText::pSentence(result.waldPValue)}};
    if (result.rSquared) {
        tiles.push_back({"R²", svFmtBounded(*result.rSquared, 3), "in the population"});
    }
    if (run.model == SurveyModelKind::logistic) {
        tiles.push_back({"Events", ResultText::count(result.events.value_or(0)),
                         run.outcome + " = " + run.event});
    }
    if (run.model == SurveyModelKind::ordinal) {
        tiles.push_back(
            {"Levels", ResultText::count(std::ssize(result.thresholds) + 1), "of the outcome"});
    }
    tiles.push_back({"df of the tests",
                     ResultText::count(std::max<std::int64_t>(result.degreesOfFreedom, 0)),
                     "the design has " + ResultText::count(result.designDegreesOfFreedom)});
    tiles.push_back({"Cases used", ResultText::count(result.validN),
                     "worth " + svFmt(result.effectiveSampleSize, 0) + " of equal weight"});
    return tiles;
}

/// In standard deviations, as predictors of different units would not share an axis.
Chart chart(const SurveyModelRun& run) {
    IntervalPlot plot{.reference = 0.0};
    const std::vector<SurveyCoefficient> all = slopes(*run.result);
    for (std::size_t at = 0; at < all.size(); ++at) {
        const double deviation = run.result->predictorDeviations[at];
        plot.rows.push_back({all[at].name, all[at].estimate * deviation,
                             all[at].lowerBound * deviation, all[at].upperBound * deviation});
    }
    Chart chart;
    chart.title = "Effects of the predictors";
    chart.subtitle = "For one standard deviation of each, with " +
                     levelText(run.result->confidenceLevel) + "; 0 is no effect";
    const std::string_view changed = SurveyModelWords::of(run.model).changed;
    chart.xLabel = "Change of " + (changed.empty() ? run.outcome : std::string(changed));
    chart.plot = std::move(plot);
    return chart;
}

std::vector<std::string> warnings(const SurveyModelRun& run) {
    std::vector<std::string> all = ResultText::messages(run.result->readiness);
    all.insert(all.end(), run.cautions.begin(), run.cautions.end());
    return all;
}

}  // namespace

TestReport report(const SurveyModelRun& run) {
    const SurveyModelResult& result = *run.result;
    std::vector<ReportTable> tables = {SurveyModelTables::coefficients(run)};
    if (run.model == SurveyModelKind::ordinal) {
        tables.push_back(SurveyModelTables::thresholds(run));
    }
    tables.push_back(SurveyModelTables::summary(run));
    tables.push_back(SurveyModelTables::comparison(run));
    tables.push_back(SurveyDesignTable::table(run.design, SurveyDesignTable::Figures::of(result)));
    return {.title = std::string(SurveyModelWords::of(run.model).title) + ": " + run.outcome,
            .sentence = sentence(run),
            .tiles = tiles(run),
            .tables = std::move(tables),
            .charts = {chart(run)},
            .figureCaption = "Effects of the predictors of " + run.outcome +
                             " for one standard deviation of each, with " +
                             levelText(result.confidenceLevel) + ".",
            .caution = ResultText::running(SurveyWording::cautions(run.model)),
            .warnings = warnings(run)};
}

Gate refusal(const SurveyModelRun& run) {
    return {.title = "The model could not be estimated",
            .lead = run.outcome + " on " + ResultText::listed(run.predictors) + " under " +
                    run.design.weight,
            .text = run.result ? ResultText::obstacle(run.result->readiness)
                               : "The outcome does not suit the model. Pick another one in the "
                                 "Setup panel."};
}

}  // namespace sorvane::SurveyModelReport
