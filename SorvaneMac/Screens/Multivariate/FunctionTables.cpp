#include "SorvaneMac/Screens/Multivariate/FunctionTables.h"

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::FunctionTables {

ReportTable ofVariables(const std::vector<std::string>& variables,
                        const std::vector<Block>& blocks) {
    ReportTable table;
    table.headers = {"Variable"};
    table.groupHeaders = {{.label = "", .span = 1}};
    for (const Block& block : blocks) {
        table.groupHeaders->push_back(
            {.label = block.label, .span = static_cast<int>(block.figures.size())});
        for (std::size_t function = 1; function <= block.figures.size(); ++function) {
            table.headers.push_back(ResultText::count(static_cast<std::int64_t>(function)));
        }
    }
    for (std::size_t variable = 0; variable < variables.size(); ++variable) {
        std::vector<std::string> row = {variables[variable]};
        for (const Block& block : blocks) {
            for (const std::vector<double>& function : block.figures) {
                row.push_back(svFmt(function[variable], block.decimals));
            }
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

ReportTable tests(const std::vector<WilksTest>& tests) {
    ReportTable table;
    table.title = "Tests of the functions";
    table.headers = {"Functions", "Wilks' lambda", "F", "df1", "df2", "p"};
    const auto last = static_cast<std::int64_t>(tests.size());
    for (const WilksTest& test : tests) {
        table.rows.push_back(
            {ResultText::count(test.fromFunction) +
                 (test.fromFunction < last ? " to " + ResultText::count(last) : ""),
             svFmtBounded(test.wilksLambda, 3), svFmt(test.approxF, 2),
             ResultText::degreesOfFreedom(test.dfNumerator),
             ResultText::degreesOfFreedom(test.dfDenominator), ResultText::pCell(test.pValue)});
    }
    table.note = "Each row tests the functions from the first named onward together.";
    return table;
}

}  // namespace sorvane::FunctionTables
