#include "SorvaneMac/Screens/FormControls.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::FormControls {

namespace {

/// The role, and the label where there is one.
std::string detailText(const DataVariable& variable) {
    return std::string(displayName(variable.assignedType)) +
           (variable.label ? " · " + *variable.label : std::string());
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
    for (const DataVariable* variable : candidates) {
        control.details.push_back(detailText(*variable));
    }
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
                                 .detail = detailText(*variable),
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

TextControl textField(std::string label, std::string prompt, Field<std::string>& field) {
    return {.label = std::move(label),
            .prompt = std::move(prompt),
            .text = field.get(),
            .set = [&field](const std::string& text) {
                field.set(text);
            }};
}

NumberControl shareSlider(std::string label, Field<double>& field) {
    return {.label = std::move(label),
            .maximum = 1.0,
            .step = 0.05,
            .value = field.get(),
            .valueText = NumberText::integer(std::llround(100.0 * field.get())) + "%",
            .isSlider = true,
            // Whole percents: seventeen steps make 0.85, not the nearest sum of steps.
            .set = [&field](double value) {
                field.set(std::round(100.0 * value) / 100.0);
            }};
}

ChoiceControl wordPicker(std::string label,
                         Field<std::string>& field,
                         const std::vector<Word>& words) {
    ChoiceControl control;
    control.label = std::move(label);
    std::vector<std::string> stored;
    for (const Word& word : words) {
        if (word.stored == field.get()) {
            control.selected = stored.size();
        }
        stored.push_back(word.stored);
        control.choices.push_back(word.shown);
    }
    control.set = [&field, stored](std::optional<std::size_t> index) {
        if (index) {
            field.set(stored[*index]);
        }
    };
    return control;
}

CheckListControl withUnavailable(CheckListControl list,
                                 const NameSet& chosen,
                                 const VariableLists::List& available) {
    for (const std::string& name : chosen) {
        if (!VariableLists::contains(available, name)) {
            list.items.push_back({.name = name,
                                  .detail = "Not available here",
                                  .isChecked = true,
                                  .isFlagged = true,
                                  .second = std::nullopt});
        }
    }
    return list;
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
