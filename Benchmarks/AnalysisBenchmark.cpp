#include <algorithm>
#include <benchmark/benchmark.h>
#include <functional>
#include <iterator>
#include <string>
#include <utility>

#include "Benchmarks/Workload.h"
#include "Benchmarks/WorkloadData.h"
#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneCore/Analyses/Basics/GroupComparisonTests.h"
#include "SorvaneCore/Analyses/Basics/GroupedRows.h"
#include "SorvaneCore/Analyses/Basics/RegressionTests.h"
#include "SorvaneCore/Analyses/Basics/RelationshipTests.h"
#include "SorvaneCore/Analyses/Clustering/HierarchicalClustering.h"
#include "SorvaneCore/Analyses/Clustering/KMeansClustering.h"
#include "SorvaneCore/Analyses/GeneralizedRegression/LogisticRegressionTests.h"
#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonEngine.h"
#include "SorvaneCore/Analyses/LatentVariables/FactorAnalyzer.h"
#include "SorvaneCore/Analyses/LatentVariables/PrincipalComponentsAnalyzer.h"
#include "SorvaneCore/Analyses/Reliability/ReliabilityAnalyzer.h"
#include "SorvaneCore/Import/SpreadsheetImporter.h"
#include "SorvaneCore/Models/Mediation/MediationAnalysis.h"
#include "SorvaneCore/Models/Structural/StructuralEquationModel.h"
#include "SorvaneCore/Models/Survival/SurvivalAnalysis.h"

