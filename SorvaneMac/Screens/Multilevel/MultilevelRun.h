#pragma once

#include <boost/describe/class.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Models/Multilevel/MultilevelData.h"
#include "SorvaneCore/Models/Multilevel/MultilevelResult.h"

namespace sorvane {

/// What is asked of a multilevel model, by the names of columns.
struct MultilevelChoice {
    MultilevelStructureKind structure = MultilevelStructureKind::nested;
    MultilevelFamily family = MultilevelFamily::gaussian;
    MultilevelEstimator estimator = MultilevelEstimator::reml;
    MultilevelDFMethod dfMethod = MultilevelDFMethod::wald;
    std::string outcome;
    std::string cluster;
    /// Empty where the structure has none.
    std::string cluster2;
    std::string time;
    /// The predictor whose effect differs between clusters; empty for none.
    std::string slope;
    bool correlated = true;
    /// With the slope and the outcome of the row before.
    std::vector<std::string> predictors;

    bool isCrossed() const { return structure == MultilevelStructureKind::crossed; }
    bool isThreeLevel() const { return structure == MultilevelStructureKind::threeLevel; }
    bool hasTwoFactors() const { return isCrossed() || isThreeLevel(); }
    /// How the second factor is called in the result.
    std::string secondLabel() const { return isThreeLevel() ? cluster + ":" + cluster2 : cluster2; }

    bool operator==(const MultilevelChoice&) const = default;
};
BOOST_DESCRIBE_STRUCT(MultilevelChoice,
                      (),
                      (structure,
                       family,
                       estimator,
                       dfMethod,
                       outcome,
                       cluster,
                       cluster2,
                       time,
                       slope,
                       correlated,
                       predictors))

/// What the fitted lines of clusters stand on.
struct ClusterLines {
    struct Range {
        double minimum = 0.0;
        double maximum = 0.0;

        bool operator==(const Range&) const = default;
    };
    /// Of the slope's predictor, one per cluster.
    std::vector<Range> ranges;
    /// What the other predictors add to the linear predictor at their means.
    double others = 0.0;

    bool operator==(const ClusterLines&) const = default;
};

/// A multilevel model as it was run.
struct MultilevelRun {
    MultilevelChoice choice;
    std::optional<MultilevelResult> result;
    /// The departures of the clusters, and of the second factor's levels; none without a fit.
    std::vector<MultilevelClusterEffect> effects;
    std::vector<MultilevelClusterEffect> secondEffects;
    /// With a slope.
    std::optional<ClusterLines> lines;

    bool operator==(const MultilevelRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(MultilevelRun, (), (choice, result))

/// The columns of a model, which can be fitted away from the table.
struct MultilevelColumns {
    MultilevelChoice choice;
    /// One predictor per name; the groupings as they stand in the table.
    MultilevelData data;

    /// Cost       the fit, and as a few evaluations of it for the departures
    MultilevelRun fitted() const;
};

}  // namespace sorvane
