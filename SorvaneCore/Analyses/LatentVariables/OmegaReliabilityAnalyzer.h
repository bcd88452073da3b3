#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

struct OmegaReliabilityResult {
    std::int64_t itemCount = 0;
    std::int64_t casesUsed = 0;
    double omegaTotal = 0.0;
    /// Of each item on the one factor.
    std::vector<double> loadings{};
    /// Of the raw items over the same cases.
    std::optional<double> cronbachAlpha{};
    /// What must be said beside the number.
    std::vector<std::string> reportingNotes{};
    std::optional<AnalysisReadiness> readiness{};

    bool operator==(const OmegaReliabilityResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    OmegaReliabilityResult,
    (),
    (itemCount, casesUsed, omegaTotal, loadings, cronbachAlpha, reportingNotes, readiness))

/// McDonald's omega of items that measure one thing.
namespace OmegaReliabilityAnalyzer {

/// Input      as `LatentVariableSupport::prepare`, which two items satisfy
/// Method     with the loadings of one iterated principal axis (at most 100 passes, to 1e-9) and S
///            their sum, S^2 / (S^2 + sum of 1 - loading^2); where fewer than half of the items
///            load positively, all signs are turned
/// Failure    items that cannot be prepared, a denominator that is not above 0 -> absent
/// Cost       O(n k^2), and O(k^3) a pass
/// Reference  McDonald (1999), Test Theory: A Unified Treatment, chapter 6
std::optional<OmegaReliabilityResult> analyze(std::span<const NumericColumn> items);

}  // namespace OmegaReliabilityAnalyzer

}  // namespace sorvane
