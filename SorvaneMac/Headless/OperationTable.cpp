#include "SorvaneMac/Headless/OperationTable.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <tuple>

#include "SorvaneMac/Screens/Structural/StructuralModelText.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane::OperationTable {

namespace {

using State = StudioState;

constexpr const char* nothingToUndo = "There is no change of the data to take back.";

/// Binds an operation to a name: each declared argument is read from the step and passed on in
/// order.
template <typename Function, typename... Declared>
Operation operation(std::string name, Function function, Declared... declared) {
    Operation result;
    result.name = std::move(name);
    result.arguments = listedOf(declared...);
    result.run = [function, declared = std::make_tuple(std::move(declared)...)](
                     State& state, const CallArguments& given) {
        auto values = std::apply(
            [&given](const auto&... each) { return std::tuple{each.read(given)...}; }, declared);
        given.expectNoOthers();
        std::apply([&](auto&... each) { std::invoke(function, state, std::move(each)...); },
                   values);
    };
    return result;
}

/// The same for an operation that tells whether it was done; `said` is where it says why not.
template <typename Function, typename... Declared>
Operation refusable(std::string name,
                    Function function,
                    std::function<std::optional<std::string>(const State&)> said,
                    Declared... declared) {
    return operation(
        std::move(name),
        [function, said = std::move(said)](State& state, auto&&... given) {
            if (!std::invoke(function, state, std::forward<decltype(given)>(given)...)) {
                throw CallError(said(state).value_or("There is nothing to do."));
            }
        },
        std::move(declared)...);
}

/// The same for an operation of the grid, which needs a table that can be edited.
template <typename Function, typename... Declared>
Operation gridOperation(std::string name, Function function, Declared... declared) {
    return operation(
        std::move(name),
        [function](State& state, auto&&... given) {
            if (!state.data.isDatasetEditable.get()) {
                throw CallError("The table cannot be edited; only a grid that was made blank can.");
            }
            std::invoke(function, state, std::forward<decltype(given)>(given)...);
        },
        std::move(declared)...);
}

void expectPlace(const State& state, std::int64_t row, std::int64_t column) {
    if (row < 0 || row >= state.dataset().rowCount() || column < 0 ||
        column >= state.dataset().columnCount()) {
        throw CallError("The grid has no such cell.");
    }
}

Uuid variableId(const State& state, const std::string& name) {
    const DataVariable* variable = state.dataset().variable(name);
    if (!variable) {
        throw CallError("There is no variable \"" + name + "\".");
    }
    return variable->id;
}

void expectNumeric(const State& state, const std::string& name) {
    const DataVariable* variable = state.dataset().variable(name);
    if (variable && !VariableLists::isNumericForAnalysis(*variable)) {
        throw CallError("\"" + name + "\" is not a numeric variable.");
    }
}

using Headers = std::optional<std::vector<std::string>>;

std::vector<Operation> datasetOperations() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return {
        operation("resetToSample", &State::resetToSample),
        operation("beginBlankDataset", &State::beginBlankDataset),
        operation("createBlankDataset", &State::createBlankDataset, Setting<std::string>{"name"},
                  Value<std::int64_t>{"rows"}, Value<std::int64_t>{"columns"},
                  Setting<Headers>{"headers"}),
        operation("syncDatasetDraftHeaders", &State::syncDatasetDraftHeaders),
        refusable(
            "exportDatasetCSV",
            [](State& state, const std::string& to) { return state.exportDatasetCSV(to); },
            [](const State& state) { return state.projectError.get(); }, Value<std::string>{"to"}),
        refusable("readAgainWithEightByteReferences", &State::readAgainWithEightByteReferences,
                  [](const State& state) { return state.data.importError.get(); }),
        refusable("undoLastDataChange", &State::undoLastDataChange,
                  [](const State&) { return std::optional<std::string>(nothingToUndo); }),
    };
}

