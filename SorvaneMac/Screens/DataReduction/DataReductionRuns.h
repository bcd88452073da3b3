#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Clustering/HierarchicalClustering.h"
#include "SorvaneCore/Analyses/Clustering/KMeansClustering.h"
#include "SorvaneCore/Analyses/LatentVariables/FactorAnalyzer.h"
#include "SorvaneCore/Analyses/LatentVariables/OmegaReliabilityAnalyzer.h"
#include "SorvaneCore/Analyses/LatentVariables/PrincipalComponentsAnalyzer.h"
#include "SorvaneMac/Screens/Chart.h"

namespace sorvane {

/// The runs of Data Reduction as they are kept: the variables they were run on, and what came out,
/// which is absent where the method could not run.

struct ComponentsRun {
    std::vector<std::string> items;
    std::optional<PrincipalComponentsResult> result;

    bool operator==(const ComponentsRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(ComponentsRun, (), (items, result))

struct FactorsRun {
    std::vector<std::string> items;
    std::optional<FactorAnalysisResult> result;
    /// Of the correlations themselves, without communalities.
    std::vector<double> eigenvalues;

    bool operator==(const FactorsRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(FactorsRun, (), (items, result, eigenvalues))

struct OmegaRun {
    std::vector<std::string> items;
    std::optional<OmegaReliabilityResult> result;

    bool operator==(const OmegaRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(OmegaRun, (), (items, result))

struct KMeansRun {
    std::vector<std::string> variables;
    std::int64_t k = 0;
    std::optional<KMeansResult> result;
    /// One row per cluster, in the variables' own units.
    std::vector<std::vector<double>> means;
    std::vector<std::vector<double>> deviations;
    std::vector<ElbowPoint> elbow;

    bool operator==(const KMeansRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(KMeansRun, (), (variables, k, result, means, deviations, elbow))

struct TreeRun {
    std::vector<std::string> variables;
    std::int64_t k = 0;
    std::optional<HierarchicalResult> result;
    /// Of the clusters at the cut.
    std::vector<std::int64_t> sizes;
    std::vector<std::vector<double>> means;
    std::vector<std::vector<double>> deviations;
    Chart tree;

    bool operator==(const TreeRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(TreeRun, (), (variables, k, result, sizes, means, deviations))

}  // namespace sorvane
