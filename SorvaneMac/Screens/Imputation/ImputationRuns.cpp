#include "SorvaneMac/Screens/Imputation/ImputationRuns.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneCore/Prepare/DerivedValueFormatter.h"
#include "SorvaneMac/Screens/Imputation/ImputationCharts.h"
#include "SorvaneMac/Screens/Imputation/ImputationModel.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/State/JoinedText.h"

namespace sorvane::ImputationRuns {

namespace {

constexpr std::string_view couldNotRun =
    "MICE could not run. Common causes: a target with fewer than two observed values, predictors "
    "with no variation, or too few overlapping rows between targets and predictors. Adjust the "
    "selection and run it again.";

using Columns = std::vector<NumericColumn>;

std::string countOf(std::size_t count) {
    return ResultText::count(static_cast<std::int64_t>(count));
}

ImputedMoments momentsOf(const std::vector<double>& values) {
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    return {.mean = DescriptiveStatistics::mean(values).value_or(none),
            .standardDeviation = DescriptiveStatistics::standardDeviation(values).value_or(none)};
}

ImputedVariable variableOf(const std::string& name,
                           const NumericColumn& column,
                           const TracedImputation& imputation,
                           std::size_t position) {
    ImputationCharts::Values values{.name = name, .observed = column.present(), .imputed = {}};
    std::vector<double> all;
    for (const CompletedColumns& copy : imputation.result.imputedDatasets) {
        std::vector<double>& filled = values.imputed.emplace_back();
        for (std::size_t row = 0; row < column.size(); ++row) {
            if (!column[row] && copy[position][row]) {
                filled.push_back(*copy[position][row]);
            }
        }
        all.insert(all.end(), filled.begin(), filled.end());
    }
    ImputedVariable variable{
        .name = name,
        .observed = static_cast<std::int64_t>(values.observed.size()),
        .missing = static_cast<std::int64_t>(column.size() - values.observed.size()),
        .observedMoments = momentsOf(values.observed),
        .imputedMoments = momentsOf(all),
        .stepsWithoutFit = imputation.trace.stepsWithoutFit[position]};
    if (!all.empty()) {
        values.observedMean = variable.observedMoments.mean;
        values.observedDeviation = variable.observedMoments.standardDeviation;
        variable.charts = {ImputationCharts::distribution(values),
                           ImputationCharts::traceOfMean(values, imputation.trace, position),
                           ImputationCharts::traceOfDeviation(values, imputation.trace, position)};
    }
    return variable;
}

/// Whether no target was ever predicted, so that all hold the mean that they started from.
bool predictedNothing(const ImputationRun& run) {
    const std::int64_t steps = run.result.m * run.result.iterations;
    return std::ranges::all_of(run.variables, [steps](const ImputedVariable& variable) {
        return variable.missing == 0 || variable.stepsWithoutFit == steps;
    });
}

/// The columns of those names; those that are gone are left out.
std::vector<TextTable::Column> cellsOf(const std::vector<std::string>& names,
                                       const ImportedDataset& dataset) {
    std::vector<TextTable::Column> cells;
    for (const std::string& name : names) {
        if (const std::optional<std::size_t> index = dataset.columnIndex(name)) {
            cells.push_back(dataset.rows.sharedColumn(*index));
        }
    }
    return cells;
}

/// Absent where the run was ended or predicted nothing.
std::optional<ImputationRun> imputed(const ImputationModel& model,
                                     const Columns& columns,
                                     const ImputationOptions& options) {
    std::optional<TracedImputation> imputation = MultipleImputation::imputeTraced(columns, options);
    if (!imputation) {
        return std::nullopt;
    }
    ImputationRun run{.targets = model.targets,
                      .excluded = model.excluded,
                      .unpredicted = {},
                      .rows = static_cast<std::int64_t>(columns.front().size())};
    for (std::size_t i = 0; i < model.names.size(); ++i) {
        if (imputation->trace.stepsWithoutFit[i] > 0) {
            run.unpredicted.push_back(model.names[i]);
        }
        if (std::ranges::find(model.targets, model.names[i]) != model.targets.end()) {
            run.variables.push_back(variableOf(model.names[i], columns[i], *imputation, i));
        }
    }
    run.result = std::move(imputation->result);
    return predictedNothing(run) ? std::nullopt : std::optional(std::move(run));
}

void keep(StudioState& state, ImputationFields& fields, std::optional<ImputationRun> run) {
    if (!run) {
        state.impMessage.set(std::string(couldNotRun));
        return;
    }
    const std::string done = "Generated " + ResultText::count(run->result.m) +
                             " MICE imputations for " + joinedText(run->targets) + ".";
    state.data.transformationLog.edit(
        [&done](std::vector<std::string>& entries) { entries.push_back(done); });
    state.impMessage.set(done + ImputationModel::exclusionNote(run->excluded));
    fields.forgetPooled();
    fields.impChart.reset();
    fields.impResult.replace(std::move(run));
}

void runMultiple(StudioState& state, ImputationFields& fields) {
    const ImputationModel model = ImputationModel::of(state.dataset(), fields);
    const ImputationOptions options{.variableNames = model.names, .m = fields.impM.get()};
    state.compute({.label = "Running multiple imputation…",
                   .work =
                       [&state, &fields, model, options, columns = model.columns(state.dataset()),
                        cells = cellsOf(model.targets, state.dataset())](
                           std::stop_token stop, const TaskRunner::Progress& progress) {
                           ImputationOptions watched = options;
                           watched.shouldContinue = [stop] {
                               return !stop.stop_requested();
                           };
                           watched.progress = progress;
                           const auto run = std::make_shared<std::optional<ImputationRun>>(
                               imputed(model, columns, watched));
                           if (*run) {
                               (*run)->cells = cells;
                           }
                           return [&state, &fields, run] {
                               keep(state, fields, std::move(*run));
                           };
                       },
                   .isCancellable = true});
}

CompletedColumns completedOnce(const std::string& method, const Columns& columns) {
    // The columns of one table have one length, so that there is always a copy.
    return *(method == "mean"     ? MultipleImputation::meanImpute(columns)
             : method == "median" ? MultipleImputation::medianImpute(columns)
                                  : MultipleImputation::regressionImpute(columns));
}

/// A column of the same role as the one that it completes.
StudioState::DerivedColumn completedColumn(const ImportedDataset& dataset,
                                           const std::string& source,
                                           std::string name,
                                           std::span<const std::optional<double>> values) {
    return {.name = std::move(name),
            .values = DerivedValueFormatter::column(values),
            .assignedType = dataset.variable(source)->assignedType,
            .warning = {}};
}

void runSingle(StudioState& state, ImputationFields& fields) {
    const ImputationModel model = ImputationModel::of(state.dataset(), fields);
    const std::string& method = fields.impMethod.get();
    const CompletedColumns completed = completedOnce(method, model.columns(state.dataset()));
    const std::string how =
        "Single imputation from " + countOf(model.names.size()) + " variable(s) using " + method;
    std::vector<StudioState::DerivedColumn> columns;
    for (std::size_t i = 0; i < model.names.size(); ++i) {
        const std::string& name = model.names[i];
        if (std::ranges::find(model.targets, name) != model.targets.end()) {
            columns.push_back(completedColumn(state.dataset(), name,
                                              name + " (" + method + " imputed)", completed[i]));
            columns.back().warning = how + " of " + name + ". Understates standard error.";
        }
    }
    const std::size_t count = columns.size();
    const std::vector<std::string> names = state.addDerivedVariables(
        "addition of " + countOf(count) + " imputed column(s)", std::move(columns),
        how + ": " + joinedText(model.targets) + "." + model.exclusionNote());
    state.impMessage.set(how + "." + model.exclusionNote() + " Added " + countOf(count) +
                         " column(s) (" + joinedText(names) +
                         "). Single imputation understates standard error; use MICE + a pooled "
                         "analysis for inference.");
}

/// Per row, the mean over the copies.
std::vector<std::optional<double>> meansOfCopies(const MultipleImputationResult& result,
                                                 std::size_t column) {
    const auto& copies = result.imputedDatasets;
    std::vector<std::optional<double>> means = copies.front()[column];
    for (std::size_t row = 0; row < means.size(); ++row) {
        double sum = 0.0;
        bool isEqual = true;
        for (const CompletedColumns& copy : copies) {
            isEqual = isEqual && copy[column][row] == means[row];
            sum += copy[column][row].value_or(std::nan(""));
        }
        if (!isEqual) {
            means[row] = sum / static_cast<double>(copies.size());
        }
    }
    return means;
}

}  // namespace

void run(StudioState& state, ImputationFields& fields) {
    state.impMessage.reset();
    if (fields.impMethod.get() == "mice") {
        runMultiple(state, fields);
    } else {
        runSingle(state, fields);
    }
}

bool fits(const ImputationRun& run, const ImportedDataset& dataset) {
    return run.rows == dataset.rowCount() && run.cells == cellsOf(run.targets, dataset);
}

void addExploratoryCompletedColumns(StudioState& state, const ImputationFields& fields) {
    const ImputationRun& run = **fields.impResult;
    const std::string m = ResultText::count(run.result.m);
    std::vector<StudioState::DerivedColumn> columns;
    for (std::size_t i = 0; i < run.result.variableNames.size(); ++i) {
        const std::string& name = run.result.variableNames[i];
        if (std::ranges::find(run.targets, name) != run.targets.end()) {
            columns.push_back(completedColumn(state.dataset(), name, name + " (imp, exploratory)",
                                              meansOfCopies(run.result, i)));
            columns.back().warning = "Exploratory completed copy (cell-mean of " + m +
                                     " imputations) of " + name +
                                     ". Understates standard error; do not use for inference.";
        }
    }
    const std::string count = countOf(columns.size());
    const std::vector<std::string> names = state.addDerivedVariables(
        "addition of " + count + " exploratory completed column(s)", std::move(columns),
        "Added " + count + " exploratory completed column(s) (cell-mean of " + m +
            " imputations) of " + joinedText(run.targets) + ".");
    state.impMessage.set(count + " exploratory completed column(s) (cell-mean of " + m +
                         " imputations) added: " + joinedText(names) +
                         ". These understate SE; use the pooled analysis for inference.");
}

}  // namespace sorvane::ImputationRuns
