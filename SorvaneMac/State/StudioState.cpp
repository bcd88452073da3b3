#include "SorvaneMac/State/StudioState.h"

#include <algorithm>
#include <array>
#include <utility>

#include "SorvaneCore/Dataset/Grid/BlankDatasetFactory.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/FileBytes.h"
#include "SorvaneCore/Import/ImportError.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/State/AutosaveWriter.h"
#include "SorvaneMac/State/FieldJson.h"
#include "SorvaneMac/State/RecentFiles.h"
#include "SorvaneMac/State/SurveySettings.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

constexpr std::string_view recentDataFilesKey = "sv.recentDataFiles";
constexpr std::string_view sampleResource = "SampleEIStudy.csv";

/// The fields that a project keeps, those of Survey Design and the screen aside: looking at
/// something changes nothing.
constexpr std::array<std::string_view, 9> projectFields = {"dataset",
                                                           "isDatasetEditable",
                                                           "transformationLog",
                                                           "reverseCodedItemNames",
                                                           "unreliableItemNames",
                                                           "researcherNotes",
                                                           "reportItems",
                                                           "reportRTFData",
                                                           SurveySettings::weightsActiveField};

bool isKeptInProjects(std::string_view field) {
    const auto isIn = [field](const auto& settings) {
        return std::ranges::find(settings, field, &SurveySettings::Setting::field) !=
               settings.end();
    };
    return std::ranges::find(projectFields, field) != projectFields.end() ||
           isIn(SurveySettings::plain) || isIn(SurveySettings::further);
}

std::string sizeText(const ImportedDataset& dataset) {
    return NumberText::integer(dataset.rowCount()) + " row(s) and " +
           NumberText::integer(dataset.columnCount()) + " variable(s).";
}

/// The present name where the list has it, else the fallback, else the first of the list.
VariableName validChoice(const VariableName& present,
                         const VariableLists::List& list,
                         const DataVariable* fallback = nullptr) {
    if (VariableLists::contains(list, present.name)) {
        return present;
    }
    if (fallback) {
        return {fallback->name};
    }
    return {list.empty() ? std::string() : list.front()->name};
}

}  // namespace

StudioState::StudioState(std::filesystem::path resources,
                         std::unique_ptr<TaskRunner> runner,
                         std::unique_ptr<UserDefaults> defaults)
    : selection(fields, "selection", StudioScreen::overview, ResetRule::kept),
      inspectorTab(fields, "inspectorTab", InspectorTab::whyNative, ResetRule::kept),
      inspectorPane(fields, "inspectorPane", InspectorPane::setup, ResetRule::kept),
      researcherNotes(fields, "researcherNotes", {}, ResetRule::kept),
      data(fields),
      scale(fields),
      derived(fields),
      editor(fields),
      cleaning(fields),
      sharing(fields),
      selectedDescriptiveVariableName(
          fields, "selectedDescriptiveVariableName", {}, ResetRule::kept),
      selectedDescriptiveGroupName(fields, "selectedDescriptiveGroupName", {}, ResetRule::kept),
      selectedANOVAOutcomeName(fields, "selectedANOVAOutcomeName", {}, ResetRule::kept),
      selectedANOVAGroupName(fields, "selectedANOVAGroupName", {}, ResetRule::kept),
      projectMessage(fields, "projectMessage"),
      projectError(fields, "projectError"),
      saveStatusMessage(fields, "saveStatusMessage", std::nullopt, ResetRule::kept),
      currentProjectURL(fields, "currentProjectURL", std::nullopt, ResetRule::kept),
      reportItems(fields, "reportItems", {}, ResetRule::kept),
      reportRTFData(fields, "reportRTFData", std::nullopt, ResetRule::kept),
      isComputing(fields, "isComputing"),
      computingLabel(fields, "computingLabel", "", ResetRule::kept),
      computingCancellable(fields, "computingCancellable", false, ResetRule::kept),
      computingProgress(fields, "computingProgress", std::nullopt, ResetRule::kept),
      impMessage(fields, "impMessage"),
      resources_(std::move(resources)),
      runner_(runner ? std::move(runner) : std::make_unique<ImmediateTaskRunner>()),
      defaults_(defaults ? std::move(defaults) : std::make_unique<SessionDefaults>()),
      projectObserver_(fields.observe([this](const AnyField& field) {
          projectChanges_ += isKeptInProjects(field.name()) ? 1 : 0;
      })),
      preferences_(sharing.keepIn(fields, *defaults_)) {}

