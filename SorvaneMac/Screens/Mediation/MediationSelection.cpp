#include "SorvaneMac/Screens/Mediation/MediationSelection.h"

#include <algorithm>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane::MediationSelection {

namespace {

using VariableLists::List;
using VariableLists::numericVariables;
using VariableLists::without;

constexpr std::string_view blocked =
    "X, M/W, and Y must be distinct numeric variables with enough complete cases.";

bool isModeration(const MediationFields& fields) {
    return fields.medMode.get() == MediationScreenMode::moderation;
}

/// The mediator or the moderator.
template <typename Fields>
auto& middleOf(Fields& fields) {
    return isModeration(fields) ? fields.medW : fields.medM;
}

/// X, the middle one and Y.
NameSet roles(const MediationFields& fields) {
    return {fields.medX->name, middleOf(fields)->name, fields.medY->name};
}

std::optional<Gate> goneColumn(const List& numeric, const MediationFields& fields) {
    for (const Field<VariableName>* field : {&fields.medX, &middleOf(fields), &fields.medY}) {
        if (auto gone = SelectionGates::goneColumn(*field, numeric, "numeric columns")) {
            return gone;
        }
    }
    return SelectionGates::goneColumn(fields.medCovariates, numeric, "numeric columns");
}

bool hasEnoughCases(const ImportedDataset& dataset, const MediationFields& fields) {
    const MediationVariables chosen = variables(dataset, fields);
    std::vector<std::string> names = chosen.covariates;
    const auto covariateCount = static_cast<std::int64_t>(names.size());
    names.insert(names.end(), {chosen.x, chosen.middle, chosen.y});
    return Categories::hasCompleteRows(
        dataset, covariateCount + MediationAnalysis::casesBeyondCovariates, names);
}

}  // namespace

void addControls(SetupForm& form,
                 const ImportedDataset& dataset,
                 MediationFields& fields,
                 std::string_view method) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const List numeric = numericVariables(dataset);
    Field<VariableName>& middle = middleOf(fields);
    form.controls.emplace_back(NoteControl{std::string(method), false});
    form.controls.emplace_back(variablePicker("Predictor (X)", fields.medX, numeric));
    form.controls.emplace_back(
        variablePicker(isModeration(fields) ? "Moderator (W)" : "Mediator (M)", middle,
                       without(numeric, {fields.medX->name})));
    form.controls.emplace_back(variablePicker("Outcome (Y)", fields.medY,
                                              without(numeric, {fields.medX->name, middle->name})));
    form.controls.emplace_back(withUnavailable(
        variableCheckList("Covariates", fields.medCovariates, without(numeric, roles(fields))),
        fields.medCovariates.get(), numeric));
}

std::optional<Gate> gate(const ImportedDataset& dataset, const MediationFields& fields) {
    if (std::optional<Gate> gone = goneColumn(numericVariables(dataset), fields)) {
        return gone;
    }
    const NameSet placed = roles(fields);
    if (placed.size() < 3 || placed.contains("")) {
        return Gate{.title = isModeration(fields) ? "Set X, W and Y" : "Set X, M and Y",
                    .lead = "",
                    .text = std::string(blocked)};
    }
    if (!hasEnoughCases(dataset, fields)) {
        return Gate{
            .title = "There are too few complete cases", .lead = "", .text = std::string(blocked)};
    }
    return std::nullopt;
}

MediationVariables variables(const ImportedDataset& dataset, const MediationFields& fields) {
    return {.x = fields.medX->name,
            .middle = middleOf(fields)->name,
            .y = fields.medY->name,
            .covariates = FormControls::chosen(fields.medCovariates.get(),
                                               without(numericVariables(dataset), roles(fields)))};
}

std::string words(const MediationVariables& variables, MediationScreenMode mode) {
    const std::string covariates = ResultText::listed(variables.covariates);
    const bool isProduct = mode == MediationScreenMode::moderation;
    return variables.x + (isProduct ? " × " : " → ") + variables.middle + " → " + variables.y +
           (covariates.empty() ? "" : ", with " + covariates);
}

Columns columns(const ImportedDataset& dataset, const MediationVariables& variables) {
    Columns columns{.x = dataset.numericColumn(variables.x),
                    .middle = dataset.numericColumn(variables.middle),
                    .y = dataset.numericColumn(variables.y),
                    .covariates = {}};
    for (const std::string& name : variables.covariates) {
        columns.covariates.push_back(dataset.numericColumn(name));
    }
    return columns;
}

Gate noResult(const MediationVariables& variables, MediationScreenMode mode) {
    return {.title = std::string(displayName(mode)) + " could not be estimated",
            .lead = words(variables, mode),
            .text = std::string(blocked) +
                    " Nor may one of the columns be constant, or follow exactly from others."};
}

bool areTwoValued(const std::vector<double>& values) {
    const auto [low, high] = std::ranges::minmax(values);
    return low < high && std::ranges::all_of(values, [low = low, high = high](double value) {
               return value == low || value == high;
           });
}

void addTwoValued(std::vector<std::string>& remarks,
                  const std::string& name,
                  const std::vector<double>& values) {
    if (areTwoValued(values)) {
        remarks.push_back(name +
                          " has only two values, which a linear model treats as a scale. A "
                          "logistic model would suit it better.");
    }
}

std::string pathText(const MediationPath& path, std::int64_t df) {
    const int decimals = ReportDecimals::of(path.standardError);
    return "B = " + svFigure(path.estimate, decimals) +
           ", SE = " + svFigure(path.standardError, decimals) + ", t(" + ResultText::count(df) +
           ") = " + svFmt(path.t, 2) + ", " + ResultText::pSentence(path.pValue);
}

}  // namespace sorvane::MediationSelection