void resize(State& state, std::int64_t rows, std::int64_t columns) {
    if (rows < 1 || columns < 1) {
        throw CallError("A grid has at least one cell.");
    }
    if (!state.setDatasetSize(rows, columns)) {
        throw CallError(state.projectError->value_or(""));
    }
}

std::vector<Operation> gridOperations() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    using Index = std::int64_t;
    const Value<Index> row{"row"};
    const Value<Index> column{"column"};
    const Value<Index> count{"count"};
    return {
        gridOperation(
            "updateDatasetCell",
            [](State& state, Index r, Index c, const std::string& value) {
                expectPlace(state, r, c);
                state.updateDatasetCell(r, c, value);
            },
            row, column, Value<std::string>{"value"}),
        gridOperation(
            "pasteDatasetBlock",
            [](State& state, Index r, Index c, const std::string& text) {
                expectPlace(state, r, c);
                if (!state.pasteDatasetBlock(r, c, text)) {
                    throw CallError(state.projectError->value_or("There is nothing to paste."));
                }
            },
            row, column, Value<std::string>{"text"}),
        gridOperation("updateDatasetName", &State::updateDatasetName),
        gridOperation(
            "updateDatasetHeader",
            [](State& state, Index c, const std::string& name) {
                expectPlace(state, 0, c);
                state.updateDatasetHeader(c, name);
            },
            column, Value<std::string>{"name"}),
        gridOperation("finalizeDatasetHeaders", &State::finalizeDatasetHeaders),
        gridOperation("addDatasetRow",
                      [](State& state) {
                          resize(state, state.dataset().rowCount() + 1,
                                 state.dataset().columnCount());
                      }),
        gridOperation(
            "addDatasetColumn",
            [](State& state, const std::string& named) {
                if (!state.addDatasetColumn(named)) {
                    throw CallError(state.projectError->value_or(""));
                }
            },
            Setting<std::string>{"named"}),
        gridOperation(
            "deleteDatasetColumn",
            [](State& state, Index at, bool snapshot) {
                expectPlace(state, 0, at);
                using enum State::Snapshot;
                if (!state.deleteDatasetColumn(at, snapshot ? taken : none)) {
                    throw CallError(state.editor.dvMessage->value_or(""));
                }
            },
            Value<Index>{"at"}, Setting<bool>{"snapshot", true}),
        gridOperation(
            "setDatasetRowCount",
            [](State& state, Index rows) { resize(state, rows, state.dataset().columnCount()); },
            count),
        gridOperation(
            "setDatasetColumnCount",
            [](State& state, Index columns) { resize(state, state.dataset().rowCount(), columns); },
            count),
        gridOperation("setDatasetSize", resize, Value<Index>{"rows"}, Value<Index>{"columns"}),
    };
}

std::vector<Operation> preparingOperations() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const auto ofDerived = [](Field<std::optional<std::string>> DerivedVariableFields::*message) {
        return [message](const State& state) {
            return (state.derived.*message).get();
        };
    };
    const auto ofEditor = [](Field<std::optional<std::string>> VariableEditorFields::*message) {
        return [message](const State& state) {
            return (state.editor.*message).get();
        };
    };
    return {
        refusable("runRecode", &State::runRecode, ofEditor(&VariableEditorFields::rcMessage)),
        refusable("runCompute", &State::runCompute, ofEditor(&VariableEditorFields::cvMessage)),
        operation(
            "selectComputedVariables",
            [](State& state, const std::vector<std::string>& names) {
                std::set<Uuid> ids;
                for (const std::string& name : names) {
                    expectNumeric(state, name);
                    ids.insert(variableId(state, name));
                }
                state.derived.selectedComputedVariableIDs.set(std::move(ids));
            },
            Value<std::vector<std::string>>{"variables"}),
        refusable("createComputedVariable", &State::createComputedVariable,
                  ofDerived(&DerivedVariableFields::computedVariableMessage)),
        refusable("createBinnedVariable", &State::createBinnedVariable,
                  ofDerived(&DerivedVariableFields::binningMessage)),
        refusable("createScaleScoreVariable", &State::createScaleScoreVariable,
                  [](const State& state) { return state.scale.scaleScoreCreationMessage.get(); }),
        refusable("renameVariable", &State::renameVariable,
                  ofEditor(&VariableEditorFields::dvMessage), Value<std::string>{"from"},
                  Value<std::string>{"to"}),
        refusable("deleteVariable", &State::deleteVariable,
                  ofEditor(&VariableEditorFields::dvMessage), Value<std::string>{"named"}),
        operation("clSeed", &State::clSeed),
        refusable("clApplyClampToMissing", &State::clApplyClampToMissing,
                  [](const State& state) { return state.cleaning.clMessage.get(); }),
        refusable("setImplausibleToMissing", &State::setImplausibleToMissing,
                  [](const State& state) { return state.cleaning.clMessage.get(); }),
    };
}

