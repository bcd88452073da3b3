#include "SorvaneMac/Screens/Structural/StructuralScreen.h"

#include <memory>
#include <utility>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Models/Structural/SEMWording.h"
#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Structural/StructuralDiagram.h"
#include "SorvaneMac/Screens/Structural/StructuralModelCheck.h"
#include "SorvaneMac/Screens/Structural/StructuralModelText.h"
#include "SorvaneMac/Screens/Structural/StructuralReport.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

using StructuralModelText::Template;

constexpr std::string_view computingLabel = "Fitting the model…";

std::int64_t countOf(const std::vector<std::string>& names) {
    return static_cast<std::int64_t>(names.size());
}

std::int64_t degreesOfFreedom(const SEMModel& model) {
    const std::int64_t p = countOf(model.observed);
    return p * (p + 1) / 2 - model.freeCount;
}

Gate readyToFit(const SEMModel& model) {
    return {.title = "Ready to fit",
            .lead = DatasetText::counted(countOf(model.latent), "latent variable") + ", " +
                    DatasetText::counted(countOf(model.observed), "observed variable"),
            .text = "Press Fit model in the Setup panel. Results appear here."};
}

Gate cannotFit(const std::string& text) {
    return {.title = "Cannot fit model",
            .lead = "",
            .text = "The columns of the model could not be read together:\n" + text};
}

Gate blocked(const SEMResult& result) {
    return {.title = "Estimation blocked",
            .lead = ResultText::obstacle(*result.readiness),
            .text = "The model did not converge or the covariance was not usable (df = " +
                    ResultText::count(result.fit.degreesOfFreedom) +
                    "). Simplify the model or check the data."};
}

/// All that a fit takes, so that it can run away from the window.
struct Input {
    std::string text;
    std::vector<std::string> names;
    std::vector<NumericColumn> columns;
};

StructuralRun fitted(const Input& input) {
    StructuralRun run{
        .text = input.text,
        .result = StructuralEquationModel::fit(input.text, input.columns, input.names),
        .sample = {},
        .implied = {}};
    if (run.result && !run.result->parameters.empty()) {
        const auto sample = StructuralEquationModel::sampleCovariance(run.result->observed,
                                                                      input.columns, input.names);
        const auto implied =
            StructuralEquationModel::impliedCovariance(input.text, *run.result, input.names);
        run.sample = sample ? sample->matrix : std::vector<double>();
        run.implied = implied.value_or(std::vector<double>());
    }
    return run;
}

}  // namespace

bool StructuralScreen::isBlank() const {
    return UnicodeText::trimmed(fields_.semModel->text).empty();
}

void StructuralScreen::seed() {
    if (state_.hasData() && isBlank()) {
        fields_.semModel.set(
            {StructuralModelText::starter(VariableLists::numericNames(state_.dataset()))});
    }
}

