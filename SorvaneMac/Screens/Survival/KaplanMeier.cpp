#include <algorithm>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/Survival/SurvivalAnalyses.h"
#include "SorvaneMac/Screens/Survival/SurvivalCurves.h"
#include "SorvaneMac/Screens/Survival/SurvivalSelection.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

using VariableLists::anovaGroupingVariables;

constexpr std::string_view method =
    "Nonparametric survival curves with optional strata. Event coding: 0 = censored, nonzero = "
    "event.";
constexpr std::string_view note =
    "Event coding: 0 = censored, nonzero = event. Median is the smallest time at which S(t) ≤ "
    ".50.";
constexpr std::string_view caution =
    "Nonparametric survival estimate; does not adjust for covariates.";
constexpr std::size_t mostPoints = 40;

Gate strataAreTaken(const std::string& name) {
    return {.title = "The strata are the time or the event",
            .lead = name,
            .text = "Set other strata in the Setup panel, or one curve for all cases."};
}

Guide guideOfCurves() {
    return {.answers =
                "How long it takes until an event happens when some cases were not followed to "
                "it: the share still without the event over time, for all cases or by stratum.",
            .needs =
                "The time of each case from one well-defined start, not negative, and whether the "
                "event was seen (0 = censored). A case must be censored for reasons that have "
                "nothing to do with its risk.",
            .doNotClaim = {
                "Do not read the curve beyond the last observed time, nor its tail where few cases "
                "are left.",
                "Do not call curves different by looking at them; no log-rank test is made here.",
                "Do not treat a rating scale or a score as a time to event."}};
}

std::string medianText(const KaplanMeierStratum& stratum) {
    return stratum.median ? NumberText::derivedValue(*stratum.median) : "--";
}

ReportTable stratumTable(const KaplanMeierResult& result) {
    ReportTable table;
    table.title = "Kaplan–Meier Survival by Stratum";
    table.headers = {"Stratum", "n", "Events", "Censored", "Median"};
    for (const KaplanMeierStratum& each : result.strata) {
        table.rows.push_back({each.name, ResultText::count(each.n), ResultText::count(each.events),
                              ResultText::count(each.n - each.events), medianText(each)});
    }
    return table;
}

/// Input      `group`: empty for one curve
ReportTable pointTable(const KaplanMeierStratum& stratum, const std::string& group) {
    ReportTable table;
    table.title = "Kaplan–Meier Estimates of Survival" +
                  (group.empty() ? "" : ": " + group + " = " + stratum.name);
    table.headers = {"Time", "At risk", "Events", "S(t)"};
    const std::size_t shown = std::min(stratum.points.size(), mostPoints);
    for (std::size_t at = 0; at < shown; ++at) {
        const KaplanMeierPoint& point = stratum.points[at];
        table.rows.push_back({NumberText::derivedValue(point.time),
                              ResultText::count(point.nAtRisk), ResultText::count(point.events),
                              svFmtBounded(point.survival, 3)});
    }
    if (stratum.points.empty()) {
        table.rows = {{"0", ResultText::count(stratum.n), "0", svFmtBounded(1.0, 3)}};
    }
    if (shown < stratum.points.size()) {
        table.note = "Showing first 40 of " +
                     ResultText::count(static_cast<std::int64_t>(stratum.points.size())) + ".";
    }
    return table;
}

/// The strata, where there are some, then the points of each curve.
std::vector<ReportTable> tables(const KaplanMeierRun& run) {
    std::vector<ReportTable> tables;
    if (!run.group.empty()) {
        tables.push_back(stratumTable(*run.result));
    }
    for (const KaplanMeierStratum& each : run.result->strata) {
        tables.push_back(pointTable(each, run.group));
    }
    return tables;
}

std::string medianWords(const KaplanMeierStratum& stratum) {
    return stratum.median ? "median survival time " + medianText(stratum)
                          : "median survival time not reached";
}

std::string sentence(const KaplanMeierRun& run) {
    std::string text = "Kaplan–Meier survival for " + run.time + ", with " + run.event +
                       " as the event" + (run.group.empty() ? "" : ", by " + run.group + ".");
    for (const KaplanMeierStratum& each : run.result->strata) {
        text += (run.group.empty() ? ": " : " " + run.group + " = " + each.name + ": ") +
                SurvivalSelection::counts(each.n, each.events) + ", " + medianWords(each) + ".";
    }
    return text;
}

