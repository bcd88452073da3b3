#include "SorvaneMac/Screens/OptionControls.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::OptionControls {

ChoiceControl categoryPicker(std::string label,
                             Field<std::string>& field,
                             const std::vector<std::string>& categories) {
    ChoiceControl control;
    control.label = std::move(label);
    control.prompt = "Pick a category";
    control.choices = categories;
    const auto found = std::find(categories.begin(), categories.end(), field.get());
    if (found != categories.end()) {
        control.selected = static_cast<std::size_t>(found - categories.begin());
    }
    control.set = [&field, categories](std::optional<std::size_t> index) {
        field.set(index ? categories[*index] : std::string());
    };
    return control;
}

ChoiceControl confidencePicker(Field<std::int64_t>& field) {
    std::vector<std::int64_t> levels = {90, 95, 99};
    if (std::find(levels.begin(), levels.end(), field.get()) == levels.end()) {
        levels.push_back(field.get());
        std::sort(levels.begin(), levels.end());
    }
    ChoiceControl control;
    control.label = "Confidence level";
    for (const std::int64_t level : levels) {
        if (level == field.get()) {
            control.selected = control.choices.size();
        }
        control.choices.push_back(NumberText::integer(level) + "%");
    }
    control.set = [&field, levels](std::optional<std::size_t> index) {
        if (index) {
            field.set(levels[*index]);
        }
    };
    return control;
}

NumberControl stepper(std::string label,
                      Field<std::int64_t>& field,
                      std::int64_t minimum,
                      std::int64_t maximum) {
    const std::int64_t value = field.get();
    NumberControl control;
    control.label = std::move(label);
    control.minimum = static_cast<double>(std::min(minimum, value));
    control.maximum = static_cast<double>(std::max(maximum, value));
    control.value = static_cast<double>(value);
    control.valueText = NumberText::integer(value);
    control.set = [&field](double next) {
        field.set(std::llround(next));
    };
    return control;
}

ToggleControl toggle(std::string label, Field<bool>& field) {
    ToggleControl control;
    control.label = std::move(label);
    control.isOn = field.get();
    control.set = [&field](bool isOn) {
        field.set(isOn);
    };
    return control;
}

ChoiceControl followedBy(ChoiceControl control, std::function<void()> then) {
    control.set = [set = std::move(control.set),
                   then = std::move(then)](std::optional<std::size_t> index) {
        set(index);
        then();
    };
    return control;
}

CheckListControl followedBy(CheckListControl control, std::function<void()> then) {
    control.setChecked = [set = std::move(control.setChecked), then](const std::string& name,
                                                                     bool isChecked) {
        set(name, isChecked);
        then();
    };
    control.setAll = [set = std::move(control.setAll), then = std::move(then)](
                         const std::vector<std::string>& names, bool isChecked) {
        set(names, isChecked);
        then();
    };
    return control;
}

void addNote(SetupForm& form, const std::optional<Gate>& gate) {
    if (gate) {
        form.controls.emplace_back(NoteControl{gate->text, true});
    }
}

void addRun(SetupForm& form,
            std::string label,
            const std::optional<Gate>& gate,
            std::function<void()> run) {
    form.controls.emplace_back(ButtonControl{.label = std::move(label),
                                             .isEnabled = !gate.has_value(),
                                             .isPrimary = true,
                                             .press = std::move(run)});
    addNote(form, gate);
}

}  // namespace sorvane::OptionControls
