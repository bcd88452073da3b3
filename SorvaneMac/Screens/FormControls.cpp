#include "SorvaneMac/Screens/FormControls.h"

#include <algorithm>

namespace sorvane::FormControls {

namespace {

std::string roleText(const DataVariable& variable) {
    return std::string(displayName(variable.assignedType));
}

void include(NameSet& names, const std::string& name, bool isChecked) {
    if (isChecked) {
        names.insert(name);
    } else {
        names.erase(name);
    }
}

}  // namespace

ChoiceControl variablePicker(std::string label,
                             Field<VariableName>& field,
                             const VariableLists::List& candidates) {
    ChoiceControl control;
    control.label = std::move(label);
    control.prompt = "Pick a variable";
    control.choices = VariableLists::names(candidates);
    const auto found = std::find(control.choices.begin(), control.choices.end(), field.get().name);
    if (found != control.choices.end()) {
        control.selected = static_cast<std::size_t>(found - control.choices.begin());
    }
    control.set = [&field, names = control.choices](std::optional<std::size_t> index) {
        field.set({index ? names[*index] : std::string()});
    };
    return control;
}

ChoiceControl optionalVariablePicker(std::string label,
                                     Field<VariableName>& field,
                                     const VariableLists::List& candidates,
                                     std::string prompt) {
    ChoiceControl control = variablePicker(std::move(label), field, candidates);
    control.allowsBlank = true;
    control.prompt = std::move(prompt);
    return control;
}

CheckListControl variableCheckList(std::string label,
                                   Field<NameSet>& field,
                                   const VariableLists::List& candidates) {
    CheckListControl control;
    control.label = std::move(label);
    for (const DataVariable* variable : candidates) {
        control.items.push_back({.name = variable->name,
                                 .detail = roleText(*variable),
                                 .isChecked = field->contains(variable->name),
                                 .isFlagged = false,
                                 .second = std::nullopt});
    }
    control.setChecked = [&field](const std::string& name, bool isChecked) {
        field.edit([&](NameSet& names) { include(names, name, isChecked); });
    };
    control.setAll = [&field](const std::vector<std::string>& shown, bool isChecked) {
        field.edit([&](NameSet& names) {
            for (const std::string& name : shown) {
                include(names, name, isChecked);
            }
        });
    };
    return control;
}

std::vector<std::string> chosen(const NameSet& names, const VariableLists::List& candidates) {
    std::vector<std::string> result;
    for (const DataVariable* variable : candidates) {
        if (names.contains(variable->name)) {
            result.push_back(variable->name);
        }
    }
    return result;
}

}  // namespace sorvane::FormControls