StudioState::~StudioState() = default;

bool StudioState::showsStartPage() const {
    return !hasData() && !data.isDatasetEditable.get() && selection.get() == StudioScreen::overview;
}

void StudioState::importData(const std::filesystem::path& file) {
    adoptImport(fileName(file), [&] { return importer.importData(file); });
    if (!data.importError.get()) {
        importedFile_ = file;
        RecentFiles::remember(*defaults_, recentDataFilesKey, file);
    }
}

void StudioState::adoptImport(const std::string& source,
                              const std::function<ImportedDataset()>& read) {
    std::optional<ImportedDataset> imported;
    try {
        imported = read();
    } catch (const std::exception& error) {
        // Besides the reader's own sentence: no memory or no thread for a large file.
        data.importError.set("Could not import " + source + ": " + error.what());
        return;
    }
    std::string log = "Imported " + source + " with " + sizeText(*imported);
    adoptDataset(*std::move(imported), std::move(log), StudioScreen::instrumentMap, false);
}

bool StudioState::handleIncomingImport(const std::filesystem::path& file) {
    return replaceGuarded([this, file] { importData(file); });
}

bool StudioState::replaceGuarded(std::function<void()> replace) {
    postAction("commitEdits");
    const std::optional<std::vector<std::uint8_t>>& document = reportRTFData.get();
    if (document && !document->empty()) {
        pendingImport_ = std::move(replace);
        postAction("confirmImport");
        return false;
    }
    replace();
    return true;
}

void StudioState::confirmPendingImport() {
    if (const std::function<void()> replace = std::exchange(pendingImport_, nullptr)) {
        replace();
    }
}

void StudioState::cancelPendingImport() {
    pendingImport_ = nullptr;
}

void StudioState::importPastedData(std::string_view text) {
    const std::string_view table = UnicodeText::trimmed(text);
    if (table.empty()) {
        data.importError.set("Paste some tabular data first.");
        return;
    }
    adoptImport("pasted data",
                [&] { return importer.csvImporter.importCSV("Pasted data", table); });
    // Unlike a file, what was pasted may be nowhere else any more.
    if (!data.importError.get()) {
        ++projectChanges_;
    }
}

void StudioState::beginBlankDataset() {
    syncDatasetDraftHeaders();
    createBlankDataset(data.datasetDraftName.get(), data.datasetDraftRows.get(),
                       data.datasetDraftColumns.get(), data.datasetDraftHeaders.get());
    postAction("showInspector");
}

void StudioState::createBlankDataset(std::string_view name,
                                     std::int64_t rows,
                                     std::int64_t columns,
                                     const std::optional<std::vector<std::string>>& headers) {
    const std::string_view trimmed = UnicodeText::trimmed(name);
    const std::string finalName(trimmed.empty() ? "Untitled dataset" : trimmed);
    ImportedDataset blank = BlankDatasetFactory::make(finalName, rows, columns, headers);
    currentProjectURL.set(std::nullopt);
    const std::string log = "Created blank dataset \"" + finalName + "\" with " + sizeText(blank);
    adoptDataset(std::move(blank), log, StudioScreen::dataPreview, true);
    data.selectedDatasetRow.set(std::nullopt);
    data.selectedDatasetColumn.set(std::nullopt);
    projectError.set(std::nullopt);
}

ImportedDataset StudioState::loadBundledSample() const {
    try {
        return importer.csvImporter.importCSV(resources_ / sampleResource);
    } catch (const ImportError&) {
        return emptyDataset("Empty project");
    }
}

