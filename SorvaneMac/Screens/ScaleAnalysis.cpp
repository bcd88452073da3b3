#include "SorvaneMac/Screens/ScaleAnalysis.h"

namespace sorvane::ScaleAnalysis {

bool canBeReversed(const DataVariable& item) {
    return item.scaleRange && item.scaleRange->minimum && item.scaleRange->maximum;
}

ReliabilityOptions options(const StudioState& state,
                           const std::string& construct,
                           const std::vector<std::string>& itemNames) {
    ReliabilityOptions options{.constructName = construct,
                               .itemNames = itemNames,
                               .missingDataRule = state.scale.reliabilityMissingDataRule.get(),
                               .scaleScoreMethod = state.scale.scaleScoreMethod.get(),
                               .minimumItemCompletion = state.scale.minimumItemCompletion.get()};
    for (const std::string& name : itemNames) {
        const DataVariable& variable = *state.dataset().variable(name);
        if (state.scale.reverseCodedItemNames->contains(name) && canBeReversed(variable)) {
            options.reverseCoded.push_back({.item = name,
                                            .minimum = variable.scaleRange->minimum,
                                            .maximum = variable.scaleRange->maximum});
        }
    }
    return options;
}

ReliabilityResult analyze(const StudioState& state,
                          const std::string& construct,
                          const std::vector<std::string>& itemNames) {
    std::vector<NumericColumn> items;
    items.reserve(itemNames.size());
    for (const std::string& name : itemNames) {
        items.push_back(state.dataset().numericColumn(name));
    }
    return ReliabilityAnalyzer::analyze(items, options(state, construct, itemNames));
}

std::string_view reportBand(double alpha) {
    return alpha >= 0.9   ? "excellent"
           : alpha >= 0.8 ? "good"
           : alpha >= 0.7 ? "acceptable"
           : alpha >= 0.6 ? "questionable"
           : alpha >= 0.5 ? "poor"
                          : "unacceptable";
}

}  // namespace sorvane::ScaleAnalysis
