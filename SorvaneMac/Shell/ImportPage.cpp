#include "SorvaneMac/Shell/ImportPage.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

/// The window itself takes the drop; this shows that it may be done.
QWidget* dropZone(QWidget* page, Workspace& workspace) {
    auto* zone = new QFrame;
    zone->setProperty("dropZone", true);
    auto* column = new QVBoxLayout(zone);
    column->setContentsMargins(Theme::px(20), Theme::px(18), Theme::px(20), Theme::px(18));
    column->setSpacing(Theme::px(5));
    QLabel* title = Labels::line("Drop a file here, or anywhere in this window", "cardTitle");
    title->setAlignment(Qt::AlignCenter);
    QLabel* formats = Labels::text(qtText(SpreadsheetImporter::acceptedFormats), "quiet");
    formats->setAlignment(Qt::AlignCenter);
    column->addWidget(title);
    column->addWidget(formats);
    column->addSpacing(Theme::px(6));
    auto* row = new QHBoxLayout;
    row->setSpacing(Theme::px(8));
    row->addStretch(1);
    row->addWidget(Buttons::make(
        "Import a file…", [page, &workspace] { importFromDialog(page, workspace); },
        Buttons::Weight::primary));
    row->addWidget(
        Buttons::make("Paste data…", [page, &workspace] { pasteFromDialog(page, workspace); }));
    row->addWidget(Buttons::make("Open the sample study", [&workspace] { openSample(workspace); }));
    row->addStretch(1);
    column->addLayout(row);
    return zone;
}

}  // namespace

ImportPage::ImportPage(Workspace& workspace) : ContentPage(StudioScreen::importData, workspace) {
    view().insertBelowTiles(dropZone(this, workspace));
}

}  // namespace sorvane
