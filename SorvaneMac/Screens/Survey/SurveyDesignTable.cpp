#include "SorvaneMac/Screens/Survey/SurveyDesignTable.h"

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SurveyCells.h"

namespace sorvane::SurveyDesignTable {

std::string methodWords(const SurveyDesignUsed& design, DesignVarianceMethod method) {
    if (method == DesignVarianceMethod::naiveWeighted) {
        return "naive variance from the weights alone";
    }
    if (method != DesignVarianceMethod::replicateWeights) {
        return std::string(SurveyCells::methodName(method));
    }
    std::string words = ResultText::count(design.replicateCount) + " replicate weights, " +
                        std::string(displayName(design.replicateType));
    if (design.replicateType == ReplicateType::fayBRR) {
        words += " with factor " + NumberText::clean(design.fayRho);
    }
    return words;
}

ReportTable table(const SurveyDesignUsed& design, const Figures& figures) {
    const auto orNone = [](const std::string& name) {
        return name.empty() ? "none" : name;
    };
    ReportTable table;
    table.title = "Sampling design";
    table.headers = {"Part", "As used"};
    table.rows = {
        {"Weight", design.weight + ", sum " + svFmt(figures.sumOfWeights, 1)},
        {"Strata", design.strata.empty()
                       ? "none"
                       : design.strata + " (" + ResultText::count(design.stratumCount) + ")"},
        {"PSUs", (design.clusters.empty() ? "each case" : design.clusters) + " (" +
                     ResultText::count(design.psuCount) + ")"},
        {"Finite population correction", orNone(design.fpc)},
        {"Variance", methodWords(design, figures.method)},
        {"Design df", ResultText::count(figures.degreesOfFreedom)},
        {"Effective n of the weights", svFmt(figures.effectiveSampleSize, 1)}};
    return table;
}

}  // namespace sorvane::SurveyDesignTable
