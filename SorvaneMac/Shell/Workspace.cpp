#include "SorvaneMac/Shell/Workspace.h"

#include <QMessageBox>
#include <QPushButton>

#include "SorvaneMac/Shell/PasteDialog.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane {

namespace {

const Question importQuestion{
    .title = "Import new data?",
    .text =
        "Importing a new dataset clears the current report and staged findings. Save the "
        "report first if you want to keep it.",
    .confirmLabel = "Import and clear report"};

const Question closeQuestion{
    .title = "Close without keeping your work?",
    .text =
        "Findings, notes, the report, prepared variables and a table typed by hand are lost when "
        "the window closes. Export the report and the dataset first if you want to keep them.",
    .confirmLabel = "Close and lose it"};

}  // namespace

bool askQuestion(QWidget* parent, const Question& question) {
    QMessageBox alert(parent);
    alert.setIcon(QMessageBox::Warning);
    alert.setWindowTitle(question.title);
    alert.setText(question.title);
    alert.setInformativeText(question.text);
    const QPushButton* confirm =
        alert.addButton(question.confirmLabel, QMessageBox::DestructiveRole);
    alert.setDefaultButton(alert.addButton(QMessageBox::Cancel));
    alert.exec();
    return alert.clickedButton() == confirm;
}

void importFromDialog(QWidget* parent, Workspace& workspace) {
    if (const std::optional<std::filesystem::path> file = workspace.dialogs.openDataFile(parent)) {
        workspace.state.handleIncomingImport(*file);
    }
}

void openSample(Workspace& workspace) {
    StudioState& state = workspace.state;
    state.replaceGuarded([&state] { state.resetToSample(); });
}

void openBlankGrid(Workspace& workspace) {
    StudioState& state = workspace.state;
    state.replaceGuarded([&state] { state.beginBlankDataset(); });
}

void pasteFromDialog(QWidget* parent, Workspace& workspace) {
    PasteDialog dialog(parent);
    if (dialog.exec() == QDialog::Accepted) {
        StudioState& state = workspace.state;
        state.replaceGuarded(
            [&state, text = utf8(dialog.text())] { state.importPastedData(text); });
    }
}

void exportDatasetFromDialog(QWidget* parent, Workspace& workspace) {
    StudioState& state = workspace.state;
    state.exportDatasetCSV(
        workspace.dialogs.save(parent, {.title = "Export dataset",
                                        .suggestedName = state.dataset().name + ".csv",
                                        .filter = "Comma-separated text (*.csv)"}));
}

void confirmPendingImport(QWidget* parent, Workspace& workspace) {
    if (workspace.confirm(parent, importQuestion)) {
        workspace.state.confirmPendingImport();
    } else {
        workspace.state.cancelPendingImport();
    }
}

bool mayClose(QWidget* parent, Workspace& workspace) {
    workspace.commitEdits();
    return !workspace.state.hasUnsavedWork() || workspace.confirm(parent, closeQuestion);
}

}  // namespace sorvane
