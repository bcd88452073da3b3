#include "SorvaneMac/Screens/Survey/SurveyCells.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::SurveyCells {

namespace {

bool isProportion(const WeightedEstimate& estimate) {
    return estimate.estimand == WeightedEstimand::proportion;
}

/// Totals are large: from a thousand on they take no decimals, unless their error has some. Figures
/// of small units take as many as leave a digit of their error, or of themselves where they have
/// none.
int decimals(const WeightedEstimate& estimate) {
    constexpr double large = 1000.0;
    const double error =
        estimate.standardError > 0.0 ? estimate.standardError : std::abs(estimate.estimate);
    switch (estimate.estimand) {
        case WeightedEstimand::proportion:
            return 3;
        case WeightedEstimand::ratio:
            return ReportDecimals::of(error, 4) - 1;
        case WeightedEstimand::total:
            return std::abs(estimate.estimate) >= large && estimate.standardError >= 1.0
                       ? std::min(0, ReportDecimals::inSentence(error))
                       : ReportDecimals::inSentence(error);
        case WeightedEstimand::mean:
            break;
    }
    return ReportDecimals::inSentence(error);
}

}  // namespace

bool isBlocked(const WeightedEstimate& estimate) {
    return estimate.readiness.status == AnalysisReadinessStatus::blocked;
}

std::string_view word(WeightedEstimand estimand) {
    switch (estimand) {
        case WeightedEstimand::mean:
            return "mean";
        case WeightedEstimand::total:
            return "total";
        case WeightedEstimand::proportion:
            return "proportion";
        case WeightedEstimand::ratio:
            break;
    }
    return "ratio";
}

std::string_view capitalWord(WeightedEstimand estimand) {
    switch (estimand) {
        case WeightedEstimand::mean:
            return "Mean";
        case WeightedEstimand::total:
            return "Total";
        case WeightedEstimand::proportion:
            return "Proportion";
        case WeightedEstimand::ratio:
            break;
    }
    return "Ratio";
}

std::string errorFigure(const WeightedEstimate& estimate) {
    const int places = ReportDecimals::of(estimate.standardError, decimals(estimate));
    return isProportion(estimate)
               ? svFmtBounded(estimate.standardError,
                              places > mostDecimals ? decimals(estimate) : places)
               : svFigure(estimate.standardError, places);
}

std::string levelText(double confidenceLevel) {
    return NumberText::fixed(100.0 * confidenceLevel, 0) + "% CI";
}

std::string weightSum(double sum) {
    return svFigure(sum, ReportDecimals::of(sum, 1));
}

std::string interval(const WeightedEstimate& estimate) {
    return "[" + figure(estimate, estimate.confidenceIntervalLower) + ", " +
           figure(estimate, estimate.confidenceIntervalUpper) + "]";
}

std::string_view methodName(DesignVarianceMethod method) {
    switch (method) {
        case DesignVarianceMethod::taylorLinearization:
            return "Taylor linearization";
        case DesignVarianceMethod::replicateWeights:
            return "Replicate weights";
        case DesignVarianceMethod::naiveWeighted:
            break;
    }
    return "Weights only (naive)";
}

std::string figure(const WeightedEstimate& estimate, double value) {
    return isProportion(estimate) ? svFmtBounded(value, decimals(estimate))
                                  : svFigure(value, decimals(estimate));
}

std::vector<std::string> cells(const WeightedEstimate& estimate) {
    const std::string n = ResultText::count(estimate.validN);
    if (isBlocked(estimate)) {
        return {"--", "--", "--", "--", "--", n, "--"};
    }
    return {figure(estimate, estimate.estimate),
            errorFigure(estimate),
            figure(estimate, estimate.confidenceIntervalLower),
            figure(estimate, estimate.confidenceIntervalUpper),
            ResultText::count(estimate.designDegreesOfFreedom),
            n,
            svFmt(estimate.designEffect, 2)};
}

void addHeaders(ReportTable& table, std::string first, double confidenceLevel) {
    table.groupHeaders = {{.label = "", .span = 3},
                          {.label = levelText(confidenceLevel), .span = 2},
                          {.label = "", .span = 3}};
    table.headers = {std::move(first), "Estimate", "SE", "LL", "UL", "df", "n", "Design effect"};
}

}  // namespace sorvane::SurveyCells
