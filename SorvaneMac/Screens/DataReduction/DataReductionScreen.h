#pragma once

#include "SorvaneMac/Screens/AnalysisScreen.h"
#include "SorvaneMac/Screens/DataReduction/DataReductionFields.h"

namespace sorvane {

/// Components, factors and omega of items, and clusters of cases.
class DataReductionScreen final : public AnalysisScreen {
public:
    DataReductionScreen(StudioState& state, DataReductionFields& fields);

    void seed() override;

private:
    DataReductionFields& fields_;
};

}  // namespace sorvane
