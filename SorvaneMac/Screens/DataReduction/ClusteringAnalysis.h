#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/DataReduction/DataReductionFields.h"
#include "SorvaneMac/Screens/DataReduction/ReducedVariables.h"

namespace sorvane {

/// What the ways of clustering cases share: what they need and what must not be claimed of them.
template <typename Run>
class ClusteringAnalysis : public StoredAnalysis<DataReductionFields, Run> {
public:
    using StoredAnalysis<DataReductionFields, Run>::StoredAnalysis;

    std::string runLabel() const final { return "Run clustering"; }

    std::optional<Gate> gate() const final {
        const ImportedDataset& dataset = this->state_.dataset();
        if (std::optional<Gate> gone = ReducedVariables::gone(dataset, this->fields_)) {
            return gone;
        }
        return ReducedVariables::canCluster(dataset, this->fields_)
                   ? std::nullopt
                   : std::optional(ReducedVariables::cannotCluster());
    }

    Guide guide() const final {
        return {.answers = answers(),
                .needs =
                    "Numeric variables that matter for likeness, standardized where their units "
                    "differ, and at least as many complete cases as clusters; five or more in "
                    "each cluster.",
                .doNotClaim = {caution(),
                               "Do not test whether clusters differ on the variables that made "
                               "them; they do by construction."}};
    }

protected:
    virtual std::string answers() const = 0;
    virtual std::string caution() const = 0;
};

}  // namespace sorvane
