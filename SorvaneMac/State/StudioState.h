#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Import/SpreadsheetImporter.h"
#include "SorvaneCore/Prepare/DataCleaning.h"
#include "SorvaneCore/Project/MethodFile.h"
#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/State/CleaningFields.h"
#include "SorvaneMac/State/DatasetFields.h"
#include "SorvaneMac/State/DerivedVariableFields.h"
#include "SorvaneMac/State/Field.h"
#include "SorvaneMac/State/ScaleFields.h"
#include "SorvaneMac/State/SharingFields.h"
#include "SorvaneMac/State/StudioScreen.h"
#include "SorvaneMac/State/TaskRunner.h"
#include "SorvaneMac/State/UserDefaults.h"
#include "SorvaneMac/State/VariableEditorFields.h"

namespace sorvane {

class AutosaveWriter;
struct ProjectArchive;
struct FoldedSettings;
struct ProjectSnapshot;

/// The one application object: the working table, the place in the workspace, the staged report.
///
/// Every action of the user ends in an operation here or on a screen; every view reads the fields.
/// The fields of the screens are held by the screens and register here. Confined to one thread.
class StudioState {
public:
    /// `resources` holds the files that come with the program, the sample study among them.
    explicit StudioState(std::filesystem::path resources,
                         std::unique_ptr<TaskRunner> runner = nullptr,
                         std::unique_ptr<UserDefaults> defaults = nullptr);
    ~StudioState();
    StudioState(const StudioState&) = delete;
    StudioState& operator=(const StudioState&) = delete;

    FieldRegistry fields;

    Field<StudioScreen> selection;
    Field<InspectorTab> inspectorTab;
    Field<InspectorPane> inspectorPane;
    /// Screen raw value to note text.
    Field<std::map<std::string, std::string>> researcherNotes;

    DatasetFields data;
    ScaleFields scale;
    DerivedVariableFields derived;
    VariableEditorFields editor;
    CleaningFields cleaning;
    SharingFields sharing;

    SpreadsheetImporter importer;

    /// Selections kept valid against the table by `refreshAnalysisDefaults`.
    Field<VariableName> selectedDescriptiveVariableName;
    Field<VariableName> selectedDescriptiveGroupName;
    Field<VariableName> selectedANOVAOutcomeName;
    Field<VariableName> selectedANOVAGroupName;

    Field<std::optional<std::string>> projectMessage;
    Field<std::optional<std::string>> projectError;
    Field<std::optional<std::string>> saveStatusMessage;
    Field<std::optional<std::string>> currentProjectURL;

    Field<std::vector<ReportItem>> reportItems;
    /// The assembled document.
    Field<std::optional<std::vector<std::uint8_t>>> reportRTFData;

    Field<bool> isComputing;
    Field<std::string> computingLabel;
    Field<bool> computingCancellable;
    /// The share of the run under way that is done; absent where it cannot be told.
    Field<std::optional<double>> computingProgress;
    Field<std::optional<std::string>> impMessage;

    const ImportedDataset& dataset() const { return data.dataset.get(); }
    bool hasData() const { return !dataset().headers.empty(); }
    /// Whether the start page stands in place of the overview.
    bool showsStartPage() const;

    // Import and adoption.

    /// Imports a file and adopts it; on failure sets `importError` and changes nothing else.
    void importData(const std::filesystem::path& file);
    /// Imports at once, or holds the file back while an assembled report would be lost.
    ///
    /// Returns    whether the import was run; false means that it was held back
    bool handleIncomingImport(const std::filesystem::path& file);
    /// The same for whatever else replaces the table. What is held back waits for
    /// `confirmPendingImport` or `cancelPendingImport`, for which the action "confirmImport" asks;
    /// "commitEdits" comes first, so that edits still under way count as a report.
    bool replaceGuarded(std::function<void()> replace);
    void confirmPendingImport();
    void cancelPendingImport();
    void importPastedData(std::string_view text);
    /// Reads the Stata file of the table again, its references to long texts with 8 bytes, and
    /// adopts it; on failure sets `importError` and changes nothing else.
    ///
    /// Returns    whether it was read
    bool readAgainWithEightByteReferences();
    /// What that lacks; absent when it can be done.
    std::optional<std::string> readingAgainLacks() const;
    void beginBlankDataset();
    void createBlankDataset(std::string_view name,
                            std::int64_t rows,
                            std::int64_t columns,
                            const std::optional<std::vector<std::string>>& headers);
    ImportedDataset loadBundledSample() const;
    void resetToSample();
    void resetAnalysisState();
    void refreshAnalysisDefaults();

    // Roles and the item set.

