#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/RegressionTests.h"
#include "SorvaneMac/Screens/RegressionFields.h"
#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Linear regression of a numeric outcome on numeric predictors.
class RegressionScreen final : public Screen {
public:
    RegressionScreen(StudioState& state, RegressionFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::regression; }
    void seed() override;
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override;
    Json result() const override;

private:
    std::vector<std::string> predictors() const;
    /// What is missing before the model can run.
    std::optional<Gate> gate() const;
    LinearModelRun fit() const;
    void addResult(const LinearModelRun& model, ScreenContent& content) const;
    Chart chart(const LinearModelRun& model) const;
    Finding finding(const LinearModelRun& model) const;

    StudioState& state_;
    RegressionFields& fields_;
};

}  // namespace sorvane
