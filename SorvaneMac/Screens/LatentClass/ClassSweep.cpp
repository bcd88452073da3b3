#include "SorvaneMac/Screens/LatentClass/ClassSweep.h"

#include <algorithm>
#include <utility>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::ClassSweep {

namespace {

constexpr std::string_view heading = "How many classes?";
constexpr std::string_view criteriaTitle = "Information criteria by class count";
constexpr std::string_view advice =
    "Fit several class counts and prefer the lower BIC, not a single convenient K.";
constexpr std::string_view note =
    "★ lowest BIC. Prefer the smallest K within ~2 BIC of the minimum, and confirm the classes are "
    "interpretable. Non-converged rows are omitted.";
constexpr std::string_view caution =
    "Do not choose a class count by the BIC alone; a lower BIC does not show that the classes "
    "exist.";

using Rows = std::vector<LatentSweepRow>;

Rows rowsOfFactorMixtures(const LatentIndicators& indicators,
                          const TaskRunner::Progress& progress) {
    return FactorMixtureModel::sweep(
        indicators.numbers, {.variableNames = indicators.names, .progress = progress},
        LatentClassModel::fewestClasses, LatentClassModel::mostClasses);
}

Rows rowsOf(const LatentIndicators& indicators, const TaskRunner::Progress& progress) {
    return latentSweep(LatentClassModel::fewestClasses, LatentClassModel::mostClasses, progress,
                       [&indicators](std::int64_t k, LatentIndicators::Progress share) {
                           return indicators.fit(k, std::move(share));
                       });
}

Rows convergedOf(const Rows& all) {
    Rows rows;
    std::ranges::copy_if(all, std::back_inserter(rows), &LatentSweepRow::converged);
    return rows;
}

ReportTable table(const Rows& rows, const LatentSweepRow& best) {
    ReportTable table;
    table.title = "Comparison of class counts";
    table.headers = {"Classes", "Log likelihood", "AIC", "BIC", "Entropy", "Lowest BIC"};
    table.boldMask.emplace();
    for (const LatentSweepRow& row : rows) {
        const bool isBest = row.k == best.k;
        table.rows.push_back({ResultText::count(row.k), svFmt(row.logLik, 2), svFmt(row.aic, 2),
                              svFmt(row.bic, 2), svFmt(row.entropy, 3), isBest ? "★" : ""});
        table.boldMask->push_back({false, false, false, isBest, false, false});
    }
    table.note = std::string(note);
    return table;
}

Chart chart(const Rows& rows, const LatentSweepRow& best) {
    LinePlot plot{.marked = static_cast<double>(best.k), .markedName = "lowest BIC"};
    plot.series = {{.name = "BIC"}, {.name = "AIC"}};
    for (const LatentSweepRow& row : rows) {
        for (LinePlot::Series& series : plot.series) {
            series.x.push_back(static_cast<double>(row.k));
        }
        plot.series[0].y.push_back(row.bic);
        plot.series[1].y.push_back(row.aic);
    }
    Chart chart;
    chart.title = std::string(criteriaTitle);
    chart.xLabel = "Classes";
    chart.yLabel = "Criterion";
    chart.plot = std::move(plot);
    return chart;
}

/// The counts that were usable but not converged, or not usable.
std::string leftOut(const Rows& converged) {
    std::vector<std::string> counts;
    for (std::int64_t k = LatentClassModel::fewestClasses; k <= LatentClassModel::mostClasses;
         ++k) {
        if (std::ranges::find(converged, k, &LatentSweepRow::k) == converged.end()) {
            counts.push_back(ResultText::count(k));
        }
    }
    return counts.empty() ? ""
                          : "Left out: " + ResultText::listed(counts) +
                                " classes, whose fit did not converge or was not possible.";
}

std::string sentence(const SweepBasis& basis, const LatentSweepRow& best) {
    return std::string(analysisName(basis.kind)) + " of " + ResultText::listed(basis.items) +
           " was repeated with 2 to 6 classes. Among the fits that converged, the BIC was lowest "
           "with " +
           ResultText::count(best.k) + " classes (BIC = " + svFmt(best.bic, 2) +
           ", entropy = " + svFmtBounded(best.entropy, 2) + ").";
}

ReportItem item(const SweepBasis& basis,
                const LatentSweepRow& best,
                const ReportTable& table,
                const std::string& omitted) {
    ReportItem item;
    item.id = Uuid::fresh();
    item.title = std::string(analysisName(basis.kind)) + ": number of classes";
    item.apaSummary = sentence(basis, best);
    if (!omitted.empty()) {
        item.apaSummary += " " + omitted;
    }
    item.table = table;
    item.caution = std::string(caution);
    return item;
}

}  // namespace

void addControls(SetupForm& form,
                 StudioState& state,
                 LatentClassFields& fields,
                 LatentScreenKind kind) {
    const bool isReady =
        state.hasData() && !LatentIndicators::gate(state.dataset(), fields, modeOf(kind));
    form.controls.emplace_back(HeadingControl{std::string(heading)});
    form.controls.emplace_back(NoteControl{std::string(advice), false});
    form.controls.emplace_back(ButtonControl{
        .label = "Compare 2–6 classes", .isEnabled = isReady, .press = [&state, &fields, kind] {
            run(state, fields, kind);
        }});
}

void run(StudioState& state, LatentClassFields& fields, LatentScreenKind kind) {
    const LatentIndicators indicators = LatentIndicators::of(state.dataset(), fields, modeOf(kind));
    state.compute({.label = "Comparing 2–6 classes…",
                   .work = [&fields, indicators, kind](std::stop_token,
                                                       const TaskRunner::Progress& progress) {
                       const Rows rows = kind == LatentScreenKind::factorMixture
                                             ? rowsOfFactorMixtures(indicators, progress)
                                             : rowsOf(indicators, progress);
                       return [&fields, names = indicators.names, kind, rows] {
                           fields.lcSweepBasis.set(SweepBasis{.kind = kind, .items = names});
                           fields.lcSweepRows.set(rows);
                       };
                   }});
}

void show(const LatentClassFields& fields, LatentScreenKind kind, ScreenContent& content) {
    if (!fields.lcSweepRows.get() || !fields.lcSweepBasis.get() ||
        fields.lcSweepBasis.get()->kind != kind) {
        return;
    }
    const SweepBasis& basis = *fields.lcSweepBasis.get();
    const Rows rows = convergedOf(*fields.lcSweepRows.get());
    Card comparison{
        .title = std::string(heading), .subtitle = ResultText::listed(basis.items), .wide = true};
    Card criteria{.title = std::string(criteriaTitle), .wide = true};
    const std::string omitted = leftOut(rows);
    if (!omitted.empty()) {
        criteria.paragraphs = {omitted};
    }
    if (!rows.empty()) {
        const LatentSweepRow& best = *std::ranges::min_element(rows, {}, &LatentSweepRow::bic);
        comparison.tables = {table(rows, best)};
        criteria.cautions = {std::string(caution)};
        Finding finding{.item = item(basis, best, comparison.tables.front(), omitted)};
        if (rows.size() > 1) {
            criteria.charts = {chart(rows, best)};
            finding.item.figureCaption =
                "Information criteria of the numbers of classes whose fit converged.";
            finding.figure = criteria.charts.front();
        }
        content.findings.push_back(std::move(finding));
        content.cards.push_back(std::move(comparison));
    }
    content.cards.push_back(std::move(criteria));
}

}  // namespace sorvane::ClassSweep
