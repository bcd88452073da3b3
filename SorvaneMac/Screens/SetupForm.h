#pragma once

#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace sorvane {

/// The controls of a setup form, as values bound to fields: what stands, and what to do on change.
/// A form is made anew after each change of state; a view keeps its widgets while the shape stays.

struct HeadingControl {
    std::string text;
};

struct NoteControl {
    std::string text;
    bool isWarning = false;
};

struct TextControl {
    std::string label;
    std::string prompt;
    std::string text;
    std::function<void(const std::string&)> set;
    /// Takes several lines, in a fixed-width face.
    bool isMultiline = false;
};

struct NumberControl {
    std::string label;
    double minimum = 0.0;
    double maximum = 0.0;
    double step = 1.0;
    double value = 0.0;
    /// The value as it is shown, such as "80%".
    std::string valueText;
    /// A slider where true, a stepper otherwise.
    bool isSlider = false;
    std::function<void(double)> set;
};

struct ToggleControl {
    std::string label;
    bool isOn = false;
    std::function<void(bool)> set;
};

struct ChoiceControl {
    std::string label;
    std::vector<std::string> choices;
    /// What is said beside each choice, such as a role; none at all, or one a choice.
    std::vector<std::string> details;
    /// Shown while nothing is selected, and as the first choice where a blank is allowed.
    std::string prompt;
    bool allowsBlank = false;
    std::optional<std::size_t> selected;
    /// Gets the index of the choice, absent for the blank.
    std::function<void(std::optional<std::size_t>)> set;
};

struct CheckListControl {
    struct Item {
        std::string name;
        /// The role, a label, or what is wrong with it.
        std::string detail;
        bool isChecked = false;
        bool isFlagged = false;
        /// A second switch at the item's end; absent where it has none.
        std::optional<bool> second;
    };
    std::string label;
    std::vector<Item> items;
    /// The name of the second switch, such as "Rev".
    std::string secondLabel;
    std::function<void(const std::string& name, bool isChecked)> setChecked;
    std::function<void(const std::string& name, bool isOn)> setSecond;
    /// For "select all shown" and its reverse: several names at once.
    std::function<void(const std::vector<std::string>& names, bool isChecked)> setAll;
};

struct ButtonControl {
    std::string label;
    bool isEnabled = true;
    bool isPrimary = false;
    std::function<void()> press;
};

using AnyControl = std::variant<HeadingControl,
                                NoteControl,
                                TextControl,
                                NumberControl,
                                ToggleControl,
                                ChoiceControl,
                                CheckListControl,
                                ButtonControl>;

/// One of them. How a control is copied stands in one source: every screen would otherwise compile it anew for each
/// kind.
struct Control : AnyControl {
    using AnyControl::AnyControl;
    Control(const Control& other);
    Control(Control&& other) noexcept;
    Control& operator=(const Control& other);
    Control& operator=(Control&& other) noexcept;
    ~Control();
};

struct SetupForm {
    std::string title;
    std::vector<Control> controls;
};

}  // namespace sorvane
