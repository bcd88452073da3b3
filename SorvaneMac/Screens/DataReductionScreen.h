#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Screens/DataReductionFields.h"
#include "SorvaneMac/Screens/PlannedScreen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Components, factors and omega of items, and clusters of cases. Its seed, form and gates stand;
/// its methods are not in this version.
class DataReductionScreen final : public PlannedScreen {
public:
    DataReductionScreen(StudioState& state, DataReductionFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::dataReduction; }
    void seed() override;
    SetupForm setup() override;
    Guide guide() const override;

private:
    std::vector<std::string> items() const;
    void addOptionControls(SetupForm& form);
    std::string subtitle() const override;
    /// What is missing before the chosen method can run.
    std::optional<Gate> gate() const override;
    /// Whether there are so many items, all of which vary, and so many cases with all of them.
    bool hasItems(std::size_t fewestItems, std::int64_t fewestCases) const;
    std::optional<Gate> methodGate() const;

    StudioState& state_;
    DataReductionFields& fields_;
};

}  // namespace sorvane
