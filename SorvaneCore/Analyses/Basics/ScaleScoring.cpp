#include "SorvaneCore/Analyses/Basics/ScaleScoring.h"

namespace sorvane {

std::string_view rawValue(ReliabilityMissingDataRule rule) {
    switch (rule) {
        case ReliabilityMissingDataRule::listwiseDeletion:
            return "listwise deletion";
        case ReliabilityMissingDataRule::availableItemMean:
            return "available-item mean";
        case ReliabilityMissingDataRule::excludeIfMissingMoreThanThreshold:
            return "exclude case if missing more than threshold";
    }
    return "";
}

std::string_view displayName(ReliabilityMissingDataRule rule) {
    switch (rule) {
        case ReliabilityMissingDataRule::listwiseDeletion:
            return "Listwise deletion";
        case ReliabilityMissingDataRule::availableItemMean:
            return "Available-item mean";
        case ReliabilityMissingDataRule::excludeIfMissingMoreThanThreshold:
            return "Missing threshold";
    }
    return "";
}

std::string_view displayName(ScaleScoreMethod method) {
    return method == ScaleScoreMethod::mean ? "Mean score" : "Sum score";
}

bool keepsRow(ReliabilityMissingDataRule rule,
              std::size_t present,
              std::size_t itemCount,
              double minimumItemCompletion) {
    const auto a = static_cast<double>(present);
    const auto k = static_cast<double>(itemCount);
    switch (rule) {
        case ReliabilityMissingDataRule::listwiseDeletion:
            return present == itemCount;
        case ReliabilityMissingDataRule::availableItemMean:
            return present > 0 && (k - a) / k <= 1.0 - minimumItemCompletion;
        case ReliabilityMissingDataRule::excludeIfMissingMoreThanThreshold:
            return present > 0 && minimumItemCompletion <= a / k;
    }
    return false;
}

}  // namespace sorvane
