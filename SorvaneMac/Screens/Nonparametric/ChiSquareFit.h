#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The chi-square test of one column's categories against equal shares.
class ChiSquareFit final : public StoredAnalysis<GoodnessOfFitRun> {
public:
    ChiSquareFit(StudioState& state, NonparametricFields& fields)
        : StoredAnalysis(fields.npGoodnessOfFitRun), state_(state), fields_(fields) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override { return "Run goodness-of-fit"; }
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    Guide guide() const override;

private:
    std::optional<GoodnessOfFitRun> compute() override;
    void present(const GoodnessOfFitRun& run, ScreenContent& content) const override;

    StudioState& state_;
    NonparametricFields& fields_;
};

}  // namespace sorvane
