#include "SorvaneCore/Analyses/GeneralizedRegression/LogisticRegressionTests.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SurveyAnalyses.h"
#include "SorvaneMac/Screens/Survey/SurveyGuides.h"
#include "SorvaneMac/Screens/Survey/SurveyInference.h"
#include "SorvaneMac/Screens/Survey/SurveyModelFit.h"
#include "SorvaneMac/Screens/Survey/SurveyModelReport.h"
#include "SorvaneMac/Screens/Survey/SurveyModelSelection.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

/// 1 where the cell is the event, 0 where it is something else, absent where it is blank.
NumericColumn indicator(const TextColumn& labels, const std::string& event) {
    std::vector<std::optional<double>> ofLevel(labels.levelCount());
    for (std::size_t code = 0; code < ofLevel.size(); ++code) {
        if (!labels.level(code).empty()) {
            ofLevel[code] = labels.level(code) == event ? 1.0 : 0.0;
        }
    }
    std::vector<std::optional<double>> rows(labels.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        rows[row] = ofLevel[labels.code(row)];
    }
    return NumericColumn(std::move(rows));
}

class SurveyModel final : public SurveyInference<SurveyModelRun> {
public:
    SurveyModel(StudioState& state,
                SurveyFields& fields,
                Field<std::optional<SurveyModelRun>>& stored,
                SurveyModelKind kind)
        : SurveyInference(state, fields, stored), kind_(kind) {}

    std::string subtitle() const override {
        return std::string(displayName(kind_)) +
               " for the population, with standard errors of the sampling design.";
    }
    std::string runLabel() const override { return "Run regression"; }
    std::string selection() const override {
        return fields_.models.svOutcome->name + " on " +
               ResultText::listed(SurveyModelSelection::predictors(state_.dataset(), fields_)) +
               underWeight();
    }
    Guide guide() const override { return SurveyGuides::ofModel(kind_); }

private:
    void addVariables(SetupForm& form) override {
        SurveyModelSelection::addModel(form, state_.dataset(), fields_, kind_);
    }
    std::optional<Gate> variableGate() const override {
        return SurveyModelSelection::modelGate(state_.dataset(), fields_, kind_);
    }
    std::string computingLabel() const override { return "Fitting the model under the design…"; }

    Estimate estimation() const override {
        const ImportedDataset& dataset = state_.dataset();
        SurveyModelFit fit{
            .run = {.model = kind_,
                    .outcome = fields_.models.svOutcome->name,
                    .predictors = SurveyModelSelection::predictors(dataset, fields_)}};
        for (const std::string& name : fit.run.predictors) {
            fit.predictors.push_back(dataset.numericColumn(name));
        }
        if (kind_ == SurveyModelKind::logistic) {
            const auto labels = Categories::cells(dataset, fit.run.outcome);
            fit.run.event = LogisticRegressionTests::eventLabel(*labels).value_or("");
            fit.outcome = indicator(*labels, fit.run.event);
        } else {
            fit.outcome = dataset.numericColumn(fit.run.outcome);
        }
        return [fit = std::move(fit)](const SurveyDesign& design, const Progress&) {
            return fit.under(design);
        };
    }

    void present(const SurveyModelRun& run, ScreenContent& content) const override {
        if (!run.result || run.result->readiness.status == AnalysisReadinessStatus::blocked) {
            content.gate = SurveyModelReport::refusal(run);
            return;
        }
        addReport(SurveyModelReport::report(run), content);
    }

    SurveyModelKind kind_;
};

Field<std::optional<SurveyModelRun>>& storedOf(SurveyModelKind kind, SurveyModelFields& fields) {
    switch (kind) {
        case SurveyModelKind::linear:
            return fields.svLinearResult;
        case SurveyModelKind::logistic:
            return fields.svLogisticResult;
        case SurveyModelKind::poisson:
            return fields.svPoissonResult;
        case SurveyModelKind::ordinal:
            break;
    }
    return fields.svOrdinalResult;
}

}  // namespace

std::unique_ptr<Analysis> SurveyAnalyses::model(SurveyModelKind kind,
                                                StudioState& state,
                                                SurveyFields& fields) {
    return std::make_unique<SurveyModel>(state, fields, storedOf(kind, fields.models), kind);
}

}  // namespace sorvane
