#include "SorvaneMac/Shell/Workspace.h"

#include <QMessageBox>
#include <QPushButton>

#include "SorvaneMac/Platform/Clipboard.h"
#include "SorvaneMac/Shell/FileSaving.h"
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

}  // namespace

bool askQuestion(QWidget* parent, const Question& question) {
    const bool isRisky = question.risk == QuestionRisk::losesWork;
    QMessageBox alert(parent);
    alert.setIcon(isRisky ? QMessageBox::Warning : QMessageBox::Question);
    alert.setWindowTitle(question.title);
    alert.setText(question.title);
    alert.setInformativeText(question.text);
    QPushButton* confirm = alert.addButton(
        question.confirmLabel, isRisky ? QMessageBox::DestructiveRole : QMessageBox::AcceptRole);
    QPushButton* cancel = alert.addButton(question.cancelLabel, QMessageBox::RejectRole);
    QPushButton* safe = isRisky ? cancel : confirm;
    alert.setDefaultButton(safe);
    alert.setEscapeButton(safe);
    alert.exec();
    return alert.clickedButton() == confirm;
}

SaveAnswer askToSaveChanges(QWidget* parent, const QString& name) {
    const QMessageBox::StandardButton answer = QMessageBox::warning(
        parent, "Save the changes?",
        "Save the changes to " + name +
            "?\n\nRoles, findings, notes, the report and edits of the "
            "table since the last save are in no project file yet.",
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    return answer == QMessageBox::Save      ? SaveAnswer::save
           : answer == QMessageBox::Discard ? SaveAnswer::discard
                                            : SaveAnswer::cancel;
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
    if (const std::optional<std::filesystem::path> copied = Clipboard::file()) {
        workspace.state.handleIncomingImport(*copied);
        return;
    }
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
                                        .suggestedName = suggestedFileName(state.dataset(), "csv"),
                                        .filter = "Comma-separated text (*.csv)"}));
}

void confirmPendingImport(QWidget* parent, Workspace& workspace) {
    if (workspace.confirm(parent, importQuestion)) {
        workspace.state.confirmPendingImport();
    } else {
        workspace.state.cancelPendingImport();
    }
}

}  // namespace sorvane
