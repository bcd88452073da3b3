#pragma once

#include <optional>
#include <string>

#include "SorvaneMac/Screens/CompareMeans/CompareMeansRuns.h"
#include "SorvaneMac/Screens/ImmediateScreen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// How an outcome spreads within and between groups, on the outcome and the factor that the state
/// keeps valid; shown at once, without a run.
class GroupPatternsScreen final : public ImmediateScreen {
public:
    explicit GroupPatternsScreen(StudioState& state) : state_(state) {}

    StudioScreen id() const override { return StudioScreen::groupPatterns; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;

private:
    std::optional<Gate> gate() const override;
    Json record() const override;
    OneWayRun comparison() const;

    StudioState& state_;
};

}  // namespace sorvane
