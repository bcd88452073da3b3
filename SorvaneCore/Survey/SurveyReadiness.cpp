#include "SorvaneCore/Survey/SurveyReadiness.h"

#include <utility>

#include "SorvaneCore/Survey/SurveyVariance.h"
#include "SorvaneCore/Survey/SurveyWording.h"

namespace sorvane::SurveyReadiness {

namespace wording = SurveyWording;

std::vector<AnalysisReadinessIssue> obstacles(const SurveyDesign& design,
                                              std::span<const std::size_t> lengths) {
    std::vector<AnalysisReadinessIssue> issues;
    for (std::string& error : design.structuralErrors()) {
        issues.push_back(AnalysisReadinessIssue::blocked(std::move(error)));
    }
    for (const std::size_t length : lengths) {
        if (length != design.weights.size()) {
            issues.push_back(AnalysisReadinessIssue::blocked(
                wording::otherLength(length, design.observationCount())));
        }
    }
    return issues;
}

std::vector<AnalysisReadinessIssue> cautions(const SampledCounts& counts,
                                             std::optional<std::string> ofDegrees,
                                             std::int64_t replicatesWithoutEstimates) {
    std::vector<AnalysisReadinessIssue> issues = counts.readinessIssues;
    if (ofDegrees) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(*ofDegrees)));
    }
    if (replicatesWithoutEstimates > 0) {
        issues.push_back(AnalysisReadinessIssue::caution(
            wording::replicatesWithoutEstimates(replicatesWithoutEstimates)));
    }
    return issues;
}

std::vector<AnalysisReadinessIssue> cautions(const SampledCounts& counts,
                                             std::int64_t replicatesWithoutEstimates) {
    const bool areFew = counts.degreesOfFreedom < SurveyVariance::fewDegreesOfFreedom;
    return cautions(counts,
                    areFew ? std::optional(wording::fewDegreesOfFreedom(counts.degreesOfFreedom))
                           : std::nullopt,
                    replicatesWithoutEstimates);
}

}  // namespace sorvane::SurveyReadiness
