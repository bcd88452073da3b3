#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Survey/SurveyFields.h"
#include "SorvaneMac/Screens/Survey/SurveySelection.h"

namespace sorvane {

/// What the models and tests under a sampling design share: the design's controls, the choice of
/// analysis, and the run away from the window, as replicates take their time.
template <typename Run>
class SurveyInference : public BackgroundAnalysis<SurveyFields, Run> {
public:
    using BackgroundAnalysis<SurveyFields, Run>::BackgroundAnalysis;

    void addControls(SetupForm& form) final {
        SurveySelection::addDesign(form, this->state_.dataset(), this->fields_);
        SurveySelection::addAnalysis(form, this->fields_);
        addVariables(form);
    }
    void addFurtherControls(SetupForm& form) final {
        SurveySelection::addFurther(form, this->state_.dataset(), this->fields_);
    }
    std::optional<Gate> gate() const final {
        if (auto missing = SurveySelection::designGate(this->state_.dataset(), this->fields_)) {
            return missing;
        }
        return variableGate();
    }

protected:
    virtual void addVariables(SetupForm& form) = 0;
    /// What the variables lack, the design aside.
    virtual std::optional<Gate> variableGate() const = 0;

    /// " under pw"
    std::string underWeight() const { return " under " + this->fields_.svWeight->name; }
    std::string statusLine() const final {
        return "The analysis under the sampling design is running.";
    }
};

}  // namespace sorvane