namespace sorvane {

namespace {

/// The columns of a table of numbers, as the screens hand them to the procedures.
struct NumberTable {
    std::vector<std::string> names;
    std::vector<NumericColumn> columns;
    /// The same as they stand, where cells are labels.
    std::vector<std::shared_ptr<const TextColumn>> texts;
    double rowCount = 0.0;
};

NumberTable read(const std::string& file) {
    const ImportedDataset dataset = SpreadsheetImporter().importData(WorkloadData::file(file));
    NumberTable table{.names = dataset.headers,
                      .columns = {},
                      .texts = {},
                      .rowCount = static_cast<double>(dataset.rowCount())};
    for (const std::string& name : table.names) {
        table.texts.push_back(dataset.rows.sharedColumn(table.columns.size()));
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
    const GroupedRows rows = GroupedRows::of(*table.texts[0], table.columns[1]);
    const auto values = [&rows](std::string_view label) {
        return std::span(std::ranges::find(rows.groups, label, &GroupedRows::Group::label)->values);
    };
    auto result = GroupComparisonTests::independentSamplesTTest(values("Control"), values("A"),
                                                                VarianceAssumption::unequal);
    benchmark::DoNotOptimize(result);
}

void compareGroups(const NumberTable& table) {
    auto result = GroupComparisonEngine::analyze(*table.texts[0], table.columns[1], {});
    benchmark::DoNotOptimize(result);
}

/// y on x1 to x10; yb, the second column, is for another model.
void leastSquares(const NumberTable& table) {
    const RegressionOptions options{.predictorNames = {table.names.begin() + 2, table.names.end()}};
    auto result = RegressionTests::ordinaryLeastSquares(std::span(table.columns).subspan(2),
                                                        table.columns[0], options);
    benchmark::DoNotOptimize(result);
}

/// yb on x1 to x10.
void logistic(const NumberTable& table) {
    const LogisticRegressionOptions options{
        .predictorNames = {table.names.begin() + 2, table.names.end()}};
    auto result = LogisticRegressionTests::binaryLogistic(std::span(table.columns).subspan(2),
                                                          table.columns[1], options);
    benchmark::DoNotOptimize(result);
}

void fiveFactors(const NumberTable& table) {
    auto result = FactorAnalyzer::analyze(table.columns, 5);
    benchmark::DoNotOptimize(result);
}

void components(const NumberTable& table) {
    auto result = PrincipalComponentsAnalyzer::analyze(table.columns, {.computeScores = true});
    benchmark::DoNotOptimize(result);
}

void wardTree(const NumberTable& table) {
    auto result = ClusterAnalysis::hierarchical(CaseRows::complete(table.columns));
    benchmark::DoNotOptimize(result);
}

void fiveMeans(const NumberTable& table) {
    auto result = ClusterAnalysis::kMeans(CaseRows::complete(table.columns), {.k = 5});
    benchmark::DoNotOptimize(result);
}

void survivalCurves(const NumberTable& table) {
    auto result =
        SurvivalAnalysis::kaplanMeier(table.columns[0], table.columns[1], table.texts[2].get());
    benchmark::DoNotOptimize(result);
}

/// On x1 to x5, after time, event and group.
void hazards(const NumberTable& table) {
    const CoxOptions options{.predictorNames = {table.names.begin() + 3, table.names.end()}};
    auto result = SurvivalAnalysis::coxPH(table.columns[0], table.columns[1],
                                          std::span(table.columns).subspan(3), options);
    benchmark::DoNotOptimize(result);
}

/// Every factor has as many items as the next, in the order of the columns.
std::string factorModel(const NumberTable& table, std::size_t itemsPerFactor) {
    std::string text;
    for (std::size_t j = 0; j < table.names.size(); ++j) {
        const bool isFirst = j % itemsPerFactor == 0;
        text += isFirst ? "\nf" + std::to_string(j / itemsPerFactor) + " =~ " : " + ";
        text += table.names[j];
    }
    return text;
}

void factorAnalysis(const NumberTable& table) {
    constexpr std::size_t smallStudy = 9;
    const std::string model = factorModel(table, table.names.size() == smallStudy ? 3 : 5);
    auto result = StructuralEquationModel::fit(model, table.columns, table.names);
    benchmark::DoNotOptimize(result);
}

/// x to y by way of m, with c1.
void indirectEffect(const NumberTable& table) {
    auto result =
        MediationAnalysis::simpleMediation(table.columns[0], table.columns[1], table.columns[2],
                                           std::span(table.columns).subspan(3), {});
    benchmark::DoNotOptimize(result);
}

std::vector<Workload> modelWorkloads() {
    const Analysis factors{"cfa", "cfa", factorAnalysis};
    const Analysis mediation{"mediation", "med", indirectEffect};
    const Analysis curves{"km", "surv", survivalCurves};
    const Analysis effects{"cox", "surv", hazards};
    return {at(factors, "3x9", 0.008),   at(factors, "10x50", 0.4), at(mediation, "500", 0.015),
            at(mediation, "5000", 0.12), at(curves, "1e4", 0.002),  at(curves, "1e5", 0.015),
            at(effects, "1e4", 0.003),   at(effects, "1e5", 0.03)};
}

std::vector<Workload> dataReductionWorkloads() {
    const Analysis factors{"efa", "efa", fiveFactors};
    const Analysis manyItems{"pca", "items", components};
    const Analysis tree{"hclust", "hclust", wardTree};
    const Analysis means{"kmeans", "kmeans", fiveMeans};
    return {at(factors, "1e4", 0.015), at(factors, "1e5", 0.04), at(manyItems, "1e4", 1.0),
            at(tree, "1e3", 0.008),    at(tree, "5e3", 0.3),     at(tree, "1e4", 1.4),
            at(means, "1e4", 0.004),   at(means, "1e5", 0.04)};
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
    const Analysis logisticRegression{"logit", "reg", logistic};
    std::vector<Workload> workloads = {
        at(describing, "1e5", 0.012),        at(describing, "1e6", 0.1),
        at(reliability, "1e5", 0.01),        at(reliability, "1e6", 0.1),
        at(rankCorrelation, "1e3", 1e-4),    at(rankCorrelation, "1e4", 0.002),
        at(rankCorrelation, "1e5", 0.025),   at(rankCorrelation, "1e6", 0.35),
        at(concordance, "1e3", 1e-4),        at(concordance, "1e4", 0.0012),
        at(concordance, "1e5", 0.013),       at(concordance, "1e6", 0.16),
        at(twoMeans, "1e5", 0.002),          at(twoMeans, "1e6", 0.02),
        at(groupComparison, "1e5", 0.06),    at(groupComparison, "1e6", 0.3),
        at(regression, "1e5", 0.012),        at(regression, "1e6", 0.12),
        at(logisticRegression, "1e5", 0.03), at(logisticRegression, "1e6", 0.3)};
    for (std::vector<Workload> others : {dataReductionWorkloads(), modelWorkloads()}) {
        std::ranges::move(others, std::back_inserter(workloads));
    }
    return workloads;
}

}  // namespace sorvane
