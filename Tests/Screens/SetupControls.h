#pragma once

#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "SorvaneMac/Screens/SetupForm.h"

/// The controls of a setup form by their labels.
namespace sorvane {

/// Blank for a control without one.
inline std::string labelOf(const Control& control) {
    return std::visit(
        [](const auto& each) -> std::string {
            if constexpr (requires { each.label; }) {
                return each.label;
            } else {
                return {};
            }
        },
        control);
}

inline std::vector<std::string> labelsOf(const std::vector<Control>& controls) {
    std::vector<std::string> labels;
    for (const Control& control : controls) {
        if (const std::string label = labelOf(control); !label.empty()) {
            labels.push_back(label);
        }
    }
    return labels;
}

inline Control controlOf(const std::vector<Control>& controls, const std::string& label) {
    for (const Control& control : controls) {
        if (labelOf(control) == label) {
            return control;
        }
    }
    throw std::out_of_range(label);
}

/// Sets the control to something else than it is at.
inline void change(const Control& control) {
    if (const auto* choice = std::get_if<ChoiceControl>(&control)) {
        ASSERT_GE(choice->choices.size(), 2U) << choice->label;
        choice->set(choice->selected == 0U ? choice->choices.size() - 1 : 0U);
    } else if (const auto* list = std::get_if<CheckListControl>(&control)) {
        ASSERT_FALSE(list->items.empty()) << list->label;
        list->setChecked(list->items.back().name, !list->items.back().isChecked);
    } else if (const auto* number = std::get_if<NumberControl>(&control)) {
        number->set(number->value > number->minimum ? number->minimum : number->maximum);
    } else if (const auto* toggle = std::get_if<ToggleControl>(&control)) {
        toggle->set(!toggle->isOn);
    } else if (const auto* text = std::get_if<TextControl>(&control)) {
        text->set(text->text + "1");
    }
}

}  // namespace sorvane
