#include "SorvaneMac/Shell/ContentPage.h"

#include <QVBoxLayout>

namespace sorvane {

ContentPage::ContentPage(StudioScreen screen, Workspace& workspace)
    : screen_(screen), workspace_(workspace), view_(new ContentView(workspace)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(view_);
}

void ContentPage::refresh() {
    view_->show(workspace_.screens.content(screen_));
}

void ContentPage::stageFirst() {
    view_->stageFirst();
}

}  // namespace sorvane
