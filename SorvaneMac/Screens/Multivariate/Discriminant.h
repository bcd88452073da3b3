#pragma once

#include "SorvaneMac/Screens/Multivariate/MultivariateFields.h"
#include "SorvaneMac/Screens/PlannedAnalysis.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Discriminant analysis, which is not in this version.
class Discriminant final : public PlannedAnalysis {
public:
    Discriminant(StudioState& state, MultivariateFields& fields) : state_(state), fields_(fields) {}

    std::string subtitle() const override {
        return "Tell groups apart by several numeric variables at once.";
    }
    void addControls(SetupForm& form) override;
    std::string runLabel() const override { return "Run discriminant analysis"; }
    Guide guide() const override;

private:
    std::string_view name() const override { return displayName(MVTest::discriminant); }
    std::optional<Gate> selectionGate() const override;

    StudioState& state_;
    MultivariateFields& fields_;
};

}  // namespace sorvane
