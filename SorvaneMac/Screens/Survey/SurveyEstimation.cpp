#include "SorvaneMac/Screens/Survey/SurveyEstimation.h"

#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SurveyColumns.h"
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

class SurveyEstimation final : public StoredAnalysis<SurveyFields, SurveyRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override {
        return "Means, totals, proportions and ratios under weights, strata and clusters, with "
               "design-based standard errors.";
    }

    void addControls(SetupForm& form) override {
        SurveySelection::addDesign(form, state_.dataset(), fields_);
        SurveySelection::addAnalysis(form, fields_);
        SurveySelection::addEstimate(form, state_.dataset(), fields_);
    }

    void addFurtherControls(SetupForm& form) override {
        SurveySelection::addFurther(form, state_.dataset(), fields_);
    }

    std::string runLabel() const override { return "Estimate"; }

    std::optional<Gate> gate() const override {
        if (auto missing = SurveySelection::designGate(state_.dataset(), fields_)) {
            return missing;
        }
        return SurveySelection::estimateGate(state_.dataset(), fields_);
    }

    std::string selection() const override {
        const std::optional<WeightedEstimand> estimand = SurveyColumns::estimandOf(fields_);
        const std::string what = estimand == WeightedEstimand::ratio
                                     ? fields_.svVar->name + " / " + fields_.svDenominator->name
                                     : fields_.svVar->name;
        return fields_.svEstimand.get() + " of " + what + " under " + fields_.svWeight->name;
    }

    Guide guide() const override { return guideOfEstimates(); }

private:
    std::optional<SurveyRun> compute() override {
        const ImportedDataset& dataset = state_.dataset();
        const SurveyDesign design = SurveyColumns::design(dataset, fields_);
        SurveyRun run{.estimand = *SurveyColumns::estimandOf(fields_),
                      .variable = fields_.svVar->name,
                      .group = fields_.svGroup->name,
                      .design = SurveyColumns::used(design, fields_)};
        Estimand estimand{.kind = run.estimand,
                          .name = run.variable,
                          .values = dataset.numericColumn(run.variable)};
        if (run.estimand == WeightedEstimand::ratio) {
            run.denominator = fields_.svDenominator->name;
            estimand.denominator = dataset.numericColumn(run.denominator);
        }
        run.estimate = estimand.under(design);
        if (run.estimate.readiness.status == AnalysisReadinessStatus::blocked) {
            return run;
        }
        run.cautions = SurveyColumns::cautions(design);
        if (!run.group.empty()) {
            const auto groups = Categories::cells(dataset, run.group);
            run.groups = estimand.byGroup(*groups, design);
            addWithoutGroup(*groups, run);
        }
        if (SurveyColumns::isMoreThanWeights(design)) {
            run.weightsOnly = estimand.under(SurveyColumns::weightsAlone(design));
        }
        if (run.estimand != WeightedEstimand::total) {
            run.unweighted = estimand.under(SurveyColumns::unweighted(design));
        }
        return run;
    }

    void present(const SurveyRun& run, ScreenContent& content) const override {
        if (run.estimate.readiness.status == AnalysisReadinessStatus::blocked) {
            content.gate = SurveyReport::refusal(run);
            return;
        }
        addReport(SurveyReport::report(run), content);
    }
};

}  // namespace

std::unique_ptr<Analysis> surveyEstimation(StudioState& state, SurveyFields& fields) {
    return std::make_unique<SurveyEstimation>(state, fields, fields.svResult);
}

}  // namespace sorvane
