#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/CategoryTables.h"
#include "SorvaneMac/Screens/Nonparametric/CategoryFields.h"
#include "SorvaneMac/Screens/Nonparametric/CategoryTableGates.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricAnalyses.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr std::string_view notCausal =
    "Do not claim that one variable causes the other from an association in observed data.";
constexpr std::string_view caution =
    "Association between categories, not causation. Check expected-cell counts.";
constexpr std::string_view note = "Cramer's V is the strength of association (0-1).";

CategoryCounts countsOf(const IndependenceRun& run) {
    return {.rowName = run.rowName,
            .columnName = run.columnName,
            .rowLabels = run.result->rowLabels,
            .columnLabels = run.result->columnLabels,
            .counts = run.result->observed};
}

ReportTable testTable(const ChiSquareResult& result) {
    ReportTable table;
    table.title = "Chi-square test";
    table.headers = {"Chi-square", "df", "p", "Cramer V"};
    table.rows = {{svFmt(result.statistic, 2), ResultText::count(result.degreesOfFreedom),
                   ResultText::pCell(result.pValue), svFmt(result.cramersV, 3)}};
    return table;
}

ReportTable expectedTable(const IndependenceRun& run) {
    ReportTable table;
    table.title = "Expected counts";
    table.headers = {run.rowName};
    table.headers.insert(table.headers.end(), run.result->columnLabels.begin(),
                         run.result->columnLabels.end());
    for (std::size_t row = 0; row < run.result->expected.size(); ++row) {
        std::vector<std::string> cells = {run.result->rowLabels[row]};
        for (const double expected : run.result->expected[row]) {
            cells.push_back(svFmt(expected, 1));
        }
        table.rows.push_back(std::move(cells));
    }
    return table;
}

std::int64_t casesOf(const ChiSquareResult& result) {
    std::int64_t cases = 0;
    for (const std::vector<std::int64_t>& row : result.observed) {
        for (const std::int64_t count : row) {
            cases += count;
        }
    }
    return cases;
}

std::string sentence(const IndependenceRun& run) {
    const ChiSquareResult& result = *run.result;
    return "A chi-square test of independence examined " + run.rowName + " and " + run.columnName +
           ". The association was " + std::string(ResultText::significanceWords(result.pValue)) +
           ", χ²(" + ResultText::count(result.degreesOfFreedom) +
           ", N = " + ResultText::count(casesOf(result)) + ") = " + svFmt(result.statistic, 2) +
           ", " + ResultText::pSentence(result.pValue) +
           ", V = " + svFmtBounded(result.cramersV, 2) + ".";
}

std::vector<Tile> tiles(const ChiSquareResult& result) {
    return {
        {"χ²(" + ResultText::count(result.degreesOfFreedom) + ")", svFmt(result.statistic, 2), ""},
        ResultText::pValueTile(result.pValue),
        {"Cramer's V", svFmtBounded(result.cramersV, 3), "strength, 0 to 1"},
        {"Cases used", ResultText::count(casesOf(result)), "with both categories"}};
}

class ChiSquareIndependence final : public StoredAnalysis<NonparametricFields, IndependenceRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override { return std::string(displayName(NPTest::chiSquare)); }

    void addControls(SetupForm& form) override {
        CategoryFields::addControls(form, state_.dataset(), fields_);
    }

    std::string runLabel() const override { return "Run chi-square"; }

    std::optional<Gate> gate() const override {
        if (std::optional<Gate> missing = CategoryTableGates::unsuitableFields(
                state_.dataset(), fields_, "Pick two different categorical fields.")) {
            return missing;
        }
        return CategoryTableGates::singleCategory(state_.dataset(), fields_);
    }

    std::string selection() const override {
        return fields_.npRowCat->name + " by " + fields_.npColCat->name;
    }

    Guide guide() const override {
        return {
            .answers =
                "Whether two categorical variables are associated, and how strongly (Cramer's V).",
            .needs =
                "Each case counted once, in one row and one column. Expected counts should be 5 "
                "or more in most cells; with fewer, prefer the Fisher exact test.",
            .doNotClaim = {std::string(notCausal),
                           "Do not read a significant table without looking at which cells make "
                           "it so.",
                           "Do not use it for two measurements of the same cases; that is what "
                           "McNemar is for."}};
    }

private:
    std::optional<IndependenceRun> compute() override {
        const ImportedDataset& dataset = state_.dataset();
        return IndependenceRun{.rowName = fields_.npRowCat->name,
                               .columnName = fields_.npColCat->name,
                               .result = CategoricalTests::chiSquare(
                                   CategoryFields::column(dataset, fields_.npRowCat),
                                   CategoryFields::column(dataset, fields_.npColCat))};
    }

    void present(const IndependenceRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = CategoryTableGates::noTable();
            return;
        }
        const CategoryCounts counts = countsOf(run);
        addReport({.title = "Chi-square: " + run.rowName + " by " + run.columnName,
                   .sentence = sentence(run),
                   .tiles = tiles(*run.result),
                   .tables = {CategoryTables::countTable(counts), testTable(*run.result),
                              expectedTable(run)},
                   .note = std::string(note),
                   .charts = {CategoryTables::shareChart(counts)},
                   .figureCaption = "Shares of " + run.columnName + " within " + run.rowName + ".",
                   .caution = std::string(caution),
                   .warnings = run.result->warnings},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> NonparametricAnalyses::chiSquareIndependence(
    StudioState& state, NonparametricFields& fields) {
    return std::make_unique<ChiSquareIndependence>(state, fields, fields.npChiSquareRun);
}

}  // namespace sorvane
