#include "SorvaneMac/Shell/ReportExporting.h"

#include <QMessageBox>

#include "SorvaneMac/Screens/ExportScreen.h"
#include "SorvaneMac/Screens/FindingsScreen.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane {

namespace {

struct FormatTexts {
    const char* label;
    const char* filter;
};

FormatTexts texts(ReportFormat format) {
    switch (format) {
        case ReportFormat::pdf:
            return {"PDF…", "PDF (*.pdf)"};
        case ReportFormat::docx:
            return {"Word…", "Word (*.docx)"};
        case ReportFormat::rtf:
            return {"Rich Text (.rtf)…", "Rich Text (*.rtf)"};
        case ReportFormat::md:
            return {"Markdown (.md)…", "Markdown (*.md)"};
        case ReportFormat::draft:
            break;
    }
    return {"Report draft (.briselreport)…", "Report draft (*.briselreport)"};
}

}  // namespace

QString exportLabel(ReportFormat format) {
    return texts(format).label;
}

void exportReport(QWidget* parent, Workspace& workspace, ReportFormat format) {
    workspace.commitEdits();
    const auto& screen =
        static_cast<const ExportScreen&>(workspace.screens.at(StudioScreen::export_));
    const std::optional<RichDocument> document = screen.document();
    if (!document) {
        QMessageBox::information(parent, "Nothing to export", qtText(stageFirst));
        return;
    }
    const std::optional<std::filesystem::path> file =
        workspace.dialogs.save(parent, {.title = "Export",
                                        .suggestedName = suggestedFileName(format),
                                        .filter = texts(format).filter});
    if (!file) {
        return;
    }
    const std::optional<std::string> failure = writeReport(*document, format, *file);
    workspace.state.projectError.set(std::nullopt);
    workspace.state.saveStatusMessage.set(
        failure ? *failure : "Exported " + utf8(fromPath(file->filename())) + ".");
}

}  // namespace sorvane
