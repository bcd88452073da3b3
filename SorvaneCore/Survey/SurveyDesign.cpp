#include "SorvaneCore/Survey/SurveyDesign.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <unordered_map>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

constexpr std::string_view onlyStratum = "__all__";

/// Whether a column says something of each row; one of another length is a structural error.
bool describes(const std::shared_ptr<const TextColumn>& column, std::size_t rows) {
    return column && column->size() == rows;
}

/// The number of each row's text, in order of first appearance.
std::vector<std::uint32_t> numbered(const TextColumn& column) {
    std::unordered_map<std::string_view, std::uint32_t> numbers;
    std::vector<std::uint32_t> ofLevel(column.levelCount());
    for (std::size_t code = 0; code < ofLevel.size(); ++code) {
        ofLevel[code] =
            numbers.try_emplace(column.level(code), static_cast<std::uint32_t>(numbers.size()))
                .first->second;
    }
    std::vector<std::uint32_t> result(column.size());
    column.withCodes([&](const auto& codes) {
        for (std::size_t row = 0; row < result.size(); ++row) {
            result[row] = ofLevel[codes[row]];
        }
    });
    return result;
}

bool isPositive(double value) {
    return std::isfinite(value) && value > 0.0;
}

std::string lengthError(std::string_view what, std::size_t count, std::size_t rows) {
    return std::string(what) + " (" + NumberText::integer(static_cast<std::int64_t>(count)) +
           ") does not match the number of weights (" +
           NumberText::integer(static_cast<std::int64_t>(rows)) + ").";
}

void checkReplicates(const ReplicateWeights& replicates,
                     std::size_t rows,
                     std::vector<std::string>& errors) {
    const std::size_t count = replicates.weights.size();
    if (count == 0) {
        errors.emplace_back("Replicate weights were supplied but contain no replicates.");
    }
    if (std::ranges::any_of(replicates.weights,
                            [rows](const auto& weights) { return weights.size() != rows; })) {
        errors.push_back("Each replicate weight vector must match the number of observations (" +
                         NumberText::integer(static_cast<std::int64_t>(rows)) + ").");
    }
    if (replicates.replicateScale && replicates.replicateScale->size() != count) {
        errors.emplace_back("Replicate scale count must match the number of replicates.");
    }
    if (replicates.type == ReplicateType::fayBRR &&
        !(replicates.fayRho >= 0.0 && replicates.fayRho < 1.0)) {
        errors.emplace_back("Fay perturbation factor must be between 0 and 1.");
    }
}

std::vector<std::string> singleUnitStrata(const SurveyDesign& design, const SampledUnits& units) {
    const std::vector<std::int64_t> counts = units.unitsPerStratum();
    std::vector<std::string> names;
    std::vector<bool> isNamed(counts.size(), false);
    for (std::size_t row = 0; row < units.stratumOfRow.size(); ++row) {
        const std::uint32_t stratum = units.stratumOfRow[row];
        if (counts[stratum] == 1 && !isNamed[stratum]) {
            isNamed[stratum] = true;
            names.emplace_back(describes(design.strata, design.weights.size())
                                   ? (*design.strata)[row]
                                   : onlyStratum);
        }
    }
    return names;
}

std::vector<AnalysisReadinessIssue> issuesOf(const SurveyDesign& design,
                                             const std::vector<std::int64_t>& unitsPerStratum) {
    std::vector<AnalysisReadinessIssue> issues;
    const auto caution = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
    };
    if (!design.replicateWeights && !design.strata && !design.clusters) {
        caution(
            "No strata or clusters were supplied. Standard errors assume simple random sampling "
            "with weights; supply strata and cluster (PSU) ids for design-based variance.");
    } else if (!design.replicateWeights && !design.strata) {
        caution("No strata were supplied; the sample is treated as a single stratum.");
    } else if (!design.replicateWeights && !design.clusters) {
        caution(
            "No clusters (PSUs) were supplied; sampling is treated as element level within "
            "strata.");
    }
    const auto single = std::ranges::count(unitsPerStratum, 1);
    if (single > 0) {
        caution(NumberText::integer(single) +
                " stratum/strata contain a single sampled PSU; those strata contribute no "
                "between-PSU variance and may understate the standard error.");
    }
    return issues;
}

SampledCounts countsOf(const SurveyDesign& design,
                       const std::vector<std::int64_t>& unitsPerStratum) {
    SampledCounts counts{.readinessIssues = issuesOf(design, unitsPerStratum)};
    for (const std::int64_t units : unitsPerStratum) {
        counts.units += units;
        counts.strata += units > 0 ? 1 : 0;
    }
    const auto& replicates = design.replicateWeights;
    counts.degreesOfFreedom = replicates && !design.strata && !design.clusters
                                  ? std::max<std::int64_t>(std::ssize(replicates->weights), 2) - 1
                                  : std::max<std::int64_t>(counts.units - counts.strata, 1);
    return counts;
}

}  // namespace

std::string_view displayName(ReplicateType type) {
    switch (type) {
        case ReplicateType::balancedRepeatedReplication:
            return "Balanced repeated replication";
        case ReplicateType::fayBRR:
            return "Fay balanced repeated replication";
        case ReplicateType::jackknife:
            break;
    }
    return "jackknife";
}

