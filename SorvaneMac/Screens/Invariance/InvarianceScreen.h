#pragma once

#include "SorvaneMac/Screens/AnalysisScreen.h"
#include "SorvaneMac/Screens/Invariance/InvarianceFields.h"

namespace sorvane {

/// Whether the items of one factor measure alike in the groups to be compared.
class InvarianceScreen final : public AnalysisScreen {
public:
    InvarianceScreen(StudioState& state, InvarianceFields& fields);

    void seed() override;

private:
    InvarianceFields& fields_;
};

}  // namespace sorvane
