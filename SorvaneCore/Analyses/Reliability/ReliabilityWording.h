#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Analyses/Basics/ScaleScoring.h"

/// What the user is told about a reliability analysis.
namespace sorvane::ReliabilityWording {

/// What the words depend on.
struct Facts {
    std::optional<double> alpha{};
    std::size_t itemCount = 0;
    std::int64_t inputRows = 0;
    std::int64_t casesUsed = 0;
    ReliabilityMissingDataRule missingDataRule = ReliabilityMissingDataRule::listwiseDeletion;
};

std::vector<std::string> warnings(const Facts& facts);
std::string interpretation(const Facts& facts);
std::string recommendedAction(const Facts& facts);
AnalysisReadiness readiness(const Facts& facts);

}  // namespace sorvane::ReliabilityWording
