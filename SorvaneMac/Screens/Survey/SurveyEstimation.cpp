#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/Survey/SurveyAnalyses.h"
#include "SorvaneMac/Screens/Survey/SurveyCells.h"
#include "SorvaneMac/Screens/Survey/SurveyColumns.h"
#include "SorvaneMac/Screens/Survey/SurveyInference.h"
#include "SorvaneMac/Screens/Survey/SurveyReport.h"
#include "SorvaneMac/Screens/Survey/SurveySelection.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

/// What is estimated, with the columns that it takes.
struct Estimand {
    WeightedEstimand kind = WeightedEstimand::mean;
    std::string name;
    NumericColumn values;
    NumericColumn denominator;

    WeightedEstimate under(const SurveyDesign& design) const {
        switch (kind) {
            case WeightedEstimand::total:
                return WeightedEstimators::total(values, design, name);
            case WeightedEstimand::proportion:
                return WeightedEstimators::proportion(values, design, name);
            case WeightedEstimand::ratio:
                return WeightedEstimators::ratio(values, denominator, design, name);
            case WeightedEstimand::mean:
                break;
        }
        return WeightedEstimators::mean(values, design, name);
    }
    std::vector<DomainEstimate> byGroup(const TextColumn& groups,
                                        const SurveyDesign& design) const {
        return kind == WeightedEstimand::ratio
                   ? WeightedEstimators::ratioByGroup(values, denominator, groups, design, name)
                   : WeightedEstimators::byGroup(kind, values, groups, design, name);
    }
};

Guide guideOfEstimates() {
    return {.answers =
                "What a mean, a total, a proportion or a ratio is in the population that a "
                "complex sample was drawn from, and how precisely the design lets it be known.",
            .needs =
                "The sampling weights that came with the survey, all positive, and the strata and "
                "primary sampling units of its design, or the replicate weights that stand for "
                "them. A precision weight, a frequency count or a body weight is not a sampling "
                "weight.",
            .doNotClaim = {
                "Do not speak of the population from unweighted figures.",
                "Do not trust standard errors that leave out the clusters; they are usually too "
                "small.",
                "Do not drop cases to look at a subgroup; the design belongs to the whole sample.",
                "Do not expect weights to repair answers that were refused for reasons the weights "
                "do not know."}};
}

void addWithoutGroup(const TextColumn& groups, SurveyRun& run) {
    std::int64_t blank = 0;
    for (std::size_t row = 0; row < groups.size(); ++row) {
        blank += groups[row].empty() ? 1 : 0;
    }
    if (blank > 0) {
        run.cautions.push_back(DatasetText::counted(blank, "row") + " without " + run.group +
                               (blank == 1 ? " belongs" : " belong") +
                               " to no subgroup, but to the figure of all.");
    }
}

/// All that the estimate takes beside the design.
struct Input {
    /// What the result will be labelled by.
    SurveyRun run;
    Estimand estimand;
    /// Null without subgroups.
    std::shared_ptr<const TextColumn> groups;

    SurveyRun under(const SurveyDesign& design) const;
};

SurveyRun Input::under(const SurveyDesign& design) const {
    SurveyRun done = run;
    done.estimate = estimand.under(design);
    if (SurveyCells::isBlocked(done.estimate)) {
        return done;
    }
    done.cautions = SurveyColumns::cautions(design);
    if (groups) {
        done.groups = estimand.byGroup(*groups, design);
        addWithoutGroup(*groups, done);
    }
    if (SurveyColumns::isMoreThanWeights(design)) {
        done.weightsOnly = estimand.under(SurveyColumns::weightsAlone(design));
    }
    if (done.estimand != WeightedEstimand::total) {
        done.unweighted = estimand.under(SurveyColumns::unweighted(design));
    }
    return done;
}

class SurveyEstimation final : public SurveyInference<SurveyRun> {
public:
    using SurveyInference::SurveyInference;

    std::string subtitle() const override {
        return "Means, totals, proportions and ratios under weights, strata and clusters, with "
               "design-based standard errors.";
    }
    std::string runLabel() const override { return "Estimate"; }
    std::string selection() const override {
        const std::optional<WeightedEstimand> estimand = SurveyColumns::estimandOf(fields_);
        const std::string what = estimand == WeightedEstimand::ratio
                                     ? fields_.svVar->name + " / " + fields_.svDenominator->name
                                     : fields_.svVar->name;
        return fields_.svEstimand.get() + " of " + what + underWeight();
    }
    Guide guide() const override { return guideOfEstimates(); }

private:
    void addVariables(SetupForm& form) override {
        SurveySelection::addEstimate(form, state_.dataset(), fields_);
    }
    std::optional<Gate> variableGate() const override {
        return SurveySelection::estimateGate(state_.dataset(), fields_);
    }
    std::string computingLabel() const override { return "Estimating under the design…"; }

    Estimate estimation() const override {
        const ImportedDataset& dataset = state_.dataset();
        Input input{.run = {.estimand = *SurveyColumns::estimandOf(fields_),
                            .variable = fields_.svVar->name,
                            .group = fields_.svGroup->name},
                    .groups = fields_.svGroup->isBlank()
                                  ? nullptr
                                  : Categories::cells(dataset, fields_.svGroup->name)};
        input.estimand = {.kind = input.run.estimand,
                          .name = input.run.variable,
                          .values = dataset.numericColumn(input.run.variable)};
        if (input.run.estimand == WeightedEstimand::ratio) {
            input.run.denominator = fields_.svDenominator->name;
            input.estimand.denominator = dataset.numericColumn(input.run.denominator);
        }
        return [input = std::move(input)](const SurveyDesign& design, const Progress&) {
            return input.under(design);
        };
    }

    void present(const SurveyRun& run, ScreenContent& content) const override {
        if (SurveyCells::isBlocked(run.estimate)) {
            content.gate = SurveyReport::refusal(run);
            return;
        }
        addReport(SurveyReport::report(run), content);
    }
};

}  // namespace

std::unique_ptr<Analysis> SurveyAnalyses::estimates(StudioState& state, SurveyFields& fields) {
    return std::make_unique<SurveyEstimation>(state, fields, fields.svResult);
}

}  // namespace sorvane
