#include <algorithm>
#include <array>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/CategoryCodes.h"
#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/RowPartition.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansAnalyses.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansScreen.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/GroupSelection.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

using VariableLists::anovaGroupingVariables;
using VariableLists::numericVariables;

constexpr std::string_view caution =
    "Adjusted means assume homogeneity of regression slopes and a correctly specified covariate "
    "set.";

Gate cannotRunAncova() {
    return {.title = "Cannot run ANCOVA",
            .lead = "",
            .text =
                "Need at least one covariate, two groups, and more complete cases than model "
                "terms."};
}

Gate couldNotCompute(const AncovaRun& run) {
    return {.title = "The ANCOVA could not be computed",
            .lead = run.outcome,
            .text =
                "A covariate is constant, tells the groups or another covariate exactly, or leaves "
                "no variation of the outcome unexplained. Take it out in the Setup panel and run "
                "again."};
}

std::string groupTest(const ANCOVAResult& result) {
    return "F(" + ResultText::count(result.groupDFNumerator) + ", " +
           ResultText::count(result.groupDFDenominator) + ") = " + svFmt(result.groupF, 2) + ", " +
           ResultText::pSentence(result.groupPValue);
}

/// Of a group's means before and after the adjustment: what the one is known by counts as much as
/// what the other is.
int meanDecimals(const AncovaRun& run, std::size_t group) {
    return std::max(ReportDecimals::of(std::sqrt(run.result->meanSquareError), 2),
                    run.groups[group].decimals());
}

ReportTable meanTable(const AncovaRun& run) {
    const ANCOVAResult& result = *run.result;
    ReportTable table;
    table.title = "Adjusted group means";
    table.headers = {result.groupFactorName, "n", "M", "M adj"};
    for (std::size_t group = 0; group < result.adjustedMeans.size(); ++group) {
        const ANCOVAAdjustedMean& mean = result.adjustedMeans[group];
        const int decimals = meanDecimals(run, group);
        table.rows.push_back({mean.group, ResultText::count(mean.n),
                              svFigure(mean.rawMean, decimals),
                              svFigure(mean.adjustedMean, decimals)});
    }
    return table;
}

ReportTable groupTable(const ANCOVAResult& result) {
    ReportTable table;
    table.title = "Group effect (adjusted)";
    table.headers = {"Source", "df1", "df2", "F", "p", "η²p"};
    table.rows = {{result.groupFactorName, ResultText::count(result.groupDFNumerator),
                   ResultText::count(result.groupDFDenominator), svFmt(result.groupF, 2),
                   ResultText::pCell(result.groupPValue), svFmt(result.partialEtaSquared, 3)}};
    return table;
}

ReportTable covariateTable(const ANCOVAResult& result) {
    ReportTable table;
    table.title = "Covariate effects";
    table.headers = {"Covariate", "B", "SE", "t", "p"};
    for (const ANCOVACovariateEffect& effect : result.covariateEffects) {
        const int decimals = ReportDecimals::of(effect.standardError);
        table.rows.push_back({effect.name, svFigure(effect.coefficient, decimals),
                              svFigure(effect.standardError, decimals), svFmt(effect.t, 2),
                              ResultText::pCell(effect.pValue)});
    }
    return table;
}

/// The means of each group before and after the adjustment.
Chart meansChart(const AncovaRun& run) {
    GroupedBarPlot plot{.series = {{.name = "M"}, {.name = "M adj"}}};
    for (std::size_t group = 0; group < run.groups.size(); ++group) {
        const ANCOVAAdjustedMean& mean = run.result->adjustedMeans[group];
        plot.decimals = std::max(plot.decimals, meanDecimals(run, group));
        plot.categories.push_back(mean.group);
        plot.series[0].values.push_back(mean.rawMean);
        plot.series[1].values.push_back(mean.adjustedMean);
    }
    Chart chart;
    chart.title = "Group means before and after adjustment";
    chart.xLabel = run.result->groupFactorName;
    chart.yLabel = "Mean " + run.outcome;
    chart.plot = std::move(plot);
    return chart;
}

/// The outcome by groups in the rows that the analysis uses.
std::vector<SampleFigures> groupFigures(const NumericColumn& outcome,
                                        const TextColumn& groups,
                                        const std::vector<NumericColumn>& covariates) {
    std::vector<const NumericColumn*> numbers = {&outcome};
    for (const NumericColumn& covariate : covariates) {
        numbers.push_back(&covariate);
    }
    const std::array factors = {&groups};
    const std::vector<std::uint32_t> rows = CompleteCases::rows(numbers, factors);
    const CategoryCodes codes = CategoryCodes::of(groups, rows);
    const RowPartition partition(codes.codes, codes.labels.size());
    const std::vector<double> values = partition.arranged(CompleteCases::gathered(outcome, rows));
    std::vector<SampleFigures> figures;
    for (std::size_t group = 0; group < codes.labels.size(); ++group) {
        figures.push_back(
            SampleFigures::of(codes.labels[group], partition.group(std::span(values), group)));
    }
    return figures;
}

std::string sentence(const AncovaRun& run) {
    const ANCOVAResult& result = *run.result;
    return "An ANCOVA compared " + run.outcome + " across " + result.groupFactorName + " with " +
           ResultText::listed(run.covariates) +
           " held constant (N = " + ResultText::count(result.n) +
           "). The adjusted group effect was " +
           std::string(ResultText::significanceWords(result.groupPValue)) + ", " +
           groupTest(result) + ", partial η² = " + svFmtBounded(result.partialEtaSquared, 2) + ".";
}

