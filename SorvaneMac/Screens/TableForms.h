#pragma once

#include "SorvaneMac/Screens/PrepareForm.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableEditorFields.h"

namespace sorvane {

/// Bands of a number, as a new grouping variable.
class BandsForm final : public PrepareForm {
public:
    explicit BandsForm(StudioState& state) : state_(state) {}

    void addTo(SetupForm& form) override;
    std::optional<Gate> gate() const override;
    void run() override;
    Guide guide() const override;

private:
    StudioState& state_;
};

/// A column's name changed everywhere, or the column taken out of the working table.
class RenameForm final : public PrepareForm {
public:
    explicit RenameForm(StudioState& state) : state_(state), fields_(state.editor) {}

    void addTo(SetupForm& form) override;
    std::optional<Gate> gate() const override;
    void run() override;
    Guide guide() const override;

private:
    StudioState& state_;
    VariableEditorFields& fields_;
};

}  // namespace sorvane
