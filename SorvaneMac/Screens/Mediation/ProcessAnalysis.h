#pragma once

#include <string>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Mediation/MediationFields.h"
#include "SorvaneMac/Screens/Mediation/MediationSelection.h"

namespace sorvane {

/// What mediation and moderation share: a predictor, a variable in the middle, an outcome.
template <MediationScreenMode mode, typename Run>
class ProcessAnalysis : public BackgroundAnalysis<MediationFields, Run> {
public:
    using BackgroundAnalysis<MediationFields, Run>::BackgroundAnalysis;

    std::string heading() const final { return std::string(displayName(mode)); }
    std::optional<Gate> gate() const final {
        return MediationSelection::gate(this->state_.dataset(), this->fields_);
    }
    std::string selection() const final { return MediationSelection::words(variables(), mode); }

protected:
    MediationVariables variables() const {
        return MediationSelection::variables(this->state_.dataset(), this->fields_);
    }
};

}  // namespace sorvane
