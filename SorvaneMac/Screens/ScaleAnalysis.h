#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Reliability/ReliabilityAnalyzer.h"
#include "SorvaneMac/State/StudioState.h"

/// The reliability of some items of the table, under the options that the workspace holds.
namespace sorvane::ScaleAnalysis {

/// Whether the ends of an item's scale are known, without which it cannot be reversed.
bool canBeReversed(const DataVariable& item);

/// Items marked as reverse-coded are reversed where they can be.
ReliabilityOptions options(const StudioState& state,
                           const std::string& construct,
                           const std::vector<std::string>& itemNames);

ReliabilityResult analyze(const StudioState& state,
                          const std::string& construct,
                          const std::vector<std::string>& itemNames);

/// The word that a report has for an alpha: "excellent" to "unacceptable".
std::string_view reportBand(double alpha);

}  // namespace sorvane::ScaleAnalysis
