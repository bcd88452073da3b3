#include "SorvaneMac/Screens/PrepareDataScreen.h"

#include <nlohmann/json.hpp>

#include "SorvaneMac/Screens/ComputeForms.h"
#include "SorvaneMac/Screens/DataPreparation.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Imputation/ImputationForm.h"
#include "SorvaneMac/Screens/RecodeForm.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TableForms.h"

namespace sorvane {

PrepareDataScreen::PrepareDataScreen(StudioState& state, ScreenFields& fields)
    : state_(state), fields_(fields.prepareData) {
    using enum PrepareSection;
    forms_[recode] = std::make_unique<RecodeForm>(state);
    forms_[compute] = std::make_unique<ComputeForm>(state);
    forms_[totalScore] = std::make_unique<TotalScoreForm>(state);
    forms_[bands] = std::make_unique<BandsForm>(state);
    forms_[scaleScore] = std::make_unique<ScaleScoreForm>(state);
    forms_[imputation] = std::make_unique<ImputationForm>(state, fields.imputation);
    forms_[rename] = std::make_unique<RenameForm>(state);
}

void PrepareDataScreen::seed() {
    for (const auto& [section, form] : forms_) {
        form->seed();
    }
}

SetupForm PrepareDataScreen::setup() {
    SetupForm form;
    form.title = "Prepare Data";
    form.controls = {HeadingControl{"TASK"},
                     FormControls::enumerationPicker("What to do", fields_.prepareSection)};
    if (state_.hasData()) {
        open().addTo(form);
    } else {
        form.controls.emplace_back(NoteControl{gate()->text, false});
    }
    return form;
}

std::optional<Gate> PrepareDataScreen::gate() const {
    return state_.hasData() ? open().gate() : ResultText::noDataGate();
}

ScreenContent PrepareDataScreen::content() const {
    ScreenContent content{
        .title = "Prepare Data",
        .subtitle = std::string(displayName(fields_.prepareSection.get())) +
                    ". New columns are added to the working table; the imported file stays as "
                    "it is.",
        .gate = gate()};
    if (content.gate) {
        return content;
    }
    open().showPreview(content);
    content.cards.push_back(DataPreparation::logCard(state_));
    return content;
}

std::optional<std::string> PrepareDataScreen::run() {
    if (const std::optional<Gate> missing = gate()) {
        return ResultText::sentence(*missing);
    }
    open().run();
    return std::nullopt;
}

Json PrepareDataScreen::result() const {
    return state_.hasData() ? open().result() : Json(nullptr);
}

}  // namespace sorvane
