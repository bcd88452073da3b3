#include "SorvaneMac/Shell/TechnicalAppendixPage.h"

#include <QHBoxLayout>
#include <QPushButton>

#include "SorvaneMac/Screens/TechnicalAppendixScreen.h"
#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/MethodRecordView.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

TechnicalAppendixPage::TechnicalAppendixPage(Workspace& workspace)
    : ContentPage(StudioScreen::technicalAppendix, workspace) {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Theme::px(14));
    row->addWidget(Buttons::make("Save method file…", [this] { save(); }));
    row->addWidget(
        Labels::text("Writes the record in the preview. It names variables and holds no data.",
                     "quiet"),
        1);
    view().insertBelowTiles(bar);
}

void TechnicalAppendixPage::save() {
    const auto& screen = static_cast<const TechnicalAppendixScreen&>(
        workspace().screens.at(StudioScreen::technicalAppendix));
    if (screen.previewed()) {
        saveMethodRecord(this, workspace(), *screen.previewed());
    }
}

}  // namespace sorvane
