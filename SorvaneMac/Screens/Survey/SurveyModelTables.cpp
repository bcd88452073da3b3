#include "SorvaneMac/Screens/Survey/SurveyModelTables.h"

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SurveyCells.h"
#include "SorvaneMac/Screens/Survey/SurveyDesignTable.h"
#include "SorvaneMac/Screens/Survey/SurveyModelWords.h"

namespace sorvane::SurveyModelTables {

namespace {

using Cells = std::vector<std::string>;

Cells cells(const SurveyCoefficient& each, bool hasRatios) {
    const int decimals = ReportDecimals::of(each.standardError);
    Cells row = {each.name, svFigure(each.estimate, decimals),
                 svFigure(each.standardError, decimals), svFmt(each.t, 2),
                 ResultText::pCell(each.pValue)};
    if (!hasRatios) {
        row.push_back(svFigure(each.lowerBound, decimals));
        row.push_back(svFigure(each.upperBound, decimals));
    } else if (each.ratio) {
        row.push_back(ResultText::ratio(*each.ratio, decimals));
        row.push_back(ResultText::ratio(*each.ratioLowerBound, decimals));
        row.push_back(ResultText::ratio(*each.ratioUpperBound, decimals));
    } else {
        row.insert(row.end(), 3, "");
    }
    return row;
}

std::string meaningOfB(const SurveyModelWords& words) {
    const std::string change = "B is the change of " +
                               std::string(words.changed.empty() ? "the outcome" : words.changed) +
                               " for a step of one";
    return words.ratioSymbol.empty() ? change + "."
                                     : change + "; " + std::string(words.ratioSymbol) + " is the " +
                                           std::string(words.ratioName) + ".";
}

/// The result's row of the same position; null where that fit has none.
const SurveyCoefficient* rowAt(const std::vector<SurveyCoefficient>& all, std::size_t at) {
    return at < all.size() ? &all[at] : nullptr;
}

std::vector<SurveyCoefficient> slopesOf(const std::optional<SurveyModelResult>& result) {
    return result ? slopes(*result) : std::vector<SurveyCoefficient>();
}

std::string designEffect(const SurveyCoefficient& designed, const SurveyCoefficient* alone) {
    if (!alone || !(alone->standardError > 0.0)) {
        return "--";
    }
    const double ratio = designed.standardError / alone->standardError;
    return svFmt(ratio * ratio, 2);
}

}  // namespace

std::vector<SurveyCoefficient> slopes(const SurveyModelResult& result) {
    const bool hasIntercept = result.model != SurveyModelKind::ordinal;
    return {result.coefficients.begin() + (hasIntercept && !result.coefficients.empty() ? 1 : 0),
            result.coefficients.end()};
}

ReportTable coefficients(const SurveyModelRun& run) {
    const SurveyModelResult& result = *run.result;
    const SurveyModelWords& words = SurveyModelWords::of(run.model);
    const bool hasRatios = !words.ratioSymbol.empty();
    const std::string level = SurveyCells::levelText(result.confidenceLevel);
    ReportTable table;
    table.title = "Coefficients";
    table.headers = {"Predictor", "B", "SE", "t", "p"};
    if (hasRatios) {
        table.headers.emplace_back(words.ratioSymbol);
    }
    table.headers.insert(table.headers.end(), {"LL", "UL"});
    table.groupHeaders = {
        {.label = "", .span = hasRatios ? 6 : 5},
        {.label = hasRatios ? level + " of " + table.headers[5] : level, .span = 2}};
    for (const SurveyCoefficient& each : result.coefficients) {
        table.rows.push_back(cells(each, hasRatios));
    }
    table.note =
        meaningOfB(words) +
        " Standard errors: " + SurveyDesignTable::methodWords(run.design, result.varianceMethod) +
        (result.degreesOfFreedom < 1
             ? ". The design has no degrees of freedom left for tests and intervals."
             : ". Tests and intervals by t on " + ResultText::count(result.degreesOfFreedom) +
                   " df, those of the design less the predictors.");
    return table;
}

ReportTable thresholds(const SurveyModelRun& run) {
    ReportTable table;
    table.title = "Thresholds";
    table.headers = {"Between levels", "Estimate", "SE", "LL", "UL"};
    table.groupHeaders = {
        {.label = "", .span = 3},
        {.label = SurveyCells::levelText(run.result->confidenceLevel), .span = 2}};
    for (const SurveyCoefficient& each : run.result->thresholds) {
        const int decimals = ReportDecimals::of(each.standardError);
        table.rows.push_back(
            {each.name, svFigure(each.estimate, decimals), svFigure(each.standardError, decimals),
             svFigure(each.lowerBound, decimals), svFigure(each.upperBound, decimals)});
    }
    table.note =
        "A threshold is the log odds of a level up to the cut point where all predictors are 0.";
    return table;
}

ReportTable summary(const SurveyModelRun& run) {
    const SurveyModelResult& result = *run.result;
    ReportTable table;
    table.title = "Model summary";
    table.headers = {"n", "Sum of weights", "Wald F", "df1", "df2", "p"};
    table.rows = {{ResultText::count(result.validN), SurveyCells::weightSum(result.sumOfWeights),
                   svFmt(result.waldF, 2), ResultText::degreesOfFreedom(result.waldDFNumerator),
                   ResultText::degreesOfFreedom(result.waldDFDenominator),
                   ResultText::pCell(result.waldPValue)}};
    table.note = "Wald F tests whether all predictors together have no effect.";
    if (run.model == SurveyModelKind::linear) {
        table.headers.insert(table.headers.end(), {"R²", "Residual SD"});
        table.rows.front().push_back(svFmtBounded(result.rSquared, 3));
        table.rows.front().push_back(
            svFigure(result.residualStandardDeviation,
                     ReportDecimals::of(result.residualStandardDeviation.value_or(0.0))));
        *table.note += " R² and the residual SD are estimates for the population.";
    }
    if (run.model == SurveyModelKind::logistic) {
        table.headers.insert(table.headers.begin() + 1, "Events");
        table.rows.front().insert(table.rows.front().begin() + 1,
                                  ResultText::count(result.events.value_or(0)));
        *table.note += " An event is " + run.outcome + " = " + run.event +
                       "; events are counted in the sample, unweighted.";
    }
    return table;
}

ReportTable comparison(const SurveyModelRun& run) {
    const std::vector<SurveyCoefficient> designed = slopes(*run.result);
    const std::vector<SurveyCoefficient> alone = slopesOf(run.weightsOnly);
    const std::vector<SurveyCoefficient> plain = slopesOf(run.unweighted);
    ReportTable table;
    table.title = "What the design changes";
    table.headers = {"Predictor", "B", "SE"};
    table.groupHeaders = {{.label = "", .span = 1}, {.label = "As designed", .span = 2}};
    if (run.weightsOnly) {
        table.headers.insert(table.headers.end(), {"SE by weights alone", "Design effect"});
        table.groupHeaders->push_back({.label = "", .span = 2});
    }
    table.headers.insert(table.headers.end(), {"B", "SE"});
    table.groupHeaders->push_back({.label = "Unweighted", .span = 2});
    for (std::size_t at = 0; at < designed.size(); ++at) {
        const SurveyCoefficient& own = designed[at];
        const int decimals = ReportDecimals::of(own.standardError);
        Cells row = {own.name, svFigure(own.estimate, decimals),
                     svFigure(own.standardError, decimals)};
        if (run.weightsOnly) {
            const SurveyCoefficient* weighted = rowAt(alone, at);
            row.push_back(weighted ? svFigure(weighted->standardError, decimals) : "--");
            row.push_back(designEffect(own, weighted));
        }
        const SurveyCoefficient* unweighted = rowAt(plain, at);
        row.push_back(unweighted ? svFigure(unweighted->estimate, decimals) : "--");
        row.push_back(unweighted ? svFigure(unweighted->standardError, decimals) : "--");
        table.rows.push_back(std::move(row));
    }
    table.note =
        "All standard errors allow for unequal variances. A B that changes much without the "
        "weights hints that the model misses something by which the sample was drawn.";
    if (run.weightsOnly) {
        *table.note +=
            " The design effect is the squared ratio of the SE under the design to that from the "
            "weights alone.";
    }
    return table;
}

}  // namespace sorvane::SurveyModelTables
