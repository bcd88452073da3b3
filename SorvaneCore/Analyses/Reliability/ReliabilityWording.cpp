#include "SorvaneCore/Analyses/Reliability/ReliabilityWording.h"

#include <string_view>
#include <utility>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::ReliabilityWording {

namespace {

constexpr std::int64_t fewCases = 30;
constexpr std::size_t fewItems = 3;
constexpr double redundantAlpha = 0.9;

std::string_view band(double alpha) {
    if (alpha < 0.6) {
        return "weak";
    }
    if (alpha < 0.7) {
        return "cautionary";
    }
    if (alpha < 0.8) {
        return "adequate for early or group-level research use";
    }
    return alpha < redundantAlpha ? "strong" : "very high";
}

}  // namespace

std::vector<std::string> warnings(const Facts& facts) {
    std::vector<std::string> lines = {"Reliability evidence does not prove validity."};
    if (!facts.alpha) {
        lines.emplace_back("Cronbach alpha could not be estimated with the prepared item matrix.");
    }
    if (facts.missingDataRule != ReliabilityMissingDataRule::listwiseDeletion) {
        lines.push_back("Missing item responses were handled with " +
                        std::string(rawValue(facts.missingDataRule)) +
                        "; report this rule with the scale score.");
    }
    if (facts.casesUsed < fewCases) {
        lines.emplace_back(
            "Sample size is below 30; treat reliability as unstable and descriptive.");
    }
    if (facts.itemCount < fewItems) {
        lines.emplace_back("Fewer than 3 items gives limited reliability evidence.");
    }
    if (facts.alpha && *facts.alpha >= redundantAlpha) {
        lines.emplace_back("Very high alpha can indicate item redundancy; inspect item content.");
    }
    return lines;
}

std::string interpretation(const Facts& facts) {
    if (!facts.alpha) {
        return "Reliability could not be estimated with the available data.";
    }
    std::string text = "Cronbach's alpha is " + NumberText::fixed(*facts.alpha, 3) + ", which is " +
                       std::string(band(*facts.alpha)) +
                       " internal consistency evidence for these " +
                       NumberText::integer(static_cast<std::int64_t>(facts.itemCount)) + " items.";
    if (facts.casesUsed < fewCases) {
        text +=
            " Because the sample is small, this should be reported as unstable descriptive "
            "evidence.";
    }
    return text + " This does not establish that the construct is valid.";
}

std::string recommendedAction(const Facts& facts) {
    if (!facts.alpha) {
        return "Check missing data, item coding, and item eligibility before reporting "
               "reliability.";
    }
    if (facts.itemCount < fewItems) {
        return "Add or review items before treating this as a stable scale.";
    }
    if (*facts.alpha < 0.6) {
        return "Do not use this as a scale score without revision.";
    }
    if (*facts.alpha < 0.7) {
        return "Use only for descriptive or exploratory work and document the limitation.";
    }
    if (*facts.alpha < redundantAlpha) {
        return "Report with item-total diagnostics and validity limitations.";
    }
    return "Inspect item redundancy and consider whether items are too similar.";
}

AnalysisReadiness readiness(const Facts& facts) {
    std::vector<AnalysisReadinessIssue> issues;
    const auto blocked = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::blocked(std::move(message)));
    };
    const auto caution = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
    };
    if (facts.itemCount < 2) {
        blocked("Cronbach alpha needs at least two item columns.");
    }
    if (facts.inputRows == 0) {
        blocked("No rows are available for reliability analysis.");
    }
    if (facts.casesUsed < 2) {
        blocked("Fewer than two complete or prepared cases are available.");
    } else if (facts.casesUsed < fewCases) {
        caution("Cases used is below 30; treat alpha as unstable descriptive evidence.");
    }
    if (facts.missingDataRule != ReliabilityMissingDataRule::listwiseDeletion) {
        caution("Missing item responses are imputed from available item means; report this rule.");
    }
    return AnalysisReadiness::of("at least two items and at least two usable cases",
                                 facts.inputRows, facts.casesUsed, std::move(issues));
}

}  // namespace sorvane::ReliabilityWording
