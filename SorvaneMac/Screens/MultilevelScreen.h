#pragma once

#include "SorvaneMac/Screens/MultilevelFields.h"
#include "SorvaneMac/Screens/PlannedScreen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Mixed models of an outcome whose cases stand in clusters.
class MultilevelScreen final : public PlannedScreen {
public:
    MultilevelScreen(StudioState& state, MultilevelFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::multilevel; }
    void seed() override;
    SetupForm setup() override;
    Guide guide() const override;

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
    std::string heading() const override;
    std::string subtitle() const override;
    /// What keeps the model from running.
    std::optional<Gate> gate() const override;
    std::optional<Gate> missingSelection() const;
    std::optional<Gate> unsuitedStructure() const;

    StudioState& state_;
    MultilevelFields& fields_;
};

}  // namespace sorvane
