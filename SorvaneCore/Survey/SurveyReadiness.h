#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Survey/SurveyDesign.h"

/// What analyses under a design have in common to say of their readiness.
namespace sorvane::SurveyReadiness {

/// What blocks an analysis before anything is computed: a design that is not sound, and columns of
/// another length than it.
std::vector<AnalysisReadinessIssue> obstacles(const SurveyDesign& design,
                                              std::span<const std::size_t> lengths);

/// What the user must know of the standard errors: the design's own issues, few degrees of
/// freedom, and replicates that gave no estimates.
std::vector<AnalysisReadinessIssue> cautions(const SampledCounts& counts,
                                             std::int64_t replicatesWithoutEstimates);

}  // namespace sorvane::SurveyReadiness