    void assignVariable(const Uuid& id, VariableKind kind);
    void setReliabilityIncluded(const Uuid& id, bool included);
    void setDescriptivesIncluded(const Uuid& id, bool included);
    /// Scores every column as a scale item; with `seedSelection` takes the verdicts into the roles.
    void classifyAndSeedScaleItems(bool seedSelection);
    const ScaleItemClassification* classification(std::string_view columnName) const;
    void selectLikertCandidateItemsForReliability();

    // The grid. Each does nothing where the table is not editable or has no such place.

    /// Makes the draft's headers as many as its columns.
    void syncDatasetDraftHeaders();
    void updateDatasetCell(std::int64_t row, std::int64_t column, std::string_view value);
    /// Writes a block of tab-separated cells, as spreadsheets copy it, from a place on. The grid
    /// grows where the block needs it; one that would grow too large is refused.
    ///
    /// Returns    whether it was written; `projectError` says why not
    bool pasteDatasetBlock(std::int64_t row, std::int64_t column, std::string_view text);
    /// Gives the table the name of the draft.
    void updateDatasetName();
    /// Renames a column; a blank name becomes "Column j", one that is taken gets a number.
    void updateDatasetHeader(std::int64_t column, std::string_view name);
    /// Trims and fills the headers and makes them unique.
    void finalizeDatasetHeaders();
    /// The header of a column as a line of text that can be set.
    struct HeaderBinding {
        std::string text;
        std::function<void(const std::string&)> set;
    };
    HeaderBinding headerBinding(std::int64_t column);
    void addDatasetRow();
    /// Appends a column, its name made unique; blank is numbered on ("Var11").
    bool addDatasetColumn(std::string_view named);
    enum class Snapshot { taken, none };
    /// Removes a column and what names it; with a snapshot it can be undone.
    ///
    /// Returns    whether it was removed; the last column stays
    bool deleteDatasetColumn(std::int64_t at, Snapshot snapshot = Snapshot::taken);
    void setDatasetRowCount(std::int64_t count);
    void setDatasetColumnCount(std::int64_t count);
    /// Grows or shrinks the grid at its end, in one step that can be undone where it shrinks. Says
    /// in `projectError` when it would be too large.
    ///
    /// Returns    whether the grid has that size now
    bool setDatasetSize(std::int64_t rows, std::int64_t columns);
    /// Writes the table as comma-separated text. Says in `projectMessage` or `projectError` how it
    /// went.
    ///
    /// Input      absent where the user picked no file
    /// Returns    whether it was written
    bool exportDatasetCSV(const std::optional<std::filesystem::path>& to);

    /// Takes back the last change of cells or columns; before the last there is nothing to take
    /// back.
    bool undoLastDataChange();
    /// What else the undo would take back, in a sentence: cells typed after the change.
    std::optional<std::string> undoLoses() const;
    bool canUndoDataChange() const { return data.dataChangeUndo->has_value(); }

    /// A column computed from others; the warning says how.
    struct DerivedColumn {
        std::string name;
        TextTable::Column values;
        VariableKind assignedType = VariableKind::outcome;
        std::string warning;
    };
    /// Adds columns at the end of the table, in one change that can be undone.
    ///
    /// Input      `label`: what the undo takes back; a name that is taken gets a number
    /// Returns    the names that they got
    std::vector<std::string> addDerivedVariables(std::string label,
                                                 std::vector<DerivedColumn> columns,
                                                 std::string logEntry);

    // Derived variables. Each returns whether it was done; the message field of its form says what
    // was done or what is missing, and where nothing was done the table is unchanged.

    bool runRecode();
    bool runCompute();
    bool createComputedVariable();
    bool createBinnedVariable();
    bool createScaleScoreVariable();
    bool renameVariable(const std::string& from, std::string_view to);
    bool deleteVariable(std::string name);
    /// The name, or the name with the first free number from 2 on; blank becomes "Score".
    ///
    /// Input      `own`: a column that gives up its name, if any
    std::string uniqueHeaderName(std::string_view base, std::string_view own = {}) const;
    std::string defaultScaleScoreVariableName() const;
    /// The numbers that a recode or a compute would give the first rows if it were run now; absent
    /// while something is missing.
    std::optional<std::vector<std::optional<double>>> recodePreview(std::int64_t rows) const;
    std::optional<std::vector<std::optional<double>>> computePreview(std::int64_t rows) const;
    /// The columns that a compute reads, in column order; those of a pair as A and B.
    std::vector<std::string> computeSources() const;
    /// What each of these operations lacks; absent when it can run.
    std::optional<std::string> recodeLacks() const;
    std::optional<std::string> computeLacks() const;
    std::optional<std::string> computedVariableLacks() const;
    std::optional<std::string> binningLacks() const;
    std::optional<std::string> scaleScoreLacks() const;
    /// The items marked as worded in reverse that a score takes as they stand, because the ends of
    /// their scales are not known.
    std::vector<std::string> itemsNotReversed() const;
    std::optional<std::string> clampLacks() const;
    std::optional<std::string> implausibleLacks() const;
    std::optional<std::string> renameLacks(const std::string& from, std::string_view to) const;
    std::optional<std::string> deletionLacks(const std::string& named) const;

