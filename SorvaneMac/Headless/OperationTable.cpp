#include "SorvaneMac/Headless/OperationTable.h"

#include <algorithm>
#include <tuple>

namespace sorvane::OperationTable {

namespace {

using State = StudioState;

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

Uuid variableId(const State& state, const std::string& name) {
    const DataVariable* variable = state.dataset().variable(name);
    if (!variable) {
        throw CallError("There is no variable \"" + name + "\".");
    }
    return variable->id;
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
        operation("updateDatasetCell", &State::updateDatasetCell, Value<std::int64_t>{"row"},
                  Value<std::int64_t>{"column"}, Value<std::string>{"value"}),
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
        for (auto* const group : {&datasetOperations, &variableOperations, &reportOperations}) {
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
