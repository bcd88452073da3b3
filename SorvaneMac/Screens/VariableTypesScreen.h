#pragma once

#include <string>
#include <vector>

#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/Screens/TableForms.h"
#include "SorvaneMac/Screens/UserVariableRole.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The role of each variable, as the user sets it.
class VariableTypesScreen final : public Screen {
public:
    struct Row {
        Uuid id;
        std::string name;
        std::string label;
        VariableKind role = VariableKind::status;
        bool inReliability = false;
        bool inDescriptives = false;
        std::string valid;
        std::string missing;
        std::string distinct;
        /// The labelled values, "1 = Never"; without any the first values.
        std::string samples;
        /// All labelled values, a line each.
        std::string valueLabels;
        /// A line each.
        std::string warnings;

        bool operator==(const Row&) const = default;
    };

    explicit VariableTypesScreen(StudioState& state) : state_(state), rename_(state) {}

    StudioScreen id() const override { return StudioScreen::variableTypes; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override { return std::nullopt; }

    std::vector<Row> rows() const;
    bool hasLabels() const { return DatasetText::hasLabels(state_.dataset()); }
    void assign(const std::vector<Uuid>& variables, VariableKind kind);
    /// Opens the form that renames or deletes the variable.
    void beginRename(const std::string& variable) {
        state_.editor.dvName.set({variable});
        state_.editor.dvMessage.set(std::nullopt);
        state_.showSetup();
    }
    void setInReliability(const Uuid& variable, bool included) {
        state_.setReliabilityIncluded(variable, included);
    }
    void setInDescriptives(const Uuid& variable, bool included) {
        state_.setDescriptivesIncluded(variable, included);
    }

private:
    StudioState& state_;
    RenameForm rename_;
};

}  // namespace sorvane
