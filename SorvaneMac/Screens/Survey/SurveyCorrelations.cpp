#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SurveyAnalyses.h"
#include "SorvaneMac/Screens/Survey/SurveyColumns.h"
#include "SorvaneMac/Screens/Survey/SurveyCorrelationReport.h"
#include "SorvaneMac/Screens/Survey/SurveyGuides.h"
#include "SorvaneMac/Screens/Survey/SurveyInference.h"
#include "SorvaneMac/Screens/Survey/SurveyModelSelection.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

/// All that the computation takes beside the design.
struct Input {
    /// With the names of its variables.
    SurveyCorrelationRun run;
    /// One per variable.
    std::vector<NumericColumn> columns;

    SurveyCorrelationRun under(const SurveyDesign& design,
                               const TaskRunner::Progress& progress) const;
};

SurveyCorrelationRun Input::under(const SurveyDesign& design,
                                  const TaskRunner::Progress& progress) const {
    SurveyCorrelationRun done = run;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        // Of all rows that hold the variable; a correlation's own moments are of those of its pair.
        SurveyVariable& variable = done.variables[i];
        variable.mean =
            WeightedEstimators::mean(columns[i], SurveyColumns::weightsAlone(design)).estimate;
        variable.standardDeviation = WeightedEstimators::standardDeviation(columns[i], design);
        names.push_back(variable.name);
    }
    const auto plain = SurveyCorrelation::matrix(columns, SurveyColumns::unweighted(design), names);
    for (const SurveyCorrelationResult& pair : *plain) {
        done.unweighted.push_back(pair.r);
    }
    done.pairs = *SurveyCorrelation::matrix(columns, design, names, progress);
    if (design.structuralErrors().empty()) {
        done.cautions = SurveyColumns::cautions(design);
    }
    return done;
}

class SurveyCorrelations final : public SurveyInference<SurveyCorrelationRun> {
public:
    using SurveyInference::SurveyInference;

    std::string subtitle() const override {
        return "Correlations in the population, with standard errors of the sampling design.";
    }
    std::string runLabel() const override { return "Run correlation"; }
    std::string selection() const override {
        return ResultText::listed(SurveyModelSelection::correlated(state_.dataset(), fields_)) +
               underWeight();
    }
    Guide guide() const override { return SurveyGuides::ofCorrelation(); }

private:
    void addVariables(SetupForm& form) override {
        SurveyModelSelection::addCorrelation(form, state_.dataset(), fields_);
    }
    std::optional<Gate> variableGate() const override {
        return SurveyModelSelection::correlationGate(state_.dataset(), fields_);
    }
    std::string computingLabel() const override {
        return "Estimating correlations under the design…";
    }

    Estimate estimation() const override {
        Input input;
        for (std::string& name : SurveyModelSelection::correlated(state_.dataset(), fields_)) {
            input.columns.push_back(state_.dataset().numericColumn(name));
            input.run.variables.push_back({.name = std::move(name)});
        }
        return [input = std::move(input)](const SurveyDesign& design, const Progress& progress) {
            return input.under(design, progress);
        };
    }

    void present(const SurveyCorrelationRun& run, ScreenContent& content) const override {
        if (auto refusal = SurveyCorrelationReport::refusal(run)) {
            content.gate = std::move(*refusal);
            return;
        }
        addReport(SurveyCorrelationReport::report(run), content);
    }
};

}  // namespace

std::unique_ptr<Analysis> SurveyAnalyses::correlation(StudioState& state, SurveyFields& fields) {
    return std::make_unique<SurveyCorrelations>(state, fields, fields.models.svCorrelationResult);
}

}  // namespace sorvane
