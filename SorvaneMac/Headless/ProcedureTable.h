#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "SorvaneMac/Headless/CallArguments.h"

namespace sorvane {

/// One argument of a procedure, as `sorvane procedures` lists it.
struct ProcedureArgument {
    std::string name;
    /// "column", "list of columns", "number" and so on.
    std::string kind;
    bool isOptional = false;
};
BOOST_DESCRIBE_STRUCT(ProcedureArgument, (), (name, kind, isOptional))

/// An engine procedure that can be called by name: JSON arguments in, its JSON result out.
struct Procedure {
    std::string name;
    std::vector<ProcedureArgument> arguments;
    std::function<Json(const CallArguments&)> call;
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

/// How arguments are declared where a procedure is bound: each reads itself from a call.
namespace arguments {

/// A column of numbers.
struct Column {
    std::string name;
    NumericColumn read(const CallArguments& call) const { return call.numericColumn(name); }
    std::vector<ProcedureArgument> listed() const { return {{name, "column of numbers"}}; }
};

/// The one column of a procedure that takes no other: "column", or "values".
struct OnlyColumn {
    NumericColumn read(const CallArguments& call) const {
        return call.numericColumn(call.onlyColumnName());
    }
    std::vector<ProcedureArgument> listed() const { return {{"column", "column of numbers"}}; }
};

/// The same, as those numbers that are present.
struct OnlyPresentNumbers {
    std::vector<double> read(const CallArguments& call) const {
        return call.numericColumn(call.onlyColumnName()).present();
    }
    std::vector<ProcedureArgument> listed() const { return {{"column", "column of numbers"}}; }
};

/// The same, as texts.
struct OnlyTexts {
    std::vector<std::string> read(const CallArguments& call) const {
        return call.textColumn(call.onlyColumnName());
    }
    std::vector<ProcedureArgument> listed() const { return {{"column", "column of texts"}}; }
};

/// Columns of numbers, which a list of names may name too.
struct Columns {
    std::string name;
    std::string namesKey;
    std::vector<NumericColumn> read(const CallArguments& call) const {
        return call.numericColumns(name, namesKey);
    }
    std::vector<ProcedureArgument> listed() const {
        return {{name, "list of columns of numbers", true}};
    }
};

/// A matrix of one row per case, as columns: a list of rows, or of column names.
struct Matrix {
    std::string name;
    std::string namesKey;
    std::vector<NumericColumn> read(const CallArguments& call) const {
        return call.matrixColumns(name, namesKey);
    }
    std::vector<ProcedureArgument> listed() const {
        return {{name, "list of rows, or of column names", true}};
    }
};

/// The names of such columns.
struct Names {
    std::string name;
    std::string columnsKey;
    std::vector<std::string> read(const CallArguments& call) const {
        return call.columnNames(name, columnsKey);
    }
    std::vector<ProcedureArgument> listed() const { return {{name, "list of names", true}}; }
};

/// A value that must be given.
template <typename T>
struct Value {
    std::string name;
    T read(const CallArguments& call) const { return call.required<T>(name); }
    std::vector<ProcedureArgument> listed() const { return {{name, "value"}}; }
};

/// A value that may be left out.
template <typename T>
struct Setting {
    std::string name;
    T fallback{};
    T read(const CallArguments& call) const { return call.setting<T>(name, fallback); }
    std::vector<ProcedureArgument> listed() const { return {{name, "setting", true}}; }
};

/// All settings of a procedure that takes them as one struct.
template <typename T>
struct Settings {
    T read(const CallArguments& call) const { return call.settings<T>(); }
    std::vector<ProcedureArgument> listed() const {
        std::vector<ProcedureArgument> result;
        boost::mp11::mp_for_each<record_json::Members<T>>([&result](auto member) {
            result.push_back({member.name, "setting", true});
        });
        return result;
    }
};

}  // namespace arguments

/// Binds a function to a name: each declared argument is read from the call and passed on in order.
template <typename Function, typename... Arguments>
Procedure procedure(std::string name, Function function, Arguments... declared) {
    Procedure result;
    result.name = std::move(name);
    (
        [&result](const std::vector<ProcedureArgument>& listed) {
            for (const ProcedureArgument& each : listed) {
                std::erase_if(result.arguments, [&each](const ProcedureArgument& former) {
                    return former.name == each.name;
                });
                result.arguments.push_back(each);
            }
        }(declared.listed()),
        ...);
    result.call = [function,
                   declared = std::make_tuple(std::move(declared)...)](const CallArguments& call) {
        // Braces, so that arguments are read in the order in which they are declared.
        auto values = std::apply(
            [&call](const auto&... each) { return std::tuple{each.read(call)...}; }, declared);
        call.expectNoOthers();
        return toJson(std::apply(function, std::move(values)));
    };
    return result;
}

}  // namespace sorvane
