#include "SorvaneMac/Screens/MediationScreen.h"

#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/Screens/SelectionGates.h"

namespace sorvane {

namespace {

using VariableLists::List;
using VariableLists::numericVariables;
using VariableLists::without;

constexpr std::string_view mediationText =
    "Indirect effect of X on Y through M, with a percentile-bootstrap confidence interval (5,000 "
    "resamples).";
constexpr std::string_view moderationText =
    "Interaction of X and W predicting Y, with simple slopes at the moderator mean and ±1 SD.";
constexpr std::string_view blocked =
    "X, M/W, and Y must be distinct numeric variables with enough complete cases.";
/// Complete cases that both models need beyond one per covariate.
constexpr std::size_t casesBeyondCovariates = 5;

}  // namespace

void MediationScreen::seed() {
    const List numeric = numericVariables(state_.dataset());
    NameSet taken = {fields_.medX->name, fields_.medY->name, fields_.medM->name,
                     fields_.medW->name};
    for (Field<VariableName>* field :
         {&fields_.medX, &fields_.medY, &fields_.medM, &fields_.medW}) {
        Seeding::fillFirst(*field, without(numeric, taken));
        taken.insert(field->get().name);
    }
}

NameSet MediationScreen::roles() const {
    return {fields_.medX->name, middle()->name, fields_.medY->name};
}

std::vector<std::string> MediationScreen::covariates() const {
    return FormControls::chosen(fields_.medCovariates.get(),
                                without(numericVariables(state_.dataset()), roles()));
}

SetupForm MediationScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List numeric = numericVariables(state_.dataset());
    SetupForm form;
    form.title = "Mediation & Moderation";
    form.controls = {
        HeadingControl{"MODEL"},
        enumerationPicker("Analysis", fields_.medMode),
        HeadingControl{"VARIABLES"},
        variablePicker("Predictor (X)", fields_.medX, numeric),
        variablePicker(isModeration() ? "Moderator (W)" : "Mediator (M)", middle(),
                       without(numeric, {fields_.medX->name})),
        variablePicker("Outcome (Y)", fields_.medY,
                       without(numeric, {fields_.medX->name, middle()->name})),
        withUnavailable(
            variableCheckList("Covariates", fields_.medCovariates, without(numeric, roles())),
            fields_.medCovariates.get(), numeric),
    };
    OptionControls::addRun(form, isModeration() ? "Run moderation" : "Run mediation", gate(),
                           [this] { run(); });
    return form;
}

std::optional<Gate> MediationScreen::goneColumn() const {
    const List numeric = numericVariables(state_.dataset());
    for (const Field<VariableName>* field : {&fields_.medX, &middle(), &fields_.medY}) {
        if (auto gone = SelectionGates::goneColumn(*field, numeric, "numeric columns")) {
            return gone;
        }
    }
    return SelectionGates::goneColumn(fields_.medCovariates, numeric, "numeric columns");
}

bool MediationScreen::hasEnoughCases() const {
    std::vector<std::string> columns = covariates();
    const auto wanted = static_cast<std::int64_t>(columns.size() + casesBeyondCovariates);
    const NameSet placed = roles();
    columns.insert(columns.end(), placed.begin(), placed.end());
    return Categories::hasCompleteRows(state_.dataset(), wanted, columns);
}

std::optional<Gate> MediationScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (const std::optional<Gate> gone = goneColumn()) {
        return *gone;
    }
    const NameSet placed = roles();
    if (placed.size() < 3 || placed.contains("")) {
        return Gate{.title = isModeration() ? "Set X, W and Y" : "Set X, M and Y",
                    .lead = "",
                    .text = std::string(blocked)};
    }
    if (!hasEnoughCases()) {
        return Gate{
            .title = "There are too few complete cases", .lead = "", .text = std::string(blocked)};
    }
    return ResultText::notYetGate(isModeration() ? "Moderation analysis" : "Mediation analysis");
}

std::string MediationScreen::heading() const {
    return isModeration() ? "Moderation" : "Mediation";
}

std::string MediationScreen::subtitle() const {
    return std::string(isModeration() ? moderationText : mediationText);
}

Guide MediationScreen::guide() const {
    if (isModeration()) {
        return {.answers =
                    "Whether the effect of X on Y depends on the level of a moderator W, and how "
                    "large it is where W is low, average and high.",
                .needs =
                    "Three different numeric variables. Interactions are small and need many "
                    "cases: below about 50 hardly any is found, and often some hundreds are "
                    "needed. W must vary.",
                .doNotClaim = {
                    "Do not read the coefficient of X as its average effect; beside an interaction "
                    "it is the effect where W is 0, which may lie outside the data.",
                    "Do not conclude from one significant and one insignificant simple slope that "
                    "the two differ; the interaction tests that.",
                    "Do not probe a slope at levels of W that hardly anyone has."}};
    }
    return {.answers =
                "How much of the effect of X on Y can be accounted for by way of a mediator M: "
                "the indirect effect, with a bootstrap interval, beside the direct one.",
            .needs =
                "Three different numeric variables, best measured in the order X, M, Y, and every "
                "common cause of M and Y among the covariates. Below about 50 cases the interval "
                "is wide and unstable.",
            .doNotClaim = {
                "Do not claim a causal path from one cross-sectional survey; the same figures fit "
                "other orders of the three variables.",
                "Do not speak of full mediation because the direct effect is not significant.",
                "Do not report the proportion mediated where the total effect is small or runs "
                "the other way.",
                "Do not decide by the Sobel test where the bootstrap interval says otherwise."}};
}

}  // namespace sorvane
