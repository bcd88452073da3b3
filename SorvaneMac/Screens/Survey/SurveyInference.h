#pragma once

#include <functional>
#include <optional>
#include <string>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Survey/ChosenDesign.h"
#include "SorvaneMac/Screens/Survey/SurveyFields.h"
#include "SorvaneMac/Screens/Survey/SurveySelection.h"

namespace sorvane {

/// What all analyses under a sampling design share: the design's controls, the choice of analysis,
/// and the run away from the window, as replicates take their time.
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

    using Progress = TaskRunner::Progress;
    using Estimate = std::function<Run(const SurveyDesign& design, const Progress& progress)>;
    /// What is run under a design, with copies of all else that it needs.
    virtual Estimate estimation() const = 0;

    /// " under pw"
    std::string underWeight() const { return " under " + this->fields_.svWeight->name; }
    std::string statusLine() const final {
        return "The analysis under the sampling design is running.";
    }

private:
    typename BackgroundAnalysis<SurveyFields, Run>::Compute computation() const final {
        return [chosen = ChosenDesign::of(this->state_.dataset(), this->fields_),
                estimate = estimation()](const Progress& progress) {
            const SurveyDesign design = chosen.design();
            Run run = estimate(design, progress);
            run.design = chosen.used(design);
            return run;
        };
    }
};

}  // namespace sorvane
