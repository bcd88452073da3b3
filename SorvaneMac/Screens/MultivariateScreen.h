#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Screens/MultivariateFields.h"
#include "SorvaneMac/Screens/PlannedScreen.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

/// Several numeric variables at once: across groups, or one set against another. Its seed, form
/// and gates stand; its tests are not in this version.
class MultivariateScreen final : public PlannedScreen {
public:
    MultivariateScreen(StudioState& state, MultivariateFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::multivariate; }
    void seed() override;
    SetupForm setup() override;
    Guide guide() const override;

private:
    /// The numeric variables less the grouping factor.
    VariableLists::List variableCandidates() const;
    void addTestControls(SetupForm& form);
    std::string subtitle() const override;
    /// What is missing before the chosen test can run.
    std::optional<Gate> gate() const override;
    std::optional<Gate> selectionGate() const;
    std::optional<Gate> groupedGate(const Gate& unsuitable) const;
    std::optional<Gate> canonicalGate() const;

    StudioState& state_;
    MultivariateFields& fields_;
};

}  // namespace sorvane
