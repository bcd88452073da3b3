#include "SorvaneMac/Review/PacketExport.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <system_error>

#include "SorvaneCore/Project/WholeFile.h"
#include "SorvaneMac/Review/ReviewWording.h"

namespace sorvane {

namespace {

constexpr std::string_view lastFolderKey = "brisel.lastBSKExportDirectory";

}  // namespace

bool PacketExport::exportToIPad(const std::filesystem::path& file,
                                ReviewBundleExporter::DataPreview preview) {
    pass_.reset();
    if (!ReviewBundleExporter::hasAnything(state_)) {
        state_.saveStatusMessage.set(std::string(ReviewWording::nothingToExport));
        return false;
    }
    ReviewBundlePayload packet = ReviewBundleExporter::build(state_, preview);
    if (!write(file, packet)) {
        return false;
    }
    rememberFolder(file);
    if (service_) {
        const auto isOver = std::make_shared<bool>(false);
        pass_ = PlainLanguagePass::enrichPlainLanguage(
            *service_, packet.findings, *packet.reviewFindings,
            [this, file, packet, isOver](std::vector<ReviewFindingHintPayload> hints) mutable {
                *isOver = true;
                packet.reviewFindings = std::move(hints);
                if (write(file, packet)) {
                    state_.saveStatusMessage.set(ReviewWording::exported(file.string()));
                }
                pass_.reset();
            });
        // A service that refuses at once ends the pass before it is here.
        if (*isOver) {
            pass_.reset();
        }
    }
    state_.saveStatusMessage.set(pass_ ? ReviewWording::finishing(file.string())
                                       : ReviewWording::exported(file.string()));
    return true;
}

bool PacketExport::write(const std::filesystem::path& file, const ReviewBundlePayload& packet) {
    const std::optional<std::string> bytes = ReviewBundleExporter::encode(packet);
    if (!bytes) {
        state_.saveStatusMessage.set(std::string(ReviewWording::notBuilt));
        return false;
    }
    const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes->data());
    const std::optional<std::string> failure = replaceFile(file, std::span(data, bytes->size()));
    if (failure) {
        state_.saveStatusMessage.set(ReviewWording::exportFailed(*failure));
    }
    return !failure;
}

void PacketExport::rememberFolder(const std::filesystem::path& file) {
    std::error_code unknown;
    const std::filesystem::path whole = std::filesystem::absolute(file, unknown);
    if (!unknown) {
        state_.defaults().set(lastFolderKey, whole.parent_path().string());
    }
}

std::optional<std::filesystem::path> PacketExport::lastFolder() const {
    const Json kept = state_.defaults().value(lastFolderKey);
    std::error_code unknown;
    if (!kept.is_string() || !std::filesystem::is_directory(kept.get<std::string>(), unknown)) {
        return std::nullopt;
    }
    return std::filesystem::path(kept.get<std::string>());
}

}  // namespace sorvane
