#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Multivariate/MultivariateFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The comparison of groups on several outcomes at once.
class Manova final : public StoredAnalysis<MANOVAResult> {
public:
    Manova(StudioState& state, MultivariateFields& fields)
        : StoredAnalysis(fields.mvManovaStored), state_(state), fields_(fields) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override { return "Run MANOVA"; }
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    Guide guide() const override;

private:
    std::optional<MANOVAResult> compute() override;
    void present(const MANOVAResult& result, ScreenContent& content) const override;

    StudioState& state_;
    MultivariateFields& fields_;
};

}  // namespace sorvane
