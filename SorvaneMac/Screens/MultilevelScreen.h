#pragma once

#include "SorvaneMac/Screens/MultilevelFields.h"
#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Mixed models of an outcome whose cases stand in clusters.
class MultilevelScreen final : public Screen {
public:
    MultilevelScreen(StudioState& state, MultilevelFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::multilevel; }
    void seed() override;
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override;

private:
    bool hasSecondGrouping() const;
    bool hasTime() const;
    /// Whether the user chooses the random slope; growth takes the time for it.
    bool allowsRandomSlope() const;
    void dropForbiddenSlope();
    /// The columns that the structure uses beside the predictors.
    NameSet placed() const;
    void addVariables(SetupForm& form);
    void addSlope(SetupForm& form);
    /// What keeps the model from running.
    Gate gate() const;
    std::optional<Gate> missingSelection() const;
    std::optional<Gate> unsuitedStructure() const;

    StudioState& state_;
    MultilevelFields& fields_;
};

}  // namespace sorvane
