#include "SorvaneMac/Shell/ExportPage.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "SorvaneMac/Screens/ExportScreen.h"
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
            return "To read, print and send: pages of US Letter as they will look on paper.";
        case ReportFormat::docx:
            return "To go on writing in a word processor, with tables and figures.";
        case ReportFormat::rtf:
            return "For any other text program that keeps tables and faces.";
        case ReportFormat::md:
            return "The text alone, for notes and for comparing versions.";
        case ReportFormat::draft:
            break;
    }
    return "The draft as the editor holds it, to be kept beside the finished report.";
}

}  // namespace

ExportPage::ExportPage(Workspace& workspace) : ContentPage(StudioScreen::export_, workspace) {
    auto* card =
        new CardFrame("Export the report",
                      "PDF, Word, or .briselreport: written where you say, and nothing is sent");
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
        buttons_.push_back(button);
    }
    view().insertBelowTiles(card);
}

void ExportPage::refresh() {
    ContentPage::refresh();
    const auto& screen =
        static_cast<const ExportScreen&>(workspace().screens.at(StudioScreen::export_));
    for (QPushButton* button : buttons_) {
        button->setEnabled(screen.canExport());
    }
}

}  // namespace sorvane
