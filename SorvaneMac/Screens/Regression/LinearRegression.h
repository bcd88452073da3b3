#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Chart.h"
#include "SorvaneMac/Screens/Regression/RegressionFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Linear regression of a numeric outcome on numeric predictors.
class LinearRegression final : public StoredAnalysis<RegressionFields, LinearModelRun> {
public:
    LinearRegression(StudioState& state, RegressionFields& fields)
        : StoredAnalysis(state, fields, fields.regLinearRun) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override { return "Run regression"; }
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    Guide guide() const override;

private:
    std::optional<LinearModelRun> compute() override;
    void present(const LinearModelRun& run, ScreenContent& content) const override;
};

}  // namespace sorvane
