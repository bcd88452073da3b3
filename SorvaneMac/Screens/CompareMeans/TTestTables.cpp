#include "SorvaneMac/Screens/CompareMeans/TTestTables.h"

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::TTestTables {

ReportTable testTable(const TTestResult& test, const DifferenceInterval& interval) {
    // Two digits of what the difference is known by.
    const int decimals = ReportDecimals::of((interval.upper - interval.lower) / 4.0, 2);
    ReportTable table;
    table.title = "t-test";
    table.headers = {"t", "df", "p", "Mean difference"};
    for (std::string& header : interval.headers()) {
        table.headers.push_back(std::move(header));
    }
    table.headers.emplace_back("d");
    table.rows = {{svFmt(test.t, 2), ResultText::degreesOfFreedom(test.degreesOfFreedom),
                   ResultText::pCell(test.pValue), svFigure(test.meanDifference, decimals),
                   svFigure(interval.lower, decimals), svFigure(interval.upper, decimals),
                   svFmt(test.effectSizeD, 2)}};
    return table;
}

std::vector<Tile> tiles(const TTestResult& test, std::int64_t cases, const std::string& unit) {
    return {{"t(" + ResultText::degreesOfFreedom(test.degreesOfFreedom) + ")", svFmt(test.t, 2),
             "two-tailed"},
            {"p-value", ResultText::pTile(test.pValue),
             std::string(ResultText::significanceWords(test.pValue))},
            {"Cohen's d", svFmt(test.effectSizeD, 2), "in standard deviations"},
            {"Cases used", ResultText::count(cases), unit}};
}

std::string words(const TTestResult& test) {
    return std::string(ResultText::significanceWords(test.pValue)) + ", t(" +
           ResultText::degreesOfFreedom(test.degreesOfFreedom) + ") = " + svFmt(test.t, 2) + ", " +
           ResultText::pSentence(test.pValue) + ", d = " + svFmt(test.effectSizeD, 2);
}

}  // namespace sorvane::TTestTables
