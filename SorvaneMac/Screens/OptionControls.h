#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/State/Field.h"

/// Controls for the options of an analysis, and the row that runs it.
namespace sorvane::OptionControls {

/// Picks one text of the list.
ChoiceControl categoryPicker(std::string label,
                             Field<std::string>& field,
                             const std::vector<std::string>& categories);
/// Picks 90, 95 or 99 percent; another level that stands in the field is offered too.
ChoiceControl confidencePicker(Field<std::int64_t>& field);
/// Steps a whole number. The bounds give way to the value that stands in the field.
NumberControl stepper(std::string label,
                      Field<std::int64_t>& field,
                      std::int64_t minimum,
                      std::int64_t maximum);
ToggleControl toggle(std::string label, Field<bool>& field);

/// Calls `then` after the control has set its field.
ChoiceControl followedBy(ChoiceControl control, std::function<void()> then);
CheckListControl followedBy(CheckListControl control, std::function<void()> then);

/// Adds the note that says what is missing while the gate stands.
void addNote(SetupForm& form, const std::optional<Gate>& gate);
/// Adds the run button, and while the gate stands the note that says what is missing.
void addRun(SetupForm& form,
            std::string label,
            const std::optional<Gate>& gate,
            std::function<void()> run);

}  // namespace sorvane::OptionControls
