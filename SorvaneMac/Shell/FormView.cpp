#include "SorvaneMac/Shell/FormView.h"

#include <algorithm>

#include <QVBoxLayout>
#include <QWidget>

#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

FormView::FormView() {
    auto* form = new QWidget;
    column_ = new QVBoxLayout(form);
    const int side = Theme::px(15);
    column_->setContentsMargins(side, Theme::px(12), side, Theme::px(18));
    column_->setSpacing(Theme::px(10));
    column_->addStretch(1);
    setWidget(form);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
}

FormView::~FormView() = default;

void FormView::show(const SetupForm& form) {
    std::vector<std::unique_ptr<ControlView>> views;
    views.reserve(form.controls.size());
    for (const Control& control : form.controls) {
        views.push_back(take(control));
        views.back()->update(control);
    }
    views_.clear();
    if (!standsInOrder(views)) {
        int place = 0;
        for (const auto& view : views) {
            column_->removeWidget(view->widget());
            column_->insertWidget(place, view->widget());
            view->widget()->show();
            ++place;
        }
    }
    views_ = std::move(views);
}

std::unique_ptr<ControlView> FormView::take(const Control& control) {
    const auto found = std::find_if(views_.begin(), views_.end(), [&control](const auto& view) {
        return view && view->suits(control);
    });
    return found == views_.end() ? ControlView::make(control) : std::move(*found);
}

bool FormView::standsInOrder(const std::vector<std::unique_ptr<ControlView>>& views) const {
    // One item is the stretch at the end.
    if (column_->count() != static_cast<int>(views.size()) + 1) {
        return false;
    }
    for (std::size_t at = 0; at < views.size(); ++at) {
        if (column_->itemAt(static_cast<int>(at))->widget() != views[at]->widget()) {
            return false;
        }
    }
    return true;
}

}  // namespace sorvane
