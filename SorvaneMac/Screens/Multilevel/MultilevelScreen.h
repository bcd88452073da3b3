#pragma once

#include "SorvaneMac/Screens/AnalysisScreen.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelFields.h"
#include "SorvaneMac/Screens/OptionalSeed.h"

namespace sorvane {

/// Mixed models of an outcome whose cases stand in clusters.
class MultilevelScreen final : public AnalysisScreen {
public:
    MultilevelScreen(StudioState& state, MultilevelFields& fields);

    void seed() override;

private:
    MultilevelFields& fields_;
    /// No predictors are a choice as well, of a model of the intercept alone.
    OptionalSeed predictorSeed_;
    Subscription messageClearing_;
};

}  // namespace sorvane
