#include "SorvaneMac/Shell/ExportPage.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "SorvaneMac/Screens/ExportScreen.h"
#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/CardFrame.h"
#include "SorvaneMac/Shell/IntelligenceCard.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/ReportExporting.h"
#include "SorvaneMac/Shell/ReviewSharing.h"
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

/// A button, and beside it what it is for.
void addRow(CardFrame& card, QPushButton* button, const QString& what) {
    auto* row = new QHBoxLayout;
    row->setSpacing(Theme::px(14));
    button->setMinimumWidth(Theme::px(210));
    row->addWidget(button);
    row->addWidget(Labels::text(what, "quiet"), 1);
    card.body().addLayout(row);
}

}  // namespace

ExportPage::ExportPage(Workspace& workspace) : ContentPage(StudioScreen::export_, workspace) {
    view().insertBelowTiles(reportCard());
    view().insertBelowTiles(reviewCard());
    intelligence_ = new IntelligenceCard(workspace);
    view().insertBelowTiles(intelligence_);
}

QWidget* ExportPage::reportCard() {
    auto* card =
        new CardFrame("Export the report",
                      "PDF, Word, or .briselreport: written where you say, and nothing is sent");
    for (const ReportFormat format : {ReportFormat::pdf, ReportFormat::docx, ReportFormat::rtf,
                                      ReportFormat::md, ReportFormat::draft}) {
        QPushButton* button = Buttons::make(
            exportLabel(format), [this, format] { exportReport(this, this->workspace(), format); });
        addRow(*card, button, purpose(format));
        buttons_.push_back(button);
    }
    return card;
}

QWidget* ExportPage::reviewCard() {
    auto* card = new CardFrame("Show the findings on an iPad",
                               "Table, findings and hints as one packet, for the tablet viewer");
    addRow(*card, Buttons::make("Export to iPad…", [this] { exportToIPad(this, workspace()); }),
           "A file, for you to pass on as you like.");
    addRow(*card, Buttons::make("Present on iPad…", [this] { presentOnIPad(this, workspace()); }),
           "Over the local network, to whoever types the code that is shown; it holds the leading "
           "rows of the table. This program listens only while the panel is open.");
    preview_ = new QCheckBox("Put the leading 25 rows of the table into the file");
    connect(preview_, &QCheckBox::clicked, this,
            [this](bool isOn) { workspace().state.sharing.packetHasPreview.set(isOn); });
    card->body().addWidget(preview_);
    return card;
}

void ExportPage::refresh() {
    ContentPage::refresh();
    const auto& screen =
        static_cast<const ExportScreen&>(workspace().screens.at(StudioScreen::export_));
    for (QPushButton* button : buttons_) {
        button->setEnabled(screen.canExport());
    }
    preview_->setChecked(workspace().state.sharing.packetHasPreview.get());
    intelligence_->refresh();
}

}  // namespace sorvane
