#include "SorvaneMac/Shell/ProjectActions.h"

#include "SorvaneCore/Import/FileBytes.h"
#include "SorvaneCore/Project/ProjectArchive.h"
#include "SorvaneMac/Shell/FileSaving.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane {

namespace {

const Question resumeQuestion{
    .title = "Resume your last session?",
    .text =
        "Your previous work was saved automatically. Resume where you left off, or start "
        "fresh.",
    .confirmLabel = "Resume",
    .cancelLabel = "Start fresh",
    .risk = QuestionRisk::none};

bool isProject(const std::filesystem::path& file) {
    const std::string extension = lowerCasedExtension(file);
    return extension == ProjectArchive::fileExtension ||
           extension == ProjectArchive::legacyFileExtension;
}

SaveRequest saveRequest(const StudioState& state) {
    return {.title = "Save Brisel Project",
            .suggestedName = suggestedFileName(state.dataset(), ProjectArchive::fileExtension),
            .filter = "Project (*.svp)",
            .message =
                "Your full project on this Mac: data, variable roles, staged findings, and "
                "settings. Reopen with File → Open Project.",
            .acceptLabel = "Save"};
}

}  // namespace

void openFile(QWidget* parent, Workspace& workspace, const std::filesystem::path& file) {
    if (isProject(file)) {
        openProject(parent, workspace, file);
    } else {
        workspace.state.handleIncomingImport(file);
    }
}

void openProjectFromDialog(QWidget* parent, Workspace& workspace) {
    if (const std::optional<std::filesystem::path> file = workspace.dialogs.openProject(parent)) {
        openProject(parent, workspace, *file);
    }
}

void openProject(QWidget* parent, Workspace& workspace, const std::filesystem::path& file) {
    if (mayLeave(parent, workspace)) {
        workspace.state.openProject(file);
    }
}

bool saveProject(QWidget* parent, Workspace& workspace) {
    return workspace.state.currentProjectURL.get() ? workspace.state.saveProject()
                                                   : saveProjectAs(parent, workspace);
}

bool saveProjectAs(QWidget* parent, Workspace& workspace) {
    const std::optional<std::filesystem::path> file =
        workspace.dialogs.save(parent, saveRequest(workspace.state));
    return file && workspace.state.saveProject(*file);
}

bool mayLeave(QWidget* parent, Workspace& workspace) {
    workspace.commitEdits();
    if (!workspace.state.hasUnsavedWork()) {
        return true;
    }
    switch (workspace.askToSave(parent, qtText(workspace.state.dataset().name))) {
        case SaveAnswer::save:
            return saveProject(parent, workspace);
        case SaveAnswer::discard:
            return true;
        case SaveAnswer::cancel:
            break;
    }
    return false;
}

bool offerLastSession(QWidget* parent, Workspace& workspace) {
    StudioState& state = workspace.state;
    if (!state.hasAutosave() || state.hasData()) {
        return false;
    }
    if (workspace.confirm(parent, resumeQuestion)) {
        return state.resumeAutosave();
    }
    state.discardAutosave();
    return false;
}

}  // namespace sorvane
