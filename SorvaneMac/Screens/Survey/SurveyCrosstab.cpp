#include <algorithm>

#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/Survey/SurveyAnalyses.h"
#include "SorvaneMac/Screens/Survey/SurveyColumns.h"
#include "SorvaneMac/Screens/Survey/SurveyCrosstabReport.h"
#include "SorvaneMac/Screens/Survey/SurveyGuides.h"
#include "SorvaneMac/Screens/Survey/SurveyInference.h"
#include "SorvaneMac/Screens/Survey/SurveyModelFit.h"
#include "SorvaneMac/Screens/Survey/SurveyModelSelection.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

/// All that the computation takes, so that it can run away from the window.
struct Input {
    /// With its design as used.
    SurveyCrosstabRun run;
    std::string rowName;
    std::string columnName;
    std::shared_ptr<const TextColumn> rows;
    std::shared_ptr<const TextColumn> columns;
    SurveyDesign design;

    SurveyCrosstabRun computed(const TaskRunner::Progress& progress) const;
};

/// 1 where the cell holds the label, 0 where another; absent where either cell of the row is blank.
NumericColumn indicator(const Input& input, const std::string& label) {
    std::vector<std::optional<double>> values(input.columns->size());
    for (std::size_t row = 0; row < values.size(); ++row) {
        if (!(*input.columns)[row].empty() && !(*input.rows)[row].empty()) {
            values[row] = (*input.columns)[row] == label ? 1.0 : 0.0;
        }
    }
    return NumericColumn(std::move(values));
}

/// The shares of one column in each row, as proportions of subgroups of the whole sample.
void addShares(SurveyCrosstabRun& run, const Input& input, std::size_t column) {
    const std::vector<std::string>& labels = run.result.columnLabels;
    for (const DomainEstimate& each :
         WeightedEstimators::byGroup(WeightedEstimand::proportion, indicator(input, labels[column]),
                                     *input.rows, input.design)) {
        const auto row = std::ranges::find(run.result.rowLabels, each.group);
        if (row == run.result.rowLabels.end()) {
            continue;
        }
        const auto at = static_cast<std::size_t>(row - run.result.rowLabels.begin());
        SurveyRowShare& share = run.rowShares[at * labels.size() + column];
        share = {.row = each.group,
                 .column = labels[column],
                 .share = each.estimate.estimate,
                 .standardError = each.estimate.standardError,
                 .lowerBound = std::max(each.estimate.confidenceIntervalLower, 0.0),
                 .upperBound = std::min(each.estimate.confidenceIntervalUpper, 1.0)};
    }
}

SurveyCrosstabRun Input::computed(const TaskRunner::Progress& progress) const {
    SurveyCrosstabRun done = run;
    done.result = SurveyCategorical::test(*rows, *columns, design, rowName, columnName);
    if (done.result.readiness.status == AnalysisReadinessStatus::blocked) {
        return done;
    }
    const std::size_t labels = done.result.columnLabels.size();
    done.rowShares.resize(done.result.cells.size());
    progress(1.0 / static_cast<double>(labels + 1));
    for (std::size_t column = 0; column < labels; ++column) {
        addShares(done, *this, column);
        progress(static_cast<double>(column + 2) / static_cast<double>(labels + 1));
    }
    done.effectiveSampleSize =
        effectiveSampleSize(design, {indicator(*this, done.result.columnLabels.front())});
    done.cautions = SurveyColumns::cautions(design);
    return done;
}

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

    Compute computation() const override {
        const ImportedDataset& dataset = state_.dataset();
        Input input{.rowName = fields_.models.svRowCat->name,
                    .columnName = fields_.models.svColCat->name,
                    .design = SurveyColumns::design(dataset, fields_)};
        input.run.design = SurveyColumns::used(input.design, fields_);
        input.rows = Categories::cells(dataset, input.rowName);
        input.columns = Categories::cells(dataset, input.columnName);
        return [input = std::move(input)](const TaskRunner::Progress& progress) {
            return input.computed(progress);
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
