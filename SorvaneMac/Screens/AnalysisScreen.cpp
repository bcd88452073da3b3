#include "SorvaneMac/Screens/AnalysisScreen.h"

#include <nlohmann/json.hpp>

#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

SetupForm AnalysisScreen::setup() {
    SetupForm form;
    form.title = std::string(title(id()));
    for (const std::function<ChoiceControl()>& picker : pickers_) {
        form.controls.emplace_back(picker());
    }
    form.controls.emplace_back(HeadingControl{"VARIABLES"});
    chosen().addControls(form);
    OptionControls::addRun(form, chosen().runLabel(), gate(), [this] { run(); });
    chosen().addFurtherControls(form);
    return form;
}

std::optional<Gate> AnalysisScreen::gate() const {
    return state_.hasData() ? chosen().gate() : ResultText::noDataGate();
}

ScreenContent AnalysisScreen::content() const {
    const Analysis& analysis = chosen();
    ScreenContent content;
    const std::string heading = analysis.heading();
    content.title = heading.empty() ? std::string(title(id())) : heading;
    content.subtitle = analysis.subtitle();
    content.gate = gate();
    if (!content.gate) {
        content.gate = analysis.underWay();
    }
    if (content.gate) {
        return content;
    }
    if (hasRun_.get() && analysis.hasRun()) {
        analysis.show(content);
    } else {
        content.gate = {
            .title = "Ready to run", .lead = analysis.selection(), .text = analysis.invitation()};
    }
    analysis.showFurther(content);
    return content;
}

std::optional<std::string> AnalysisScreen::run() {
    if (const std::optional<Gate> missing = gate()) {
        return ResultText::sentence(*missing);
    }
    chosen().run([this] { hasRun_.set(true); });
    return std::nullopt;
}

Json AnalysisScreen::result() const {
    const AnyField* stored = chosen().stored();
    if (!hasRun_.get() || !stored) {
        return nullptr;
    }
    const Json run = stored->json();
    if (!chosen().resultIsMember()) {
        return run;
    }
    return run.contains("result") ? run.at("result") : Json(nullptr);
}

}  // namespace sorvane