    // Cleaning.

    void clSeed();
    OutOfRangeReport clOutOfRangeReport() const;
    OutlierReport clOutlierReport() const;
    bool clApplyClampToMissing();
    /// Sets the implausible numbers of the columns that the import warned of to missing.
    ///
    /// Returns    whether there were such columns
    bool setImplausibleToMissing();
    /// The bounds as numbers; absent where none can be read.
    std::optional<double> clLowerBound() const;
    std::optional<double> clUpperBound() const;

    // The report.

    /// Stages an item, or replaces in place the one with its id or with its title and sentence.
    void addToReport(const ReportItem& item);
    bool isStaged(const ReportItem& item) const;
    void removeFromReport(const Uuid& id);
    void clearReport();
    /// Builds the document from the staged items; edits of a former document are lost.
    void assembleReport();
    void stageResearcherNote(StudioScreen screen);
    bool researcherNoteIsStaged(StudioScreen screen) const;

    // The method record.

    /// What the analysis of the present screen is repeated from. Each call makes a record of its
    /// own, with a fresh identifier and the present time.
    MethodFile activeMethodFile() const;
    /// The variables that the record of the present screen names.
    std::vector<std::string> activeVariablesUsed() const;
    /// Writes a record; into a folder, under its default name. Says in `saveStatusMessage` how it
    /// went.
    ///
    /// Returns    whether it was written
    bool saveMethodFile(const std::filesystem::path& file, const MethodFile& record);
    /// Writes the record of the present screen.
    bool saveMethodFile(const std::filesystem::path& file) {
        return saveMethodFile(file, activeMethodFile());
    }

    // The project.

    /// What a project keeps beside the table and the roles, as short texts and as base64.
    std::map<std::string, std::string> projectSettings() const;
    void restoreProjectSettings(const std::map<std::string, std::string>& settings);
    /// Saves the project in a file, which then is its place. Says in `projectMessage` and
    /// `saveStatusMessage`, or in `projectError`, how it went.
    ///
    /// Returns    whether it was saved
    bool saveProject(const std::filesystem::path& file);
    /// Saves the project where it was saved or opened last; without such a place, does nothing.
    bool saveProject();
    /// Opens a project in place of everything; on failure sets `projectError` and changes nothing
    /// else.
    bool openProject(const std::filesystem::path& file);
    /// Whether something that a project keeps was changed since it was saved, opened or imported.
    bool hasUnsavedWork() const { return savedChanges_ != projectChanges_; }
    /// Takes what the program filled in by itself, such as the seeds of a screen, for no change.
    template <typename Fill>
    void fillWithoutChange(Fill&& fill) {
        const std::uint64_t before = projectChanges_;
        std::forward<Fill>(fill)();
        savedChanges_ += projectChanges_ - before;
    }
    /// Counts the changes of what a project keeps.
    std::uint64_t projectChanges() const { return projectChanges_; }

    void rememberRecentProject(const std::filesystem::path& file);
    /// Projects saved or opened last, newest first, those that still exist.
    std::vector<std::filesystem::path> recentProjects() const;

    // The autosave.

    /// Names the folder of the autosave; until then there is none.
    void keepAutosaveIn(const std::filesystem::path& folder);
    std::optional<std::filesystem::path> autosaveURL() const;
    bool hasAutosave() const;
    /// Whether the last autosave could not be written.
    bool hasAutosaveFailed() const;
    /// Has the project written beside its own place, on another thread and without a word.
    void autosave();
    /// Waits until the autosave is written.
    void finishAutosave();
    void discardAutosave();
    /// Takes up the work of the last session, which then has no place yet.
    bool resumeAutosave();

    // Long computations.

    /// A run too long for the window to wait for.
    struct Computation {
        /// What the overlay says meanwhile.
        std::string label;
        /// Computes on copies of its own, away from this thread; what it returns stores the result.
        TaskRunner::Work work;
        bool isCancellable = false;
        /// Who asks for it, to tell its run from others.
        const void* owner = nullptr;
    };
    /// Starts the run; its result is stored when it has ended, unless it was cancelled. One run
    /// stands at a time: another one is not started meanwhile.
    void compute(Computation computation);
    void cancelComputing();
    /// Whether the run under way is one that this owner asked for.
    bool isComputingFor(const void* owner) const {
        return isComputing.get() && computingOwner_ == owner;
    }

