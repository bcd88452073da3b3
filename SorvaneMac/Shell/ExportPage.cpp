#include "SorvaneMac/Shell/ExportPage.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/CardFrame.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/ReportExporting.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

QString purpose(ReportFormat format) {
    switch (format) {
        case ReportFormat::pdf:
            return "Pages of US Letter, to read and to print";
        case ReportFormat::docx:
            return "To go on writing in a word processor";
        case ReportFormat::rtf:
            return "For any other text program";
        case ReportFormat::draft:
            return "The draft, to go on editing here";
        case ReportFormat::md:
            break;
    }
    return "The text alone";
}

}  // namespace

ExportPage::ExportPage(Workspace& workspace) : ContentPage(StudioScreen::export_, workspace) {
    auto* card = new CardFrame(
        "Export the report", "PDF, Word, or .briselreport, as it stands in the editor on Findings");
    for (const ReportFormat format : {ReportFormat::pdf, ReportFormat::docx, ReportFormat::rtf,
                                      ReportFormat::md, ReportFormat::draft}) {
        auto* row = new QHBoxLayout;
        row->setSpacing(Theme::px(14));
        QPushButton* button = Buttons::make(
            exportLabel(format), [this, format] { exportReport(this, this->workspace(), format); });
        button->setMinimumWidth(Theme::px(210));
        row->addWidget(button);
        row->addWidget(Labels::text(purpose(format), "quiet"), 1);
        card->body().addLayout(row);
    }
    view().insertBelowTiles(card);
}

}  // namespace sorvane
