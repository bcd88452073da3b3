#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Survey/SurveyDesign.h"

/// What analyses under a design have in common to say of their readiness.
namespace sorvane::SurveyReadiness {

/// What blocks an analysis before anything is computed: a design that is not sound, and columns of
/// another length than it.
std::vector<AnalysisReadinessIssue> obstacles(const SurveyDesign& design,
                                              std::span<const std::size_t> lengths);

/// What the user must know of the standard errors: the design's own issues, what is said of its
/// degrees of freedom, and replicates that gave no estimates.
std::vector<AnalysisReadinessIssue> cautions(const SampledCounts& counts,
                                             std::optional<std::string> ofDegrees,
                                             std::int64_t replicatesWithoutEstimates);

/// The same where tests and intervals take the degrees of freedom as counted.
std::vector<AnalysisReadinessIssue> cautions(const SampledCounts& counts,
                                             std::int64_t replicatesWithoutEstimates);

}  // namespace sorvane::SurveyReadiness
