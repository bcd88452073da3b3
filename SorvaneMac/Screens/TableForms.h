#pragma once

#include "SorvaneMac/Screens/PrepareForm.h"
#include "SorvaneMac/Screens/VariableEditorFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Bands of a number, as a new grouping variable.
class BandsForm final : public PrepareForm {
public:
    explicit BandsForm(StudioState& state) : state_(state) {}

    void addTo(SetupForm& form) override;
    Gate gate() const override;
    Guide guide() const override;

private:
    StudioState& state_;
};

/// A column's name changed everywhere, or the column taken out of the working table.
class RenameForm final : public PrepareForm {
public:
    RenameForm(StudioState& state, VariableEditorFields& fields) : state_(state), fields_(fields) {}

    void addTo(SetupForm& form) override;
    Gate gate() const override;
    Guide guide() const override;

private:
    StudioState& state_;
    VariableEditorFields& fields_;
};

}  // namespace sorvane
