#include <algorithm>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/DataReduction/ClusterReport.h"
#include "SorvaneMac/Screens/DataReduction/ClusterTree.h"
#include "SorvaneMac/Screens/DataReduction/ClusteringAnalysis.h"
#include "SorvaneMac/Screens/DataReduction/DataReductionAnalyses.h"
#include "SorvaneMac/Screens/DataReduction/ReducedVariables.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr std::string_view cautionText =
    "Clusters are groupings the algorithm found, not pre-existing types. Linkage and scaling "
    "choices change the solution.";

/// "ward" as a name, the others as words.
std::string linkageWord(HierarchicalLinkage linkage) {
    const std::string shown(displayName(linkage));
    return linkage == HierarchicalLinkage::ward ? shown : UnicodeText::lowerCased(shown);
}

ReportTable sizeTable(const TreeRun& run) {
    ReportTable table;
    table.title = "Cluster sizes at k = " + ResultText::count(run.k);
    table.headers = {"Cluster", "n", "% of cases"};
    for (std::size_t at = 0; at < run.sizes.size(); ++at) {
        table.rows.push_back({ResultText::count(static_cast<std::int64_t>(at + 1)),
                              ResultText::count(run.sizes[at]),
                              svFmt(100.0 * static_cast<double>(run.sizes[at]) /
                                        static_cast<double>(run.result->caseCount),
                                    1)});
    }
    return table;
}

std::vector<ReportTable> tables(const TreeRun& run) {
    std::vector<ReportTable> tables = {
        sizeTable(run), ClusterReport::meanTable(run.variables, run.means, run.deviations)};
    tables.back().title = "Cluster means";
    return tables;
}

std::string caption(const TreeRun& run) {
    return "Cluster solution from cutting the " + linkageWord(run.result->linkage) +
           "-linkage tree at k = " + ResultText::count(run.k) + ".";
}

std::string sentence(const TreeRun& run) {
    std::vector<std::string> sizes;
    for (const std::int64_t size : run.sizes) {
        sizes.push_back(ResultText::count(size));
    }
    return "Hierarchical agglomerative clustering (" + linkageWord(run.result->linkage) +
           " linkage, " + ResultText::count(static_cast<std::int64_t>(run.variables.size())) +
           " variables, cut at k = " + ResultText::count(run.k) + ") grouped " +
           DatasetText::counted(run.result->caseCount, "case") + " into clusters of " +
           ResultText::listed(sizes) + ".";
}

std::vector<Tile> tiles(const TreeRun& run) {
    const HierarchicalResult& result = *run.result;
    const std::int64_t largest = *std::ranges::max_element(run.sizes);
    return {{"Clusters", ResultText::count(run.k), "at the cut"},
            {"Linkage", std::string(displayName(result.linkage)),
             result.standardized ? "variables standardized" : "variables as they stand"},
            {"Largest cluster", ResultText::count(largest),
             DatasetText::share(largest, result.caseCount) + " of the cases"},
            {"Cases used", ResultText::count(result.caseCount), "complete on all variables"}};
}

class HierarchicalClusters final : public ClusteringAnalysis<TreeRun> {
public:
    using ClusteringAnalysis::ClusteringAnalysis;

    std::string subtitle() const override {
        return std::string(displayName(DataReductionMethod::hierarchical));
    }

    void addControls(SetupForm& form) override {
        ReducedVariables::addControls(form, state_.dataset(), fields_, "Variables");
        form.controls.emplace_back(HeadingControl{"OPTIONS"});
        form.controls.emplace_back(FormControls::enumerationPicker("Linkage", fields_.drLinkage));
        ReducedVariables::addClusterControls(form, fields_, "Clusters at the cut (k)");
    }

    std::string selection() const override {
        return "A tree by " +
               ResultText::listed(ReducedVariables::names(state_.dataset(), fields_));
    }

private:
    std::string answers() const override {
        return "Which cases resemble one another, as a tree that merges the most similar "
               "ones first and can be cut into any number of clusters.";
    }
    std::string caution() const override { return std::string(cautionText); }

    std::optional<TreeRun> compute() override {
        TreeRun run{.variables = ReducedVariables::names(state_.dataset(), fields_),
                    .k = fields_.drK.get()};
        const std::vector<NumericColumn> columns =
            ReducedVariables::columns(state_.dataset(), run.variables);
        const CaseRows rows = CaseRows::complete(columns);
        run.result = ClusterAnalysis::hierarchical(
            rows, {.linkage = fields_.drLinkage.get(), .standardize = fields_.drStandardize.get()});
        if (run.result && !run.result->merges.empty()) {
            describe(run, rows, columns);
        }
        return run;
    }

    /// Adds what the cut gives.
    static void describe(TreeRun& run,
                         const CaseRows& rows,
                         const std::vector<NumericColumn>& columns) {
        const auto clusters = static_cast<std::size_t>(run.k);
        const auto assignments =
            ClusterAnalysis::cutTree(run.result->merges, run.result->caseCount, run.k);
        if (!assignments) {
            return;
        }
        run.sizes = ClusterReport::sizes(*assignments, clusters);
        run.means = ClusterReport::means(rows, *assignments, clusters);
        run.deviations = ClusterReport::deviations(rows, *assignments, run.means);
        std::vector<const NumericColumn*> pointers;
        for (const NumericColumn& column : columns) {
            pointers.push_back(&column);
        }
        run.tree = ClusterTree::chart(*run.result, CompleteCases::rows(pointers), run.k);
    }

    void present(const TreeRun& run, ScreenContent& content) const override {
        if (!run.result || run.sizes.empty()) {
            content.gate = ReducedVariables::cannotCluster();
            if (run.result && !ResultText::obstacle(run.result->readiness).empty()) {
                content.gate->text = ResultText::obstacle(run.result->readiness);
            }
            return;
        }
        addReport({.title = "Hierarchical clusters: " + linkageWord(run.result->linkage) +
                            " linkage, k = " + ResultText::count(run.k),
                   .sentence = sentence(run),
                   .tiles = tiles(run),
                   .tables = tables(run),
                   .note = caption(run),
                   .charts = {run.tree},
                   .figureCaption = "Dendrogram. " + caption(run),
                   .caution = caution(),
                   .warnings = ResultText::messages(run.result->readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> DataReductionAnalyses::hierarchicalClusters(StudioState& state,
                                                                      DataReductionFields& fields) {
    return std::make_unique<HierarchicalClusters>(state, fields, fields.drTreeRun);
}

}  // namespace sorvane
