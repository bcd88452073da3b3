#include <algorithm>
#include <benchmark/benchmark.h>
#include <functional>
#include <utility>

#include "Benchmarks/Workload.h"
#include "Benchmarks/WorkloadData.h"
#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneCore/Analyses/Basics/GroupComparisonTests.h"
#include "SorvaneCore/Analyses/Basics/GroupedRows.h"
#include "SorvaneCore/Analyses/Basics/RegressionTests.h"
#include "SorvaneCore/Analyses/Basics/RelationshipTests.h"
#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonEngine.h"
#include "SorvaneCore/Analyses/Reliability/ReliabilityAnalyzer.h"
#include "SorvaneCore/Import/SpreadsheetImporter.h"

namespace sorvane {

namespace {

/// The columns of a table of numbers, as the screens hand them to the procedures.
struct NumberTable {
    std::vector<std::string> names;
    std::vector<NumericColumn> columns;
    /// The first column as it stands, where its cells are labels.
    std::shared_ptr<const TextColumn> labels;
    double rowCount = 0.0;
};

NumberTable read(const std::string& file) {
    const ImportedDataset dataset = SpreadsheetImporter().importData(WorkloadData::file(file));
    NumberTable table{.names = dataset.headers,
                      .columns = {},
                      .labels = dataset.rows.sharedColumn(0),
                      .rowCount = static_cast<double>(dataset.rowCount())};
    for (const std::string& name : table.names) {
        table.columns.push_back(dataset.numericColumn(name));
    }
    return table;
}

struct Analysis {
    std::string name;
    std::string stem;
    /// Its result must be handed to `DoNotOptimize`.
    std::function<void(const NumberTable&)> run;
};

Workload at(const Analysis& analysis, const std::string& size, double targetSeconds) {
    return {.name = analysis.name, .size = size, .targetSeconds = targetSeconds, .prepare = [=] {
                auto table =
                    std::make_shared<NumberTable>(read(analysis.stem + "_" + size + ".csv"));
                return Job{.run = [table, run = analysis.run] { run(*table); },
                           .amount = table->rowCount,
                           .unit = "rows"};
            }};
}

void describe(const NumberTable& table) {
    auto result = DescriptiveStatistics::summaries(table.columns, table.names);
    benchmark::DoNotOptimize(result);
}

void alpha(const NumberTable& table) {
    ReliabilityOptions options;
    options.itemNames = table.names;
    auto result = ReliabilityAnalyzer::analyze(table.columns, options);
    benchmark::DoNotOptimize(result);
}

void spearman(const NumberTable& table) {
    auto result = RelationshipTests::spearman(table.columns[0], table.columns[1]);
    benchmark::DoNotOptimize(result);
}

void kendall(const NumberTable& table) {
    auto result = RelationshipTests::kendallTauB(table.columns[0], table.columns[1]);
    benchmark::DoNotOptimize(result);
}

/// The two largest groups.
void welchTest(const NumberTable& table) {
    const GroupedRows rows = GroupedRows::of(*table.labels, table.columns[1]);
    const auto values = [&rows](std::string_view label) {
        return std::span(std::ranges::find(rows.groups, label, &GroupedRows::Group::label)->values);
    };
    auto result = GroupComparisonTests::independentSamplesTTest(values("Control"), values("A"),
                                                                VarianceAssumption::unequal);
    benchmark::DoNotOptimize(result);
}

void compareGroups(const NumberTable& table) {
    auto result = GroupComparisonEngine::analyze(*table.labels, table.columns[1], {});
    benchmark::DoNotOptimize(result);
}

/// y on x1 to x10; yb, the second column, is for another model.
void leastSquares(const NumberTable& table) {
    const RegressionOptions options{.predictorNames = {table.names.begin() + 2, table.names.end()}};
    auto result = RegressionTests::ordinaryLeastSquares(std::span(table.columns).subspan(2),
                                                        table.columns[0], options);
    benchmark::DoNotOptimize(result);
}

}  // namespace

std::vector<Workload> analysisWorkloads() {
    const Analysis describing{"describe", "likert", describe};
    const Analysis reliability{"alpha", "likert", alpha};
    const Analysis rankCorrelation{"spearman", "corr", spearman};
    const Analysis concordance{"kendall", "corr", kendall};
    const Analysis twoMeans{"ttest", "anova", welchTest};
    const Analysis groupComparison{"anova", "anova", compareGroups};
    const Analysis regression{"ols", "reg", leastSquares};
    return {at(describing, "1e5", 0.012),      at(describing, "1e6", 0.1),
            at(reliability, "1e5", 0.01),      at(reliability, "1e6", 0.1),
            at(rankCorrelation, "1e3", 1e-4),  at(rankCorrelation, "1e4", 0.002),
            at(rankCorrelation, "1e5", 0.025), at(rankCorrelation, "1e6", 0.35),
            at(concordance, "1e3", 1e-4),      at(concordance, "1e4", 0.0012),
            at(concordance, "1e5", 0.013),     at(concordance, "1e6", 0.16),
            at(twoMeans, "1e5", 0.002),        at(twoMeans, "1e6", 0.02),
            at(groupComparison, "1e5", 0.06),  at(groupComparison, "1e6", 0.3),
            at(regression, "1e5", 0.012),      at(regression, "1e6", 0.12)};
}

}  // namespace sorvane
