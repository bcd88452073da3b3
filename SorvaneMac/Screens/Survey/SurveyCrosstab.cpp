#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/Survey/SurveyAnalyses.h"
#include "SorvaneMac/Screens/Survey/SurveyColumns.h"
#include "SorvaneMac/Screens/Survey/SurveyCrosstabReport.h"
#include "SorvaneMac/Screens/Survey/SurveyGuides.h"
#include "SorvaneMac/Screens/Survey/SurveyInference.h"
#include "SorvaneMac/Screens/Survey/SurveyModelSelection.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

class SurveyCrosstab final : public SurveyInference<SurveyCrosstabRun> {
public:
    using SurveyInference::SurveyInference;

    std::string subtitle() const override {
        return "Shares of two variables in the population, and the Rao-Scott test of their "
               "independence.";
    }
    std::string runLabel() const override { return "Run crosstab"; }
    std::string selection() const override {
        return fields_.models.svRowCat->name + " by " + fields_.models.svColCat->name +
               underWeight();
    }
    Guide guide() const override { return SurveyGuides::ofCrosstab(); }

private:
    void addVariables(SetupForm& form) override {
        SurveyModelSelection::addCrosstab(form, state_.dataset(), fields_);
    }
    std::optional<Gate> variableGate() const override {
        return SurveyModelSelection::crosstabGate(state_.dataset(), fields_);
    }
    std::string computingLabel() const override { return "Testing the table under the design…"; }

    Estimate estimation() const override {
        const std::string& rowName = fields_.models.svRowCat->name;
        const std::string& columnName = fields_.models.svColCat->name;
        return [rows = Categories::cells(state_.dataset(), rowName),
                columns = Categories::cells(state_.dataset(), columnName), rowName,
                columnName](const SurveyDesign& design, const Progress&) {
            SurveyCrosstabRun run;
            run.result = SurveyCategorical::test(*rows, *columns, design, rowName, columnName);
            run.cautions = SurveyColumns::cautions(design);
            return run;
        };
    }

    void present(const SurveyCrosstabRun& run, ScreenContent& content) const override {
        if (run.result.readiness.status == AnalysisReadinessStatus::blocked) {
            content.gate = SurveyCrosstabReport::refusal(run);
            return;
        }
        addReport(SurveyCrosstabReport::report(run), content);
    }
};

}  // namespace

std::unique_ptr<Analysis> SurveyAnalyses::crosstab(StudioState& state, SurveyFields& fields) {
    return std::make_unique<SurveyCrosstab>(state, fields, fields.models.svCrosstabResult);
}

}  // namespace sorvane
