#pragma once

#include <boost/describe/enumerators.hpp>
#include <boost/mp11/algorithm.hpp>
#include <string>
#include <vector>

#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/State/Field.h"
#include "SorvaneMac/State/VariableLists.h"

/// Controls bound to fields, as setup forms need them again and again.
namespace sorvane::FormControls {

/// Picks one variable of the list.
ChoiceControl variablePicker(std::string label,
                             Field<VariableName>& field,
                             const VariableLists::List& candidates);
/// Picks one variable of the list, or none; `prompt` is the choice of none.
ChoiceControl optionalVariablePicker(std::string label,
                                     Field<VariableName>& field,
                                     const VariableLists::List& candidates,
                                     std::string prompt);
/// Picks any number of the list's variables.
CheckListControl variableCheckList(std::string label,
                                   Field<NameSet>& field,
                                   const VariableLists::List& candidates);
/// A line of text.
TextControl textField(std::string label, std::string prompt, Field<std::string>& field);
/// A share from 0 to 1, in steps of five percent.
NumberControl shareSlider(std::string label, Field<double>& field);

/// A setting that is stored as a word, and the text it is shown by.
struct Word {
    std::string stored;
    std::string shown;
};
/// Picks one of the words.
ChoiceControl wordPicker(std::string label,
                         Field<std::string>& field,
                         const std::vector<Word>& words);

/// Lists chosen names that are not available any more as well, so that they can be unchecked.
CheckListControl withUnavailable(CheckListControl list,
                                 const NameSet& chosen,
                                 const VariableLists::List& available);
/// The names that stand in the list, in its order.
std::vector<std::string> chosen(const NameSet& names, const VariableLists::List& candidates);

/// Picks one case of an enumeration, shown by its display name.
template <typename T>
ChoiceControl enumerationPicker(std::string label, Field<T>& field) {
    ChoiceControl control;
    control.label = std::move(label);
    std::vector<T> cases;
    boost::mp11::mp_for_each<boost::describe::describe_enumerators<T>>([&](auto enumerator) {
        cases.push_back(enumerator.value);
        control.choices.emplace_back(displayName(enumerator.value));
        if (enumerator.value == field.get()) {
            control.selected = cases.size() - 1;
        }
    });
    control.set = [&field, cases](std::optional<std::size_t> index) {
        if (index) {
            field.set(cases[*index]);
        }
    };
    return control;
}

}  // namespace sorvane::FormControls