SampledUnits SampledUnits::of(const SurveyDesign& design) {
    const std::size_t rows = design.weights.size();
    SampledUnits units;
    units.stratumOfRow = describes(design.strata, rows) ? numbered(*design.strata)
                                                        : std::vector<std::uint32_t>(rows, 0);
    units.stratumCount =
        rows == 0 ? 0 : std::size_t{*std::ranges::max_element(units.stratumOfRow)} + 1;
    if (!describes(design.clusters, rows)) {
        units.unitOfRow.resize(rows);
        std::iota(units.unitOfRow.begin(), units.unitOfRow.end(), 0U);
        units.stratumOfUnit = units.stratumOfRow;
        return units;
    }
    const std::vector<std::uint32_t> clusters = numbered(*design.clusters);
    std::unordered_map<std::uint64_t, std::uint32_t> numbers;
    units.unitOfRow.reserve(rows);
    for (std::size_t row = 0; row < rows; ++row) {
        const std::uint64_t pair =
            (std::uint64_t{units.stratumOfRow[row]} << 32) | std::uint64_t{clusters[row]};
        const auto [entry, isNew] =
            numbers.try_emplace(pair, static_cast<std::uint32_t>(numbers.size()));
        if (isNew) {
            units.stratumOfUnit.push_back(units.stratumOfRow[row]);
        }
        units.unitOfRow.push_back(entry->second);
    }
    return units;
}

std::vector<std::int64_t> SampledUnits::unitsPerStratum() const {
    std::vector<std::int64_t> counts(stratumCount, 0);
    for (const std::uint32_t stratum : stratumOfUnit) {
        ++counts[stratum];
    }
    return counts;
}

std::vector<std::int64_t> SampledUnits::unitsPerStratum(std::span<const std::size_t> rows) const {
    std::vector<bool> isCounted(stratumOfUnit.size(), false);
    std::vector<std::int64_t> counts(stratumCount, 0);
    for (const std::size_t row : rows) {
        const std::uint32_t unit = unitOfRow[row];
        if (!isCounted[unit]) {
            isCounted[unit] = true;
            ++counts[stratumOfUnit[unit]];
        }
    }
    return counts;
}

std::int64_t SurveyDesign::observationCount() const {
    return static_cast<std::int64_t>(weights.size());
}

std::int64_t SurveyDesign::stratumCount() const {
    return static_cast<std::int64_t>(SampledUnits::of(*this).stratumCount);
}

std::int64_t SurveyDesign::sampledPSUCount() const {
    return static_cast<std::int64_t>(SampledUnits::of(*this).stratumOfUnit.size());
}

std::int64_t SurveyDesign::designDegreesOfFreedom() const {
    return SampledDesign::of(*this).counts.degreesOfFreedom;
}

std::vector<std::uint32_t> SurveyDesign::resolvedClusters() const {
    return SampledUnits::of(*this).unitOfRow;
}

std::vector<std::string> SurveyDesign::singlePSUStrata() const {
    return singleUnitStrata(*this, SampledUnits::of(*this));
}

double SurveyDesign::sumOfWeights(std::span<const std::size_t> rows) const {
    double sum = 0.0;
    for (const std::size_t row : rows) {
        sum += weights[row];
    }
    return sum;
}

std::optional<double> SurveyDesign::effectiveSampleSize(std::span<const std::size_t> rows) const {
    const double sum = sumOfWeights(rows);
    double squares = 0.0;
    for (const std::size_t row : rows) {
        squares += weights[row] * weights[row];
    }
    return squares > 0.0 ? std::optional(sum * sum / squares) : std::nullopt;
}

std::vector<std::string> SurveyDesign::structuralErrors() const {
    const std::size_t rows = weights.size();
    std::vector<std::string> errors;
    if (rows == 0) {
        errors.emplace_back("No observations were supplied.");
    }
    if (!std::ranges::all_of(weights, isPositive)) {
        errors.emplace_back("Sampling weights must all be finite and positive.");
    }
    if (strata && strata->size() != rows) {
        errors.push_back(lengthError("Stratum count", strata->size(), rows));
    }
    if (clusters && clusters->size() != rows) {
        errors.push_back(lengthError("Cluster/PSU count", clusters->size(), rows));
    }
    if (fpc && fpc->size() != rows) {
        errors.push_back(lengthError("Finite population correction count", fpc->size(), rows));
    }
    if (fpc && !std::ranges::all_of(*fpc, isPositive)) {
        errors.emplace_back("Finite population correction values must be finite and positive.");
    }
    if (!(confidenceLevel > 0.0 && confidenceLevel < 1.0)) {
        errors.emplace_back("Confidence level must be between 0 and 1.");
    }
    if (replicateWeights) {
        checkReplicates(*replicateWeights, rows, errors);
    }
    return errors;
}

std::vector<AnalysisReadinessIssue> SurveyDesign::readinessIssues() const {
    return SampledDesign::of(*this).counts.readinessIssues;
}

SampledDesign SampledDesign::of(const SurveyDesign& design) {
    SampledDesign sampled{.design = design, .units = SampledUnits::of(design), .counts = {}};
    sampled.counts = countsOf(design, sampled.units.unitsPerStratum());
    return sampled;
}

SampledCounts SampledDesign::countsAmong(std::span<const std::size_t> rows) const {
    return countsOf(design, units.unitsPerStratum(rows));
}

}  // namespace sorvane
