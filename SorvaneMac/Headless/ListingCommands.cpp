#include <ostream>

#include "SorvaneMac/Headless/Commands.h"
#include "SorvaneMac/Headless/OperationTable.h"
#include "SorvaneMac/Headless/ProcedureTable.h"
#include "SorvaneMac/Headless/StudioScript.h"

namespace sorvane {

namespace {

void list(std::string_view name, const std::vector<ListedArgument>& arguments, std::ostream& out) {
    out << name << '\n';
    for (const ListedArgument& argument : arguments) {
        out << "    " << argument.name << ": " << argument.form;
        if (argument.fallback) {
            out << " (may be left out"
                << (argument.fallback->empty() ? "" : ": " + *argument.fallback) << ")";
        }
        out << '\n';
    }
}

}  // namespace

ExitStatus proceduresCommand(CommandStreams streams) {
    for (const Procedure& procedure : ProcedureTable::all()) {
        list(procedure.name, procedure.arguments, streams.out);
    }
    return ExitStatus::success;
}

ExitStatus operationsCommand(CommandStreams streams) {
    for (const Operation& operation : OperationTable::all()) {
        list(operation.name, operation.arguments, streams.out);
    }
    return ExitStatus::success;
}

}  // namespace sorvane
