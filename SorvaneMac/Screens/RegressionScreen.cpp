#include "SorvaneMac/Screens/RegressionScreen.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "SorvaneCore/Project/RecordJson.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/RegressionOutcomes.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/ScatterChart.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

using VariableLists::numericVariables;

constexpr std::string_view caution =
    "Regression shows association after adjusting for the predictors, not causation.";
constexpr std::size_t seededPredictors = 4;

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += i == 0                  ? ""
                : i + 1 == names.size() ? (names.size() > 2 ? ", and " : " and ")
                                        : ", ";
        text += names[i];
    }
    return text;
}

ReportTable coefficientTable(const MultipleRegressionResult& result) {
    ReportTable table;
    table.title = "Coefficients";
    table.headers = {"Predictor", "B", "SE", "β", "t", "p", "95% CI Lower", "95% CI Upper"};
    for (const RegressionCoefficient& each : result.coefficients) {
        table.rows.push_back({each.name, svFmt(each.estimate, 3), svFmt(each.standardError, 3),
                              svFmt(each.standardizedEstimate, 3), svFmt(each.t, 2),
                              ResultText::pCell(each.pValue), svFmt(each.lowerBound, 3),
                              svFmt(each.upperBound, 3)});
    }
    table.note =
        "B is the unstandardized and β the standardized coefficient; the interval is the "
        "95% confidence interval of B.";
    return table;
}

ReportTable modelTable(const MultipleRegressionResult& result) {
    ReportTable table;
    table.title = "Model summary";
    table.headers = {"n", "R²", "Adjusted R²", "SE of estimate", "F", "df1", "df2", "p"};
    table.rows = {{ResultText::count(result.n), svFmt(result.rSquared, 3),
                   svFmt(result.adjustedRSquared, 3), svFmt(result.residualStandardError, 3),
                   svFmt(result.fStatistic, 2), ResultText::count(result.dfModel),
                   ResultText::count(result.dfResidual), ResultText::pCell(result.pValue)}};
    return table;
}

Gate missingPredictor(const std::string& name) {
    return {.title = "A predictor is missing",
            .lead = name,
            .text =
                "There is no numeric column of that name. Take it out of the predictors, or "
                "confirm it in Variable Roles."};
}

Gate noPredictors() {
    return {.title = "No predictors selected",
            .lead = "",
            .text = "Pick one or more predictors in the Setup panel."};
}

}  // namespace

void RegressionScreen::seed() {
    const VariableLists::List numeric = numericVariables(state_.dataset());
    Seeding::fillFirst(fields_.regOutcome, numeric);
    Seeding::fillFirst(fields_.regPredictors,
                       VariableLists::without(numeric, {fields_.regOutcome->name}),
                       seededPredictors);
}

std::vector<std::string> RegressionScreen::predictors() const {
    std::vector<std::string> names =
        FormControls::chosen(fields_.regPredictors.get(), numericVariables(state_.dataset()));
    std::erase(names, fields_.regOutcome->name);
    return names;
}

SetupForm RegressionScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const RegressionModel model = fields_.regModel.get();
    const ImportedDataset& dataset = state_.dataset();
    const VariableLists::List numeric = numericVariables(dataset);
    const VariableLists::List others = VariableLists::without(numeric, {fields_.regOutcome->name});
    SetupForm form;
    form.title = "Regression";
    form.controls = {enumerationPicker("Model", fields_.regModel), HeadingControl{"VARIABLES"},
                     variablePicker("Outcome", fields_.regOutcome,
                                    RegressionOutcomes::candidates(dataset, model))};
    if (model != RegressionModel::linear) {
        form.controls.emplace_back(
            NoteControl{std::string(RegressionOutcomes::requirement(model))});
    }
    form.controls.emplace_back(
        withUnavailable(variableCheckList("Predictors", fields_.regPredictors, others),
                        fields_.regPredictors.get(), numeric));
    OptionControls::addRun(form, "Run regression", gate(), [this] { run(); });
    return form;
}

std::optional<Gate> RegressionScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    const RegressionModel model = fields_.regModel.get();
    const VariableLists::List numeric = numericVariables(state_.dataset());
    // Of a single numeric column there is no outcome with a predictor.
    const bool canHaveOutcome = model != RegressionModel::linear || numeric.size() >= 2;
    if (std::optional<Gate> unsuitable = RegressionOutcomes::unsuitable(
            state_.dataset(), model, canHaveOutcome ? fields_.regOutcome->name : "")) {
        return unsuitable;
    }
    for (const std::string& name : fields_.regPredictors.get()) {
        if (!VariableLists::contains(numeric, name)) {
            return missingPredictor(name);
        }
    }
    if (predictors().empty()) {
        return noPredictors();
    }
    if (model != RegressionModel::linear) {
        return ResultText::notYetGate(displayName(model));
    }
    return std::nullopt;
}

LinearModelRun RegressionScreen::fit() const {
    LinearModelRun model{.outcome = fields_.regOutcome->name, .predictors = predictors()};
    std::vector<NumericColumn> columns;
    for (const std::string& name : model.predictors) {
        columns.push_back(state_.dataset().numericColumn(name));
    }
    model.result = RegressionTests::ordinaryLeastSquares(
        columns, state_.dataset().numericColumn(model.outcome),
        {.predictorNames = model.predictors, .confidenceLevel = 0.95});
    return model;
}

