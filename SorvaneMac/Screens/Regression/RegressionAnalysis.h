#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Regression/RegressionFields.h"
#include "SorvaneMac/Screens/Regression/RegressionOutcomes.h"
#include "SorvaneMac/Screens/Regression/RegressionSelection.h"
#include "SorvaneMac/Screens/ResultText.h"

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

protected:
    /// What stands in the place of a result.
    static Gate couldNotEstimate(const Run& run, std::string reason) {
        return {.title = "The model could not be estimated",
                .lead = run.outcome + " on " + ResultText::listed(run.predictors),
                .text = std::move(reason)};
    }
    /// What blocked the fit; `unsuitable` where the outcome could not be read.
    static std::string reasonOf(const Run& run, std::string_view unsuitable) {
        return run.result ? ResultText::obstacle(run.result->readiness) : std::string(unsuitable);
    }
    static std::string figureCaption(const Run& run) {
        return "Coefficients of the predictors of " + run.outcome +
               " with 95% confidence intervals.";
    }
};

}  // namespace sorvane
