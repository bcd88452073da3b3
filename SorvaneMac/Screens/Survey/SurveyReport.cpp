#include "SorvaneMac/Screens/Survey/SurveyReport.h"

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SurveyCautions.h"
#include "SorvaneMac/Screens/Survey/SurveyCells.h"
#include "SorvaneMac/Screens/Survey/SurveyDesignTable.h"

namespace sorvane::SurveyReport {

namespace {

using namespace SurveyCells;  // NOLINT(google-build-using-namespace)

constexpr std::size_t groupsInSentence = 6;

std::string subject(const SurveyRun& run) {
    return run.variable + (run.denominator.empty() ? "" : " / " + run.denominator);
}

std::string nameOfMethod(const SurveyRun& run) {
    return std::string(SurveyDesignTable::methodName(run.design, run.estimate.varianceMethod));
}

std::string methodWords(const SurveyRun& run) {
    return SurveyDesignTable::methodWords(run.design, run.estimate.varianceMethod);
}

ReportTable estimateTable(const SurveyRun& run) {
    ReportTable table;
    table.title = std::string(capitalWord(run.estimand)) + " of " + subject(run) +
                  (run.group.empty() ? "" : " by " + run.group);
    addHeaders(table, run.group.empty() ? "Population" : run.group, run.estimate.confidenceLevel);
    for (const DomainEstimate& each : run.groups) {
        table.rows.push_back(cells(each.estimate));
        table.rows.back().insert(table.rows.back().begin(), each.group);
    }
    table.rows.push_back(cells(run.estimate));
    table.rows.back().insert(table.rows.back().begin(), "All");
    return table;
}

/// The estimate again with less and less of the design.
ReportTable comparisonTable(const SurveyRun& run) {
    ReportTable table;
    table.title = "What the design changes";
    addHeaders(table, "Variance", run.estimate.confidenceLevel);
    const auto add = [&table](std::string label, const WeightedEstimate& estimate) {
        table.rows.push_back(cells(estimate));
        table.rows.back().insert(table.rows.back().begin(), std::move(label));
    };
    add(nameOfMethod(run), run.estimate);
    if (run.weightsOnly) {
        add(std::string(methodName(run.weightsOnly->varianceMethod)), *run.weightsOnly);
    }
    if (run.unweighted) {
        add("Unweighted", *run.unweighted);
    }
    return table;
}

ReportTable designTable(const SurveyRun& run) {
    return SurveyDesignTable::table(run.design,
                                    {.sumOfWeights = run.estimate.sumOfWeights,
                                     .stratumCount = run.design.stratumCount,
                                     .psuCount = run.design.psuCount,
                                     .degreesOfFreedom = run.estimate.designDegreesOfFreedom,
                                     .effectiveSampleSize = run.estimate.effectiveSampleSize,
                                     .method = run.estimate.varianceMethod});
}

std::string groupSentence(const SurveyRun& run) {
    if (run.groups.empty() || run.groups.size() > groupsInSentence) {
        return "";
    }
    std::vector<std::string> parts;
    for (const DomainEstimate& each : run.groups) {
        parts.push_back(each.group + ": " +
                        (isBlocked(each.estimate) ? std::string("not estimable")
                                                  : figure(each.estimate, each.estimate.estimate) +
                                                        " " + interval(each.estimate)));
    }
    std::string text = " By " + run.group + ", it was";
    for (std::size_t i = 0; i < parts.size(); ++i) {
        text += (i == 0 ? " " : "; ") + parts[i];
    }
    return text + ".";
}

std::string sentence(const SurveyRun& run) {
    const WeightedEstimate& estimate = run.estimate;
    return "The " + std::string(word(run.estimand)) + " of " + subject(run) +
           " was estimated with sampling weights (" + run.design.weight + "; " + methodWords(run) +
           ") as " + figure(estimate, estimate.estimate) + ", SE = " + errorFigure(estimate) +
           ", " + levelText(estimate.confidenceLevel) + " " + interval(estimate) +
           ", design df = " + ResultText::count(estimate.designDegreesOfFreedom) +
           ", n = " + ResultText::count(estimate.validN) +
           ", design effect = " + svFmt(estimate.designEffect, 2) + "." + groupSentence(run);
}

std::vector<Tile> tiles(const SurveyRun& run) {
    const WeightedEstimate& estimate = run.estimate;
    return {
        {std::string(capitalWord(run.estimand)), figure(estimate, estimate.estimate), subject(run)},
        {"SE", errorFigure(estimate), nameOfMethod(run)},
        {levelText(estimate.confidenceLevel),
         figure(estimate, estimate.confidenceIntervalLower) + " to " +
             figure(estimate, estimate.confidenceIntervalUpper),
         "t with " + ResultText::count(estimate.designDegreesOfFreedom) + " df"},
        {"Design effect", svFmt(estimate.designEffect, 2),
         "variance against simple random sampling"},
        {"Cases used", ResultText::count(estimate.validN),
         "worth " + svFmt(estimate.effectiveSampleSize, 0) + " of equal weight"}};
}

Chart chart(const SurveyRun& run) {
    IntervalPlot plot;
    const auto add = [&plot](std::string label, const WeightedEstimate& estimate) {
        if (!isBlocked(estimate)) {
            plot.rows.push_back({std::move(label), estimate.estimate,
                                 estimate.confidenceIntervalLower,
                                 estimate.confidenceIntervalUpper});
        }
    };
    for (const DomainEstimate& each : run.groups) {
        add(each.group, each.estimate);
    }
    add(run.groups.empty() ? nameOfMethod(run) : "All", run.estimate);
    if (run.groups.empty()) {
        if (run.weightsOnly) {
            add(std::string(methodName(run.weightsOnly->varianceMethod)), *run.weightsOnly);
        }
        if (run.unweighted) {
            add("Unweighted", *run.unweighted);
        }
    }
    Chart chart;
    chart.title = run.groups.empty() ? "Estimate and interval" : "Estimates and intervals";
    chart.subtitle = levelText(run.estimate.confidenceLevel) +
                     (run.groups.empty() ? ", with and without the design" : ", by " + run.group);
    chart.xLabel = std::string(capitalWord(run.estimand)) + " of " + subject(run);
    chart.plot = std::move(plot);
    return chart;
}

std::string note(const SurveyRun& run) {
    std::string text =
        "CI = confidence interval of the estimate, from t on the design's degrees "
        "of freedom. The design effect is the variance as a multiple of that under "
        "simple random sampling with the same weights.";
    if (!run.groups.empty()) {
        text += " Subgroups keep the strata and PSUs of the whole sample.";
    }
    return text;
}

}  // namespace

TestReport report(const SurveyRun& run) {
    TestReport report{.title = "Survey Estimate: " + std::string(word(run.estimand)) + " of " +
                               subject(run) + (run.group.empty() ? "" : " by " + run.group),
                      .sentence = sentence(run),
                      .tiles = tiles(run),
                      .tables = {estimateTable(run)},
                      .note = note(run),
                      .charts = {chart(run)},
                      .figureCaption = std::string(capitalWord(run.estimand)) + " of " +
                                       subject(run) + " with " +
                                       levelText(run.estimate.confidenceLevel) + ".",
                      .caution = std::string(SurveyCautions::notToClaim),
                      .warnings = SurveyCautions::warnings(run)};
    if (run.weightsOnly || run.unweighted) {
        report.tables.push_back(comparisonTable(run));
    }
    report.tables.push_back(designTable(run));
    return report;
}

Gate refusal(const SurveyRun& run) {
    std::string text;
    for (const AnalysisReadinessIssue& issue : run.estimate.readiness.issues) {
        text += (text.empty() ? "" : " ") + issue.message;
    }
    return {.title = "The estimate could not be made",
            .lead = std::string(word(run.estimand)) + " of " + subject(run) + " under " +
                    run.design.weight,
            .text = std::move(text)};
}

}  // namespace sorvane::SurveyReport
