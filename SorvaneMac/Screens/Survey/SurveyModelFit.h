#pragma once

#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Survey/SurveyDesign.h"
#include "SorvaneMac/Screens/Survey/SurveyModelFields.h"

namespace sorvane {

/// All that a model under a design takes, so that it can be fitted away from the window.
struct SurveyModelFit {
    /// What the result will be labelled by.
    SurveyModelRun run;
    NumericColumn outcome;
    std::vector<NumericColumn> predictors;
    SurveyDesign design;

    /// The fit under the design, with the weights alone, and without weights.
    SurveyModelRun computed() const;
};

/// (sum of weights)^2 / sum of squares, over the rows that hold a finite number in every column.
///
/// Returns    NaN without such a row
/// Cost       O(rows * columns)
double effectiveSampleSize(const SurveyDesign& design, const std::vector<NumericColumn>& columns);

}  // namespace sorvane