std::vector<Operation> variableOperations() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const Value<std::string> variable{"variable"};
    return {
        operation(
            "assignVariable",
            [](State& state, const std::string& name, VariableKind kind) {
                state.assignVariable(variableId(state, name), kind);
            },
            variable, Value<VariableKind>{"kind"}),
        operation(
            "setReliabilityIncluded",
            [](State& state, const std::string& name, bool included) {
                state.setReliabilityIncluded(variableId(state, name), included);
            },
            variable, Value<bool>{"included"}),
        operation(
            "setDescriptivesIncluded",
            [](State& state, const std::string& name, bool included) {
                state.setDescriptivesIncluded(variableId(state, name), included);
            },
            variable, Value<bool>{"included"}),
        operation("classifyAndSeedScaleItems", &State::classifyAndSeedScaleItems,
                  Setting<bool>{"seedSelection", false}),
        operation("selectLikertCandidateItemsForReliability",
                  &State::selectLikertCandidateItemsForReliability),
        operation("resetAnalysisState", &State::resetAnalysisState),
        operation("refreshAnalysisDefaults", &State::refreshAnalysisDefaults),
        operation("cancelComputing", &State::cancelComputing),
    };
}

std::vector<Operation> structuralOperations() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    constexpr std::string_view model = "semModel";
    return {
        operation(
            "semApplyTemplate",
            [model](State& state, StructuralModelText::Template wanted) {
                state.fields.find(model)->setJson(StructuralModelText::filled(
                    wanted, VariableLists::numericNames(state.dataset())));
            },
            Value<StructuralModelText::Template>{"template"}),
        operation(
            "semInsert",
            [model](State& state, const std::string& name) {
                AnyField& field = *state.fields.find(model);
                field.setJson(StructuralModelText::withName(field.json().get<std::string>(), name));
            },
            Value<std::string>{"name"}),
    };
}

std::vector<Operation> reportOperations() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return {
        operation("addToReport", &State::addToReport, Value<ReportItem>{"item"}),
        operation("removeFromReport", &State::removeFromReport, Value<Uuid>{"id"}),
        operation("clearReport", &State::clearReport),
        operation("assembleReport", &State::assembleReport),
        operation("stageResearcherNote", &State::stageResearcherNote,
                  Value<StudioScreen>{"screen"}),
        operation(
            "saveMethodFile",
            [](State& state, const std::string& file) {
                if (!state.saveMethodFile(file)) {
                    throw CallError(*state.saveStatusMessage.get());
                }
            },
            Value<std::string>{"file"}),
    };
}

}  // namespace

const std::vector<Operation>& all() {
    static const std::vector<Operation> table = [] {
        std::vector<Operation> operations;
        for (auto* const group : {&datasetOperations, &gridOperations, &variableOperations,
                                  &preparingOperations, &structuralOperations, &reportOperations}) {
            for (Operation& each : group()) {
                operations.push_back(std::move(each));
            }
        }
        return operations;
    }();
    return table;
}

const Operation* find(std::string_view name) {
    const auto found = std::find_if(all().begin(), all().end(), [name](const Operation& operation) {
        return operation.name == name;
    });
    return found == all().end() ? nullptr : &*found;
}

}  // namespace sorvane::OperationTable
