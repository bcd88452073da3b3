#include "SorvaneMac/Shell/ErrorBanner.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

ErrorBanner::ErrorBanner(StudioState& state) : state_(state), text_(Labels::text("", "error")) {
    setProperty("banner", true);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Theme::px(22), Theme::px(8), Theme::px(14), Theme::px(8));
    row->addWidget(text_, 1);
    row->addWidget(Buttons::make("Dismiss", [this] {
        state_.data.importError.set(std::nullopt);
        state_.projectError.set(std::nullopt);
    }));
    hide();
}

void ErrorBanner::refresh() {
    const std::optional<std::string>& error =
        state_.data.importError.get() ? state_.data.importError.get() : state_.projectError.get();
    setVisible(error.has_value());
    Labels::show(*text_, qtText(error.value_or("")));
    setAccessibleName(text_->accessibleName());
}

}  // namespace sorvane
