#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/LatentClass/ClassSweep.h"
#include "SorvaneMac/Screens/LatentClass/LatentClassAnalyses.h"
#include "SorvaneMac/Screens/LatentClass/LatentIndicators.h"
#include "SorvaneMac/Screens/LatentClass/MixtureControls.h"
#include "SorvaneMac/Screens/LatentClass/MixtureReport.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr std::string_view profileNote = "Listwise deletion. Class-specific diagonal variances.";
constexpr std::string_view classNote =
    "Listwise deletion. Within a class the indicators are taken to be unrelated.";
constexpr std::string_view caution =
    "The classes are groupings that the model found, not types known to exist. Compare several "
    "class counts, and do not treat the most likely class as a fact about a case.";

Gate couldNotFit(const MixtureRun& run) {
    return {
        .title = std::string(MixtureReport::title(run.mode)) + " could not be estimated",
        .lead = ResultText::count(run.classCount) + " classes of " + ResultText::listed(run.items),
        .text = run.result ? ResultText::obstacle(run.result->readiness)
                           : "It needs two or more indicators and 2 to 6 classes. Choose again "
                             "in the Setup panel."};
}

std::vector<Tile> tiles(const LatentClassResult& result) {
    return {{"Classes", ResultText::count(result.classCount),
             result.converged ? "converged" : "not converged"},
            {"BIC", svFmt(result.bic, 2), "AIC " + svFmt(result.aic, 2)},
            {"Entropy", svFmtBounded(result.entropy, 2), "1 is certain of every case"},
            {"Cases used", ResultText::count(result.n), "complete on all indicators"}};
}

class LatentMixture final : public BackgroundAnalysis<LatentClassFields, MixtureRun> {
public:
    LatentMixture(StudioState& state,
                  LatentClassFields& fields,
                  Field<std::optional<MixtureRun>>& stored,
                  LatentScreenKind kind)
        : BackgroundAnalysis(state, fields, stored), kind_(kind), mode_(modeOf(kind)) {}

    std::string heading() const override { return std::string(analysisName(kind_)); }

    std::string subtitle() const override {
        return isProfile() ? "Groups of cases with different means on numeric indicators. " +
                                 std::string(profileNote)
                           : "Groups of cases with different answer probabilities on categorical "
                             "indicators.";
    }

    void addControls(SetupForm& form) override {
        MixtureControls::add(form, state_.dataset(), fields_, mode_);
    }

    void addFurtherControls(SetupForm& form) override {
        ClassSweep::addControls(form, state_, fields_, kind_);
    }

    std::string runLabel() const override {
        return isProfile() ? "Run latent profiles" : "Run latent classes";
    }

    std::optional<Gate> gate() const override {
        if (auto missing = LatentIndicators::gate(state_.dataset(), fields_, mode_)) {
            return missing;
        }
        return LatentIndicators::tooFewCases(state_.dataset(), fields_, mode_);
    }

    std::string selection() const override {
        return ResultText::count(fields_.lcClassCount.get()) + " classes of " +
               ResultText::listed(LatentIndicators::chosen(state_.dataset(), fields_, mode_));
    }

    void showFurther(ScreenContent& content) const override {
        ClassSweep::show(fields_, kind_, content);
    }

    Guide guide() const override { return MixtureControls::guide(); }

private:
    bool isProfile() const { return mode_ == LatentMixtureMode::profile; }
    std::string computingLabel() const override {
        return isProfile() ? "Fitting latent profiles…" : "Fitting latent classes…";
    }
    std::string statusLine() const override { return "The classes are being fitted."; }

    Compute computation() const override {
        return [indicators = LatentIndicators::of(state_.dataset(), fields_, mode_),
                count = fields_.lcClassCount.get()](const TaskRunner::Progress& progress) {
            return MixtureRun{.mode = indicators.mode,
                              .items = indicators.names,
                              .classCount = count,
                              .result = indicators.fit(count, progress)};
        };
    }

    void present(const MixtureRun& run, ScreenContent& content) const override {
        if (!run.result || run.result->profiles.empty()) {
            content.gate = couldNotFit(run);
            return;
        }
        addReport({.title = std::string(MixtureReport::title(run.mode)),
                   .sentence = MixtureReport::sentence(*run.result),
                   .tiles = tiles(*run.result),
                   .tables = MixtureReport::tables(*run.result),
                   .note = std::string(isProfile() ? profileNote : classNote),
                   .charts = {MixtureReport::profilePlot(*run.result)},
                   .figureCaption = "Profile plot of " + ResultText::count(run.classCount) +
                                    " classes on " + ResultText::listed(run.items) + ".",
                   .caution = std::string(caution),
                   .warnings = ResultText::messages(run.result->readiness)},
                  content);
    }

    LatentScreenKind kind_;
    LatentMixtureMode mode_;
};

}  // namespace

std::unique_ptr<Analysis> LatentClassAnalyses::latentMixture(StudioState& state,
                                                             LatentClassFields& fields,
                                                             LatentScreenKind kind) {
    return std::make_unique<LatentMixture>(
        state, fields, kind == LatentScreenKind::profile ? fields.lcResult : fields.lcClassesResult,
        kind);
}

}  // namespace sorvane
