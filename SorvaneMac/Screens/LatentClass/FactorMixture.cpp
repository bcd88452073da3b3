#include "SorvaneCore/Models/FactorMixtureWording.h"
#include "SorvaneMac/Screens/LatentClass/ClassSweep.h"
#include "SorvaneMac/Screens/LatentClass/FactorMixtureReport.h"
#include "SorvaneMac/Screens/LatentClass/LatentClassAnalyses.h"
#include "SorvaneMac/Screens/LatentClass/LatentIndicators.h"
#include "SorvaneMac/Screens/LatentClass/MixtureControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr LatentScreenKind kind = LatentScreenKind::factorMixture;
constexpr std::string_view note =
    "Listwise deletion. Loadings and residual variances are the same in all classes; the factor "
    "has variance 1 within a class.";

class FactorMixture final : public BackgroundAnalysis<LatentClassFields, FactorMixtureResult> {
public:
    using BackgroundAnalysis::BackgroundAnalysis;

    std::string heading() const override { return std::string(analysisName(kind)); }

    std::string subtitle() const override {
        return "Groups of cases that differ in their level on numeric indicators, which one common "
               "factor relates within every group.";
    }

    void addControls(SetupForm& form) override {
        MixtureControls::add(form, state_.dataset(), fields_, modeOf(kind));
    }

    void addFurtherControls(SetupForm& form) override {
        ClassSweep::addControls(form, state_, fields_, kind);
    }

    std::string runLabel() const override { return "Run factor mixture"; }

    std::optional<Gate> gate() const override {
        return LatentIndicators::gate(state_.dataset(), fields_, modeOf(kind));
    }

    std::string selection() const override {
        return ResultText::count(fields_.lcClassCount.get()) + " classes of " +
               ResultText::listed(
                   LatentIndicators::chosen(state_.dataset(), fields_, modeOf(kind)));
    }

    void showFurther(ScreenContent& content) const override {
        ClassSweep::show(fields_, kind, content);
    }

    Guide guide() const override {
        Guide guide = MixtureControls::guide();
        guide.needs =
            "Three numeric indicators or more of one factor, and some hundreds of cases, so that "
            "no class is left with a handful. Within a class one factor with the same loadings in "
            "all classes is taken to relate the indicators.";
        guide.doNotClaim = FactorMixtureWording::cautions();
        return guide;
    }

private:
    std::string computingLabel() const override { return "Fitting factor mixture…"; }
    std::string statusLine() const override { return "The classes are being fitted."; }

    Compute computation() const override {
        return [indicators = LatentIndicators::of(state_.dataset(), fields_, modeOf(kind)),
                count = fields_.lcClassCount.get()](const TaskRunner::Progress& progress) {
            return FactorMixtureModel::fit(indicators.numbers, {.variableNames = indicators.names,
                                                                .classCount = count,
                                                                .progress = progress})
                .value_or(
                    FactorMixtureResult{.classCount = count, .variableNames = indicators.names});
        };
    }

    /// Those of the field, unless they were set to another number of names.
    const std::vector<std::string>& names(const FactorMixtureResult& result) const {
        const std::vector<std::string>& shown = fields_.fmDisplayNames.get();
        return shown.size() == result.variableNames.size() ? shown : result.variableNames;
    }

    void present(const FactorMixtureResult& result, ScreenContent& content) const override {
        if (result.classes.empty()) {
            content.gate = {.title = "Factor mixture analysis could not be estimated",
                            .lead = ResultText::count(result.classCount) + " classes of " +
                                    ResultText::listed(names(result)),
                            .text = ResultText::obstacle(result.readiness)};
            return;
        }
        addReport({.title = std::string(analysisName(kind)),
                   .sentence = FactorMixtureReport::sentence(result),
                   .tiles = FactorMixtureReport::tiles(result),
                   .tables = FactorMixtureReport::tables(result, names(result)),
                   .note = std::string(note),
                   .charts = {FactorMixtureReport::interceptPlot(result, names(result))},
                   .figureCaption = "Means of " + ResultText::count(result.classCount) +
                                    " classes on " + ResultText::listed(names(result)) + ".",
                   .caution = ResultText::running(FactorMixtureWording::cautions()),
                   .warnings = ResultText::messages(result.readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> LatentClassAnalyses::factorMixture(StudioState& state,
                                                             LatentClassFields& fields) {
    return std::make_unique<FactorMixture>(state, fields, fields.fmResult);
}

}  // namespace sorvane
