#pragma once

#include <optional>
#include <string>

#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/Screens/Structural/StructuralFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Confirmatory factor and structural models, written as text.
///
/// The last fit stays in view while its model is rewritten, as it is what the writer goes by.
class StructuralScreen final : public Screen {
public:
    StructuralScreen(StudioState& state, StructuralFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::sem; }
    void seed() override;
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override;
    Json result() const override;

private:
    bool isBlank() const;
    void addTemplates(SetupForm& form);
    /// What is missing before there is a text that could be a model.
    std::optional<Gate> gateOfText() const;
    /// What keeps the model from being fitted.
    std::optional<Gate> gate() const;
    bool isFitting() const;
    void showPreview(ScreenContent& content) const;
    void fit();

    StudioState& state_;
    StructuralFields& fields_;
};

}  // namespace sorvane
