#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelAnalyses.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelGates.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelGuide.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelNotes.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelReport.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelSelection.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelWords.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr std::string_view intro =
    "Nested, crossed, growth, and within-cluster AR lag linear mixed models. Estimates match R "
    "lme4 on the nested and crossed validation suite.";
constexpr std::string_view nothingFound = "No sample-size or singularity warnings for this setup.";

std::optional<Card> passedChecks(const std::vector<std::string>& warnings) {
    if (!warnings.empty()) {
        return std::nullopt;
    }
    return Card{.title = "Sample and singularity checks",
                .evidence = {{.tone = EvidenceTone::met, .title = std::string(nothingFound)}},
                .wide = true};
}

class MixedModel final : public BackgroundAnalysis<MultilevelFields, MultilevelRun> {
public:
    MixedModel(StudioState& state, MultilevelFields& fields, MultilevelFamily family)
        : BackgroundAnalysis(state, fields, fields.mlResult), family_(family) {}

    std::string heading() const override { return std::string(MultilevelGuide::heading); }
    std::string subtitle() const override { return std::string(intro); }

    void addControls(SetupForm& form) override {
        MultilevelSelection::addVariables(form, state_.dataset(), fields_);
        if (family_ == MultilevelFamily::gaussian) {
            form.controls.emplace_back(HeadingControl{"ESTIMATION"});
            form.controls.emplace_back(
                FormControls::enumerationPicker("Estimator", fields_.mlEstimator));
            form.controls.emplace_back(
                FormControls::enumerationPicker("p values from", fields_.mlDFMethod));
        }
    }

    std::string runLabel() const override { return std::string(MultilevelGuide::runLabel); }

    std::optional<Gate> gate() const override {
        return MultilevelGates::gate(state_.dataset(), fields_);
    }

    std::string selection() const override {
        const MultilevelChoice choice = MultilevelSelection::choice(state_.dataset(), fields_);
        const std::string groups =
            choice.cluster2.empty() ? choice.cluster : choice.cluster + " and " + choice.cluster2;
        return choice.outcome + " in " + groups +
               (choice.predictors.empty() ? "" : " on " + ResultText::listed(choice.predictors));
    }

    std::string invitation() const override { return std::string(MultilevelGuide::hint); }
    Guide guide() const override { return MultilevelGuide::guide(); }

private:
    std::string computingLabel() const override {
        switch (family_) {
            case MultilevelFamily::binomial:
                return "Fitting logistic multilevel…";
            case MultilevelFamily::poisson:
                return "Fitting Poisson multilevel…";
            default:
                return "Fitting multilevel model…";
        }
    }
    std::string statusLine() const override { return "Estimating the model…"; }

    Compute computation() const override {
        MultilevelSelection::selectSlope(state_.dataset(), fields_);
        return [columns = MultilevelSelection::columns(state_.dataset(), fields_)](
                   const TaskRunner::Progress&) {
            return columns.fitted();
        };
    }

    void present(const MultilevelRun& run, ScreenContent& content) const override {
        if (!run.result || run.result->varianceComponents.empty()) {
            content.gate = MultilevelWords::couldNotFit(run);
            return;
        }
        TestReport report{.title = MultilevelWords::title(run.choice),
                          .sentence = MultilevelWords::sentence(run),
                          .tiles = MultilevelReport::tiles(run),
                          .tables = MultilevelReport::tables(run),
                          .note = MultilevelNotes::fixed(run),
                          .charts = run.charts,
                          .figureCaption = MultilevelWords::figureCaption(run),
                          .caution = MultilevelWords::caution(run),
                          .warnings = MultilevelWords::warnings(run)};
        report.checks = passedChecks(report.warnings);
        const std::optional<std::string> onPValues = MultilevelWords::onPValues(run);
        if (onPValues) {
            report.passage = Passage{"About these p values", *onPValues};
        }
        addReport(std::move(report), content);
        if (onPValues) {
            *content.findings.back().item.table->note += " " + *onPValues;
        }
    }

    MultilevelFamily family_;
};

}  // namespace

std::unique_ptr<Analysis> MultilevelAnalyses::mixedModel(StudioState& state,
                                                         MultilevelFields& fields,
                                                         MultilevelFamily family) {
    return std::make_unique<MixedModel>(state, fields, family);
}

}  // namespace sorvane