ScreenContent RegressionScreen::content() const {
    ScreenContent content;
    content.title = "Regression";
    content.subtitle = std::string(displayName(fields_.regModel.get()));
    content.gate = gate();
    if (content.gate) {
        return content;
    }
    const std::optional<LinearModelRun>& model = fields_.regLinearRun.get();
    if (!fields_.regHasRun.get() || !model) {
        content.gate = {.title = "Ready to run",
                        .lead = fields_.regOutcome->name + " on " + joined(predictors()),
                        .text = "Press Run regression in the Setup panel. Results appear here."};
    } else if (!model->result) {
        content.gate = {.title = "The model could not be estimated",
                        .lead = model->outcome + " on " + joined(model->predictors),
                        .text =
                            "A predictor is constant or collinear with the others, or there "
                            "are fewer complete cases than coefficients. Take a predictor out "
                            "in the Setup panel and run again."};
    } else {
        addResult(*model, content);
    }
    return content;
}

void RegressionScreen::addResult(const LinearModelRun& model, ScreenContent& content) const {
    const MultipleRegressionResult& result = *model.result;
    content.subtitle = std::string(displayName(RegressionModel::linear)) + ": " + model.outcome;
    content.tiles = {
        {"R²", svFmtBounded(result.rSquared, 3), "Variance explained"},
        {"Adjusted R²", svFmtBounded(result.adjustedRSquared, 3), "For the number of predictors"},
        {"F(" + ResultText::count(result.dfModel) + ", " + ResultText::count(result.dfResidual) +
             ")",
         svFmt(result.fStatistic, 2), ResultText::pSentence(result.pValue)},
        {"Cases used", ResultText::count(result.n), "complete on all variables"}};
    content.cards.push_back({.title = "Coefficients",
                             .subtitle = "Effect of each predictor with the others held constant",
                             .tables = {coefficientTable(result), modelTable(result)},
                             .wide = true});
    const Chart drawn = chart(model);
    content.cards.push_back({.title = drawn.title, .subtitle = drawn.subtitle, .charts = {drawn}});
    std::vector<std::string> cautions = ResultText::messages(result.readiness);
    cautions.emplace_back(caution);
    content.cards.push_back({.title = "What not to claim", .cautions = std::move(cautions)});
    content.findings.push_back(finding(model));
}

Chart RegressionScreen::chart(const LinearModelRun& model) const {
    if (model.predictors.size() == 1) {
        const ImportedDataset& dataset = state_.dataset();
        const std::string& predictor = model.predictors.front();
        return scatterChart(
            {.name = predictor, .values = dataset.numericColumn(predictor)},
            {.name = model.outcome, .values = dataset.numericColumn(model.outcome)});
    }
    BarPlot bars;
    for (const RegressionCoefficient& each : model.result->coefficients) {
        if (each.standardizedEstimate) {
            bars.labels.push_back(each.name);
            bars.values.push_back(*each.standardizedEstimate);
        }
    }
    Chart chart;
    chart.title = "Standardized coefficients";
    chart.subtitle = "Change of the outcome in SD for one SD of the predictor";
    chart.xLabel = "β";
    chart.plot = std::move(bars);
    return chart;
}

Finding RegressionScreen::finding(const LinearModelRun& model) const {
    const MultipleRegressionResult& result = *model.result;
    ReportItem item;
    item.id = Uuid::fresh();
    item.title = "Linear Regression: " + model.outcome;
    item.apaSummary =
        "Linear regression of " + model.outcome + " on " + joined(model.predictors) +
        ". The model was " + std::string(ResultText::significanceWords(result.pValue)) + ", F(" +
        ResultText::count(result.dfModel) + ", " + ResultText::count(result.dfResidual) +
        ") = " + svFmt(result.fStatistic, 2) + ", " + ResultText::pSentence(result.pValue) +
        ", R² = " + svFmtBounded(result.rSquared, 2) +
        ", adjusted R² = " + svFmtBounded(result.adjustedRSquared, 2) + ".";
    item.table = coefficientTable(result);
    for (const std::string& message : ResultText::messages(result.readiness)) {
        *item.table->note += " " + message;
    }
    item.extraTables = std::vector<ReportTable>{modelTable(result)};
    item.caution = std::string(caution);
    const Chart figure = chart(model);
    item.figureCaption = figure.title + ".";
    return {.item = std::move(item), .figure = figure};
}

Guide RegressionScreen::guide() const {
    return RegressionOutcomes::guideOf(fields_.regModel.get());
}

std::optional<std::string> RegressionScreen::run() {
    if (const std::optional<Gate> missing = gate()) {
        return ResultText::sentence(*missing);
    }
    fields_.regLinearRun.replace(fit());
    fields_.regHasRun.set(true);
    return std::nullopt;
}

Json RegressionScreen::result() const {
    const std::optional<LinearModelRun>& model = fields_.regLinearRun.get();
    return fields_.regHasRun.get() && model ? toJson(model->result) : Json(nullptr);
}

}  // namespace sorvane
