#include "SorvaneMac/Screens/Survey/SurveyDesignTable.h"

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SurveyCells.h"

namespace sorvane::SurveyDesignTable {

namespace {

bool isCorrectedAlone(const SurveyDesignUsed& design, DesignVarianceMethod method) {
    return method == DesignVarianceMethod::naiveWeighted && !design.fpc.empty();
}

}  // namespace

std::string_view methodName(const SurveyDesignUsed& design, DesignVarianceMethod method) {
    return isCorrectedAlone(design, method) ? "Weights and population correction"
                                            : SurveyCells::methodName(method);
}

std::string methodWords(const SurveyDesignUsed& design, DesignVarianceMethod method) {
    if (isCorrectedAlone(design, method)) {
        return "variance from the weights and the finite population correction";
    }
    if (method == DesignVarianceMethod::naiveWeighted) {
        return "naive variance from the weights alone";
    }
    if (method != DesignVarianceMethod::replicateWeights) {
        return std::string(SurveyCells::methodName(method));
    }
    const std::string count = ResultText::count(design.replicateCount) + " replicate weights";
    if (design.isScaled) {
        return count + " with scales as given";
    }
    std::string words = count + ", " + std::string(displayName(design.replicateType));
    if (design.replicateType == ReplicateType::fayBRR) {
        words += " with factor " + NumberText::clean(design.fayRho);
    }
    return words;
}

ReportTable table(const SurveyDesignUsed& design, const Figures& figures) {
    const bool isReplicated = design.replicateCount > 0;
    const auto used = [isReplicated](const std::string& name, const std::string& more) {
        return name.empty() ? std::string(isReplicated ? "as in the replicates" : "none")
                            : name + more;
    };
    const std::string units = " (" + ResultText::count(design.psuCount) + ")";
    ReportTable table;
    table.title = "Sampling design";
    table.headers = {"Part", "As used"};
    table.rows = {
        {"Weight", design.weight + ", sum " + svFmt(figures.sumOfWeights, 1)},
        {"Strata", used(design.strata, " (" + ResultText::count(design.stratumCount) + ")")},
        {"PSUs", design.clusters.empty() && !isReplicated ? "each case" + units
                                                          : used(design.clusters, units)},
        {"Finite population correction",
         used(design.fpc, isReplicated ? ", not applied to replicates" : "")},
        {"Variance", methodWords(design, figures.method)},
        {"Design df", ResultText::count(figures.degreesOfFreedom)},
        {"Effective n of the weights", svFmt(figures.effectiveSampleSize, 1)}};
    return table;
}

}  // namespace sorvane::SurveyDesignTable
