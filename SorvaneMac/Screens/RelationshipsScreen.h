#pragma once

#include <optional>
#include <string>

#include "SorvaneMac/Screens/CorrelationFields.h"
#include "SorvaneMac/Screens/PlannedScreen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The assumptions behind the association of two variables, on the pair that Correlation shows.
/// Its form and gates stand; the checks are not in this version.
class RelationshipsScreen final : public PlannedScreen {
public:
    RelationshipsScreen(StudioState& state, CorrelationFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::relationships; }
    void seed() override;
    SetupForm setup() override;
    Guide guide() const override;

private:
    std::string subtitle() const override;
    /// What is missing before the pair can be checked.
    std::optional<Gate> gate() const override;

    StudioState& state_;
    CorrelationFields& fields_;
};

}  // namespace sorvane
