#include <system_error>

#include "SorvaneCore/Project/WholeFile.h"
#include "SorvaneMac/State/AutosaveWriter.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

void StudioState::keepAutosaveIn(const std::filesystem::path& folder) {
    removeAbandonedReplacements(folder);
    const std::string extension(ProjectArchive::fileExtension);
    autosaveWriter_ = std::make_unique<AutosaveWriter>(folder / ("autosave." + extension));
}

std::optional<std::filesystem::path> StudioState::autosaveURL() const {
    return autosaveWriter_ ? std::optional(autosaveWriter_->file()) : std::nullopt;
}

bool StudioState::hasAutosave() const {
    std::error_code failure;
    const std::optional<std::filesystem::path> file = autosaveURL();
    return file && std::filesystem::is_regular_file(*file, failure);
}

void StudioState::autosave() {
    if (!autosaveWriter_ || !hasData()) {
        return;
    }
    postAction("commitEdits");
    autosaveWriter_->write(projectSnapshot());
}

bool StudioState::hasAutosaveFailed() const {
    return autosaveWriter_ && autosaveWriter_->hasFailed();
}

void StudioState::finishAutosave() {
    if (autosaveWriter_) {
        autosaveWriter_->finish();
    }
}

void StudioState::discardAutosave() {
    finishAutosave();
    std::error_code failure;
    if (const std::optional<std::filesystem::path> file = autosaveURL()) {
        std::filesystem::remove(*file, failure);
    }
}

bool StudioState::resumeAutosave() {
    if (!hasAutosave() || !loadArchive(*autosaveURL(), std::nullopt)) {
        return false;
    }
    sayBesideSaving("Restored your last session.");
    return true;
}

}  // namespace sorvane
