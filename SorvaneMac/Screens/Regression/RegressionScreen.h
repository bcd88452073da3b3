#pragma once

#include "SorvaneMac/Screens/AnalysisScreen.h"
#include "SorvaneMac/Screens/Regression/RegressionFields.h"

namespace sorvane {

/// An outcome explained by predictors, in the model chosen.
class RegressionScreen final : public AnalysisScreen {
public:
    RegressionScreen(StudioState& state, RegressionFields& fields);

    void seed() override;

private:
    RegressionFields& fields_;
};

}  // namespace sorvane
