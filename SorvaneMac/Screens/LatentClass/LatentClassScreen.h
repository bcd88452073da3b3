#pragma once

#include "SorvaneMac/Screens/AnalysisScreen.h"
#include "SorvaneMac/Screens/LatentClass/LatentClassFields.h"

namespace sorvane {

/// Unobserved groups of cases: profiles of numbers, classes of answers, and factor mixtures.
class LatentClassScreen final : public AnalysisScreen {
public:
    LatentClassScreen(StudioState& state, LatentClassFields& fields);

    void seed() override;

private:
    LatentClassFields& fields_;
    /// Whether a factor mixture has run, and its names, go with its result.
    Subscription mixtureWatch_;
};

}  // namespace sorvane
