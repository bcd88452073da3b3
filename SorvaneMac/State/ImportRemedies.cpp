#include "SorvaneCore/Dataset/Grid/ImplausibleCells.h"
#include "SorvaneCore/Import/FileBytes.h"
#include "SorvaneMac/State/JoinedText.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

namespace {

constexpr std::string_view noImplausibleColumns =
    "The import warned of no column with implausible values.";
constexpr std::string_view noStataFile =
    "The Stata file of this table is not at hand. Import it first.";
constexpr std::string_view implausibleLabel = "setting of implausible values to missing";

/// The columns that the import found implausible numbers in.
std::vector<std::string> implausibleColumns(const ImportedDataset& dataset) {
    std::vector<std::string> names;
    if (const auto& cautions = dataset.importMetadata.cautions) {
        for (const ImportCaution& caution : *cautions) {
            if (caution.kind == ImportCautionKind::implausibleMagnitude) {
                names.insert(names.end(), caution.columnNames.begin(), caution.columnNames.end());
            }
        }
    }
    return names;
}

}  // namespace

std::optional<std::string> StudioState::implausibleLacks() const {
    if (implausibleColumns(dataset()).empty()) {
        return std::string(noImplausibleColumns);
    }
    return std::nullopt;
}

bool StudioState::setImplausibleToMissing() {
    if (const std::optional<std::string> lacking = implausibleLacks()) {
        cleaning.clMessage.set(*lacking);
        return false;
    }
    const std::string names = joinedText(implausibleColumns(dataset()));
    storeUndo(std::string(implausibleLabel));
    data.dataset.edit([](ImportedDataset& table) { ImplausibleCells::setToMissing(table); });
    log("Set implausible values (of a magnitude above 1e300, or 2 to the power 127) to missing "
        "in " +
        names + ".");
    cleaning.clMessage.set("Implausible values were set to missing in " + names + ".");
    classifyAndSeedScaleItems(false);
    refreshAnalysisDefaults();
    return true;
}

std::optional<std::string> StudioState::readingAgainLacks() const {
    if (!importedFile_ || lowerCasedExtension(*importedFile_) != "dta") {
        return std::string(noStataFile);
    }
    return std::nullopt;
}

bool StudioState::readAgainWithEightByteReferences() {
    if (const std::optional<std::string> lacking = readingAgainLacks()) {
        data.importError.set(*lacking);
        return false;
    }
    const std::filesystem::path file = *importedFile_;
    SpreadsheetImporter other = importer;
    other.statImporter.stataReferences = StataStringReferences::eightBytes;
    adoptImport(fileName(file), [&] { return other.importData(file); });
    if (data.importError.get()) {
        return false;
    }
    importedFile_ = file;
    log("The references to long texts were read with 8 bytes.");
    return true;
}

}  // namespace sorvane
