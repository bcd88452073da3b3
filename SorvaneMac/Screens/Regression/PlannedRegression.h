#pragma once

#include "SorvaneMac/Screens/PlannedAnalysis.h"
#include "SorvaneMac/Screens/Regression/RegressionFields.h"
#include "SorvaneMac/Screens/Regression/RegressionOutcomes.h"
#include "SorvaneMac/Screens/Regression/RegressionSelection.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// A model of Regression that is not in this version.
class PlannedRegression final : public PlannedAnalysis<RegressionFields> {
public:
    PlannedRegression(RegressionModel model, StudioState& state, RegressionFields& fields)
        : PlannedAnalysis(state, fields), model_(model) {}

    std::string subtitle() const override { return std::string(name()); }
    void addControls(SetupForm& form) override {
        RegressionSelection::addControls(form, state_, fields_, model_);
    }
    std::string runLabel() const override { return "Run regression"; }
    Guide guide() const override { return RegressionOutcomes::guideOf(model_); }

private:
    std::string_view name() const override { return displayName(model_); }
    std::optional<Gate> selectionGate() const override {
        return RegressionSelection::gate(state_, fields_, model_);
    }

    RegressionModel model_;
};

}  // namespace sorvane