void StudioState::resetToSample() {
    data.dataset.replace(loadBundledSample());
    data.isDatasetEditable.set(false);
    resetAnalysisState();
    clearReport();
    scale.reverseCodedItemNames.reset();
    derived.selectedComputedVariableIDs.reset();
    derived.computedVariableName.reset();
    derived.computedVariableMethod.reset();
    derived.computedVariableMinimumCompletion.reset();
    derived.binnedVariableName.reset();
    derived.binningMethod.reset();
    derived.binningBinCount.reset();
    scale.scaleScoreVariableName.reset();
    derived.computedVariableMessage.reset();
    derived.selectedBinningVariableName.reset();
    derived.binningMessage.reset();
    scale.scaleScoreCreationMessage.reset();
    data.transformationLog.set({"Loaded bundled sample dataset: " + dataset().name + "."});
    refreshAnalysisDefaults();
    data.importError.set(std::nullopt);
    selection.set(StudioScreen::scalesReliability);
    noteAdoption();
}

void StudioState::adoptDataset(ImportedDataset dataset,
                               std::string logMessage,
                               StudioScreen screen,
                               bool editable) {
    data.dataset.replace(std::move(dataset));
    data.isDatasetEditable.set(editable);
    if (editable) {
        currentProjectURL.set(std::nullopt);
    }
    scale.reverseCodedItemNames.reset();
    scale.unreliableItemNames.reset();
    derived.selectedComputedVariableIDs.reset();
    derived.computedVariableMessage.reset();
    derived.binningMessage.reset();
    scale.scaleScoreCreationMessage.reset();
    resetAnalysisState();
    clearReport();
    classifyAndSeedScaleItems(true);
    data.transformationLog.set({std::move(logMessage)});
    refreshAnalysisDefaults();
    selection.set(screen);
    data.importError.set(std::nullopt);
    noteAdoption();
}

void StudioState::noteAdoption() {
    projectSourceKind_ = "unknown";
    importedFile_.reset();
    if (!data.isDatasetEditable.get() && !currentProjectURL.get() && researcherNotes->empty()) {
        savedChanges_ = projectChanges_;
    }
    postAction("autosave");
}

void StudioState::resetAnalysisState() {
    fields.resetWithDataset();
    forgetChangeMessages();
    editor.rcMessage.reset();
    editor.dvMessage.reset();
    saveStatusMessage.set(std::nullopt);
}

void StudioState::refreshAnalysisDefaults() {
    using namespace VariableLists;  // NOLINT(google-build-using-namespace)
    const List outcomes = anovaOutcomeVariables(dataset());
    const List factors = anovaGroupingVariables(dataset());
    selectedDescriptiveVariableName.set(
        validChoice(selectedDescriptiveVariableName.get(), descriptiveNumericVariables(dataset())));
    selectedDescriptiveGroupName.set(
        {firstExistingName(selectedDescriptiveGroupName->name, factors).value_or("")});
    selectedANOVAOutcomeName.set(
        validChoice(selectedANOVAOutcomeName.get(), outcomes, preferredOutcomeVariable(dataset())));
    selectedANOVAGroupName.set(
        validChoice(selectedANOVAGroupName.get(), factors, preferredGroupingVariable(dataset())));
    derived.selectedBinningVariableName.set(
        validChoice(derived.selectedBinningVariableName.get(), numericVariables(dataset())));
}

std::vector<std::filesystem::path> StudioState::recentDataFiles() const {
    return RecentFiles::existing(*defaults_, recentDataFilesKey);
}

void StudioState::showSetup() {
    inspectorPane.set(InspectorPane::setup);
    postAction("showInspector");
}

Subscription StudioState::observeActions(std::function<void(std::string_view)> observer) {
    auto held = std::make_shared<std::function<void(std::string_view)>>(std::move(observer));
    actionObservers_.push_back(held);
    return held;
}

void StudioState::postAction(std::string_view action) {
    for (const auto& observer : actionObservers_) {
        if (const auto held = observer.lock()) {
            (*held)(action);
        }
    }
}

}  // namespace sorvane
