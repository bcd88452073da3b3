#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Models/Multilevel/MultilevelData.h"
#include "SorvaneCore/Models/Multilevel/MultilevelOrdinal.h"
#include "SorvaneCore/Models/Multilevel/MultilevelResult.h"
#include "SorvaneMac/Screens/Chart.h"

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

    bool isGaussian() const { return family == MultilevelFamily::gaussian; }
    bool isLogistic() const { return family == MultilevelFamily::binomial; }
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

/// A multilevel model as it was run.
struct MultilevelRun {
    /// Cases of the smallest and of the largest cluster; zeros without a fit.
    struct Sizes {
        std::int64_t least = 0;
        std::int64_t most = 0;

        bool operator==(const Sizes&) const = default;
    };
    MultilevelChoice choice;
    std::optional<MultilevelResult> result;
    Sizes sizes;
    /// Of the second factor's levels.
    Sizes secondSizes;
    /// What the slope's variance is multiplied with to tell how far the slope moves cases: the mean
    /// square of its predictor, about the mean where the intercept correlates; 1 without a slope.
    double slopeSquare = 1.0;
    /// Whether 0 lies outside the values of the slope's predictor by more than half their range, as
    /// for years: what is said of the intercept then holds where there are no cases.
    bool isZeroFar = false;
    /// Standard deviations of the predictors, in the order of the fixed effects after the first.
    std::vector<double> predictorDeviations;
    /// What sets the clusters apart, drawn from the cases of the run; may be empty.
    std::vector<Chart> charts;

    bool operator==(const MultilevelRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(MultilevelRun, (), (choice, result))

/// A model of an ordered outcome as it was run.
struct MultilevelOrdinalRun {
    MultilevelChoice choice;
    std::optional<MultilevelOrdinalResult> result;
    std::vector<Chart> charts;

    bool operator==(const MultilevelOrdinalRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(MultilevelOrdinalRun, (), (choice, result))

/// The columns of a model, which can be fitted away from the table.
struct MultilevelColumns {
    MultilevelChoice choice;
    /// One predictor per name; the groupings as they stand in the table.
    MultilevelData data;

    /// Cost       the fit, and as a few evaluations of it for the departures
    MultilevelRun fitted() const;
};

}  // namespace sorvane