    /// What outlives the session.
    UserDefaults& defaults() const { return *defaults_; }
    /// Data files imported last, newest first, those that still exist.
    std::vector<std::filesystem::path> recentDataFiles() const;

    /// Asks the window to show the setup of the present screen.
    void showSetup();

    /// Subscribes to the named actions that the workspace asks of its window ("showInspector",
    /// "autosave").
    [[nodiscard]] Subscription observeActions(std::function<void(std::string_view)> observer);

private:
    /// Adopts the table that `read` gives; where it throws, sets `importError` and changes nothing
    /// else.
    void adoptImport(const std::string& source, const std::function<ImportedDataset()>& read);
    /// The single entry through which a new table is installed.
    void adoptDataset(ImportedDataset dataset,
                      std::string logMessage,
                      StudioScreen screen,
                      bool editable);
    void resizeRows(std::int64_t count);
    void resizeColumns(std::int64_t count);
    /// Takes back what forms say of a change that no longer stands.
    void forgetChangeMessages();
    /// Keeps the table as it stands for `undoLastDataChange`.
    void storeUndo(std::string label);
    void log(std::string entry);
    /// Adds what a settled log entry leaves out, so that the step can be repeated from the log.
    void logSettings(const std::string& name, const std::string& settings);
    /// Adds a column under a name that is free, and stores undo first.
    void appendDerivedVariable(DerivedColumn column);
    void replaceColumnValues(const std::string& name,
                             TextTable::Column values,
                             std::string warning);
    void finishCompute(const std::vector<std::optional<double>>& values, const std::string& detail);
    std::vector<NumericColumn> scaleScoreMatrix(const std::vector<std::string>& items) const;
    std::string scaleScoreSettings(const std::vector<std::string>& items) const;
    std::vector<const DataVariable*> selectedComputedVariables() const;
    /// The numbers of the first rows of a column.
    NumericColumn leadingNumbers(const std::string& column, std::int64_t rows) const;
    /// Gives a column another name in the table and in every field that names it.
    void renameEverywhere(std::size_t column, const std::string& to);
    void removeEverywhere(std::size_t column);
    /// Forgets those of the names that the table does not have.
    void dropNamesGone(const std::vector<std::string>& names);
    void renameClassification(const std::string& from, const std::string& to);
    void clearSelectionBeyondTable();
    bool isInGrid(std::int64_t row, std::int64_t column) const;

    /// A table that was just imported can be imported again, so that there is nothing to save yet;
    /// unless a project has its place, or notes were kept from before.
    void noteAdoption();
    /// A copy of what a project keeps.
    ProjectSnapshot projectSnapshot() const;
    bool loadArchive(const std::filesystem::path& file,
                     const std::optional<std::filesystem::path>& url);
    void takeProjectSettings(const std::map<std::string, std::string>& settings,
                             FoldedSettings folded);
    void adoptArchive(const ProjectArchive& archive,
                      ImportedDataset dataset,
                      FoldedSettings folded,
                      const std::optional<std::filesystem::path>& url);
    void sayOfProject(const std::string& message);
    /// Says something that takes the place of what was said of saving.
    void sayBesideSaving(const std::string& message);
    void editVariable(const Uuid& id, const std::function<void(DataVariable&)>& edit);
    /// Whether items were marked otherwise since the change that can be undone.
    bool haveMarksChanged() const;
    std::string trimmedNote(StudioScreen screen) const;
    std::map<std::string, std::string> methodOptions() const;
    void postAction(std::string_view action);

    std::filesystem::path resources_;
    std::unique_ptr<TaskRunner> runner_;
    std::function<void()> pendingImport_;
    /// The file that the table was imported from in this session.
    std::optional<std::filesystem::path> importedFile_;
    std::unique_ptr<UserDefaults> defaults_;
    std::optional<std::stop_source> miceTask_;
    const void* computingOwner_ = nullptr;
    std::vector<std::weak_ptr<std::function<void(std::string_view)>>> actionObservers_;
    std::unique_ptr<AutosaveWriter> autosaveWriter_;
    /// Where the table of an opened project had come from, so that saving it again keeps that.
    std::string projectSourceKind_ = "unknown";
    std::uint64_t projectChanges_ = 0;
    std::uint64_t savedChanges_ = 0;
    Subscription projectObserver_;
    Subscription preferences_;
};

}  // namespace sorvane
