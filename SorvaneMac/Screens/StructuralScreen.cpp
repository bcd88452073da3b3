#include "SorvaneMac/Screens/StructuralScreen.h"

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/StructuralModelText.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

using StructuralModelText::Template;

std::vector<std::string> numericNames(const StudioState& state) {
    return VariableLists::names(VariableLists::numericVariables(state.dataset()));
}

}  // namespace

bool StructuralScreen::isBlank() const {
    return UnicodeText::trimmed(fields_.semModel.get()).empty();
}

void StructuralScreen::seed() {
    if (state_.hasData() && isBlank()) {
        fields_.semModel.set(StructuralModelText::starter(numericNames(state_)));
    }
}

void StructuralScreen::addTemplates(SetupForm& form) {
    const auto add = [&](std::string label, Template wanted) {
        form.controls.emplace_back(ButtonControl{
            .label = std::move(label), .press = [this, wanted] {
                fields_.semModel.set(StructuralModelText::filled(wanted, numericNames(state_)));
            }});
    };
    form.controls.emplace_back(HeadingControl{"START FROM A TEMPLATE"});
    form.controls.emplace_back(NoteControl{"A template takes the place of the whole text."});
    add("One-factor CFA", Template::oneFactor);
    add("Multi-factor CFA", Template::twoFactors);
    add("Mediation path model", Template::mediation);
}

SetupForm StructuralScreen::setup() {
    SetupForm form;
    form.title = "SEM & CFA";
    ChoiceControl insert;
    insert.label = "Insert a field";
    insert.prompt = "Pick a field to put at the end";
    insert.choices = numericNames(state_);
    insert.set = [this, names = insert.choices](std::optional<std::size_t> index) {
        if (index) {
            fields_.semModel.set(
                StructuralModelText::withName(fields_.semModel.get(), names[*index]));
        }
    };
    form.controls = {
        HeadingControl{"MODEL"},
        TextControl{.label = "Model text",
                    .prompt = "factor =~ item1 + item2 + item3",
                    .text = fields_.semModel.get(),
                    .set = [this](const std::string& text) { fields_.semModel.set(text); },
                    .isMultiline = true},
        NoteControl{"=~ measures, ~ regresses, ~~ covaries. One statement a line; # starts a "
                    "comment; names with blanks or signs stand in `back-ticks`."},
        std::move(insert),
    };
    OptionControls::addRun(form, "Fit model", gate(), [this] { run(); });
    addTemplates(form);
    return form;
}

std::optional<Gate> StructuralScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (isBlank()) {
        return Gate{
            .title = "Write a model on the right",
            .lead = "",
            .text =
                "Start from a template or tap fields to insert them. The parsed model previews "
                "here, then press Fit model."};
    }
    if (numericNames(state_).empty()) {
        return Gate{.title = "There are no numeric columns",
                    .lead = "",
                    .text =
                        "A structural model is fitted to numeric columns. Set the roles of your "
                        "items in Variable Types."};
    }
    return ResultText::notYetGate("Structural equation modeling");
}

std::string StructuralScreen::subtitle() const {
    return "Confirmatory factor analysis and structural models by maximum likelihood, with "
           "lavaan-style syntax.";
}

Guide StructuralScreen::guide() const {
    return {.answers =
                "Whether items measure the factors they were written for, and whether the paths "
                "between variables that a theory states can reproduce their covariances.",
            .needs =
                "A model written down before looking at the data; at least three indicators per "
                "factor; 200 complete cases or more, and at least five per free parameter. "
                "Indicators are treated as continuous: few answer categories or strong skew "
                "distort the chi-square and the standard errors.",
            .doNotClaim = {
                "Do not claim that a model which fits is the true one; other models, with other "
                "arrows, fit exactly as well.",
                "Do not report fit indices alone: three indicators of one factor always fit "
                "perfectly, because nothing is left to test.",
                "Do not call a model that was changed after looking at the fit confirmatory; say "
                "what was changed and try it on new data.",
                "Do not read an arrow as a cause when the data were collected at one time."}};
}

}  // namespace sorvane
