#pragma once

#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Survey/SurveyDesign.h"
#include "SorvaneMac/Screens/Survey/SurveyModelFields.h"

namespace sorvane {

/// All that a model takes beside the design, so that it can be fitted away from the window.
struct SurveyModelFit {
    /// What the result will be labelled by.
    SurveyModelRun run;
    NumericColumn outcome;
    std::vector<NumericColumn> predictors;

    /// The fit under the design, with the weights alone, and without weights.
    SurveyModelRun under(const SurveyDesign& design) const;
};

}  // namespace sorvane
