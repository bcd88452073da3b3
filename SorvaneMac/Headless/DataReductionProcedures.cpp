#include "SorvaneCore/Analyses/Clustering/HierarchicalClustering.h"
#include "SorvaneCore/Analyses/Clustering/KMeansClustering.h"
#include "SorvaneCore/Analyses/LatentVariables/FactorAnalyzer.h"
#include "SorvaneCore/Analyses/LatentVariables/LatentVariableSupport.h"
#include "SorvaneCore/Analyses/LatentVariables/OmegaReliabilityAnalyzer.h"
#include "SorvaneCore/Analyses/LatentVariables/PrincipalComponentsAnalyzer.h"
#include "SorvaneCore/Analyses/LatentVariables/VarimaxRotation.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

/// Prepared items as a caller reads them: one row of z scores per case.
struct PreparedItemRows {
    std::int64_t itemCount = 0;
    std::int64_t casesUsed = 0;
    std::vector<std::vector<double>> standardized{};
    std::vector<double> correlation{};
};
BOOST_DESCRIBE_STRUCT(PreparedItemRows, (), (itemCount, casesUsed, standardized, correlation))

namespace {

std::optional<PreparedItemRows> preparedRows(const ColumnList& items) {
    std::optional<LatentVariableSupport::Prepared> prepared = LatentVariableSupport::prepare(items);
    if (!prepared) {
        return std::nullopt;
    }
    PreparedItemRows result{.itemCount = static_cast<std::int64_t>(prepared->itemCount),
                            .casesUsed = static_cast<std::int64_t>(prepared->casesUsed),
                            .standardized = NumberRows(prepared->casesUsed),
                            .correlation = std::move(prepared->correlation)};
    for (std::size_t j = 0; j < prepared->itemCount; ++j) {
        const std::span<const double> scores = prepared->item(j);
        for (std::size_t i = 0; i < scores.size(); ++i) {
            result.standardized[i].push_back(scores[i]);
        }
    }
    return result;
}

NumberRows rotated(const NumberRows& loadings, const VarimaxOptions& options) {
    for (const std::vector<double>& row : loadings) {
        if (row.size() != loadings.front().size()) {
            throw CallError("The argument \"loadings\" needs rows of one length.");
        }
    }
    return varimaxRotation(loadings, options);
}

std::vector<Procedure> latentVariableProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const Columns items{"items", "itemNames"};
    constexpr std::int64_t factorCount = 2;
    return {
        procedure("LatentVariableSupport.prepare", &preparedRows, items),
        procedure(
            "LatentVariableSupport.readiness",
            [](const std::string& method, std::int64_t itemCount, std::int64_t totalRows,
               std::int64_t casesUsed) {
                return LatentVariableSupport::readiness(method, itemCount, totalRows, casesUsed);
            },
            Value<std::string>{"method"}, Value<std::int64_t>{"itemCount"},
            Value<std::int64_t>{"totalRows"}, Value<std::int64_t>{"casesUsed"}),
        procedure(
            "PrincipalComponentsAnalyzer.analyze",
            [](const ColumnList& columns, const PrincipalComponentsOptions& options) {
                return PrincipalComponentsAnalyzer::analyze(columns, options);
            },
            items, Settings<PrincipalComponentsOptions>{}),
        procedure(
            "FactorAnalyzer.analyze",
            [](const ColumnList& columns, std::int64_t factors) {
                return FactorAnalyzer::analyze(columns, factors);
            },
            items, Setting<std::int64_t>{"factorCount", factorCount}),
        procedure("FactorAnalyzer.varimaxRotation", &rotated, Value<NumberRows>{"loadings"},
                  Settings<VarimaxOptions>{}),
        procedure(
            "OmegaReliabilityAnalyzer.analyze",
            [](const ColumnList& columns) { return OmegaReliabilityAnalyzer::analyze(columns); },
            items),
    };
}

/// Cases: rows of numbers, or names of columns whose complete rows count. Absent where rows differ
/// in length.
struct Cases {
    std::string name = "rows";
    std::string columnsKey = "columns";
    std::optional<CaseRows> read(const CallArguments& call) const {
        if (call.hasRows(name)) {
            return CaseRows::of(call.required<NumberRows>(name));
        }
        // "rows" may also say which rows of the file to read.
        return CaseRows::complete(call.has(columnsKey) ? call.numericColumns(columnsKey, columnsKey)
                                                       : call.numericColumns(name, columnsKey));
    }
    std::vector<ListedArgument> listed() const {
        return {{name, "list of rows, or of column names", ""},
                {columnsKey, "list of column names, in place of rows", ""}};
    }
};

using MaybeRows = std::optional<CaseRows>;

std::vector<Procedure> clusterProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const KMeansOptions start;
    const Cases rows{};
    const Setting<bool> standardize{"standardize", start.standardize};
    const Setting<std::int64_t> maxIterations{"maxIterations", start.maxIterations};
    const Seed seed{"seed", start.seed};
    return {
        procedure(
            "ClusterAnalysis.kMeans",
            [](const MaybeRows& cases, std::int64_t k, bool inStandardScores, std::int64_t passes,
               std::uint64_t firstState) {
                const KMeansOptions options{.k = k,
                                            .standardize = inStandardScores,
                                            .maxIterations = passes,
                                            .seed = firstState};
                return cases ? ClusterAnalysis::kMeans(*cases, options) : std::nullopt;
            },
            rows, Setting<std::int64_t>{"k", start.k}, standardize, maxIterations, seed),
        procedure(
            "ClusterAnalysis.elbowCurve",
            [](const MaybeRows& cases, const std::vector<std::int64_t>& kRange,
               bool inStandardScores, std::int64_t passes, std::uint64_t firstState) {
                const KMeansOptions options{
                    .standardize = inStandardScores, .maxIterations = passes, .seed = firstState};
                return cases ? ClusterAnalysis::elbowCurve(*cases, kRange, options)
                             : std::vector<ElbowPoint>();
            },
            rows, Value<std::vector<std::int64_t>>{"kRange"}, standardize, maxIterations, seed),
        procedure(
            "ClusterAnalysis.hierarchical",
            [](const MaybeRows& cases, const HierarchicalOptions& options) {
                return cases ? ClusterAnalysis::hierarchical(*cases, options) : std::nullopt;
            },
            rows, Settings<HierarchicalOptions>{}),
        procedure(
            "ClusterAnalysis.cutTree",
            [](const std::vector<HierarchicalMerge>& merges, std::int64_t caseCount,
               std::int64_t k) { return ClusterAnalysis::cutTree(merges, caseCount, k); },
            Value<std::vector<HierarchicalMerge>>{"merges"}, Value<std::int64_t>{"caseCount"},
            Value<std::int64_t>{"k"}),
    };
}

}  // namespace

std::vector<Procedure> dataReductionProcedures() {
    std::vector<Procedure> procedures = latentVariableProcedures();
    for (Procedure& each : clusterProcedures()) {
        procedures.push_back(std::move(each));
    }
    return procedures;
}

}  // namespace sorvane
