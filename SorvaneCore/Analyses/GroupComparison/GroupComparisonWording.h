#pragma once

#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonRecords.h"
#include "SorvaneCore/Analyses/GroupComparison/GroupFacts.h"

/// Every sentence of a group comparison.
namespace sorvane::GroupComparisonWording {

AnalysisReadiness readiness(const GroupFacts& facts);
/// "Ready", "Ready with cautions" or "Blocked".
std::string readinessSummary(AnalysisReadinessStatus status);

/// What the warnings and the reasons depend on beside the facts of the groups.
struct Findings {
    /// The name of the test that flagged unequal variances; empty when none did.
    std::string flaggingTest{};
    bool isOrdinalOrSkewed = false;
};
std::vector<AssumptionWarning> warnings(const GroupFacts& facts, const Findings& findings);

/// "A and B differ after Tukey HSD adjustment." for the method of the pair.
std::string pairInterpretation(const PairwiseComparisonResult& pair, bool differs);

/// The size of an effect in words, by eta squared or what stands for it.
std::string effectInterpretation(double referenceEffect);
/// How the effect sizes that are present were computed.
std::vector<std::string> effectSizeMethods(const EffectSizeResult& effects);

/// The sentences on a result whose other fields are filled.
GroupComparisonInterpretation interpretation(const GroupComparisonAnalysisResult& result,
                                             const GroupFacts& facts,
                                             const Findings& findings);

}  // namespace sorvane::GroupComparisonWording
