#include <algorithm>
#include <numeric>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/DataReduction/ClusterReport.h"
#include "SorvaneMac/Screens/DataReduction/ClusteringAnalysis.h"
#include "SorvaneMac/Screens/DataReduction/DataReductionAnalyses.h"
#include "SorvaneMac/Screens/DataReduction/ReducedVariables.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr std::string_view cautionText =
    "Clusters are groupings the algorithm found, not pre-existing types. Different k or scaling "
    "choices give different groupings.";
/// How far the elbow curve goes, where the chosen k does not go further.
constexpr std::int64_t longestElbow = 10;

std::string centerScale(const KMeansResult& result) {
    return result.standardized ? "Center (standard scores)" : "Center";
}

/// A sum of squares with as many decimals as leave something of the total.
std::string squares(double sum, const KMeansResult& result) {
    return svFigure(sum, ReportDecimals::of(result.totalWithinClusterSumOfSquares, 2));
}

ReportTable sizeTable(const KMeansResult& result) {
    ReportTable table;
    table.title = "Clusters";
    table.headers = {"Cluster", "n", "% of cases", "Within-cluster SS"};
    const auto cases = static_cast<double>(result.assignments.size());
    for (std::size_t at = 0; at < result.clusters.size(); ++at) {
        const KMeansClusterSummary& cluster = result.clusters[at];
        table.rows.push_back({ResultText::count(static_cast<std::int64_t>(at + 1)),
                              ResultText::count(cluster.size),
                              svFmt(100.0 * static_cast<double>(cluster.size) / cases, 1),
                              squares(cluster.withinClusterSumOfSquares, result)});
    }
    return table;
}

std::vector<ReportTable> tables(const KMeansRun& run) {
    std::vector<ReportTable> tables = {
        sizeTable(*run.result), ClusterReport::meanTable(run.variables, run.means, run.deviations)};
    tables.back().title = "Cluster means";
    if (run.result->standardized) {
        tables.push_back(ClusterReport::meanTable(run.variables, run.result->centroids));
        tables.back().title = "Cluster centers in standard scores";
    }
    return tables;
}

Chart elbowChart(const KMeansRun& run) {
    LinePlot plot{.marked = static_cast<double>(run.k),
                  .markedName = "k = " + ResultText::count(run.k)};
    LinePlot::Series series{.name = "Within-cluster sum of squares"};
    for (const ElbowPoint& point : run.elbow) {
        series.x.push_back(static_cast<double>(point.k));
        series.y.push_back(point.totalWithinClusterSumOfSquares);
    }
    plot.series.push_back(std::move(series));
    Chart chart;
    chart.title = "Elbow curve";
    chart.subtitle = "Look for the bend: clusters after it gain little.";
    chart.xLabel = "Clusters (k)";
    chart.yLabel = "Total within-cluster SS";
    chart.plot = std::move(plot);
    return chart;
}

std::vector<Chart> charts(const KMeansRun& run) {
    std::vector<Chart> charts = {elbowChart(run),
                                 ClusterReport::profiles(run.variables, run.result->centroids)};
    charts.back().yLabel = centerScale(*run.result);
    return charts;
}

std::string sentence(const KMeansRun& run) {
    const KMeansResult& result = *run.result;
    return "K-means clustering grouped " +
           ResultText::count(static_cast<std::int64_t>(result.assignments.size())) +
           " cases into " + ResultText::count(result.k) + " clusters across " +
           ResultText::count(static_cast<std::int64_t>(run.variables.size())) +
           " variables, with a total within-cluster sum of squares of " +
           squares(result.totalWithinClusterSumOfSquares, result) + ".";
}

std::vector<Tile> tiles(const KMeansResult& result) {
    return {{"Clusters", ResultText::count(result.k),
             result.standardized ? "variables standardized" : "variables as they stand"},
            {"Total within-cluster SS", squares(result.totalWithinClusterSumOfSquares, result), ""},
            {"Iterations", ResultText::count(result.iterations),
             result.converged ? "converged" : "max iterations reached"},
            {"Cases used", ResultText::count(static_cast<std::int64_t>(result.assignments.size())),
             "complete on all variables"}};
}

class KMeansClusters final : public ClusteringAnalysis<KMeansRun> {
public:
    using ClusteringAnalysis::ClusteringAnalysis;

    std::string subtitle() const override {
        return std::string(displayName(DataReductionMethod::kmeans));
    }

    void addControls(SetupForm& form) override {
        ReducedVariables::addControls(form, state_.dataset(), fields_, "Variables");
        form.controls.emplace_back(HeadingControl{"OPTIONS"});
        ReducedVariables::addClusterControls(form, fields_, "Number of clusters (k)");
    }

    std::string selection() const override {
        return ResultText::count(fields_.drK.get()) + " clusters by " +
               ResultText::listed(ReducedVariables::names(state_.dataset(), fields_));
    }

private:
    std::string answers() const override {
        return "How the cases can be parted into a given number of clusters so that each "
               "case is near the centre of its own.";
    }
    std::string caution() const override { return std::string(cautionText); }

    std::optional<KMeansRun> compute() override {
        KMeansRun run{.variables = ReducedVariables::names(state_.dataset(), fields_),
                      .k = fields_.drK.get()};
        const CaseRows rows =
            CaseRows::complete(ReducedVariables::columns(state_.dataset(), run.variables));
        const KMeansOptions options{.k = run.k, .standardize = fields_.drStandardize.get()};
        run.result = ClusterAnalysis::kMeans(rows, options);
        if (run.result) {
            std::vector<std::int64_t> counts(
                static_cast<std::size_t>(std::max(run.k, longestElbow)));
            std::iota(counts.begin(), counts.end(), 1);
            run.elbow = ClusterAnalysis::elbowCurve(rows, counts, options);
            run.means =
                ClusterReport::means(rows, run.result->assignments, run.result->clusters.size());
            run.deviations = ClusterReport::deviations(rows, run.result->assignments, run.means);
        }
        return run;
    }

    void present(const KMeansRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = ReducedVariables::cannotCluster();
            return;
        }
        addReport({.title = "K-means Clusters: k = " + ResultText::count(run.k),
                   .sentence = sentence(run),
                   .tiles = tiles(*run.result),
                   .tables = tables(run),
                   .note = "Clusters of " + ResultText::listed(run.variables) +
                           ". SS is the sum of squared distances from the center" +
                           (run.result->standardized ? ", in standard scores." : "."),
                   .charts = charts(run),
                   .figureCaption = "Total within-cluster sum of squares by number of clusters.",
                   .caution = caution(),
                   .warnings = ResultText::messages(run.result->readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> DataReductionAnalyses::kMeansClusters(StudioState& state,
                                                                DataReductionFields& fields) {
    return std::make_unique<KMeansClusters>(state, fields, fields.drKMeansRun);
}

}  // namespace sorvane
