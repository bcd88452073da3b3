#include "SorvaneMac/Screens/Survey/SurveyModelReport.h"

#include <algorithm>

#include "SorvaneCore/Survey/SurveyWording.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SurveyCells.h"
#include "SorvaneMac/Screens/Survey/SurveyDesignTable.h"
#include "SorvaneMac/Screens/Survey/SurveyModelTables.h"

namespace sorvane::SurveyModelReport {

namespace {

using SurveyCells::levelText;
using SurveyModelTables::ratioSymbol;
using SurveyModelTables::slopes;

constexpr std::int64_t fewEventsPerPredictor = 10;

std::string wordsOf(SurveyModelKind model) {
    switch (model) {
        case SurveyModelKind::linear:
            return "linear";
        case SurveyModelKind::logistic:
            return "logistic";
        case SurveyModelKind::poisson:
            return "Poisson";
        case SurveyModelKind::ordinal:
            break;
    }
    return "proportional-odds ordinal";
}

std::string titleOf(SurveyModelKind model) {
    switch (model) {
        case SurveyModelKind::linear:
            return "Survey Linear Regression";
        case SurveyModelKind::logistic:
            return "Survey Logistic Regression";
        case SurveyModelKind::poisson:
            return "Survey Poisson Regression";
        case SurveyModelKind::ordinal:
            break;
    }
    return "Survey Ordinal Regression";
}

std::string effectSentence(const SurveyCoefficient& each, const SurveyModelResult& result) {
    const std::string level = levelText(result.confidenceLevel);
    const std::string figures =
        each.ratio
            ? std::string(ratioSymbol(result.model)) + " = " + ResultText::ratio(*each.ratio, 2) +
                  ", " + level + " [" + ResultText::ratio(*each.ratioLowerBound, 2) + ", " +
                  ResultText::ratio(*each.ratioUpperBound, 2) + "]"
            : "B = " + svFmt(each.estimate, 2) + ", " + level + " [" + svFmt(each.lowerBound, 2) +
                  ", " + svFmt(each.upperBound, 2) + "]";
    return " The effect of " + each.name + " was " +
           std::string(ResultText::significanceWords(each.pValue)) + ", " + figures + ", t(" +
           ResultText::count(result.degreesOfFreedom) + ") = " + svFmt(each.t, 2) + ", " +
           ResultText::pSentence(each.pValue) + ".";
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
    std::string text = "Design-based " + wordsOf(run.model) + " regression of " + run.outcome +
                       (run.event.empty() ? "" : " (" + run.event + ")") + " on " +
                       ResultText::listed(run.predictors) + " with sampling weights (" +
                       run.design.weight + "; " +
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
        tiles.push_back({"Events", ResultText::count(run.events), run.outcome + " = " + run.event});
    }
    if (run.model == SurveyModelKind::ordinal) {
        tiles.push_back(
            {"Levels", ResultText::count(std::ssize(result.thresholds) + 1), "of the outcome"});
    }
    tiles.push_back({"df of the tests", ResultText::count(result.degreesOfFreedom),
                     "the design has " + ResultText::count(result.designDegreesOfFreedom)});
    tiles.push_back({"Cases used", ResultText::count(result.validN),
                     "worth " + svFmt(run.effectiveSampleSize, 0) + " of equal weight"});
    return tiles;
}

std::string scaleOf(const SurveyModelRun& run) {
    switch (run.model) {
        case SurveyModelKind::linear:
            return "Change of " + run.outcome;
        case SurveyModelKind::logistic:
            return "Change of the log odds";
        case SurveyModelKind::poisson:
            return "Change of the log rate";
        case SurveyModelKind::ordinal:
            break;
    }
    return "Change of the log odds of a higher level";
}

/// In standard deviations, as predictors of different units would not share an axis.
Chart chart(const SurveyModelRun& run) {
    IntervalPlot plot{.reference = 0.0};
    const std::vector<SurveyCoefficient> all = slopes(*run.result);
    for (std::size_t at = 0; at < all.size(); ++at) {
        const double deviation = run.deviations[at];
        plot.rows.push_back({all[at].name, all[at].estimate * deviation,
                             all[at].lowerBound * deviation, all[at].upperBound * deviation});
    }
    Chart chart;
    chart.title = "Effects of the predictors";
    chart.subtitle = "For one standard deviation of each, with " +
                     levelText(run.result->confidenceLevel) + "; 0 is no effect";
    chart.xLabel = scaleOf(run);
    chart.plot = std::move(plot);
    return chart;
}

std::vector<std::string> warnings(const SurveyModelRun& run) {
    std::vector<std::string> all = ResultText::messages(run.result->readiness);
    all.insert(all.end(), run.cautions.begin(), run.cautions.end());
    const std::int64_t rarer = std::min(run.events, run.result->validN - run.events);
    if (run.model == SurveyModelKind::logistic &&
        rarer < fewEventsPerPredictor * run.result->predictorCount) {
        all.push_back("The rarer outcome has " + ResultText::count(rarer) + " cases for " +
                      ResultText::count(run.result->predictorCount) +
                      " predictor(s). With fewer than 10 for each, odds ratios tend to be too far "
                      "from 1 and their intervals too narrow.");
    }
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
    tables.push_back(
        SurveyDesignTable::table(run.design, {.sumOfWeights = result.sumOfWeights,
                                              .degreesOfFreedom = result.designDegreesOfFreedom,
                                              .effectiveSampleSize = run.effectiveSampleSize,
                                              .method = result.varianceMethod}));
    return {.title = titleOf(run.model) + ": " + run.outcome,
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
