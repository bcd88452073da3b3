#pragma once

#include <optional>

#include "SorvaneCore/Analyses/Basics/GroupComparisonTests.h"
#include "SorvaneCore/Analyses/Basics/GroupMoments.h"

namespace sorvane {

/// How far the means of two groups lie apart, under Student's or Welch's assumption.
struct MeanContrast {
    /// a less b.
    double difference = 0.0;
    double standardError = 0.0;
    double df = 0.0;
    /// Over the standard deviation pooled from the two groups, whatever the assumption.
    double cohensD = 0.0;

    /// Of two groups of at least two values.
    ///
    /// Failure    a standard error not above 0, or degrees of freedom that are not finite -> absent
    static std::optional<MeanContrast> of(const GroupMoments& a,
                                          const GroupMoments& b,
                                          VarianceAssumption variances);
};

/// Satterthwaite's degrees of freedom of the sum of two squared standard errors.
double satterthwaiteDf(const GroupMoments& a, const GroupMoments& b);

}  // namespace sorvane
