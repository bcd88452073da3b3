#include "SorvaneCore/Dataset/Grid/DerivedColumns.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

void StudioState::storeUndo(std::string label) {
    data.dataChangeUndo.replace(dataset());
    data.dataChangeUndoFlags =
        DataChangeUndoFlags{.label = label,
                            .reverseCodedItemNames = scale.reverseCodedItemNames.get(),
                            .unreliableItemNames = scale.unreliableItemNames.get(),
                            .scaleClassifications = scale.scaleClassifications.get()};
    data.editsSinceChange = {};
    data.dataChangeUndoLabel.set(std::move(label));
}

bool StudioState::undoLastDataChange() {
    if (!canUndoDataChange()) {
        return false;
    }
    const std::string label = data.dataChangeUndoLabel.get();
    const std::vector<std::string> changed = dataset().headers;
    data.dataset.replace(*data.dataChangeUndo.get());
    if (const std::optional<DataChangeUndoFlags>& flags = data.dataChangeUndoFlags) {
        if (flags->renamed) {
            fields.renameVariable(flags->renamed->second, flags->renamed->first);
        }
        scale.reverseCodedItemNames.set(flags->reverseCodedItemNames);
        scale.unreliableItemNames.set(flags->unreliableItemNames);
        scale.scaleClassifications.replace(flags->scaleClassifications);
    }
    dropNamesGone(changed);
    log("Reverted the " + label + ".");
    forgetChangeMessages();
    editor.rcMessage.set("Reverted the " + label + ".");
    editor.dvMessage.set("Reverted the " + label + ".");
    data.dataChangeUndo.set(std::nullopt);
    data.dataChangeUndoLabel.set("");
    data.dataChangeUndoFlags.reset();
    clearSelectionBeyondTable();
    refreshAnalysisDefaults();
    return true;
}

void StudioState::forgetChangeMessages() {
    editor.cvMessage.reset();
    cleaning.clMessage.reset();
    derived.binningMessage.reset();
    derived.computedVariableMessage.reset();
    scale.scaleScoreCreationMessage.reset();
}

std::optional<std::string> StudioState::undoLoses() const {
    if (!canUndoDataChange()) {
        return std::nullopt;
    }
    const EditsSinceChange& edits = data.editsSinceChange;
    std::string lost;
    const auto add = [&lost](bool isLost, const std::string& what) {
        lost += isLost ? (lost.empty() ? "" : ", ") + what : "";
    };
    add(edits.typedCells > 0,
        "what was typed (" + NumberText::integer(edits.typedCells) + " cell(s))");
    add(edits.sizes, "rows and columns that were added");
    add(edits.roles, "roles that were changed");
    add(edits.name, "the name of the table");
    add(haveMarksChanged(), "marks of items as reversed or unreliable");
    return lost.empty() ? std::nullopt
                        : std::optional("The table goes back to what it was before the " +
                                        data.dataChangeUndoLabel.get() +
                                        ". What came since then is lost: " + lost + ".");
}

bool StudioState::haveMarksChanged() const {
    const std::optional<DataChangeUndoFlags>& flags = data.dataChangeUndoFlags;
    if (!flags) {
        return false;
    }
    // The change itself takes the marks of a column along, or away with it.
    const auto carried = [&](const NameSet& marks) {
        NameSet names;
        for (const std::string& name : marks) {
            const bool isRenamed = flags->renamed && flags->renamed->first == name;
            const std::string& present = isRenamed ? flags->renamed->second : name;
            if (dataset().columnIndex(present)) {
                names.insert(present);
            }
        }
        return names;
    };
    return scale.reverseCodedItemNames.get() != carried(flags->reverseCodedItemNames) ||
           scale.unreliableItemNames.get() != carried(flags->unreliableItemNames);
}

void StudioState::dropNamesGone(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        if (!dataset().columnIndex(name)) {
            fields.dropVariable(name);
        }
    }
}

void StudioState::log(std::string entry) {
    data.transformationLog.edit(
        [&entry](std::vector<std::string>& entries) { entries.push_back(std::move(entry)); });
}

void StudioState::logSettings(const std::string& name, const std::string& settings) {
    log("Settings for " + name + ": " + settings + ".");
}

void StudioState::renameClassification(const std::string& from, const std::string& to) {
    scale.scaleClassifications.edit([&](std::vector<ScaleItemClassification>& verdicts) {
        for (ScaleItemClassification& verdict : verdicts) {
            verdict.columnName = verdict.columnName == from ? to : verdict.columnName;
        }
    });
}

void StudioState::renameEverywhere(std::size_t column, const std::string& to) {
    const std::string from = dataset().headers[column];
    data.dataset.edit([&](ImportedDataset& table) { DerivedColumns::rename(table, column, to); });
    fields.renameVariable(from, to);
    renameClassification(from, to);
}

void StudioState::removeEverywhere(std::size_t column) {
    const std::string name = dataset().headers[column];
    const Uuid id = dataset().variables[column].id;
    data.dataset.edit([column](ImportedDataset& table) { DerivedColumns::remove(table, column); });
    fields.dropVariable(name);
    derived.selectedComputedVariableIDs.edit([&id](std::set<Uuid>& ids) { ids.erase(id); });
    scale.scaleClassifications.edit([&name](std::vector<ScaleItemClassification>& verdicts) {
        std::erase_if(verdicts, [&name](const ScaleItemClassification& verdict) {
            return verdict.columnName == name;
        });
    });
}

}  // namespace sorvane
