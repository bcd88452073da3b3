#pragma once

#include "SorvaneMac/Screens/Multivariate/MultivariateFields.h"
#include "SorvaneMac/Screens/PlannedAnalysis.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Canonical correlation, which is not in this version.
class CanonicalCorrelation final : public PlannedAnalysis {
public:
    CanonicalCorrelation(StudioState& state, MultivariateFields& fields)
        : state_(state), fields_(fields) {}

    std::string subtitle() const override {
        return "Relate one set of numeric variables to another.";
    }
    void addControls(SetupForm& form) override;
    std::string runLabel() const override { return "Run canonical correlation"; }
    Guide guide() const override;

private:
    std::string_view name() const override { return displayName(MVTest::canonical); }
    std::optional<Gate> selectionGate() const override;

    StudioState& state_;
    MultivariateFields& fields_;
};

}  // namespace sorvane
