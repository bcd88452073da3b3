#include "SorvaneMac/Screens/SelectionGates.h"

namespace sorvane::SelectionGates {

namespace {

Gate gone(const std::string& name, std::string_view kind) {
    return {.title = "A chosen column is missing",
            .lead = name,
            .text = "There is no \"" + name + "\" among the " + std::string(kind) +
                    ". Pick another in the Setup panel, or change its role in Variable Types."};
}

}  // namespace

bool isGone(const Field<VariableName>& field, const VariableLists::List& candidates) {
    return !field->isBlank() && !VariableLists::contains(candidates, field->name);
}

std::optional<Gate> goneColumn(const Field<VariableName>& field,
                               const VariableLists::List& candidates,
                               std::string_view kind) {
    if (!isGone(field, candidates)) {
        return std::nullopt;
    }
    return gone(field->name, kind);
}

std::optional<Gate> goneColumn(const Field<NameSet>& field,
                               const VariableLists::List& candidates,
                               std::string_view kind) {
    for (const std::string& name : field.get()) {
        if (!VariableLists::contains(candidates, name)) {
            return gone(name, kind);
        }
    }
    return std::nullopt;
}

Gate noPredictors() {
    return {.title = "No predictors selected",
            .lead = "",
            .text = "Pick one or more predictors in the Setup panel."};
}

}  // namespace sorvane::SelectionGates
