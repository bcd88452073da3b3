#include "SorvaneMac/Shell/Workspace.h"

#include <QMessageBox>
#include <QPushButton>

#include "SorvaneMac/Shell/PasteDialog.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane {

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
        importGuarded(parent, workspace, *file);
    }
}

namespace {

const Question& importQuestion() {
    static const Question question{
        .title = "Import new data?",
        .text =
            "Importing a new dataset clears the current report and staged findings. Save the "
            "report first if you want to keep it.",
        .confirmLabel = "Import and clear report"};
    return question;
}

}  // namespace

void importGuarded(QWidget* parent, Workspace& workspace, const std::filesystem::path& file) {
    workspace.commitEdits();
    if (workspace.state.handleIncomingImport(file)) {
        return;
    }
    if (workspace.confirm(parent, importQuestion())) {
        workspace.state.confirmPendingImport();
    } else {
        workspace.state.cancelPendingImport();
    }
}

namespace {

bool mayReplaceDataset(QWidget* parent, Workspace& workspace) {
    workspace.commitEdits();
    const auto& document = workspace.state.reportRTFData.get();
    const bool losesReport = document && !document->empty();
    return !losesReport || workspace.confirm(parent, importQuestion());
}

}  // namespace

void openSample(QWidget* parent, Workspace& workspace) {
    if (mayReplaceDataset(parent, workspace)) {
        workspace.state.resetToSample();
    }
}

void openBlankGrid(QWidget* parent, Workspace& workspace) {
    if (mayReplaceDataset(parent, workspace)) {
        workspace.state.beginBlankDataset();
    }
}

void pasteFromDialog(QWidget* parent, Workspace& workspace) {
    PasteDialog dialog(parent);
    if (dialog.exec() == QDialog::Accepted && mayReplaceDataset(parent, workspace)) {
        workspace.state.importPastedData(utf8(dialog.text()));
    }
}

}  // namespace sorvane
