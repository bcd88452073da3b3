#include "SorvaneMac/Screens/CategoricalTestsScreen.h"

#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/CategoryTables.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Nonparametric/CategoryFields.h"
#include "SorvaneMac/Screens/Nonparametric/CategoryTableGates.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricScreen.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

std::string statisticText(const ChiSquareResult& test) {
    return "χ²(" + ResultText::count(test.degreesOfFreedom) + ")";
}

std::string sentence(const CategoryCounts& counts,
                     const ChiSquareResult& test,
                     std::int64_t cases) {
    return "The table of " + counts.rowName + " by " + counts.columnName + " holds " +
           ResultText::count(cases) + " cases. The association was " +
           std::string(ResultText::significanceWords(test.pValue)) + ", " + statisticText(test) +
           " = " + svFmt(test.statistic, 2) + ", " + ResultText::pSentence(test.pValue) +
           ", V = " + svFmtBounded(test.cramersV, 2) + ".";
}

/// A row per cell: its count and its shares of the row, the column and all.
ReportTable shareTable(const CategoryCounts& counts, const CrossTabResult& table) {
    ReportTable shares;
    shares.title = "Shares in percent";
    shares.note = "Row % is the share within the row, Column % within the column.";
    shares.headers = {counts.rowName, counts.columnName, "n", "Row %", "Column %", "Total %"};
    for (std::size_t row = 0; row < counts.rowLabels.size(); ++row) {
        for (std::size_t column = 0; column < counts.columnLabels.size(); ++column) {
            shares.rows.push_back({column == 0 ? counts.rowLabels[row] : "",
                                   counts.columnLabels[column],
                                   ResultText::count(counts.counts[row][column]),
                                   svFmt(table.rowPercentages[row][column], 1),
                                   svFmt(table.columnPercentages[row][column], 1),
                                   svFmt(table.cellPercentages[row][column], 1)});
        }
    }
    return shares;
}

ReportTable testTable(const CategoryEvidence& found) {
    ReportTable table;
    table.title = "Tests";
    table.headers = {"Test", "Statistic", "df", "p", "Effect"};
    const ChiSquareResult& test = *found.chiSquare;
    table.rows = {{"Chi-square", svFmt(test.statistic, 2), ResultText::count(test.degreesOfFreedom),
                   ResultText::pCell(test.pValue),
                   "Cramer's V = " + svFmtBounded(test.cramersV, 3)}};
    if (found.fisher) {
        table.rows.push_back({"Fisher exact", "", "", ResultText::pCell(found.fisher->pValue),
                              "Odds ratio = " + svFmt(found.fisher->oddsRatio, 2)});
    }
    return table;
}

std::vector<Tile> tiles(const CategoryEvidence& found) {
    return {{statisticText(*found.chiSquare), svFmt(found.chiSquare->statistic, 2), ""},
            ResultText::pValueTile(found.chiSquare->pValue),
            {"Cramer's V", svFmtBounded(found.chiSquare->cramersV, 3), "strength, 0 to 1"},
            {"Cases used", ResultText::count(found.table->grandTotal), "with both categories"}};
}

}  // namespace

void CategoricalTestsScreen::seed() {
    npSeed(fields_, state_.dataset());
}

SetupForm CategoricalTestsScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const VariableLists::List groupings = VariableLists::anovaGroupingVariables(state_.dataset());
    SetupForm form;
    form.title = "Categorical Tests";
    form.controls = {HeadingControl{"TABLE"},
                     variablePicker("Row category", fields_.npRowCat, groupings),
                     variablePicker("Column category", fields_.npColCat, groupings)};
    OptionControls::addNote(form, gate());
    return form;
}

std::optional<Gate> CategoricalTestsScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (std::optional<Gate> missing = CategoryTableGates::unsuitableFields(
            state_.dataset(), fields_, "Pick two different categorical fields.")) {
        return missing;
    }
    return std::nullopt;
}

CategoryEvidence CategoricalTestsScreen::evidence() const {
    const TextColumn& rows = CategoryFields::column(state_.dataset(), fields_.npRowCat);
    const TextColumn& columns = CategoryFields::column(state_.dataset(), fields_.npColCat);
    return {.table = CrossTabulation::crosstab(rows, columns),
            .chiSquare = CategoricalTests::chiSquare(rows, columns),
            .fisher = FisherExactTests::test(rows, columns)};
}

ScreenContent CategoricalTestsScreen::content() const {
    ScreenContent content;
    content.title = std::string(title(id()));
    content.subtitle = "Counts, shares and tests of two categorical fields.";
    content.gate = gate();
    if (content.gate) {
        return content;
    }
    const CategoryEvidence found = evidence();
    if (!found.table || !found.chiSquare) {
        content.gate = CategoryTableGates::noTable();
        return content;
    }
    const CategoryCounts counts{.rowName = fields_.npRowCat->name,
                                .columnName = fields_.npColCat->name,
                                .rowLabels = found.table->rowLabels,
                                .columnLabels = found.table->columnLabels,
                                .counts = found.table->counts};
    std::vector<std::string> warnings = ResultText::messages(found.table->readiness);
    warnings.insert(warnings.end(), found.chiSquare->warnings.begin(),
                    found.chiSquare->warnings.end());
    if (found.fisher) {
        for (std::string& message : ResultText::messages(found.fisher->readiness)) {
            warnings.push_back(std::move(message));
        }
    }
    addReport(
        {.title = "Table: " + counts.rowName + " by " + counts.columnName,
         .sentence = sentence(counts, *found.chiSquare, found.table->grandTotal),
         .tiles = tiles(found),
         .tables = {CategoryTables::countTable(counts), shareTable(counts, *found.table),
                    testTable(found)},
         .charts = {CategoryTables::shareChart(counts)},
         .figureCaption = "Shares of " + counts.columnName + " within " + counts.rowName + ".",
         .caution = "Association between categories, not causation. Check expected-cell counts.",
         .warnings = std::move(warnings)},
        content);
    return content;
}

Json CategoricalTestsScreen::record() const {
    return toJson(evidence());
}

Guide CategoricalTestsScreen::guide() const {
    return {.answers =
                "How two categorical variables go together: counts, row and column shares, and "
                "whether they are associated (chi-square with Cramer's V; Fisher exact for a "
                "table of two by two).",
            .needs =
                "Two different fields with few categories, each case counted once. Expected "
                "counts below 5 make the chi-square p-value rough.",
            .doNotClaim = {"Do not claim that one variable causes the other from an association.",
                           "Do not read a significant table without looking at its cells.",
                           "Do not compare counts between rows of unequal size; compare shares."}};
}

}  // namespace sorvane
