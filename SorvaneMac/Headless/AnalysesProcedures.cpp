#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneCore/Analyses/Basics/NormalityTests.h"
#include "SorvaneCore/Analyses/Basics/RankStatistics.h"
#include "SorvaneCore/Analyses/Basics/RegressionTests.h"
#include "SorvaneCore/Analyses/Basics/RelationshipTests.h"
#include "SorvaneCore/Analyses/BoxPlotSummary.h"
#include "SorvaneCore/Analyses/Histogram.h"
#include "SorvaneCore/Analyses/Reliability/ReliabilityAnalyzer.h"
#include "SorvaneCore/Analyses/StemAndLeaf.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

using Numbers = std::vector<double>;

constexpr double confidenceLevel = 0.95;

/// The columns of the named items: empty ones where a matrix without rows has names alone.
ColumnList namedItems(ColumnList items, const std::vector<std::string>& names) {
    if (items.empty()) {
        items.resize(names.size());
    }
    return items;
}

/// The matrix that columns of one length make.
ItemMatrix itemMatrix(const ColumnList& items) {
    ItemMatrix matrix{.rows = items.empty() ? 0 : items.front().size(), .items = items.size()};
    for (std::size_t row = 0; row < matrix.rows; ++row) {
        for (const NumericColumn& item : items) {
            matrix.cells.push_back(row < item.size() ? item[row] : std::nullopt);
        }
    }
    return matrix;
}

ReliabilityOptions withNames(ReliabilityOptions options, const std::vector<std::string>& names) {
    options.itemNames = names;
    return options;
}

VarianceDenominator denominator(bool sample) {
    return sample ? VarianceDenominator::sample : VarianceDenominator::population;
}

std::vector<Procedure> descriptiveProcedures() {
    using namespace arguments;              // NOLINT(google-build-using-namespace)
    using namespace DescriptiveStatistics;  // NOLINT(google-build-using-namespace)
    const OnlyPresentNumbers values{};
    const Setting<bool> sample{"sample", true};
    const Setting<double> level{"confidenceLevel", confidenceLevel};
    return {
        procedure(
            "DescriptiveStatistics.mean", [](const Numbers& x) { return mean(x); }, values),
        procedure(
            "DescriptiveStatistics.median", [](const Numbers& x) { return median(x); }, values),
        procedure(
            "DescriptiveStatistics.variance",
            [](const Numbers& x, bool ofSample) { return variance(x, denominator(ofSample)); },
            values, sample),
        procedure(
            "DescriptiveStatistics.standardDeviation",
            [](const Numbers& x, bool ofSample) {
                return standardDeviation(x, denominator(ofSample));
            },
            values, sample),
        procedure(
            "DescriptiveStatistics.standardError",
            [](const Numbers& x) { return standardError(x); }, values),
        procedure(
            "DescriptiveStatistics.confidenceIntervalForMean",
            [](const Numbers& x, double wanted) { return confidenceIntervalForMean(x, wanted); },
            values, level),
        procedure(
            "DescriptiveStatistics.quartiles", [](const Numbers& x) { return quartiles(x); },
            values),
        procedure(
            "DescriptiveStatistics.skewness", [](const Numbers& x) { return skewness(x); }, values),
        procedure(
            "DescriptiveStatistics.mode", [](const Numbers& x) { return mode(x); }, values),
        procedure(
            "DescriptiveStatistics.frequencyTable",
            [](const std::vector<std::string>& cells) { return frequencyTable(cells); },
            OnlyTexts{}),
        procedure(
            "DescriptiveStatistics.summary",
            [](const NumericColumn& column, const DescriptiveOptions& options) {
                return summary(column, options);
            },
            OnlyColumn{}, Settings<DescriptiveOptions>{}),
        procedure(
            "DescriptiveStatistics.summaries",
            [](const ColumnList& columns, const std::vector<std::string>& names, double wanted) {
                return summaries(columns, names, wanted);
            },
            Columns{"columns", "variableNames"}, Names{"variableNames", "columns"}, level),
        procedure(
            "Histogram.bins", [](const NumericColumn& x) { return Histogram::bins(x); },
            OnlyColumn{}),
        procedure(
            "BoxPlotSummary.of", [](const Numbers& x) { return BoxPlotSummary::of(x); }, values),
    };
}

