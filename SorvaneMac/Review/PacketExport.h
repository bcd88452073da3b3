#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "SorvaneMac/Review/PlainLanguagePass.h"
#include "SorvaneMac/Review/ReviewBundleExporter.h"

namespace sorvane {

/// Writes packets to files, and once more when their plain language is drafted.
///
/// `saveStatusMessage` says how it goes. A further export ends the drafting for the former one,
/// whose file stays as it was written.
class PacketExport {
public:
    /// Both outlive the export; without a service nothing is drafted.
    PacketExport(StudioState& state, IntelligenceService* service)
        : state_(state), service_(service) {}

    /// Writes the packet of the workspace as it stands.
    ///
    /// Returns    whether the file stands; the workspace is unchanged either way
    bool exportToIPad(const std::filesystem::path& file, ReviewBundleExporter::DataPreview preview);
    /// Whether plain language is being drafted for the packet written last.
    bool isFinishing() const { return pass_ != nullptr; }

    /// The folder of the last export; absent where none is known, or where it is gone.
    std::optional<std::filesystem::path> lastFolder() const;

private:
    bool write(const std::filesystem::path& file, const ReviewBundlePayload& packet);
    void rememberFolder(const std::filesystem::path& file);

    StudioState& state_;
    IntelligenceService* service_;
    std::unique_ptr<PlainLanguagePass> pass_;
};

}  // namespace sorvane
