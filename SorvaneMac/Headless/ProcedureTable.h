#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "SorvaneMac/Headless/Arguments.h"

namespace sorvane {

/// An engine procedure that can be called by name: JSON arguments in, its JSON result out.
struct Procedure {
    std::string name;
    std::vector<ListedArgument> arguments;
    std::function<void(const CallArguments&, JsonValueSink&)> answer;

    Json call(const CallArguments& given) const;
};

/// Every engine procedure by its name, such as "ReliabilityAnalyzer.analyze".
namespace ProcedureTable {

const std::vector<Procedure>& all();
/// Null for a name that is not there.
const Procedure* find(std::string_view name);

}  // namespace ProcedureTable

/// The procedures of each room, in the order in which they are listed.
std::vector<Procedure> numericsProcedures();
std::vector<Procedure> datasetProcedures();
std::vector<Procedure> analysesProcedures();
std::vector<Procedure> groupComparisonProcedures();
std::vector<Procedure> rankAndTableProcedures();
std::vector<Procedure> varianceProcedures();
std::vector<Procedure> generalizedRegressionProcedures();
std::vector<Procedure> dataReductionProcedures();
std::vector<Procedure> latentClassProcedures();
std::vector<Procedure> survivalProcedures();
std::vector<Procedure> surveyProcedures();
std::vector<Procedure> structuralProcedures();
std::vector<Procedure> mediationProcedures();
std::vector<Procedure> multilevelProcedures();
std::vector<Procedure> prepareProcedures();
std::vector<Procedure> imputationProcedures();
std::vector<Procedure> projectProcedures();
std::vector<Procedure> reviewProcedures();

/// Binds a function to a name: each declared argument is read from the call and passed on in order.
template <typename Function, typename... Arguments>
Procedure procedure(std::string name, Function function, Arguments... declared) {
    Procedure result;
    result.name = std::move(name);
    result.arguments = listedOf(declared...);
    result.answer = [function, declared = std::make_tuple(std::move(declared)...)](
                        const CallArguments& call, JsonValueSink& sink) {
        // Braces, so that arguments are read in the order in which they are declared.
        auto values = std::apply(
            [&call](const auto&... each) { return std::tuple{each.read(call)...}; }, declared);
        call.expectNoOthers();
        writeJson(sink, std::apply(function, std::move(values)));
    };
    return result;
}

}  // namespace sorvane
