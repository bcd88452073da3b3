#include <algorithm>

#include "SorvaneCore/Analyses/Categorical/CrossTabulation.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/CategoryTables.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Nonparametric/CategoryFields.h"
#include "SorvaneMac/Screens/Nonparametric/CategoryTableGates.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricAnalyses.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

constexpr std::string_view caution =
    "Requires a paired binary outcome measured twice on the same cases.";
constexpr std::string_view note =
    "b and c are the discordant pair counts; the exact binomial p is reported for small "
    "discordant totals.";

ReportTable testTable(const McNemarResult& result) {
    ReportTable table;
    table.title = "McNemar test";
    table.headers = {"b", "c", "Chi-square", "df", "p", "p (exact)"};
    table.rows = {{ResultText::count(result.b), ResultText::count(result.c),
                   svFmt(result.statistic, 2), ResultText::count(result.degreesOfFreedom),
                   ResultText::pCell(result.pValue), ResultText::pCell(result.exactPValue)}};
    return table;
}

/// The categories of both measurements, in the order in which the test has them.
std::vector<std::string> sharedCategories(const TextColumn& before, const TextColumn& after) {
    const std::optional<CrossTabResult> table = CrossTabulation::crosstab(before, after);
    if (!table) {
        return {};
    }
    std::vector<std::string> labels = table->rowLabels;
    for (const std::string& label : table->columnLabels) {
        if (std::find(labels.begin(), labels.end(), label) == labels.end()) {
            labels.push_back(label);
        }
    }
    return labels;
}

/// The exact p-value where discordant pairs are few.
double reportedP(const McNemarResult& result) {
    return result.usesExactRecommended ? result.exactPValue : result.pValue;
}

std::string sentence(const McNemarRun& run) {
    const McNemarResult& result = *run.result;
    const std::string statistic = result.usesExactRecommended
                                      ? "exact "
                                      : "χ²(" + ResultText::count(result.degreesOfFreedom) +
                                            ") = " + svFmt(result.statistic, 2) + ", ";
    return "A McNemar test of paired change between " + run.beforeName + " and " + run.afterName +
           " was " + std::string(ResultText::significanceWords(reportedP(result))) + ", " +
           statistic + ResultText::pSentence(reportedP(result)) +
           " (b = " + ResultText::count(result.b) + ", c = " + ResultText::count(result.c) + ").";
}

class McNemar final : public StoredAnalysis<NonparametricFields, McNemarRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override { return std::string(displayName(NPTest::mcnemar)); }

    void addControls(SetupForm& form) override {
        const VariableLists::List groupings =
            VariableLists::anovaGroupingVariables(state_.dataset());
        form.controls.emplace_back(
            FormControls::variablePicker("First measurement (rows)", fields_.npRowCat, groupings));
        form.controls.emplace_back(FormControls::variablePicker("Second measurement (columns)",
                                                                fields_.npColCat, groupings));
    }

    std::string runLabel() const override { return "Run McNemar"; }

    std::optional<Gate> gate() const override {
        if (std::optional<Gate> missing = CategoryTableGates::unsuitableFields(
                state_.dataset(), fields_, "Pick two different fields.")) {
            return missing;
        }
        return CategoryTableGates::notPairedBinary(state_.dataset(), fields_);
    }

    std::string selection() const override {
        return fields_.npRowCat->name + " and " + fields_.npColCat->name;
    }

    Guide guide() const override {
        return {
            .answers =
                "Whether the share of cases in one of two categories changed between two "
                "measurements of the same cases.",
            .needs =
                "Two fields with the same two values, measured on the same cases. Only the cases "
                "that changed carry information; with few of them the exact p-value is the one "
                "to use.",
            .doNotClaim = {"Do not claim a cause of the change without a comparison group.",
                           "Do not report it without saying how many cases changed each way."}};
    }

private:
    std::optional<McNemarRun> compute() override {
        const TextColumn& before = CategoryFields::column(state_.dataset(), fields_.npRowCat);
        const TextColumn& after = CategoryFields::column(state_.dataset(), fields_.npColCat);
        return McNemarRun{.beforeName = fields_.npRowCat->name,
                          .afterName = fields_.npColCat->name,
                          .labels = sharedCategories(before, after),
                          .result = McNemarTests::test(before, after)};
    }

    void present(const McNemarRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = CategoryTableGates::needsPairedBinary(
                "No case changed between the two measurements, so there is nothing to test.");
            return;
        }
        const McNemarResult& result = *run.result;
        const CategoryCounts counts{.rowName = run.beforeName,
                                    .columnName = run.afterName,
                                    .rowLabels = run.labels,
                                    .columnLabels = run.labels,
                                    .counts = result.observed};
        addReport({.title = "McNemar: " + run.beforeName + " and " + run.afterName,
                   .sentence = sentence(run),
                   .tiles = {{"χ²(" + ResultText::count(result.degreesOfFreedom) + ")",
                              svFmt(result.statistic, 2), "with continuity correction"},
                             {result.usesExactRecommended ? "Exact p-value" : "p-value",
                              ResultText::pTile(reportedP(result)),
                              std::string(ResultText::significanceWords(reportedP(result)))},
                             {"Changed cases", ResultText::count(result.b + result.c),
                              "b = " + ResultText::count(result.b) +
                                  ", c = " + ResultText::count(result.c)}},
                   .tables = {CategoryTables::countTable(counts), testTable(result)},
                   .note = std::string(note),
                   .charts = {CategoryTables::shareChart(counts)},
                   .figureCaption = "Shares of the second measurement within the first.",
                   .caution = std::string(caution),
                   .warnings = ResultText::messages(result.readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> NonparametricAnalyses::mcNemar(StudioState& state,
                                                         NonparametricFields& fields) {
    return std::make_unique<McNemar>(state, fields, fields.npMcNemarRun);
}

}  // namespace sorvane