void StructuralScreen::addTemplates(SetupForm& form) {
    const auto add = [&](std::string label, Template wanted) {
        form.controls.emplace_back(
            ButtonControl{.label = std::move(label), .press = [this, wanted] {
                              fields_.semModel.set({StructuralModelText::filled(
                                  wanted, VariableLists::numericNames(state_.dataset()))});
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
    insert.choices = VariableLists::numericNames(state_.dataset());
    insert.set = [this, names = insert.choices](std::optional<std::size_t> index) {
        if (index) {
            fields_.semModel.set(
                {StructuralModelText::withName(fields_.semModel->text, names[*index])});
        }
    };
    form.controls = {
        HeadingControl{"MODEL"},
        TextControl{.label = "Model text",
                    .prompt = "factor =~ item1 + item2 + item3",
                    .text = fields_.semModel->text,
                    .set = [this](const std::string& text) { fields_.semModel.set({text}); },
                    .isMultiline = true},
        NoteControl{"=~ measures, ~ regresses, ~~ covaries. One statement a line; # starts a "
                    "comment; names with blanks or signs stand in `back-ticks`."},
        std::move(insert),
    };
    std::optional<Gate> missing = gate();
    if (missing) {
        // While a fit stays in view, the form alone says what is wrong with the text.
        missing->text = ResultText::sentence(*missing);
    }
    OptionControls::addRun(form, "Fit model", missing, [this] { run(); });
    addTemplates(form);
    return form;
}

std::optional<Gate> StructuralScreen::gateOfText() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (VariableLists::numericNames(state_.dataset()).empty()) {
        return Gate{.title = "There are no numeric columns",
                    .lead = "",
                    .text =
                        "A structural model is fitted to numeric columns. Set the roles of your "
                        "items in Variable Types."};
    }
    if (isBlank()) {
        return Gate{
            .title = "Write a model on the right",
            .lead = "",
            .text =
                "Start from a template or tap fields to insert them. The parsed model previews "
                "here, then press Fit model."};
    }
    return std::nullopt;
}

std::optional<Gate> StructuralScreen::gate() const {
    const std::optional<Gate> missing = gateOfText();
    return missing ? missing
                   : StructuralModelCheck::read(fields_.semModel->text, state_.dataset()).gate;
}

bool StructuralScreen::isFitting() const {
    return state_.isComputingFor(this);
}

ScreenContent StructuralScreen::content() const {
    ScreenContent content;
    content.title = std::string(title(id()));
    content.subtitle =
        "Confirmatory factor analysis and structural models by maximum likelihood, with "
        "lavaan-style syntax.";
    content.gate = gateOfText();
    if (content.gate) {
        return content;
    }
    if (isFitting()) {
        content.gate = Gate{
            .title = std::string(computingLabel), .lead = "", .text = "Estimating parameters…"};
        return content;
    }
    const std::optional<StructuralRun>& run = fields_.semResult.get();
    if (!fields_.semHasRun.get() || !run) {
        showPreview(content);
    } else if (!run->result) {
        content.gate = cannotFit(run->text);
    } else if (run->result->parameters.empty()) {
        content.gate = blocked(*run->result);
    } else {
        StructuralReport::show(*run, content);
    }
    return content;
}

void StructuralScreen::showPreview(ScreenContent& content) const {
    const auto [model, gate] = StructuralModelCheck::read(fields_.semModel->text, state_.dataset());
    content.gate = gate ? *gate : readyToFit(*model);
    if (!model) {
        return;
    }
    const Chart diagram = StructuralDiagram::ofModel(*model);
    Card card{.title = diagram.title,
              .subtitle = diagram.subtitle,
              .charts = {diagram},
              .facts = {{"Free parameters", ResultText::count(model->freeCount)},
                        {"Degrees of freedom", ResultText::count(degreesOfFreedom(*model))}},
              .wide = true};
    if (degreesOfFreedom(*model) < 0) {
        card.cautions = {SEMWording::notIdentified()};
    }
    content.cards.push_back(std::move(card));
}

std::optional<std::string> StructuralScreen::run() {
    if (const std::optional<Gate> missing = gate()) {
        return ResultText::sentence(*missing);
    }
    fit();
    return std::nullopt;
}

void StructuralScreen::fit() {
    const std::string& text = fields_.semModel->text;
    Input input{.text = text,
                .names = StructuralModelCheck::read(text, state_.dataset()).model->observed,
                .columns = {}};
    for (const std::string& name : input.names) {
        input.columns.push_back(state_.dataset().numericColumn(name));
    }
    state_.compute(
        {.label = std::string(computingLabel),
         .work =
             [this, input = std::move(input)](std::stop_token, const TaskRunner::Progress&) {
                 return [this, run = std::make_shared<StructuralRun>(fitted(input))] {
                     fields_.semResult.replace(std::move(*run));
                     fields_.semHasRun.set(true);
                 };
             },
         .owner = this});
}

Json StructuralScreen::result() const {
    const std::optional<StructuralRun>& run = fields_.semResult.get();
    return fields_.semHasRun.get() && run ? toJson(run->result) : Json(nullptr);
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
