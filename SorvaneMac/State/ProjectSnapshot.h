#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Project/ProjectArchive.h"
#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// What a project keeps of the workspace: a copy that is cheap to take and may leave the
/// workspace's thread, where all that is costly about an archive is done.
struct ProjectSnapshot {
    ImportedDataset dataset;
    std::vector<std::string> transformationLog;
    NameSet reverseCodedItemNames;
    NameSet unreliableItemNames;
    /// The settings that are short texts.
    std::map<std::string, std::string> plainSettings;
    std::vector<ReportItem> reportItems;
    std::optional<std::vector<std::uint8_t>> reportRTFData;
    std::map<std::string, std::string> researcherNotes;
    std::chrono::sys_seconds takenAt;

    /// The plain settings, and the report and the notes as base64 where there are any.
    std::map<std::string, std::string> settings() const;
    ProjectArchive archive() const;
};

/// The parts of the workspace that settings hold as base64.
struct FoldedSettings {
    std::vector<ReportItem> reportItems;
    std::map<std::string, std::string> researcherNotes;
    std::optional<std::vector<std::uint8_t>> reportDocument;

    /// Each by itself: what is absent, no base64 or of another form stays empty.
    static FoldedSettings of(const std::map<std::string, std::string>& settings);
};

/// The table of an archive, its columns classified anew and the user's decisions put over that.
///
/// Cost       that of classifying an import
ImportedDataset datasetOf(const ProjectArchive& archive);

}  // namespace sorvane
