#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Reliability/ReliabilityAnalyzer.h"
#include "SorvaneMac/Screens/ImmediateScreen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Internal consistency of the item set, never shown without what it does not prove.
class ReliabilityScreen final : public ImmediateScreen {
public:
    explicit ReliabilityScreen(StudioState& state) : state_(state) {}

    StudioScreen id() const override { return StudioScreen::scalesReliability; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;

private:
    CheckListControl itemList();
    std::optional<Gate> gate() const override;
    Json record() const override;
    /// The construct's name, or what stands for it while none is given.
    std::string constructTitle() const;
    ReliabilityResult analyze() const;
    Finding finding(const ReliabilityResult& result) const;

    StudioState& state_;
};

}  // namespace sorvane