std::string note(const ANCOVAResult& result) {
    return "M is the unadjusted mean; M adj is the covariate-adjusted (estimated marginal) mean. "
           "Group effect: " +
           groupTest(result) +
           ", partial eta-squared = " + svFmtBounded(result.partialEtaSquared, 3) + ".";
}

std::vector<Tile> tiles(const ANCOVAResult& result) {
    return {{"F(" + ResultText::count(result.groupDFNumerator) + ", " +
                 ResultText::count(result.groupDFDenominator) + ")",
             svFmt(result.groupF, 2), "adjusted group effect"},
            {"p-value", ResultText::pTile(result.groupPValue),
             std::string(ResultText::significanceWords(result.groupPValue))},
            {"Partial η²", svFmtBounded(result.partialEtaSquared, 3), ""},
            {"Cases used", ResultText::count(result.n), "complete on all variables"}};
}

class Ancova final : public StoredAnalysis<CompareMeansFields, AncovaRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override {
        return std::string(displayName(InferentialTest::ancova));
    }

    void addControls(SetupForm& form) override {
        using namespace FormControls;  // NOLINT(google-build-using-namespace)
        GroupSelection::addControls(form, state_.dataset(),
                                    {fields_.cmAncovaOutcome, fields_.cmAncovaGroup});
        form.controls.emplace_back(withUnavailable(
            variableCheckList("Covariates", fields_.cmAncovaCovariates,
                              cmAncovaCovariateCandidates(state_.dataset(), fields_)),
            fields_.cmAncovaCovariates.get(), numericVariables(state_.dataset())));
    }

    std::string runLabel() const override { return "Run ANCOVA"; }

    std::optional<Gate> gate() const override {
        const ImportedDataset& dataset = state_.dataset();
        if (std::optional<Gate> missing =
                GroupSelection::gate(dataset, {fields_.cmAncovaOutcome, fields_.cmAncovaGroup})) {
            return missing;
        }
        if (std::optional<Gate> gone = SelectionGates::goneColumn(
                fields_.cmAncovaCovariates, numericVariables(dataset), "numeric columns")) {
            return gone;
        }
        std::vector<std::string> numbers = FormControls::chosen(
            fields_.cmAncovaCovariates.get(), cmAncovaCovariateCandidates(dataset, fields_));
        if (numbers.empty()) {
            return cannotRunAncova();
        }
        const std::size_t covariates = numbers.size();
        numbers.push_back(fields_.cmAncovaOutcome->name);
        const std::array<std::string, 1> group = {fields_.cmAncovaGroup->name};
        const Categories::CompleteRows complete = Categories::completeRows(dataset, numbers, group);
        // An intercept and a term for each group but one make as many terms as groups.
        const auto terms = static_cast<std::int64_t>(complete.categories.size() + covariates);
        if (complete.categories.size() < 2 || complete.rows <= terms) {
            return cannotRunAncova();
        }
        return std::nullopt;
    }

    std::string selection() const override {
        return fields_.cmAncovaOutcome->name + " by " + fields_.cmAncovaGroup->name;
    }

    Guide guide() const override {
        return {.answers =
                    "Whether the group means of an outcome differ once differences in measured "
                    "covariates are held constant, and what the adjusted means are.",
                .needs =
                    "A numeric outcome, groups, and covariates that were measured before the "
                    "groups could "
                    "influence them. The covariate's slope should be the same in every group, and "
                    "there "
                    "must be more complete cases than model terms.",
                .doNotClaim = {
                    "Do not claim causation: the adjustment controls for what you measured, "
                    "not for everything that differs between groups.",
                    "Do not adjust for a covariate that the group itself changed; that removes "
                    "part of the effect.",
                    "Do not report adjusted means without the unadjusted ones beside them."}};
    }

private:
    std::optional<AncovaRun> compute() override {
        const ImportedDataset& dataset = state_.dataset();
        fields_.cmAssumptionFindings.reset();
        AncovaRun run{
            .outcome = fields_.cmAncovaOutcome->name,
            .covariates = FormControls::chosen(fields_.cmAncovaCovariates.get(),
                                               cmAncovaCovariateCandidates(dataset, fields_))};
        std::vector<NumericColumn> covariates;
        for (const std::string& name : run.covariates) {
            covariates.push_back(dataset.numericColumn(name));
        }
        const std::string group = fields_.cmAncovaGroup->name;
        const NumericColumn outcome = dataset.numericColumn(run.outcome);
        const TextColumn& groups = dataset.rows.column(*dataset.columnIndex(group));
        run.result =
            ANCOVATests::test(outcome, groups, covariates,
                              {.covariateNames = run.covariates, .groupFactorName = group});
        if (run.result) {
            run.groups = groupFigures(outcome, groups, covariates);
            run.charts = {meansChart(run)};
        }
        return run;
    }

    void present(const AncovaRun& run, ScreenContent& content) const override {
        if (!run.result || run.result->readiness.status == AnalysisReadinessStatus::blocked) {
            content.gate = couldNotCompute(run);
            return;
        }
        const ANCOVAResult& result = *run.result;
        content.subtitle = "ANCOVA: " + run.outcome + " by " + result.groupFactorName;
        addReport({.title = "ANCOVA: " + run.outcome + " by " + result.groupFactorName,
                   .sentence = sentence(run),
                   .tiles = tiles(result),
                   .tables = {meanTable(run), groupTable(result), covariateTable(result)},
                   .note = note(result),
                   .charts = run.charts,
                   .figureCaption = "Unadjusted and adjusted means of " + run.outcome + ".",
                   .caution = std::string(caution),
                   .warnings = ResultText::messages(result.readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> CompareMeansAnalyses::ancova(StudioState& state,
                                                       CompareMeansFields& fields) {
    return std::make_unique<Ancova>(state, fields, fields.cmAncovaRun);
}

}  // namespace sorvane
