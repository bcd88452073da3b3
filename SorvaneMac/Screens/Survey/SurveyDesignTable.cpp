#include "SorvaneMac/Screens/Survey/SurveyDesignTable.h"

#include <algorithm>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SurveyCells.h"

namespace sorvane::SurveyDesignTable {

namespace {

bool isCorrectedAlone(const SurveyDesignUsed& design, DesignVarianceMethod method) {
    return method == DesignVarianceMethod::naiveWeighted && !design.fpc.empty();
}

/// A figure of several results as text, "8" or "6 to 11".
template <typename Value, typename Write>
std::string range(std::span<const Figures> all, Value Figures::*figure, Write write) {
    const auto [least, most] = std::ranges::minmax(all, {}, figure);
    const std::string from = write(least.*figure);
    const std::string to = write(most.*figure);
    return from == to ? from : from + " to " + to;
}

/// The same of a count, with that of the whole design where it is another: "9 of 10".
std::string ofWhole(std::span<const Figures> all,
                    std::int64_t Figures::*figure,
                    std::int64_t whole) {
    const std::string used = range(all, figure, ResultText::count);
    const std::string every = ResultText::count(whole);
    return used == every ? every : used + " of " + every;
}

std::string oneDecimal(std::optional<double> value) {
    return svFmt(value, 1);
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
    return table(design, std::span(&figures, 1));
}

ReportTable table(const SurveyDesignUsed& design, std::span<const Figures> all) {
    const bool isReplicated = design.replicateCount > 0;
    const auto used = [isReplicated](const std::string& name, const std::string& more) {
        return name.empty() ? std::string(isReplicated ? "as in the replicates" : "none")
                            : name + more;
    };
    const std::string strata =
        " (" + ofWhole(all, &Figures::stratumCount, design.stratumCount) + ")";
    const std::string units = " (" + ofWhole(all, &Figures::psuCount, design.psuCount) + ")";
    ReportTable table;
    table.title = "Sampling design";
    table.headers = {"Part", "As used"};
    table.rows = {
        {"Weight",
         design.weight + ", sum " + range(all, &Figures::sumOfWeights, SurveyCells::weightSum)},
        {"Strata", used(design.strata, strata)},
        {"PSUs", design.clusters.empty() && !isReplicated ? "each case" + units
                                                          : used(design.clusters, units)},
        {"Finite population correction",
         used(design.fpc, isReplicated ? ", not applied to replicates" : "")},
        {"Variance", methodWords(design, all.front().method)},
        {"Design df", range(all, &Figures::degreesOfFreedom, ResultText::count)},
        {"Effective n of the weights", range(all, &Figures::effectiveSampleSize, oneDecimal)}};
    return table;
}

}  // namespace sorvane::SurveyDesignTable
