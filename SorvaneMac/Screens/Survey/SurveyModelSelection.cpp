#include "SorvaneMac/Screens/Survey/SurveyModelSelection.h"

#include <algorithm>

#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/Regression/RegressionOutcomes.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/Survey/SurveyColumns.h"

namespace sorvane::SurveyModelSelection {

namespace {

using SurveyColumns::possibleGroups;
using VariableLists::List;
using VariableLists::numericVariables;
using VariableLists::without;

constexpr std::size_t seededVariables = 4;
/// The covariance of a table grows with the square of its cells, and nobody reads more.
constexpr std::int64_t mostCells = 200;

RegressionModel modelOf(SurveyModelKind kind) {
    switch (kind) {
        case SurveyModelKind::linear:
            return RegressionModel::linear;
        case SurveyModelKind::logistic:
            return RegressionModel::logistic;
        case SurveyModelKind::poisson:
            return RegressionModel::poisson;
        case SurveyModelKind::ordinal:
            break;
    }
    return RegressionModel::ordinal;
}

/// Columns that are weights; strata and clusters may well explain an outcome.
NameSet weights(const SurveyFields& fields) {
    NameSet names = fields.svReplicates.get();
    names.insert({fields.svWeight->name, fields.svFpc->name});
    return names;
}

NameSet designColumns(const SurveyFields& fields) {
    NameSet names = weights(fields);
    names.insert({fields.svStrata->name, fields.svCluster->name});
    return names;
}

/// Numeric variables that are not weights of the design.
List measures(const ImportedDataset& dataset, const SurveyFields& fields) {
    return without(numericVariables(dataset), weights(fields));
}

CheckListControl measureList(std::string label,
                             Field<NameSet>& field,
                             const List& offered,
                             const List& available) {
    return FormControls::withUnavailable(
        FormControls::variableCheckList(std::move(label), field, offered), field.get(), available);
}

Gate needTwoVariables() {
    return {.title = "Need two numeric variables",
            .lead = "",
            .text = "Check two or more variables in the Setup panel."};
}

Gate needTwoCategories() {
    return {.title = "Need two categorical variables",
            .lead = "",
            .text = "Set the rows and the columns of the table in the Setup panel."};
}

std::optional<Gate> tooManyCells(const ImportedDataset& dataset, const SurveyFields& fields) {
    const std::string& rows = fields.models.svRowCat->name;
    const std::string& columns = fields.models.svColCat->name;
    const std::int64_t cells =
        dataset.variable(rows)->uniqueCount * dataset.variable(columns)->uniqueCount;
    if (cells <= mostCells) {
        return std::nullopt;
    }
    return Gate{.title = "The table would have too many cells",
                .lead = rows + " by " + columns,
                .text = "It would have " + ResultText::count(cells) + " cells; up to " +
                        ResultText::count(mostCells) +
                        " can be tested. Combine categories in Prepare Data."};
}

}  // namespace

std::vector<std::string> predictors(const ImportedDataset& dataset, const SurveyFields& fields) {
    std::vector<std::string> names =
        FormControls::chosen(fields.models.svPredictors.get(), measures(dataset, fields));
    std::erase(names, fields.models.svOutcome->name);
    return names;
}

std::vector<std::string> correlated(const ImportedDataset& dataset, const SurveyFields& fields) {
    return FormControls::chosen(fields.models.svCorrVars.get(), measures(dataset, fields));
}

void addModel(SetupForm& form,
              const ImportedDataset& dataset,
              SurveyFields& fields,
              SurveyModelKind model) {
    SurveyModelFields& models = fields.models;
    const List numeric = measures(dataset, fields);
    form.controls.emplace_back(FormControls::variablePicker(
        "Outcome", models.svOutcome,
        without(RegressionOutcomes::candidates(dataset, modelOf(model)), weights(fields))));
    if (model != SurveyModelKind::linear) {
        form.controls.emplace_back(
            NoteControl{std::string(RegressionOutcomes::requirement(modelOf(model)))});
    }
    form.controls.emplace_back(measureList("Predictors", models.svPredictors,
                                           without(numeric, {models.svOutcome->name}), numeric));
    form.controls.emplace_back(OptionControls::confidencePicker(fields.svConfidence));
}

void addCorrelation(SetupForm& form, const ImportedDataset& dataset, SurveyFields& fields) {
    const List numeric = measures(dataset, fields);
    form.controls.emplace_back(
        measureList("Variables", fields.models.svCorrVars, numeric, numeric));
    form.controls.emplace_back(OptionControls::confidencePicker(fields.svConfidence));
}

void addCrosstab(SetupForm& form, const ImportedDataset& dataset, SurveyFields& fields) {
    const List groups = without(possibleGroups(dataset), weights(fields));
    form.controls.emplace_back(
        FormControls::variablePicker("Rows", fields.models.svRowCat, groups));
    form.controls.emplace_back(FormControls::variablePicker(
        "Columns", fields.models.svColCat, without(groups, {fields.models.svRowCat->name})));
    form.controls.emplace_back(OptionControls::confidencePicker(fields.svConfidence));
}

std::optional<Gate> modelGate(const ImportedDataset& dataset,
                              const SurveyFields& fields,
                              SurveyModelKind model) {
    if (auto unsuitable = RegressionOutcomes::unsuitable(dataset, modelOf(model),
                                                         fields.models.svOutcome->name)) {
        return unsuitable;
    }
    if (weights(fields).contains(fields.models.svOutcome->name)) {
        return Gate{.title = "The outcome is a weight of the design",
                    .lead = fields.models.svOutcome->name,
                    .text = "Set another outcome in the Setup panel."};
    }
    if (auto gone = SelectionGates::goneColumn(fields.models.svPredictors,
                                               measures(dataset, fields), "numeric columns")) {
        return gone;
    }
    return predictors(dataset, fields).empty() ? std::optional(SelectionGates::noPredictors())
                                               : std::nullopt;
}

std::optional<Gate> correlationGate(const ImportedDataset& dataset, const SurveyFields& fields) {
    if (auto gone = SelectionGates::goneColumn(fields.models.svCorrVars, measures(dataset, fields),
                                               "numeric columns")) {
        return gone;
    }
    return correlated(dataset, fields).size() < 2 ? std::optional(needTwoVariables())
                                                  : std::nullopt;
}

std::optional<Gate> crosstabGate(const ImportedDataset& dataset, const SurveyFields& fields) {
    const Field<VariableName>& rows = fields.models.svRowCat;
    const Field<VariableName>& columns = fields.models.svColCat;
    if (rows->isBlank() || columns->isBlank()) {
        return needTwoCategories();
    }
    if (rows.get() == columns.get()) {
        return Gate{.title = "Rows and columns are the same column",
                    .lead = rows->name,
                    .text = "Set other columns of the table in the Setup panel."};
    }
    const List groups = without(possibleGroups(dataset), weights(fields));
    for (const Field<VariableName>* field : {&rows, &columns}) {
        if (auto gone =
                SelectionGates::goneColumn(*field, groups, "columns with 2 to 60 categories")) {
            return gone;
        }
    }
    return tooManyCells(dataset, fields);
}

void seed(const ImportedDataset& dataset, SurveyFields& fields) {
    SurveyModelFields& models = fields.models;
    const NameSet design = designColumns(fields);
    const List numeric = without(numericVariables(dataset), design);
    Seeding::fillFirst(models.svOutcome, numeric);
    Seeding::fillFirst(models.svPredictors, without(numeric, {models.svOutcome->name}),
                       seededVariables);
    Seeding::fillFirst(models.svCorrVars, numeric, seededVariables);
    const List groups = without(VariableLists::anovaGroupingVariables(dataset), design);
    Seeding::fillFirst(models.svRowCat, without(groups, {models.svColCat->name}));
    Seeding::fillFirst(models.svColCat, without(groups, {models.svRowCat->name}));
}

}  // namespace sorvane::SurveyModelSelection
