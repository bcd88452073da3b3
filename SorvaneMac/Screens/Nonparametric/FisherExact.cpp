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
constexpr std::string_view caution = "Requires a 2x2 table (two binary categoricals).";
constexpr std::string_view note =
    "Exact test for a 2x2 table; appropriate when expected cell counts are small.";

std::string oddsText(const FisherExactResult& result, int decimals) {
    return result.oddsRatio ? svFmt(result.oddsRatio, decimals) : "--";
}

ReportTable testTable(const FisherExactResult& result) {
    ReportTable table;
    table.title = "Fisher exact test";
    table.headers = {"p (two-sided)", "p (one-sided)", "Odds ratio"};
    table.rows = {{ResultText::pCell(result.pValue), ResultText::pCell(result.oneSidedPValue),
                   oddsText(result, 3)}};
    return table;
}

std::string sentence(const FisherRun& run) {
    const FisherExactResult& result = *run.result;
    return "A Fisher exact test of a 2x2 table for " + run.rowName + " and " + run.columnName +
           " was " + std::string(ResultText::significanceWords(result.pValue)) + ", " +
           ResultText::pSentence(result.pValue) +
           " (two-sided), odds ratio = " + oddsText(result, 2) + ".";
}

class FisherExact final : public StoredAnalysis<NonparametricFields, FisherRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override { return std::string(displayName(NPTest::fisher)); }

    void addControls(SetupForm& form) override {
        CategoryFields::addControls(form, state_.dataset(), fields_);
    }

    std::string runLabel() const override { return "Run Fisher exact"; }

    std::optional<Gate> gate() const override {
        if (std::optional<Gate> missing = CategoryTableGates::unsuitableFields(
                state_.dataset(), fields_, "Pick two different fields.")) {
            return missing;
        }
        return CategoryTableGates::notTwoByTwo(state_.dataset(), fields_);
    }

    std::string selection() const override {
        return fields_.npRowCat->name + " by " + fields_.npColCat->name;
    }

    Guide guide() const override {
        return {
            .answers =
                "Whether two variables of two categories each are associated, with an exact "
                "p-value at any sample size, and what their odds ratio is.",
            .needs = "Two fields with exactly two categories each, and each case counted once.",
            .doNotClaim = {std::string(notCausal),
                           "Do not read an odds ratio as a ratio of probabilities; they are close "
                           "only where the outcome is rare.",
                           "Do not take an exact p-value for strong evidence: a small table still "
                           "has little power."}};
    }

private:
    std::optional<FisherRun> compute() override {
        const TextColumn& rows = CategoryFields::column(state_.dataset(), fields_.npRowCat);
        const TextColumn& columns = CategoryFields::column(state_.dataset(), fields_.npColCat);
        FisherRun run{.rowName = fields_.npRowCat->name, .columnName = fields_.npColCat->name};
        if (const std::optional<ChiSquareResult> table =
                CategoricalTests::chiSquare(rows, columns)) {
            run.rowLabels = table->rowLabels;
            run.columnLabels = table->columnLabels;
        }
        run.result = FisherExactTests::test(rows, columns);
        return run;
    }

    void present(const FisherRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = CategoryTableGates::needsTwoByTwo(
                "Among the cases with both categories, one field has not exactly two. Pick other "
                "fields, or use the chi-square test.");
            return;
        }
        const FisherExactResult& result = *run.result;
        const CategoryCounts counts{.rowName = run.rowName,
                                    .columnName = run.columnName,
                                    .rowLabels = run.rowLabels,
                                    .columnLabels = run.columnLabels,
                                    .counts = result.observed};
        addReport({.title = "Fisher exact: " + run.rowName + " by " + run.columnName,
                   .sentence = sentence(run),
                   .tiles = {ResultText::pValueTile(result.pValue),
                             {"Odds ratio", oddsText(result, 2), "ad / bc"},
                             {"One-sided p", ResultText::pTile(result.oneSidedPValue),
                              "the smaller tail"}},
                   .tables = {CategoryTables::countTable(counts), testTable(result)},
                   .note = std::string(note),
                   .charts = {CategoryTables::shareChart(counts)},
                   .figureCaption = "Shares of " + run.columnName + " within " + run.rowName + ".",
                   .caution = std::string(caution),
                   .warnings = ResultText::messages(result.readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> NonparametricAnalyses::fisherExact(StudioState& state,
                                                             NonparametricFields& fields) {
    return std::make_unique<FisherExact>(state, fields, fields.npFisherRun);
}

}  // namespace sorvane
