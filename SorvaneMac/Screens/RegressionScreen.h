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
    /// A model as it was run; it stands until the next run, whatever is chosen meanwhile.
    struct Model {
        std::string outcome;
        std::vector<std::string> predictors;
        /// Absent where the model could not be estimated.
        std::optional<MultipleRegressionResult> result;
    };
    Model fit() const;
    void addResult(ScreenContent& content) const;
    Chart chart() const;
    Finding finding() const;

    StudioState& state_;
    RegressionFields& fields_;
    Model model_;
};

}  // namespace sorvane
