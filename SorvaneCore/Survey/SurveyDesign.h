#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

enum class ReplicateType { balancedRepeatedReplication, fayBRR, jackknife };
BOOST_DESCRIBE_ENUM(ReplicateType, balancedRepeatedReplication, fayBRR, jackknife)
std::string_view displayName(ReplicateType type);

/// Weights with which an estimate is made again, to see how it varies.
struct ReplicateWeights {
    /// One list per replicate, of one combined weight per row.
    std::vector<std::vector<double>> weights{};
    ReplicateType type = ReplicateType::jackknife;
    /// How far the replicates of `fayBRR` are drawn back to the full sample.
    double fayRho = 0.0;
    /// The multiplier of each replicate's squared deviation, in place of the type's.
    std::optional<std::vector<double>> replicateScale{};

    bool operator==(const ReplicateWeights&) const = default;
};
BOOST_DESCRIBE_STRUCT(ReplicateWeights, (), (weights, type, fayRho, replicateScale))

/// What a complex sample adds to a table: one entry per row.
struct SurveyDesign {
    std::vector<double> weights{};
    /// Null for one stratum. Texts are compared as they stand.
    std::shared_ptr<const TextColumn> strata{};
    /// The primary sampling units, named within their stratum; null where each row is its own.
    std::shared_ptr<const TextColumn> clusters{};
    /// How many primary sampling units the population has in the row's stratum.
    std::optional<std::vector<double>> fpc{};
    std::optional<ReplicateWeights> replicateWeights{};
    double confidenceLevel = 0.95;

    std::int64_t observationCount() const;
    std::int64_t stratumCount() const;
    /// Distinct pairs of stratum and primary sampling unit.
    std::int64_t sampledPSUCount() const;
    /// Replicates less one where nothing else is known, otherwise units less strata; at least 1.
    std::int64_t designDegreesOfFreedom() const;
    /// The number of each row's primary sampling unit, equal for equal pairs with the stratum.
    std::vector<std::uint32_t> resolvedClusters() const;
    /// The strata that hold one primary sampling unit, in order of first appearance.
    std::vector<std::string> singlePSUStrata() const;
    double sumOfWeights(std::span<const std::size_t> rows) const;
    /// Cases of equal weight that would tell as much as these rows (Kish): the squared sum of the
    /// weights over the sum of their squares; absent without weight.
    std::optional<double> effectiveSampleSize(std::span<const std::size_t> rows) const;

    /// What stops every analysis of the sample, in full sentences; none for a sound design.
    std::vector<std::string> structuralErrors() const;
    /// What the user must know of standard errors under this design.
    std::vector<AnalysisReadinessIssue> readinessIssues() const;
};

/// Strata and primary sampling units as numbers, counted from 0 in order of first appearance.
struct SampledUnits {
    /// Per row.
    std::vector<std::uint32_t> stratumOfRow;
    std::vector<std::uint32_t> unitOfRow;
    /// Per unit.
    std::vector<std::uint32_t> stratumOfUnit;
    std::size_t stratumCount = 0;

    /// Input      strata or clusters of another length than the weights count as not given
    /// Cost       O(rows)
    static SampledUnits of(const SurveyDesign& design);

    std::vector<std::int64_t> unitsPerStratum() const;
    /// Of those units that hold one of the rows.
    std::vector<std::int64_t> unitsPerStratum(std::span<const std::size_t> rows) const;
};

/// What the units of some rows leave to estimate with.
struct SampledCounts {
    std::int64_t strata = 0;
    /// Distinct pairs of stratum and primary sampling unit.
    std::int64_t units = 0;
    std::int64_t degreesOfFreedom = 1;
    std::vector<AnalysisReadinessIssue> readinessIssues{};
};

/// A design with what is counted of its rows, once for all that is estimated under it.
struct SampledDesign {
    const SurveyDesign& design;
    SampledUnits units;
    SampledCounts counts;

    /// Input      a design that outlives what is given
    /// Cost       O(rows)
    static SampledDesign of(const SurveyDesign& design);

    /// The counts where only these rows had been sampled: units and strata without one do not
    /// count.
    SampledCounts countsAmong(std::span<const std::size_t> rows) const;
};

}  // namespace sorvane