std::vector<Procedure> normalityProcedures() {
    const arguments::OnlyColumn values{};
    return {
        procedure(
            "NormalityTests.shapiroWilk",
            [](const NumericColumn& x) { return NormalityTests::shapiroWilk(x); }, values),
        procedure(
            "NormalityTests.lillieforsKS",
            [](const NumericColumn& x) { return NormalityTests::lillieforsKS(x); }, values),
        procedure(
            "NormalityTests.report",
            [](const NumericColumn& x) { return NormalityTests::report(x); }, values),
        procedure(
            "NormalityTests.inverseStandardNormalCDF",
            [](double p) { return NormalityTests::inverseStandardNormalCDF(p); },
            arguments::Value<double>{"p"}),
        procedure(
            "StemAndLeaf.plot", [](const NumericColumn& x) { return StemAndLeaf::plot(x); },
            values),
    };
}

std::vector<Procedure> associationProcedures() {
    using namespace arguments;          // NOLINT(google-build-using-namespace)
    using namespace RelationshipTests;  // NOLINT(google-build-using-namespace)
    const Column x{"x"};
    const Column y{"y"};
    const OnlyPresentNumbers values{};
    using One = const NumericColumn&;
    return {
        procedure(
            "RelationshipTests.pearson", [](One a, One b) { return pearson(a, b); }, x, y),
        procedure(
            "RelationshipTests.spearman", [](One a, One b) { return spearman(a, b); }, x, y),
        procedure(
            "RelationshipTests.kendallTauB", [](One a, One b) { return kendallTauB(a, b); }, x, y),
        procedure(
            "RelationshipTests.partialCorrelation",
            [](One a, One b, const ColumnList& held) { return partialCorrelation(a, b, held); }, x,
            y, Columns{"covariates", "covariateNames"}),
        procedure(
            "RelationshipTests.simpleLinearRegression",
            [](One a, One b) { return simpleLinearRegression(a, b); }, x, y),
        procedure(
            "RegressionTests.ordinaryLeastSquares",
            [](const ColumnList& predictors, const std::vector<std::string>& names, One outcome,
               double level) {
                return RegressionTests::ordinaryLeastSquares(
                    predictors, outcome, {.predictorNames = names, .confidenceLevel = level});
            },
            Columns{"predictors", "predictorNames"}, Names{"predictorNames", "predictors"},
            Column{"outcome"}, Setting<double>{"confidenceLevel", confidenceLevel}),
        procedure(
            "RankStatistics.averageRanks",
            [](const Numbers& ranked) { return RankStatistics::averageRanks(ranked); }, values),
        procedure(
            "RankStatistics.tieTerm",
            [](const Numbers& ranked) { return RankStatistics::tieTerm(ranked); }, values),
        procedure(
            "RankStatistics.tieGroupSizes",
            [](const Numbers& ranked) { return RankStatistics::tieGroupSizes(ranked); }, values),
    };
}

std::vector<Procedure> reliabilityProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const Matrix matrix{"matrix", "itemNames"};
    const MatrixNames itemNames{"itemNames", "matrix"};
    const Settings<ReliabilityOptions> settings{};
    return {
        procedure(
            "ReliabilityAnalyzer.analyze",
            [](const ColumnList& items, const std::vector<std::string>& names,
               const ReliabilityOptions& options) {
                return ReliabilityAnalyzer::analyze(namedItems(items, names),
                                                    withNames(options, names));
            },
            matrix, itemNames, settings),
        procedure(
            "ReliabilityAnalyzer.readiness",
            [](const ColumnList& items, const std::vector<std::string>& names,
               const ReliabilityOptions& options) {
                return ReliabilityAnalyzer::readiness(namedItems(items, names),
                                                      withNames(options, names));
            },
            matrix, itemNames, settings),
        procedure(
            "ReliabilityAnalyzer.cronbachAlpha",
            [](const ColumnList& items) {
                return ReliabilityAnalyzer::cronbachAlpha(itemMatrix(items));
            },
            matrix),
        procedure(
            "ReliabilityAnalyzer.alphaIfDeleted",
            [](const ColumnList& items) {
                return ReliabilityAnalyzer::alphaIfDeleted(itemMatrix(items));
            },
            matrix),
        procedure(
            "ReliabilityAnalyzer.correctedItemTotalCorrelations",
            [](const ColumnList& items) {
                return ReliabilityAnalyzer::correctedItemTotalCorrelations(itemMatrix(items));
            },
            matrix),
    };
}

}  // namespace

std::vector<Procedure> analysesProcedures() {
    std::vector<Procedure> procedures;
    for (std::vector<Procedure> some : {descriptiveProcedures(), normalityProcedures(),
                                        associationProcedures(), reliabilityProcedures()}) {
        procedures.insert(procedures.end(), std::make_move_iterator(some.begin()),
                          std::make_move_iterator(some.end()));
    }
    return procedures;
}

}  // namespace sorvane
