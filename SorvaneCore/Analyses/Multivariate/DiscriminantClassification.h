#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "SorvaneCore/Analyses/Basics/RowPartition.h"
#include "SorvaneCore/Analyses/Multivariate/DiscriminantAnalysis.h"

namespace sorvane {

/// Cases in coordinates in which every group has the identity for a covariance.
struct WhitenedCases {
    std::size_t width = 0;
    /// One row per case, group after group.
    std::vector<double> cases{};
    /// One row per group.
    std::vector<double> means{};

    std::span<const double> caseAt(std::size_t i) const {
        return std::span(cases).subspan(i * width, width);
    }
    std::span<const double> meanOf(std::size_t g) const {
        return std::span(means).subspan(g * width, width);
    }
};

namespace DiscriminantClassifications {

/// By the rule fitted to all cases.
DiscriminantClassification resubstituted(const WhitenedCases& cases,
                                         const RowPartition& partition,
                                         std::span<const double> priors);

/// By the rule fitted to all cases but the one.
///
/// Method     the covariance without a case differs from the one with it by a matrix of rank one,
///            so that the distances follow from those to the means of all cases
DiscriminantClassification leftOut(const WhitenedCases& cases,
                                   const RowPartition& partition,
                                   std::span<const double> priors);

}  // namespace DiscriminantClassifications

}  // namespace sorvane
