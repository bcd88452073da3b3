#include "SorvaneMac/Screens/AssumptionChecks.h"

#include <algorithm>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Project/JsonQuoting.h"
#include "SorvaneMac/Report/ReportNumbers.h"

namespace sorvane::AssumptionChecks {

namespace {

EvidenceTone toneOf(AssumptionSeverity severity) {
    switch (severity) {
        case AssumptionSeverity::pass:
            return EvidenceTone::met;
        case AssumptionSeverity::caution:
            return EvidenceTone::caution;
        case AssumptionSeverity::violation:
            return EvidenceTone::violated;
    }
    return EvidenceTone::unavailable;
}

std::string titleOf(const AssumptionFinding& finding) {
    std::string text = finding.check + ": " + finding.target + ", " + finding.statisticLabel +
                       " = " + svFmt(finding.statistic, 3);
    if (finding.pValue) {
        const std::string p = NumberText::pValue(*finding.pValue);
        text += p.starts_with("<") ? ", p " + p : ", p = " + p;
    }
    return text;
}

EvidenceLine lineOf(const AssumptionFinding& finding) {
    EvidenceLine line{
        .tone = toneOf(finding.severity), .title = titleOf(finding), .detail = finding.explanation};
    for (const AssumptionRemedy& remedy : finding.remedies) {
        line.remedies.push_back({.label = remedy.title, .text = remedy.detail});
    }
    return line;
}

}  // namespace

Card card(const std::vector<AssumptionFinding>& findings) {
    Card card{.title = "Assumption checks",
              .subtitle = "Whether what the test takes for granted looks met",
              .wide = true};
    for (const AssumptionFinding& finding : findings) {
        card.evidence.push_back(lineOf(finding));
    }
    if (findings.empty()) {
        card.paragraphs = {"No check could be made on this selection."};
    }
    return card;
}

ScreenLink rankTestLink(const std::string& test,
                        const std::string& outcome,
                        const std::string& grouping) {
    return {.label = "Go to the rank-based test",
            .screen = StudioScreen::nonparametric,
            .settings = {{"npTest", jsonString(test)},
                         {"npOutcome", jsonString(outcome)},
                         {"npGroup", jsonString(grouping)}}};
}

bool hints(const std::vector<AssumptionFinding>& findings, std::string_view procedure) {
    return std::any_of(findings.begin(), findings.end(), [&](const AssumptionFinding& finding) {
        return std::any_of(
            finding.remedies.begin(), finding.remedies.end(),
            [&](const AssumptionRemedy& remedy) { return remedy.procedureHint == procedure; });
    });
}

}  // namespace sorvane::AssumptionChecks
