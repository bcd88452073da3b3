#pragma once

#include "SorvaneMac/Screens/AnalysisScreen.h"
#include "SorvaneMac/Screens/OptionalSeed.h"
#include "SorvaneMac/Screens/Survey/SurveyFields.h"

namespace sorvane {

/// Estimates, models and tables under a sampling design.
class SurveyScreen final : public AnalysisScreen {
public:
    SurveyScreen(StudioState& state, SurveyFields& fields);

    void seed() override;

private:
    SurveyFields& fields_;
    /// Without strata or clusters is a choice as well.
    OptionalSeed strataSeed_;
    OptionalSeed clusterSeed_;
};

}  // namespace sorvane
