#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Review/ReviewBundlePayload.h"
#include "SorvaneMac/State/StudioState.h"

/// The workspace as the packet that the tablet viewer opens.
namespace sorvane::ReviewBundleExporter {

enum class DataPreview { none, leadingRows };

/// Whether there is anything to put into a packet: a table or a staged finding.
bool hasAnything(const StudioState& state);

/// The packet of the workspace as it stands, dated now.
///
/// Method     findings of structural models that carry no path diagram get the one that their table
///            spells; the preview holds 25 rows at most
ReviewBundlePayload build(const StudioState& state, DataPreview preview);

/// What the texts of the findings tell, one hint per finding.
std::vector<ReviewFindingHintPayload> buildHints(const std::vector<ReportItem>& findings);

/// The reliability of each scale of two items or more: the items of the item set by the construct
/// that they belong to, those without one under the name of the workspace's scale.
std::vector<ReliabilityScalePayload> buildReliability(const StudioState& state);

/// The constructs of the variables in column order, and the scale's own.
std::vector<std::string> constructNames(const StudioState& state);

/// The bytes of the packet, UTF-8 JSON.
///
/// Failure    too little memory for it -> absent
std::optional<std::string> encode(const ReviewBundlePayload& payload);

}  // namespace sorvane::ReviewBundleExporter
