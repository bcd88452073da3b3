#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The chi-square test of two categorical columns.
class ChiSquareIndependence final : public StoredAnalysis<IndependenceRun> {
public:
    ChiSquareIndependence(StudioState& state, NonparametricFields& fields)
        : StoredAnalysis(fields.npChiSquareRun), state_(state), fields_(fields) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override { return "Run chi-square"; }
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    Guide guide() const override;

private:
    std::optional<IndependenceRun> compute() override;
    void present(const IndependenceRun& run, ScreenContent& content) const override;

    StudioState& state_;
    NonparametricFields& fields_;
};

}  // namespace sorvane
