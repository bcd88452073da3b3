#include "SorvaneMac/Screens/Regression/RatioEffects.h"

#include <utility>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Regression/RegressionCharts.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::RatioEffects {

ReportTable coefficientTable(const std::vector<RatioEffect>& coefficients,
                             const std::string& symbol) {
    ReportTable table;
    table.title = "Coefficients";
    table.headers = {"Predictor", "B", "SE", "z", "p", symbol, "95% CI Lower", "95% CI Upper"};
    for (const RatioEffect& each : coefficients) {
        const int decimals = ReportDecimals::of(each.standardError);
        table.rows.push_back({each.name, svFigure(each.estimate, decimals),
                              svFigure(each.standardError, decimals), svFmt(each.z, 2),
                              ResultText::pCell(each.pValue),
                              ResultText::ratio(each.ratio, decimals),
                              ResultText::ratio(each.ratioLowerBound, decimals),
                              ResultText::ratio(each.ratioUpperBound, decimals)});
    }
    return table;
}

std::string sentences(const std::vector<RatioEffect>& coefficients, const std::string& symbol) {
    std::string text;
    for (std::size_t at = 1; at < coefficients.size(); ++at) {
        const RatioEffect& each = coefficients[at];
        const int decimals = ReportDecimals::inSentence(each.standardError);
        text += " The effect of " + each.name + " was " +
                std::string(ResultText::significanceWords(each.pValue)) + ", " +
                ResultText::ratioSentence(symbol, each.ratio, decimals) + ", 95% CI [" +
                ResultText::ratio(each.ratioLowerBound, decimals) + ", " +
                ResultText::ratio(each.ratioUpperBound, decimals) + "], " +
                ResultText::pSentence(each.pValue) + ".";
    }
    return text;
}

Chart chart(const std::vector<RatioEffect>& coefficients, const std::string& scale) {
    std::vector<IntervalPlot::Row> rows;
    for (std::size_t at = 1; at < coefficients.size(); ++at) {
        const RatioEffect& each = coefficients[at];
        rows.push_back({each.name, each.estimate, each.lowerBound, each.upperBound});
    }
    return RegressionCharts::coefficients(std::move(rows), scale);
}

}  // namespace sorvane::RatioEffects
