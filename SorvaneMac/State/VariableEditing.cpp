#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

std::optional<std::string> StudioState::renameLacks(const std::string& from,
                                                    std::string_view to) const {
    const std::string wanted(UnicodeText::trimmed(to));
    if (from.empty() || !dataset().columnIndex(from)) {
        return "Choose a variable to rename.";
    }
    if (wanted.empty()) {
        return "Enter the new name first.";
    }
    if (wanted == from) {
        return from + " already has that name.";
    }
    if (dataset().columnIndex(wanted)) {
        return "A variable named " + wanted + " already exists. Choose a different name.";
    }
    return std::nullopt;
}

bool StudioState::renameVariable(const std::string& from, std::string_view to) {
    if (const std::optional<std::string> lacking = renameLacks(from, to)) {
        editor.dvMessage.set(*lacking);
        return false;
    }
    // The caller may hand over what stands in a field, which changes on the way.
    const std::string former = from;
    const std::string wanted(UnicodeText::trimmed(to));
    storeUndo("renaming of " + former + " to " + wanted);
    data.dataChangeUndoFlags->renamed = {former, wanted};
    renameEverywhere(*dataset().columnIndex(former), wanted);
    editor.dvName.set({wanted});
    editor.dvNewName.set("");
    log("Renamed variable " + former + " to " + wanted + ".");
    editor.dvMessage.set(former + " is now " + wanted +
                         ". Every list and analysis uses the new name.");
    refreshAnalysisDefaults();
    return true;
}

std::optional<std::string> StudioState::deletionLacks(const std::string& named) const {
    if (!dataset().columnIndex(named)) {
        return "Choose a variable to delete.";
    }
    if (dataset().columnCount() == 1) {
        return "The dataset needs at least one variable, so the last one cannot be deleted.";
    }
    return std::nullopt;
}

bool StudioState::deleteVariable(std::string name) {
    if (const std::optional<std::string> lacking = deletionLacks(name)) {
        editor.dvMessage.set(*lacking);
        return false;
    }
    storeUndo("deletion of " + name);
    removeEverywhere(*dataset().columnIndex(name));
    log("Deleted variable " + name);
    editor.dvMessage.set(name +
                         " was removed from the working dataset. The imported file is unchanged.");
    clearSelectionBeyondTable();
    refreshAnalysisDefaults();
    return true;
}

}  // namespace sorvane
