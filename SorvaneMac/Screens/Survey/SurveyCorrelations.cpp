#include <cmath>

#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SurveyAnalyses.h"
#include "SorvaneMac/Screens/Survey/SurveyColumns.h"
#include "SorvaneMac/Screens/Survey/SurveyCorrelationReport.h"
#include "SorvaneMac/Screens/Survey/SurveyGuides.h"
#include "SorvaneMac/Screens/Survey/SurveyInference.h"
#include "SorvaneMac/Screens/Survey/SurveyModelFit.h"
#include "SorvaneMac/Screens/Survey/SurveyModelSelection.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

/// All that the computation takes, so that it can run away from the window.
struct Input {
    /// With the names of its variables.
    SurveyCorrelationRun run;
    /// One per variable.
    std::vector<NumericColumn> columns;
    SurveyDesign design;

    SurveyCorrelationRun computed(const TaskRunner::Progress& progress) const;
};

/// On all rows that hold the variable; a correlation's own moments are of the rows of its pair.
void describe(SurveyVariable& variable, const NumericColumn& column, const SurveyDesign& design) {
    const SurveyDesign weights = SurveyColumns::weightsAlone(design);
    variable.mean = WeightedEstimators::mean(column, weights).estimate;
    variable.standardDeviation =
        std::sqrt(SurveyCorrelation::pearson(column, column, weights).xVariance);
}

SurveyCorrelationRun Input::computed(const TaskRunner::Progress& progress) const {
    SurveyCorrelationRun done = run;
    const std::size_t count = columns.size();
    const auto pairs = static_cast<double>(count * (count - 1) / 2);
    const SurveyDesign plain = SurveyColumns::unweighted(design);
    for (std::size_t i = 0; i < count; ++i) {
        describe(done.variables[i], columns[i], design);
        for (std::size_t j = i + 1; j < count; ++j) {
            done.pairs.push_back(SurveyCorrelation::pearson(
                columns[i], columns[j], design, done.variables[i].name, done.variables[j].name));
            done.unweighted.push_back(SurveyCorrelation::pearson(columns[i], columns[j], plain).r);
            progress(static_cast<double>(done.pairs.size()) / pairs);
        }
    }
    done.effectiveSampleSize = effectiveSampleSize(design, columns);
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

    Compute computation() const override {
        const ImportedDataset& dataset = state_.dataset();
        Input input{.design = SurveyColumns::design(dataset, fields_)};
        input.run.design = SurveyColumns::used(input.design, fields_);
        for (std::string& name : SurveyModelSelection::correlated(dataset, fields_)) {
            input.columns.push_back(dataset.numericColumn(name));
            input.run.variables.push_back({.name = std::move(name)});
        }
        return [input = std::move(input)](const TaskRunner::Progress& progress) {
            return input.computed(progress);
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
