#pragma once

#include "SorvaneMac/Screens/AnalysisScreen.h"
#include "SorvaneMac/Screens/Multivariate/MultivariateFields.h"

namespace sorvane {

/// Several numeric variables at once: across groups, or one set against another.
class MultivariateScreen final : public AnalysisScreen {
public:
    MultivariateScreen(StudioState& state, MultivariateFields& fields);

    void seed() override;

private:
    MultivariateFields& fields_;
};

}  // namespace sorvane