std::vector<Tile> tiles(const KaplanMeierRun& run) {
    const std::vector<KaplanMeierStratum>& strata = run.result->strata;
    std::int64_t cases = 0;
    std::int64_t events = 0;
    for (const KaplanMeierStratum& each : strata) {
        cases += each.n;
        events += each.events;
    }
    const Tile last =
        run.group.empty()
            ? Tile{"Median", medianText(strata.front()),
                   strata.front().median ? run.time : "the curve stays above .50"}
            : Tile{"Strata", ResultText::count(static_cast<std::int64_t>(strata.size())),
                   run.group};
    return {{"Cases used", ResultText::count(cases), "with time and event"},
            {"Events", ResultText::count(events), run.event + " not 0"},
            {"Censored", ResultText::count(cases - events),
             DatasetText::share(cases - events, cases) + " of the cases"},
            last};
}

/// All that the computation takes, so that it can run away from the window.
struct Input {
    KaplanMeierRun run;
    NumericColumn time;
    NumericColumn event;
    /// Null for one curve.
    std::shared_ptr<const TextColumn> group;
};

KaplanMeierRun computed(const Input& input) {
    KaplanMeierRun run = input.run;
    run.result = SurvivalAnalysis::kaplanMeier(input.time, input.event, input.group.get());
    if (run.result) {
        const std::vector<SurvivalCurves::FollowUp> cases = SurvivalCurves::followUps(
            input.time, input.event, input.group.get(), run.result->strata);
        run.curves = SurvivalCurves::chart(run, cases);
        run.atRisk = SurvivalCurves::atRisk(run.time, cases);
    }
    return run;
}

class KaplanMeier final : public BackgroundAnalysis<SurvivalFields, KaplanMeierRun> {
public:
    using BackgroundAnalysis::BackgroundAnalysis;

    std::string subtitle() const override {
        return "Time to an event, with cases that were not followed up to it.";
    }

    void addControls(SetupForm& form) override {
        const ImportedDataset& dataset = state_.dataset();
        SurvivalSelection::addControls(form, dataset, fields_, method);
        form.controls.emplace_back(FormControls::optionalVariablePicker(
            "Strata", fields_.survGroup,
            VariableLists::without(anovaGroupingVariables(dataset),
                                   {fields_.survTime->name, fields_.survEvent->name}),
            "One curve for all cases"));
    }

    std::string runLabel() const override { return "Estimate Kaplan–Meier"; }

    std::optional<Gate> gate() const override {
        const ImportedDataset& dataset = state_.dataset();
        if (std::optional<Gate> missing = SurvivalSelection::gate(dataset, fields_)) {
            return missing;
        }
        const VariableName& group = fields_.survGroup.get();
        if (!group.isBlank() &&
            (group == fields_.survTime.get() || group == fields_.survEvent.get())) {
            return strataAreTaken(group.name);
        }
        return SelectionGates::goneColumn(fields_.survGroup, anovaGroupingVariables(dataset),
                                          "grouping columns");
    }

    std::string selection() const override {
        return SurvivalSelection::words(fields_.survTime->name, fields_.survEvent->name) +
               (fields_.survGroup->isBlank() ? "" : " by " + fields_.survGroup->name);
    }

    Guide guide() const override { return guideOfCurves(); }

private:
    std::string computingLabel() const override { return "Estimating Kaplan–Meier…"; }
    std::string statusLine() const override { return "Survival estimation is running."; }

    Compute computation() const override {
        const ImportedDataset& dataset = state_.dataset();
        Input input{.run = {.time = fields_.survTime->name,
                            .event = fields_.survEvent->name,
                            .group = fields_.survGroup->name},
                    .time = dataset.numericColumn(fields_.survTime->name),
                    .event = dataset.numericColumn(fields_.survEvent->name)};
        if (!input.run.group.empty()) {
            input.group = Categories::cells(dataset, input.run.group);
        }
        return [input = std::move(input)](const TaskRunner::Progress&) {
            return computed(input);
        };
    }

    void present(const KaplanMeierRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = SurvivalSelection::noResult(run.time, run.event);
            return;
        }
        addReport({.title = "Kaplan–Meier Survival: " + run.time +
                            (run.group.empty() ? "" : " by " + run.group),
                   .sentence = sentence(run),
                   .tiles = tiles(run),
                   .tables = tables(run),
                   .note = std::string(note),
                   .charts = {run.curves},
                   .chartTable = run.atRisk,
                   .figureCaption = "Kaplan–Meier curves of " + run.time +
                                    (run.group.empty() ? "" : " by " + run.group) +
                                    "; strokes mark censored cases.",
                   .checks = SurvivalSelection::passedChecks(run.result->readiness),
                   .caution = std::string(caution),
                   .warnings = ResultText::messages(run.result->readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> SurvivalAnalyses::kaplanMeier(StudioState& state,
                                                        SurvivalFields& fields) {
    return std::make_unique<KaplanMeier>(state, fields, fields.survKMResult);
}

}  // namespace sorvane
