#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextColumn.h"
#include "SorvaneCore/Models/Multilevel/MultilevelSettings.h"

namespace sorvane {

/// The columns of a multilevel model, all of one length.
///
/// A row counts when it has the outcome, every predictor and a label that is not white space in
/// each grouping. Labels that differ by surrounding white space alone are one cluster.
struct MultilevelData {
    NumericColumn outcome{};
    std::vector<NumericColumn> fixedPredictors{};
    std::shared_ptr<const TextColumn> cluster{};
    /// The second factor of a crossed model; none for a nested one.
    std::shared_ptr<const TextColumn> cluster2{};
};

struct MultilevelOptions {
    /// One per predictor.
    std::vector<std::string> fixedNames{};
    MultilevelEstimator estimator = MultilevelEstimator::reml;
    /// 1 less this is held to 0.001 to 0.999.
    double confidenceLevel = 0.95;
    /// The name of the clusters among the variance components.
    std::string clusterLabel{};
    std::string cluster2Label{};
    /// The predictor whose effect differs between clusters; absent or empty for none.
    std::optional<std::string> randomSlopeName{};
    /// Whether the intercept and the slope of a cluster may correlate.
    bool correlateRandomEffects = true;
    MultilevelDFMethod dfMethod = MultilevelDFMethod::wald;
};

}  // namespace sorvane
