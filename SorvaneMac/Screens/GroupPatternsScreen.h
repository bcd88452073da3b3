#pragma once

#include <optional>
#include <string>

#include "SorvaneMac/Screens/PlannedScreen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// How an outcome spreads within and between groups, on the outcome and the factor that the state
/// keeps valid. Its form and gates stand; the comparison is not in this version.
class GroupPatternsScreen final : public PlannedScreen {
public:
    explicit GroupPatternsScreen(StudioState& state) : state_(state) {}

    StudioScreen id() const override { return StudioScreen::groupPatterns; }
    SetupForm setup() override;
    Guide guide() const override;

private:
    std::string subtitle() const override;
    /// What is missing before the groups can be compared.
    std::optional<Gate> gate() const override;

    StudioState& state_;
};

}  // namespace sorvane
