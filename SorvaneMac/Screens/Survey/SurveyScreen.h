#pragma once

#include "SorvaneMac/Screens/AnalysisScreen.h"
#include "SorvaneMac/Screens/Survey/SurveyFields.h"

namespace sorvane {

/// Estimates under a sampling design.
class SurveyScreen final : public AnalysisScreen {
public:
    SurveyScreen(StudioState& state, SurveyFields& fields);

    void seed() override;

private:
    SurveyFields& fields_;
};

}  // namespace sorvane
