#pragma once

#include <string>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Regression/RegressionFields.h"
#include "SorvaneMac/Screens/Regression/RegressionOutcomes.h"
#include "SorvaneMac/Screens/Regression/RegressionSelection.h"

namespace sorvane {

/// What all models of Regression share: an outcome, its predictors, and what they are asked for.
template <RegressionModel model, typename Run>
class RegressionAnalysis : public StoredAnalysis<RegressionFields, Run> {
public:
    using StoredAnalysis<RegressionFields, Run>::StoredAnalysis;

    std::string subtitle() const final { return std::string(displayName(model)); }
    void addControls(SetupForm& form) final {
        RegressionSelection::addControls(form, this->state_, this->fields_, model);
    }
    std::string runLabel() const final { return "Run regression"; }
    std::optional<Gate> gate() const final {
        return RegressionSelection::gate(this->state_, this->fields_, model);
    }
    std::string selection() const final {
        return RegressionSelection::selection(this->state_, this->fields_);
    }
    Guide guide() const final { return RegressionOutcomes::guideOf(model); }
};

}  // namespace sorvane
