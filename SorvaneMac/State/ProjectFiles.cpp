#include <new>
#include <system_error>

#include "SorvaneCore/Import/FileBytes.h"
#include "SorvaneCore/Project/ProjectArchive.h"
#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneMac/State/ProjectSnapshot.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/SurveySettings.h"

namespace sorvane {

namespace {

using Settings = std::map<std::string, std::string>;

std::string flag(bool isSet) {
    return isSet ? "1" : "0";
}

std::string valueOf(const Settings& settings, const char* key) {
    const auto setting = settings.find(key);
    return setting == settings.end() ? std::string() : setting->second;
}

/// Takes a field's JSON text; anything else leaves the field at its start.
void takeText(AnyField& field, const std::string& text) {
    field.reset();
    const Json value = Json::parse(text, nullptr, false);
    if (value.is_discarded()) {
        return;
    }
    try {
        field.setJson(value);
    } catch (const RecordJsonError&) {
        field.reset();
    }
}

std::optional<StudioScreen> screenOf(const std::string& raw) {
    for (const StudioScreen screen : allStudioScreens()) {
        if (rawValue(screen) == raw) {
            return screen;
        }
    }
    return std::nullopt;
}

/// So that it stays the same file when the program changes its folder.
std::string wholePath(const std::filesystem::path& file) {
    std::error_code failed;
    const std::filesystem::path whole = std::filesystem::absolute(file, failed);
    return failed ? file.string() : whole.string();
}

}  // namespace

std::map<std::string, std::string> StudioState::projectSettings() const {
    return projectSnapshot().settings();
}

ProjectSnapshot StudioState::projectSnapshot() const {
    using namespace std::chrono;  // NOLINT(google-build-using-namespace)
    ProjectSnapshot snapshot{.dataset = dataset(),
                             .transformationLog = data.transformationLog.get(),
                             .reverseCodedItemNames = scale.reverseCodedItemNames.get(),
                             .unreliableItemNames = scale.unreliableItemNames.get(),
                             .reportItems = reportItems.get(),
                             .reportRTFData = reportRTFData.get(),
                             .researcherNotes = researcherNotes.get(),
                             .takenAt = floor<seconds>(system_clock::now())};
    Settings& settings = snapshot.plainSettings;
    // The design belongs to its screen, whose fields are known here by name alone.
    for (const auto& [key, name] : SurveySettings::plain) {
        const AnyField* field = fields.find(name);
        settings[key] = field ? fromJson<std::string>(field->json()) : std::string();
    }
    for (const auto& [key, name] : SurveySettings::further) {
        const AnyField* field = fields.find(name);
        if (field && !field->isAtStart()) {
            settings[key] = field->json().dump();
        }
    }
    const AnyField* active = fields.find(SurveySettings::weightsActiveField);
    settings["sv_active"] = flag(active && fromJson<bool>(active->json()));
    settings["screen"] = rawValue(selection.get());
    settings["dataset_editable"] = flag(data.isDatasetEditable.get());
    const ImportSourceKind kind = dataset().importMetadata.sourceKind;
    settings["import_source_kind"] =
        kind == ImportSourceKind::unknown ? projectSourceKind_ : record_json::enumeratorText(kind);
    return snapshot;
}

void StudioState::restoreProjectSettings(const Settings& settings) {
    takeProjectSettings(settings, FoldedSettings::of(settings));
}

void StudioState::takeProjectSettings(const Settings& settings, FoldedSettings folded) {
    for (const auto& [key, name] : SurveySettings::plain) {
        if (AnyField* field = fields.find(name)) {
            const auto setting = settings.find(key);
            if (setting == settings.end()) {
                field->reset();
            } else {
                field->setJson(toJson(setting->second));
            }
        }
    }
    for (const auto& [key, name] : SurveySettings::further) {
        if (AnyField* field = fields.find(name)) {
            takeText(*field, valueOf(settings, key));
        }
    }
    if (AnyField* active = fields.find(SurveySettings::weightsActiveField)) {
        active->setJson(valueOf(settings, "sv_active") == "1");
    }
    reportItems.set(std::move(folded.reportItems));
    researcherNotes.set(std::move(folded.researcherNotes));
    reportRTFData.set(std::move(folded.reportDocument));
    if (const std::optional<StudioScreen> screen = screenOf(valueOf(settings, "screen"))) {
        selection.set(*screen);
    }
}

bool StudioState::saveProject(const std::filesystem::path& file) {
    postAction("commitEdits");
    std::optional<std::string> failure;
    try {
        const ProjectArchive archive = projectSnapshot().archive();
        failure = replaceFile(
            file, [&archive](const TakeBytes& take) { ProjectArchive::encode(archive, take); });
    } catch (const std::exception&) {
        projectError.set("Could not encode the project.");
        return false;
    }
    if (failure) {
        projectError.set("Save failed: " + *failure + ".");
        return false;
    }
    currentProjectURL.set(wholePath(file));
    rememberRecentProject(file);
    removeAbandonedReplacements(std::filesystem::path(*currentProjectURL.get()).parent_path());
    projectError.set(std::nullopt);
    sayOfProject("Saved " + fileName(file) + ".");
    savedChanges_ = projectChanges_;
    return true;
}

bool StudioState::saveProject() {
    return currentProjectURL.get() && saveProject(std::filesystem::path(*currentProjectURL.get()));
}

bool StudioState::openProject(const std::filesystem::path& file) {
    if (!loadArchive(file, file)) {
        return false;
    }
    rememberRecentProject(file);
    sayOfProject("Opened " + fileName(file) + ".");
    savedChanges_ = projectChanges_;
    return true;
}

bool StudioState::loadArchive(const std::filesystem::path& file,
                              const std::optional<std::filesystem::path>& url) {
    const std::string failure = "Could not read " + fileName(file) + ": ";
    try {
        // All that can fail comes before the first change.
        const ProjectArchive archive = ProjectArchive::read(file);
        ImportedDataset dataset = datasetOf(archive);
        FoldedSettings folded = FoldedSettings::of(archive.settings);
        adoptArchive(archive, std::move(dataset), std::move(folded), url);
        return true;
    } catch (const ProjectArchiveError& error) {
        projectError.set(failure + error.what());
    } catch (const std::bad_alloc&) {
        projectError.set(failure + "There is not enough memory for it.");
    } catch (const std::system_error&) {
        projectError.set(failure +
                         "The system has no thread left to read it with. Close other "
                         "programs and try again.");
    }
    return false;
}

void StudioState::adoptArchive(const ProjectArchive& archive,
                               ImportedDataset dataset,
                               FoldedSettings folded,
                               const std::optional<std::filesystem::path>& url) {
    data.dataset.replace(std::move(dataset));
    data.isDatasetEditable.set(false);
    importedFile_.reset();
    currentProjectURL.set(url ? std::optional(wholePath(*url)) : std::nullopt);
    NameSet reversed;
    NameSet unreliable;
    for (const ProjectVariableState& state : archive.variableStates) {
        if (state.isReverseCoded) {
            reversed.insert(state.name);
        }
        if (state.isUnreliableFlagged) {
            unreliable.insert(state.name);
        }
    }
    scale.reverseCodedItemNames.set(std::move(reversed));
    scale.unreliableItemNames.set(std::move(unreliable));
    resetAnalysisState();
    clearReport();
    classifyAndSeedScaleItems(false);
    data.transformationLog.set(archive.transformationLog);
    takeProjectSettings(archive.settings, std::move(folded));
    if (valueOf(archive.settings, "dataset_editable") == "1") {
        data.isDatasetEditable.set(true);
    }
    const std::string kind = valueOf(archive.settings, "import_source_kind");
    projectSourceKind_ = kind == "csv" || kind == "xlsx" ? kind : "unknown";
    if (kind == "blank") {
        data.dataset.edit([](ImportedDataset& table) {
            table.importMetadata.sourceKind = ImportSourceKind::blank;
            table.importMetadata.worksheetName = "New dataset";
        });
    }
    data.importError.set(std::nullopt);
    refreshAnalysisDefaults();
    postAction("autosave");
}

void StudioState::sayOfProject(const std::string& message) {
    projectMessage.set(message);
    // Said again though it may be the same: what is shown of unsaved changes goes with it.
    saveStatusMessage.replace(message);
}

void StudioState::sayBesideSaving(const std::string& message) {
    projectMessage.set(message);
    saveStatusMessage.set(std::nullopt);
}

}  // namespace sorvane
